#include "sets/XmlInternalSubset.h"

#include <algorithm>
#include <unordered_set>
#include <vector>

#include "sets/XmlFault.h"
#include "sets/XmlInstruction.h"
#include "sets/XmlText.h"

namespace kest::xml {
namespace {

bool startsWith(std::string_view text, std::size_t at, std::string_view prefix) {
    return text.substr(at, prefix.size()) == prefix;
}

/// The names, semicolons included, of the entity references in a text.
std::vector<std::string_view> referencesIn(std::string_view text) {
    std::vector<std::string_view> names;
    for (std::size_t at = text.find('&'); at != std::string_view::npos; at = text.find('&', at)) {
        const std::size_t end = text.find_first_of("&;", ++at);
        if (end != std::string_view::npos && text[end] == ';') {
            names.push_back(text.substr(at, end + 1 - at));
        }
    }
    return names;
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
            at_ += 4;
            good = skipTo("-->");
        } else if (startsWith(text_, at_, "<?")) {
            const std::size_t start = at_ += 2;
            good = skipTo("?>");
            if (good) {
                addInstruction(document_, text_.substr(start, at_ - 2 - start),
                               !document_.root()->name().empty());
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

/// Moves behind the next `mark`.
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

/// A value in quotes, after leading white space; false, at the place looked at, without one.
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
    auto& table = isParameter ? decoder_.parameterEntities() : document_.entities_;
    if (refersTo(value, name)) {
        return fault(at_, "circular entity declaration &%s", name);
    }
    for (const std::string_view reference : referencesIn(value)) {
        if (document_.entities_.count(reference) == 0) {
            awaited_.insert(reference);
        }
    }
    table.emplace(name, value);
    document_.longestEntityName_ = std::max(document_.longestEntityName_, name.size());
    return skipTo(">");
}

/// Whether the entity references in `value` lead to the entity `name`, which is not declared yet.
bool InternalSubset::refersTo(std::string_view value, std::string_view name) const {
    // Only an entity that an earlier one refers to can close a circle through others.
    const bool isAwaited = awaited_.count(name) != 0;
    std::unordered_set<std::string_view> seen;
    std::vector<std::string_view> open{value};
    while (!open.empty()) {
        const std::string_view text = open.back();
        open.pop_back();
        for (const std::string_view reference : referencesIn(text)) {
            if (reference == name) {
                return true;
            }
            const auto entity = document_.entities_.find(reference);
            if (isAwaited && entity != document_.entities_.end() && seen.insert(reference).second) {
                open.push_back(entity->second);
            }
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

/// Skips the type; CDATA is told from all others.
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
    // Ends as a name in a tag does: elements are written with the attributes declared for them.
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
    AttributeDefault attribute{name, std::nullopt};
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
        attribute.value =
            decoder_.decode(const_cast<char*>(value.data()), value.size(), DecodeMode::Attribute)
                .text;
    }
    document_.defaults_[elementName].push_back(attribute);
    return true;
}

}  // namespace kest::xml
