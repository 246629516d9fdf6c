#include "tool/scene/Context.h"

#include <ostream>
#include <utility>

#include "tool/terminal/TerminalText.h"

namespace kestms {

Context::Context(std::istream& input, std::ostream& output, std::ostream& errors)
    : in(input), out(output), err(errors) {}

Session& Context::session() {
    if (!session_) {
        auto session = std::make_unique<Session>(language, changes);
        session->useProducts(products);
        session_ = std::move(session);
    }
    return *session_;
}

void Context::warn(const std::string& file, const std::string& reason) const {
    note(printableName(file) + ": " + reason);
}

void Context::note(const std::string& text) const {
    err << "kestms: " << text << "\n";
}

}  // namespace kestms
