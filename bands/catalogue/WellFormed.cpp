#include "bands/catalogue/WellFormed.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <vector>

#include "pyxis/Utf8.h"
#include "sets/xml/XmlText.h"

namespace kest {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr const char* kNotUtf8 = "bytes that are not UTF-8";
constexpr const char* kControl = "a control character";
constexpr const char* kOutside = "text outside the root element";

/// Whether XML allows the character.
bool isCharacter(std::uint32_t value) {
    return value < ' ' ? xml::isSpace(static_cast<char>(value))
                       : value < 0xD800 || (value > 0xDFFF && value < 0xFFFE) ||
                             (value > 0xFFFF && value < 0x110000);
}

/// Whether "name" of "&name;" stands for a character without any declaration.
bool isKnownReference(std::string_view name) {
    if (!name.starts_with('#')) {
        constexpr std::array<std::string_view, 5> kNames = {"lt", "gt", "amp", "quot", "apos"};
        return std::find(kNames.begin(), kNames.end(), name) != kNames.end();
    }
    const bool isHex = name.starts_with("#x");
    const char* const end = name.data() + name.size();
    std::uint32_t value = 0;
    const auto [stop, error] =
        std::from_chars(name.data() + (isHex ? 2 : 1), end, value, isHex ? 16 : 10);
    return error == std::errc() && stop == end && isCharacter(value);
}

constexpr xml::CharacterSet kTagNameEnds(" \t\r\n/>");

bool isBlank(std::string_view text) {
    return xml::skipSpace(text, 0) == text.size();
}

/// Goes through the markup of a document once.
class Scanner {
  public:
    explicit Scanner(std::string_view text) : text_(text) {}

    std::string scan() {
        const char* fault = characters();
        for (at_ = fault != nullptr ? at_ : 0; fault == nullptr && at_ < text_.size();) {
            fault = text_[at_] == '<' ? markup() : content();
        }
        if (fault == nullptr && !open_.empty()) {
            at_ = static_cast<std::size_t>(open_.back().data() - text_.data());
            fault = "an element without its end tag";
        }
        if (fault == nullptr) {
            return {};
        }
        const auto line = 1 + std::count(text_.begin(), text_.begin() + offset(), '\n');
        return "line " + std::to_string(line) + ": " + fault;
    }

  private:
    std::ptrdiff_t offset() const {
        return static_cast<std::ptrdiff_t>(std::min(at_, text_.size()));
    }

    const char* characters() {
        std::size_t length = 0;
        for (at_ = 0; at_ < text_.size(); at_ += length) {
            char32_t value = 0;
            length = Pyxis::getUtf8(text_.substr(at_), value);
            if (length == 0 || !isCharacter(value)) {
                return length != 0 && value < ' ' ? kControl : kNotUtf8;
            }
        }
        return nullptr;
    }

    /// Text up to the next markup.
    const char* content() {
        const std::string_view run = text_.substr(at_, text_.find('<', at_) - at_);
        if (open_.empty() && !isBlank(run)) {
            return kOutside;
        }
        if (const std::size_t end = run.find("]]>"); end != run.npos) {
            at_ += end;
            return "\"]]>\" outside a CDATA section";
        }
        return references(run);
    }

    /// Checks the references in a run of text that starts here, and moves past it.
    const char* references(std::string_view run) {
        const std::size_t start = at_;
        for (std::size_t sign = run.find('&'); sign != run.npos; sign = run.find('&', sign + 1)) {
            const std::string_view name = xml::referenceName(run.substr(sign));
            if (name.empty() || !isKnownReference(name.substr(0, name.size() - 1))) {
                at_ = start + sign;
                return "\"&\" without a known reference; write \"&amp;\"";
            }
        }
        at_ = start + run.size();
        return nullptr;
    }

    const char* markup() {
        const std::string_view rest = text_.substr(at_);
        if (rest.starts_with("<!--")) {
            return skipPast("-->", 4);
        }
        if (rest.starts_with("<![CDATA[")) {
            return open_.empty() ? kOutside : skipPast("]]>", 9);
        }
        if (rest.starts_with("<?")) {
            return skipPast("?>", 2);
        }
        if (rest.starts_with("<!DOCTYPE")) {
            return "a document type, which a catalogue does without";
        }
        if (rest.starts_with("</")) {
            const std::size_t start = at_ + 2;
            const std::size_t end = kTagNameEnds.find(text_, start);
            if (open_.empty() || open_.back() != text_.substr(start, end - start)) {
                return "an end tag that does not match the last start tag";
            }
            open_.pop_back();
            return skipPast(">", 2);
        }
        return startTag();
    }

    /// A missing end is for the parser to find.
    const char* skipPast(std::string_view end, std::size_t opening) {
        const std::size_t found = text_.find(end, at_ + opening);
        at_ = found == text_.npos ? text_.size() : found + end.size();
        return nullptr;
    }

    const char* startTag() {
        const std::size_t start = at_ + 1;
        at_ = kTagNameEnds.find(text_, start);
        const std::string_view name = text_.substr(start, at_ - start);
        while (at_ < text_.size()) {
            const std::size_t next = xml::skipSpace(text_, at_);
            const bool isApart = next > at_;
            at_ = next;
            const std::string_view rest = text_.substr(at_);
            if (rest.starts_with('>') || rest.starts_with("/>")) {
                if (rest.starts_with('>')) {
                    open_.push_back(name);
                }
                at_ += rest.starts_with('>') ? 1 : 2;
                return nullptr;
            }
            if (const char* fault = isApart ? attribute() : "attributes without a blank between";
                fault != nullptr) {
                return fault;
            }
        }
        return nullptr;
    }

    const char* attribute() {
        constexpr xml::CharacterSet kNameEnds(" \t\r\n=/><\"'&");
        const std::size_t nameEnd = kNameEnds.find(text_, at_);
        const std::size_t sign = xml::skipSpace(text_, nameEnd);
        const std::size_t open = xml::skipSpace(text_, std::min(sign + 1, text_.size()));
        if (open >= text_.size()) {
            at_ = text_.size();
            return nullptr;
        }
        const char quote = text_[open];
        if (nameEnd == at_ || text_[sign] != '=' || (quote != '"' && quote != '\'')) {
            return "an attribute without a value in quotes";
        }
        at_ = open + 1;
        const std::string_view value = text_.substr(at_, text_.find(quote, at_) - at_);
        if (value.find('<') != value.npos) {
            return "\"<\" in an attribute; write \"&lt;\"";
        }
        const char* const fault = references(value);
        at_ += fault == nullptr ? 1 : 0;
        return fault;
    }

    std::string_view text_;
    std::size_t at_ = 0;
    std::vector<std::string_view> open_;  ///< the names of elements
};

}  // namespace

std::string whyNotWellFormed(std::string_view document) {
    if (document.starts_with(kByteOrderMark)) {
        document.remove_prefix(kByteOrderMark.size());
    }
    return Scanner(document).scan();
}

}  // namespace kest
