#include "sets/xml/XmlInternalSubset.h"

#include <optional>
#include <vector>

#include "sets/xml/XmlFault.h"
#include "sets/xml/XmlInstruction.h"
#include "sets/xml/XmlText.h"

namespace kest::xml {
namespace {

bool startsWith(std::string_view text, std::size_t at, std::string_view prefix) {
    return text.substr(at, prefix.size()) == prefix;
}

/// Bound on the text searched for circles through other entities, for each document. Past it only
/// an entity that names itself is detected; the bounds on replacement catch the rest.
constexpr std::size_t kMostSearchedBytes = std::size_t{16} << 20U;

/// Calls `visit` with the name, semicolon included, of every reference in a text until it returns
/// true; returns whether it did. `mark` starts a reference: '&' or '%'.
template <typename Visit>
bool anyReference(std::string_view text, char mark, const Visit& visit) {
    for (std::size_t at = text.find(mark); at != std::string_view::npos;
         at = text.find(mark, at + 1)) {
        const std::string_view name = referenceName(text.substr(at));
        if (!name.empty() && visit(name)) {
            return true;
        }
    }
    return false;
}

}  // namespace

void InternalSubset::read(std::string_view text) {
    text_ = text;
    bool good = true;
    for (at_ = 0; good && at_ < text_.size();) {
        if (startsWith(text_, at_, "<!ENTITY")) {
            good = readEntity();
        } else if (startsWith(text_, at_, "<!ATTLIST")) {
            good = readAttributeList();
        } else if (startsWith(text_, at_, "<!--")) {
            at_ = commentEnd(text_, at_ + std::string_view("<!--").size());
            good = at_ != std::string_view::npos || fault(at_, "unclosed <!--");
        } else if (startsWith(text_, at_, "<?")) {
            at_ += 2;
            const std::size_t start = at_;
            good = skipTo("?>") || fault(start, "unclosed <?");
            if (good) {
                addInstruction(document_, text_.substr(start, at_ - 2 - start));
            }
        } else if (text_[at_] == '<') {
            good = skipTo(">");
        } else if (text_[at_] == '%') {
            // A parameter entity between declarations could only bring in further ones.
            good = skipTo(";");
        } else {
            ++at_;
        }
    }
}

/// Moves past the next `mark`.
bool InternalSubset::skipTo(std::string_view mark) {
    const std::size_t found = text_.find(mark, at_);
    at_ = found == std::string_view::npos ? text_.size() : found + mark.size();
    return found != std::string_view::npos;
}

/// The characters up to white space or one of `ends`, after leading white space.
std::string_view InternalSubset::word(std::string_view ends) {
    const std::size_t start = skipSpace(text_, at_);
    at_ = start;
    while (at_ < text_.size() && !isSpace(text_[at_]) &&
           ends.find(text_[at_]) == std::string_view::npos) {
        ++at_;
    }
    return text_.substr(start, at_ - start);
}

/// A quoted value, after leading white space; false when there is none.
bool InternalSubset::quoted(std::string_view& value) {
    at_ = skipSpace(text_, at_);
    if (at_ == text_.size() || (text_[at_] != '"' && text_[at_] != '\'')) {
        return false;
    }
    const std::size_t end = text_.find(text_[at_], at_ + 1);
    if (end == std::string_view::npos) {
        return false;
    }
    value = text_.substr(at_ + 1, end - at_ - 1);
    at_ = end + 1;
    return true;
}

bool InternalSubset::readEntity() {
    at_ = skipSpace(text_, at_ + std::string_view("<!ENTITY").size());
    const bool isParameter = at_ < text_.size() && text_[at_] == '%';
    at_ += isParameter ? 1 : 0;
    const std::string_view bareName = word(">");
    std::string_view value;
    if (!quoted(value)) {
        return skipTo(">");  // an external entity, which is never read
    }
    const std::string_view name = document_.keep(std::string(bareName) + ';');
    value = decoder_.decode(const_cast<char*>(value.data()), value.size(), DecodeMode::EntityValue)
                .text;
    if (isParameter ? namesItself(value, name) : leadsTo(value, name)) {
        return fault(at_, "circular entity declaration &%s", name);
    }
    auto& table = isParameter ? decoder_.parameterEntities() : document_.entities_;
    table.emplace(name, value);
    return skipTo(">");
}

/// Whether the value of the parameter entity `name` refers to itself. References to declared
/// entities have been replaced already.
bool InternalSubset::namesItself(std::string_view value, std::string_view name) {
    return anyReference(value, '%', [name](std::string_view each) { return each == name; });
}

/// Whether the references in `value` lead to the general entity `name`.
bool InternalSubset::leadsTo(std::string_view value, std::string_view name) {
    // Only an entity that an earlier one may refer to can close a circle through others.
    const bool isKnown = awaited_.count(name) != 0 || document_.entity(name) != nullptr;
    std::unordered_set<std::string_view> seen;
    std::vector<std::string_view> open{value};
    while (!open.empty()) {
        const std::string_view text = open.back();
        open.pop_back();
        const bool found = anyReference(text, '&', [&](std::string_view each) {
            const std::string_view* replacement = document_.entity(each);
            if (replacement == nullptr) {
                awaited_.insert(each);
            } else if (isKnown && searchedBytes_ < kMostSearchedBytes && seen.insert(each).second) {
                searchedBytes_ += each.size() + replacement->size();
                open.push_back(*replacement);
            }
            return each == name;
        });
        if (found) {
            return true;
        }
    }
    return false;
}

bool InternalSubset::readAttributeList() {
    at_ += std::string_view("<!ATTLIST").size();
    const std::string_view elementName = word(">");
    if (at_ == text_.size()) {
        return fault(at_, "unclosed <!ATTLIST");
    }
    while ((at_ = skipSpace(text_, at_)) < text_.size() && text_[at_] != '>') {
        if (!readAttributeDeclaration(elementName)) {
            return false;
        }
    }
    if (at_ == text_.size()) {
        return fault(at_, "unclosed <!ATTLIST");
    }
    ++at_;
    return true;
}

/// Skips the type, and reports whether it is CDATA.
bool InternalSubset::readAttributeType(bool& isCData) {
    at_ = skipSpace(text_, at_);
    isCData = startsWith(text_, at_, "CDATA");
    if (startsWith(text_, at_, "NOTATION")) {
        at_ = skipSpace(text_, at_ + std::string_view("NOTATION").size());
    }
    if (at_ < text_.size() && text_[at_] == '(') {
        return skipTo(")") || fault(at_, "unclosed <!ATTLIST");
    }
    return !word(">").empty() || fault(at_, "malformed <!ATTLIST");
}

bool InternalSubset::readAttributeDeclaration(std::string_view elementName) {
    // Ends like a name in a tag, because elements are written with the attributes declared for
    // them.
    const std::string_view name = word("=/>");
    if (name.empty()) {
        return fault(at_, "malformed <!ATTLIST");
    }
    bool isCData = false;
    if (!readAttributeType(isCData)) {
        return false;
    }
    at_ = skipSpace(text_, at_);
    if (startsWith(text_, at_, "#FIXED")) {
        at_ += std::string_view("#FIXED").size();
        at_ = skipSpace(text_, at_);
    }
    std::optional<std::string_view> defaultValue;
    if (at_ < text_.size() && text_[at_] == '#') {
        word(">");
        if (isCData) {
            return true;
        }
    } else {
        std::string_view value;
        if (!quoted(value)) {
            return fault(at_, "malformed <!ATTLIST");
        }
        defaultValue =
            decoder_.decode(const_cast<char*>(value.data()), value.size(), DecodeMode::Attribute)
                .text;
    }
    document_.addDefault(elementName, name, defaultValue);
    return true;
}

}  // namespace kest::xml
