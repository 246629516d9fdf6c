#include "sets/xml/XmlInstruction.h"

#include <algorithm>

#include "sets/xml/XmlText.h"

namespace kest::xml {
namespace {

bool declaresStandalone(std::string_view text) {
    constexpr std::string_view kKeyword = "standalone";
    std::size_t at = text.find(kKeyword);
    if (at == std::string_view::npos) {
        return false;
    }
    at = std::min(text.find_first_not_of(" \t\r\n='\"", at + kKeyword.size()), text.size());
    return text.substr(at, 3) == "yes";
}

}  // namespace

void addInstruction(Document& document, std::string_view instruction) {
    const std::size_t end = std::min(instruction.find_first_of(kSpaces), instruction.size());
    const std::string_view target = instruction.substr(0, end);
    const std::string_view text = instruction.substr(skipSpace(instruction, end));
    if (target == "xml" && declaresStandalone(text)) {
        document.standalone_ = true;
    }
    document.addInstruction(target, text, !document.root()->name().empty());
}

}  // namespace kest::xml
