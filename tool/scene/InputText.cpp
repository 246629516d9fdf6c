#include "tool/scene/InputText.h"

#include <array>
#include <cerrno>
#include <fstream>
#include <istream>
#include <system_error>

#include "sets/xml/XmlUtf16.h"
#include "tool/terminal/Failure.h"
#include "tool/terminal/Interrupt.h"

namespace kestms {
namespace {

/// Far more than a list of files needs.
constexpr std::size_t kMaximumBytes = std::size_t{64} << 20U;

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

std::string decoded(std::string bytes) {
    if (bytes.starts_with(kUtf8Mark)) {
        return bytes.substr(kUtf8Mark.size());
    }
    return kest::xml::isUtf16(bytes) ? kest::xml::utf16ToUtf8(bytes) : bytes;
}

}  // namespace

std::string readText(std::istream& stream, const std::string& name) {
    std::string bytes;
    std::array<char, 16384> block{};
    errno = 0;
    while (stream.read(block.data(), block.size()) || stream.gcount() > 0) {
        const std::string_view read(block.data(), static_cast<std::size_t>(stream.gcount()));
        bytes.append(read);
        throwIfInterrupted();
        if (!kest::xml::isUtf16(bytes) && read.find('\0') != std::string_view::npos) {
            throw Failure(ExitCode::CannotRead, name, "not a text file");
        }
        if (bytes.size() > kMaximumBytes) {
            throw Failure(ExitCode::CannotRead, name, "too long for a list of files");
        }
    }
    throwIfInterrupted();
    if (stream.bad()) {
        throw Failure(ExitCode::CannotRead, name,
                      errno != 0 ? std::generic_category().message(errno) : "read failed");
    }
    return decoded(std::move(bytes));
}

std::string readTextFile(const std::string& path) {
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw Failure(ExitCode::CannotRead, path, std::generic_category().message(errno));
    }
    return readText(file, path);
}

bool looksLikeXml(std::string_view text) {
    const std::size_t start = text.find_first_not_of(" \t\r\n");
    return start != std::string_view::npos && text[start] == '<';
}

bool fileMayListComponents(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::array<char, 4096> block{};
    file.read(block.data(), block.size());
    const std::string text = decoded({block.data(), static_cast<std::size_t>(file.gcount())});
    return looksLikeXml(text) && text.find("<VRTDataset") == std::string::npos;
}

std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        if (!line.empty()) {
            lines.emplace_back(line);
        }
    }
    return lines;
}

}  // namespace kestms
