#include <algorithm>
#include <optional>
#include <unordered_set>

#include "sets/xml/XmlDocument.h"
#include "sets/xml/XmlText.h"

namespace kest::xml {
namespace {

/// Elements with more attributes than this are searched for duplicates by a hash set.
constexpr std::ptrdiff_t kAttributesWithoutSet = 16;

// A zero byte ends a run.
using namespace std::string_view_literals;
constexpr CharacterSet kTextEscapes("\0&<>\r"sv);
constexpr CharacterSet kAttributeEscapes("\0&<>\r\"\n\t"sv);

std::string_view escapeOf(char c) {
    switch (c) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '"':
            return "&quot;";
        case '\n':
            return "&#xA;";
        case '\t':
            return "&#x9;";
        default:
            return "&#xD;";
    }
}

/// Whether an attribute is the first of its name (compatibility.md, 4); to be called in order.
class FirstOfName {
  public:
    explicit FirstOfName(const Element& element) : element_(element) {}

    bool operator()(const Attribute& attribute) {
        if (element_.end() - element_.begin() > kAttributesWithoutSet) {
            return (seen_ ? *seen_ : seen_.emplace()).insert(attribute.name).second;
        }
        return std::none_of(element_.begin(), &attribute, [&attribute](const Attribute& other) {
            return other.name == attribute.name;
        });
    }

  private:
    const Element& element_;
    std::optional<std::unordered_set<std::string_view>> seen_;
};

}  // namespace

class Writer {
  public:
    explicit Writer(const Document& document) : document_(document) {}

    std::string write(const Element& element);

  private:
    void tree(const Element& top);
    void startTag(const Element& element);
    void attribute(std::string_view name, std::string_view value);
    void text(const Element& element, std::size_t from, std::size_t to);
    void escaped(std::string_view text, const CharacterSet& escapes);
    void instructions(bool afterRoot);
    void endTag(const Element& element);
    template <typename... Pieces>
    void put(const Pieces&... pieces) {
        (out_.append(pieces), ...);
    }

    const Document& document_;
    std::string out_;
};

std::string Writer::write(const Element& element) {
    out_.reserve(document_.source_.size());  // written text is usually as long as the parsed text
    const bool isRoot = &element == document_.root();
    if (isRoot) {
        instructions(false);
    }
    tree(element);
    if (isRoot) {
        instructions(true);
    }
    return std::move(out_);
}

void Writer::instructions(bool afterRoot) {
    for (const InstructionTarget& each : document_.instructions_) {
        for (const Instruction& instruction : each.instructions) {
            if (instruction.afterRoot == afterRoot) {
                put(afterRoot ? "\n" : "", "<?", each.target, instruction.text.empty() ? "" : " ",
                    instruction.text, "?>", afterRoot ? "" : "\n");
            }
        }
    }
}

/// Writes the element and all below it: down to the first child, along the document order, and
/// back up, with the parent's text in between.
void Writer::tree(const Element& top) {
    const Element* element = &top;
    startTag(top);
    while (true) {
        if (const Element* child = element->child(); child != nullptr) {
            text(*element, 0, child->offset());
            startTag(*child);
            element = child;
            continue;
        }
        text(*element, 0, element->text().size());
        endTag(*element);
        while (element != &top && element->ordered() == nullptr) {
            const Element* parent = element->parent();
            text(*parent, element->offset(), parent->text().size());
            endTag(*parent);
            element = parent;
        }
        if (element == &top) {
            return;
        }
        text(*element->parent(), element->offset(), element->ordered()->offset());
        element = element->ordered();
        startTag(*element);
    }
}

void Writer::endTag(const Element& element) {
    put("</", element.name(), ">");
}

void Writer::startTag(const Element& element) {
    put("<", element.name());
    FirstOfName isFirst(element);
    for (const Attribute& each : element) {
        if (isFirst(each)) {
            attribute(each.name, each.value);
        }
    }
    if (const auto* defaults = document_.defaultsOf(element.name())) {
        std::unordered_set<std::string_view> own;
        for (const Attribute& each : element) {
            own.insert(each.name);
        }
        for (const Attribute& each : defaults->values) {
            if (own.count(each.name) == 0) {
                attribute(each.name, each.value);
            }
        }
    }
    out_.push_back('>');
}

void Writer::attribute(std::string_view name, std::string_view value) {
    put(" ", name, "=\"");
    escaped(value, kAttributeEscapes);
    out_.push_back('"');
}

void Writer::text(const Element& element, std::size_t from, std::size_t to) {
    const std::string_view text = element.text();
    if (from < text.size() && from < to) {
        escaped(text.substr(from, to - from), kTextEscapes);
    }
}

void Writer::escaped(std::string_view text, const CharacterSet& escapes) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t next = escapes.find(text, at);
        out_.append(text.substr(at, next - at));
        if (next == text.size() || text[next] == '\0') {
            return;
        }
        out_.append(escapeOf(text[next]));
        at = next + 1;
    }
}

std::string Document::toText(const Element* element) const {
    return element == nullptr || element->name().empty() ? std::string()
                                                         : Writer(*this).write(*element);
}

}  // namespace kest::xml
