#include "tool/scene/Context.h"

#include <ostream>
#include <utility>

#include "tool/terminal/Progress.h"
#include "tool/terminal/TerminalText.h"

namespace kestms {

Context::Context(std::istream& input, std::ostream& output, std::ostream& errors)
    : in(input), out(output), err(errors) {}

Session& Context::session() {
    if (!session_) {
        Pyxis::StandardCodecs::allow(paths);
        auto session = std::make_unique<Session>(language, changes);
        session->useProducts(products);
        for (const std::string& file : products.files) {
            inputs.add(file);
        }
        session_ = std::move(session);
    }
    return *session_;
}

void Context::nameRemote(const std::string& path) {
    if (takesRemoteNames && paths.named.insert(path).second) {
        Pyxis::StandardCodecs::allow(paths);
    }
}

void Context::warn(const std::string& file, const std::string& reason) const {
    note(fileMessage(file, reason));
}

void Context::note(const std::string& text) const {
    if (!quiet) {
        fail(text);
    }
}

std::size_t Context::tableColumns() const {
    return wide ? 0 : terminalColumns(out);
}

void Context::fail(const std::string& text) const {
    err << lead << printable(text) << "\n";
}

}  // namespace kestms
