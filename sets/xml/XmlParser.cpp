#include <algorithm>

#include "sets/xml/XmlDecoder.h"
#include "sets/xml/XmlDocument.h"
#include "sets/xml/XmlFault.h"
#include "sets/xml/XmlInstruction.h"
#include "sets/xml/XmlInternalSubset.h"
#include "sets/xml/XmlText.h"
#include "sets/xml/XmlUtf16.h"

namespace kest::xml {
namespace {

constexpr CharacterSet kTagNameEnds(" \t\r\n/>");
constexpr CharacterSet kTagEnds(" \t\r\n>");
constexpr CharacterSet kAttributeNameEnds(" \t\r\n=/>");
constexpr CharacterSet kBeforeValue(" \t\r\n=");

/// Where a quoted value ends or needs decoding.
constexpr CharacterSet kDoubleQuotedEnds("\"&\t\r\n");
constexpr CharacterSet kSingleQuotedEnds("'&\t\r\n");

/// Tree bytes for each byte of a typical component list. One block of about the right size is
/// cheaper than several growing ones.
constexpr std::size_t kTreeBytes = 4;
constexpr std::size_t kSmallText = 256;
constexpr std::size_t kLargeText = std::size_t{16} << 20U;

bool startsName(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':' ||
           (static_cast<unsigned char>(c) & 0x80U) != 0;
}

/// Cuts the text at its first zero byte, or its last byte off unless that is '>'
/// (compatibility.md, 5).
void trimToMarkup(std::string& text) {
    const char last = text.back();
    text.pop_back();
    if (const auto zero = text.find('\0'); zero != std::string::npos) {
        text.resize(zero);
    }
    if (last == '>') {
        text.push_back(last);
    }
}

}  // namespace

class Parser {
  public:
    explicit Parser(Document& document)
        : document_(document),
          decoder_(document),
          subset_(document, decoder_),
          text_(document.source_),
          current_(document.root()) {}

    bool parse();

  private:
    bool markup();
    bool startTag();
    bool attribute();
    bool value(char quote, std::string_view& value);
    void open(std::string_view name);
    void close() { current_ = current_->parent_; }
    bool endTag();
    bool comment();
    bool characterData();
    bool documentType();
    bool instruction();
    void characters(std::size_t from, std::size_t to, DecodeMode mode);

    char at(std::size_t place) const { return place < text_.size() ? text_[place] : '\0'; }
    bool has(std::string_view prefix) const { return text_.substr(at_).starts_with(prefix); }

    Document& document_;
    Decoder decoder_;
    InternalSubset subset_;
    std::string_view text_;
    std::size_t at_ = 0;  ///< past the '<' of the current markup; once read, on its '>'
    Element* current_;    ///< the open element; null once the root is closed
    std::vector<Attribute> attributes_;
};

bool Parser::parse() {
    at_ = text_.find('<');
    if (at_ == std::string_view::npos) {
        return fault(0, "root tag missing");
    }
    while (at_ < text_.size()) {
        ++at_;
        if (!markup()) {
            return false;
        }
        const std::size_t run = at_ + 1;
        if (at(run) == '<') {
            at_ = run;
            continue;
        }
        at_ = std::min(text_.find('<', std::min(run, text_.size())), text_.size());
        if (at_ < text_.size()) {
            characters(run, at_, DecodeMode::Text);
        }
    }
    if (current_ == nullptr) {
        return true;
    }
    return current_->name_.empty() ? fault(at_, "root tag missing")
                                   : fault(at_, "unclosed tag <%s>", current_->name_);
}

bool Parser::markup() {
    if (startsName(at(at_))) {
        return startTag();
    }
    if (at(at_) == '/') {
        return endTag();
    }
    if (has("!--")) {
        return comment();
    }
    if (has("![CDATA[")) {
        return characterData();
    }
    if (has("!DOCTYPE")) {
        return documentType();
    }
    if (at(at_) == '?') {
        return instruction();
    }
    return fault(at_, "unexpected <");
}

bool Parser::startTag() {
    if (current_ == nullptr) {
        return fault(at_, "markup outside of root element");
    }
    const std::size_t nameEnd = kTagNameEnds.find(text_, at_);
    const std::string_view name = text_.substr(at_, nameEnd - at_);
    attributes_.clear();
    at_ = skipSpace(text_, nameEnd);
    while (at_ < text_.size() && text_[at_] != '/' && text_[at_] != '>') {
        if (!attribute()) {
            return false;
        }
        at_ = skipSpace(text_, at_);
    }
    const bool isEmpty = at(at_) == '/';
    at_ += isEmpty ? 1 : 0;
    if (at(at_) != '>') {
        return fault(at_, "missing >");
    }
    open(name);
    if (isEmpty) {
        close();
    }
    return true;
}

bool Parser::attribute() {
    const std::size_t nameEnd = kAttributeNameEnds.find(text_, at_);
    Attribute attribute{text_.substr(at_, nameEnd - at_), {}};
    at_ = nameEnd;
    if (at(at_) == '=' || isSpace(at(at_))) {
        at_ = kBeforeValue.skip(text_, at_);
        if (const char quote = at(at_); quote == '"' || quote == '\'') {
            ++at_;
            if (!value(quote, attribute.value)) {
                return fault(at_, "missing %c", {&quote, 1});
            }
        }
    }
    attributes_.push_back(attribute);
    return true;
}

/// Reads a value and moves past its closing quote; false without one.
bool Parser::value(char quote, std::string_view& value) {
    const std::size_t start = at_;
    const CharacterSet& ends = quote == '"' ? kDoubleQuotedEnds : kSingleQuotedEnds;
    std::size_t end = ends.find(text_, skipPlain(text_, start, quote));
    if (end < text_.size() && text_[end] == quote) {
        value = text_.substr(start, end - start);
    } else {
        end = text_.find(quote, end);
        if (end == std::string_view::npos) {
            return false;
        }
        char* run = document_.source_.data() + start;
        value = decoder_.decode(run, end - start, DecodeMode::Attribute).text;
    }
    at_ = end + 1;
    return true;
}

void Parser::open(std::string_view name) {
    if (current_->name_.empty()) {
        current_->name_ = name;
    } else {
        Element* element = document_.newElement(name);
        element->offset_ = current_->textLength_;
        document_.link(current_, element);
        current_ = element;
    }
    document_.setAttributes(current_, attributes_);
}

bool Parser::endTag() {
    const std::size_t start = at_ + 1;
    if (current_ != nullptr && !current_->name_.empty() &&
        at(start + current_->name_.size()) == '>' &&
        text_.substr(start).starts_with(current_->name_)) {
        at_ = start + current_->name_.size();
        close();
        return true;  // nearly all are written like this
    }
    const std::size_t nameEnd = kTagEnds.find(text_, start);
    const std::string_view name = text_.substr(start, nameEnd - start);
    at_ = skipSpace(text_, nameEnd);
    if (at(at_) != '>') {
        return fault(at_, "missing >");
    }
    if (current_ == nullptr || current_->name_.empty() || name != current_->name_) {
        return fault(start, "unexpected closing tag </%s>", name);
    }
    close();
    return true;
}

bool Parser::comment() {
    const std::size_t end = commentEnd(text_, at_ + std::string_view("!--").size());
    if (end == std::string_view::npos) {
        return fault(at_, "unclosed <!--");
    }
    at_ = end - 1;
    return true;
}

bool Parser::characterData() {
    const std::size_t start = at_ + std::string_view("![CDATA[").size();
    const std::size_t end = text_.find("]]>", start);
    if (end == std::string_view::npos) {
        return fault(at_, "unclosed <![CDATA[");
    }
    characters(start, end, DecodeMode::CData);
    at_ = end + 2;
    return true;
}

bool Parser::documentType() {
    const std::size_t start = at_;
    at_ = std::min(text_.find_first_of("[>", at_), text_.size());
    if (at(at_) == '[') {
        const std::size_t subset = at_ + 1;
        do {
            at_ = text_.find(']', at_ + 1);
            if (at_ == std::string_view::npos) {
                return fault(start, "unclosed <!DOCTYPE");
            }
        } while (at(skipSpace(text_, at_ + 1)) != '>');
        subset_.read(text_.substr(subset, at_ - subset));
        at_ = skipSpace(text_, at_ + 1);
    }
    return at_ < text_.size() || fault(start, "unclosed <!DOCTYPE");
}

bool Parser::instruction() {
    const std::size_t start = at_ + 1;
    const std::size_t end = text_.find("?>", start);
    if (end == std::string_view::npos) {
        return fault(at_, "unclosed <?");
    }
    addInstruction(document_, text_.substr(start, end - start));
    at_ = end + 1;
    return true;
}

/// Decodes a run of text and joins it to the open element's; text outside the root is ignored.
void Parser::characters(std::size_t from, std::size_t to, DecodeMode mode) {
    if (from >= to || current_ == nullptr || current_->name_.empty()) {
        return;
    }
    const Decoder::Result run = decoder_.decode(document_.source_.data() + from, to - from, mode);
    document_.appendText(current_, run.text, run.moved);
}

std::unique_ptr<Document> Document::parse(std::string_view text) {
    std::unique_ptr<Document> document(
        new Document(std::clamp(text.size(), kSmallText, kLargeText) * kTreeBytes));
    if (text.empty()) {
        fault(0, "root tag missing");
        return document;
    }
    document->source_ = isUtf16(text) ? utf16ToUtf8(text) : std::string(text);
    if (!document->source_.empty()) {
        trimToMarkup(document->source_);
        document->complete_ = Parser(*document).parse();
    }
    return document;
}

}  // namespace kest::xml
