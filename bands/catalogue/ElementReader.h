#pragma once

#include <charconv>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include "bands/BandWords.h"
#include "bands/catalogue/Product.h"
#include "sets/xml/XmlDocument.h"

namespace kest {

/// Thrown at an error in a catalogue; `reason` is for users.
struct DocumentFault {
    std::string reason;
};

/// A part of a catalogue as reasons quote it, cut to a readable length.
std::string quoted(std::string_view text);

/// Without the blanks around it.
std::string_view trimmed(std::string_view text);

std::u16string wide(std::string_view text);

/// Reads the elements of a catalogue. Whatever is not as it has to be is a DocumentFault that names
/// the element and the part of the catalogue that holds it.
class ElementReader {
  public:
    explicit ElementReader(const xml::Document& document) : document_(document) {}

    /// What is read from here on, such as 'product "p"'; empty for the catalogue itself.
    void enter(const std::string& part) { part_ = part; }

    [[noreturn]] void failAt(const xml::Element& element, const std::string& what) const;
    /// For a fault of the whole part.
    [[noreturn]] void fail(const std::string& what) const;

    /// The element may have these attributes and no others, each once.
    void allow(const xml::Element& element, std::initializer_list<std::string_view> names) const;

    std::optional<std::string_view> attribute(const xml::Element& element,
                                              std::string_view name) const;
    std::string_view required(const xml::Element& element, std::string_view name) const;

    /// A required attribute within limits.
    template <typename Number>
    Number number(const xml::Element& element, std::string_view name, Number most,
                  Number least = 0) const;

    /// The value of a required attribute in a table of words.
    template <typename Words>
    auto word(const xml::Element& element, std::string_view name, const Words& words) const;

    /// The text of an element without children.
    std::string_view text(const xml::Element& element) const;

    /// The texts of the <name> children; there may be no others.
    LocalText names(const xml::Element& element) const;
    void addName(const xml::Element& element, LocalText& names) const;

  private:
    const xml::Document& document_;
    std::string part_;
};

template <typename Number>
Number ElementReader::number(const xml::Element& element, std::string_view name, Number most,
                             Number least) const {
    const std::string_view text = required(element, name);
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !(value >= least) ||
        !(value <= most)) {
        failAt(element, quoted(name) + " is not a number from " +
                            std::to_string(static_cast<int>(least)) + " to " +
                            std::to_string(static_cast<int>(most)));
    }
    return value;
}

template <typename Words>
auto ElementReader::word(const xml::Element& element, std::string_view name,
                         const Words& words) const {
    const std::string_view text = required(element, name);
    const auto value = valueOf(words, text);
    if (!value) {
        failAt(element, quoted(name) + " cannot be " + quoted(text));
    }
    return *value;
}

}  // namespace kest
