#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <memory>
#include <memory_resource>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

// A small XML document tree in UTF-8. The document owns its elements and every text in them; what
// it returns is valid as long as the document lives. Null elements are accepted everywhere and give
// null, nothing or empty results. Loops instead of recursion and an arena instead of small blocks:
// documents are untrusted and may be deep or long. Const functions change nothing, so several
// threads may read one document.

namespace kest::xml {

class Document;
class Parser;

struct Attribute {
    std::string_view name;
    std::string_view value;
};

/// An element of a document, made and changed by the document only.
class Element {
  public:
    std::string_view name() const { return name_; }
    /// The character content without child elements. Meaningful only for elements with one run of
    /// text (compatibility.md, 3).
    std::string_view text() const { return {text_, textLength_}; }
    /// Where in the parent's text the element starts.
    std::size_t offset() const { return offset_; }
    /// The next element of the same parent and name.
    const Element* next() const { return next_; }
    /// The first sibling of the next different name.
    const Element* sibling() const { return sibling_; }
    /// The next element of the same parent in document order.
    const Element* ordered() const { return ordered_; }
    /// The first child.
    const Element* child() const { return child_; }
    /// The last child in document order.
    const Element* lastChild() const { return lastChild_; }
    const Element* parent() const { return parent_; }
    /// The attributes in document order, duplicates included.
    const Attribute* begin() const { return attributes_; }
    const Attribute* end() const { return attributes_ + attributeCount_; }

  private:
    friend class Document;
    friend class Parser;

    std::string_view name_;
    Element* next_ = nullptr;
    Element* sibling_ = nullptr;
    Element* ordered_ = nullptr;
    Element* child_ = nullptr;
    Element* parent_ = nullptr;
    // The ends of the chains, so that documents grow in order in constant time.
    Element* lastChild_ = nullptr;    ///< of the ordered chain of children
    Element* lastSibling_ = nullptr;  ///< of the sibling chain of children
    Element* lastOfName_ = nullptr;   ///< of the next chain; kept by its first element
    Attribute* attributes_ = nullptr;
    char* text_ = nullptr;
    std::uint32_t attributeCount_ = 0;
    std::uint32_t attributeCapacity_ = 0;
    std::uint32_t textLength_ = 0;
    std::uint32_t textCapacity_ = 0;  ///< of memory that later runs may be written to
    std::uint32_t offset_ = 0;
    std::uint32_t nameCount_ : 31 = 0;  ///< different names among the children
    bool hasOwnText_ : 1 = false;       ///< the text counts as moved out of the source
};

/// The declared attributes of an element name; the first declaration of an attribute counts.
struct AttributeDefaults {
    std::vector<Attribute> values;  ///< those with a default value, in the order of declaration
    std::unordered_map<std::string_view, std::optional<std::string_view>> declared;
};

struct Instruction {
    std::string_view text;
    bool afterRoot = false;  ///< after the start of the root element
};

struct InstructionTarget {
    std::string_view target;
    std::vector<Instruction> instructions;
};

/// A step of a path: the child of that name, then the element `index` places along its next chain.
struct Step {
    std::string_view name;
    int index = 0;
};

class Document {
  public:
    /// Parses a document. Never fails: everything before a fault is kept. UTF-16 with a byte-order
    /// mark is converted.
    static std::unique_ptr<Document> parse(std::string_view text);
    /// A document with an empty root element.
    explicit Document(std::string_view rootName);
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;
    ~Document();

    Element* root() { return &root_; }
    const Element* root() const { return &root_; }

    /// A new child of `parent`, placed by its offset; equal offsets keep the order of insertion.
    Element* addChild(Element* parent, std::string_view name, std::size_t offset);
    void setText(Element* element, std::string_view text);
    /// Sets an attribute; no value removes it, which costs a step for every attribute.
    void setAttribute(Element* element, std::string_view name,
                      std::optional<std::string_view> value);
    /// Detaches the element and its subtree from its parent; the document still owns it. Costs a
    /// step for every child before it, so cut many from the front.
    Element* cut(Element* element);

    const Element* child(const Element* element, std::string_view name) const;
    Element* child(Element* element, std::string_view name);
    /// Element `index` of the next chain that starts at `element`, one step each; null past its
    /// end, and for a negative index.
    static const Element* index(const Element* element, int index);
    /// The value of the element's attribute, else the default that the document declares.
    std::optional<std::string_view> attribute(const Element* element, std::string_view name) const;
    /// Walks a path down. A step with an empty name ends it; a negative index ends it after the
    /// child was looked up.
    const Element* get(const Element* element, std::initializer_list<Step> path) const;

    /// The processing instructions for a target, in document order.
    const std::vector<Instruction>& processingInstructions(std::string_view target) const;
    bool isStandalone() const { return standalone_; }
    /// Whether the parse reached the end of the text without a fault.
    bool isComplete() const { return complete_; }
    /// Always empty: faults are not recorded (compatibility.md, 1).
    static std::string_view error(const Element* element);

    /// The element as a document text; with the processing instructions when it is the root.
    /// Empty for null and for an element without a name.
    std::string toText(const Element* element) const;

  private:
    friend class Parser;
    friend class InternalSubset;
    friend class Decoder;
    friend class Writer;
    friend void addInstruction(Document& document, std::string_view instruction);

    using EntityTable = std::unordered_map<std::string_view, std::string_view>;
    using NameIndex = std::unordered_map<std::string_view, Element*>;
    /// The first attribute of each name among the first `count` ones.
    struct AttributeIndex {
        std::uint32_t count = 0;
        std::unordered_map<std::string_view, std::uint32_t> places;
    };

    /// `arenaSize`: estimated bytes of the tree.
    explicit Document(std::size_t arenaSize);

    /// The declared value of a general entity, whose name ends in a semicolon; null without a
    /// declaration. Predefined entities cannot be redeclared.
    const std::string_view* entity(std::string_view name) const;
    /// A copy of `text` that lives as long as the document.
    std::string_view keep(std::string_view text);
    char* allocateText(std::size_t size);
    void appendText(Element* element, std::string_view run, bool moved);
    void growText(Element* element, std::size_t capacity);
    Attribute* findAttribute(const Element* element, std::string_view name);
    void addAttribute(Element* element, Attribute attribute);
    void setAttributes(Element* element, const std::vector<Attribute>& attributes);
    Element* newElement(std::string_view name);
    Element* firstOfName(const Element* parent, Element* siblingHead, std::string_view name) const;
    void link(Element* parent, Element* element);
    void linkName(Element* parent, Element*& siblingHead, Element* element);
    static void linkByOffset(Element* Element::*following, Element*& head, Element*& last,
                             Element* element);
    void replaceFirstOfName(Element* parent, Element* siblingHead, Element* element,
                            const Element* after);
    void indexName(const Element* parent, Element* siblingHead, Element* element);
    static void unlink(Element* Element::*following, Element*& head, Element*& last,
                       Element* element);
    void addDefault(std::string_view elementName, std::string_view name,
                    std::optional<std::string_view> value);
    const AttributeDefaults* defaultsOf(std::string_view elementName) const;
    void addInstruction(std::string_view target, std::string_view text, bool afterRoot);

    std::pmr::monotonic_buffer_resource arena_;
    std::string source_;  ///< the parsed text; names, values and texts point into it
    Element root_;
    EntityTable entities_;  ///< declared by the document
    std::size_t replacedBytes_ = 0;
    std::map<std::string_view, AttributeDefaults> defaults_;
    std::vector<InstructionTarget> instructions_;
    std::unordered_map<std::string_view, std::size_t> instructionIndex_;
    /// Children by name, of elements that have many names.
    std::unordered_map<const Element*, NameIndex> nameIndexes_;
    /// Attributes by name, of elements that have many.
    std::unordered_map<const Element*, AttributeIndex> attributeIndexes_;
    bool standalone_ = false;
    bool complete_ = false;
};

}  // namespace kest::xml
