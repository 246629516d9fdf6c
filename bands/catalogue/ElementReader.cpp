#include "bands/catalogue/ElementReader.h"

#include <algorithm>

#include "bands/catalogue/NamePattern.h"
#include "codec/strings/BufferText.h"

namespace kest {
namespace {

using xml::Element;

constexpr std::size_t kMaxLanguages = 30;
constexpr std::size_t kMaxText = 255;

std::string tag(const Element& element) {
    return "<" + std::string(element.name().substr(0, kMaxText)) + ">";
}

}  // namespace

std::string quoted(std::string_view text) {
    return "\"" + std::string(text.substr(0, kMaxText)) + "\"";
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r\n";
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

std::u16string wide(std::string_view text) {
    return wideText(narrowBuffer(text));
}

void ElementReader::failAt(const Element& element, const std::string& what) const {
    throw DocumentFault{(part_.empty() ? "" : part_ + ": ") + tag(element) + " " + what};
}

void ElementReader::fail(const std::string& what) const {
    throw DocumentFault{(part_.empty() ? "" : part_ + " ") + what};
}

void ElementReader::allow(const Element& element,
                          std::initializer_list<std::string_view> names) const {
    for (const xml::Attribute& each : element) {
        if (std::find(names.begin(), names.end(), each.name) == names.end()) {
            failAt(element, "has an unknown attribute " + quoted(each.name));
        }
        if (std::any_of(element.begin(), &each, [&each](const xml::Attribute& earlier) {
                return earlier.name == each.name;
            })) {
            failAt(element, quoted(each.name) + " is there for the second time");
        }
    }
}

std::optional<std::string_view> ElementReader::attribute(const Element& element,
                                                         std::string_view name) const {
    const auto value = document_.attribute(&element, name);
    if (value && value->size() > kMaxText) {
        failAt(element, "has too long a " + quoted(name));
    }
    return value;
}

std::string_view ElementReader::required(const Element& element, std::string_view name) const {
    const auto value = attribute(element, name);
    if (!value || value->empty()) {
        failAt(element, "lacks " + quoted(name));
    }
    return *value;
}

std::string_view ElementReader::text(const Element& element) const {
    const std::string_view value = trimmed(element.text());
    if (value.empty() || value.size() > NamePattern::kMaxLength || element.child() != nullptr) {
        failAt(element, "needs a text of at most " + std::to_string(NamePattern::kMaxLength) +
                            " characters");
    }
    return value;
}

LocalText ElementReader::names(const Element& element) const {
    LocalText names;
    for (const Element* each = element.child(); each != nullptr; each = each->ordered()) {
        if (each->name() != "name") {
            failAt(*each, "is not known in " + tag(element));
        }
        addName(*each, names);
    }
    return names;
}

void ElementReader::addName(const Element& element, LocalText& names) const {
    allow(element, {"language"});
    // All that refer to a term hold its names.
    if (names.texts.size() == kMaxLanguages) {
        failAt(element, "is one too many");
    }
    std::u16string name = wide(text(element));
    if (name.size() > kMaxText) {
        failAt(element, "is too long");
    }
    names.texts.emplace_back(attribute(element, "language").value_or("en"), std::move(name));
}

}  // namespace kest
