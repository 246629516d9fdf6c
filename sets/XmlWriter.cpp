#include <algorithm>
#include <unordered_set>

#include "sets/XmlDocument.h"
#include "sets/XmlText.h"

namespace kest::xml {
namespace {

/// Elements with more attributes than this are searched for duplicates by a hash set.
constexpr std::ptrdiff_t kAttributesWithoutSet = 16;

constexpr CharacterSet kTextEscapes("&<>\r");
constexpr CharacterSet kAttributeEscapes("&<>\r\"\n\t");

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

/// Whether the attribute is the first of its name; asked for the attributes in their order.
class FirstOfName {
  public:
    explicit FirstOfName(const Element& element) : element_(element) {}

    bool operator()(const Attribute& attribute) {
        if (element_.end() - element_.begin() > kAttributesWithoutSet) {
            return seen_.insert(attribute.name).second;
        }
        return std::none_of(element_.begin(), &attribute, [&attribute](const Attribute& other) {
            return other.name == attribute.name;
        });
    }

  private:
    const Element& element_;
    std::unordered_set<std::string_view> seen_;
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
    void put(std::initializer_list<std::string_view> pieces);

    const Document& document_;
    std::string out_;
};

std::string Writer::write(const Element& element) {
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

void Writer::put(std::initializer_list<std::string_view> pieces) {
    for (const std::string_view piece : pieces) {
        out_.append(piece);
    }
}

void Writer::instructions(bool afterRoot) {
    for (const InstructionTarget& each : document_.instructions_) {
        for (const Instruction& instruction : each.instructions) {
            if (instruction.afterRoot == afterRoot) {
                put({afterRoot ? "\n" : "", "<?", each.target, instruction.text.empty() ? "" : " ",
                     instruction.text, "?>", afterRoot ? "" : "\n"});
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
        put({"</", element->name(), ">"});
        while (element != &top && element->ordered() == nullptr) {
            const Element* parent = element->parent();
            text(*parent, element->offset(), parent->text().size());
            put({"</", parent->name(), ">"});
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

void Writer::startTag(const Element& element) {
    put({"<", element.name()});
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
    put({" ", name, "=\""});
    escaped(value, kAttributeEscapes);
    out_.push_back('"');
}

void Writer::text(const Element& element, std::size_t from, std::size_t to) {
    const std::string_view text = element.text();
    if (from < text.size() && from < to) {
        escaped(text.substr(from, to - from), kTextEscapes);
    }
}

/// A zero byte ends the run.
void Writer::escaped(std::string_view text, const CharacterSet& escapes) {
    text = text.substr(0, text.find('\0'));
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t next = escapes.find(text, at);
        out_.append(text, at, next - at);
        if (next < text.size()) {
            out_.append(escapeOf(text[next]));
        }
        at = next + 1;
    }
}

std::string Document::toText(const Element* element) const {
    return element == nullptr || element->name().empty() ? std::string()
                                                         : Writer(*this).write(*element);
}

}  // namespace kest::xml
