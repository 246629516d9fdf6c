#include "sets/xml/XmlDocument.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

namespace kest::xml {
namespace {

/// Elements with more names among their children, or attributes, than this get an index of them.
constexpr std::uint32_t kNamesWithoutIndex = 32;

/// Estimated bytes of a new document's tree.
constexpr std::size_t kSmallArena = 1024;

}  // namespace

Document::Document(std::size_t arenaSize) : arena_(arenaSize) {}

Document::Document(std::string_view rootName) : Document(kSmallArena) {
    root_.name_ = keep(rootName);
}

Document::~Document() = default;

const std::string_view* Document::entity(std::string_view name) const {
    const auto found = entities_.find(name);
    return found == entities_.end() ? nullptr : &found->second;
}

char* Document::allocateText(std::size_t size) {
    return static_cast<char*>(arena_.allocate(std::max<std::size_t>(size, 1), 1));
}

std::string_view Document::keep(std::string_view text) {
    if (text.empty()) {
        return {};
    }
    char* copy = allocateText(text.size());
    std::memcpy(copy, text.data(), text.size());
    return {copy, text.size()};
}

Element* Document::newElement(std::string_view name) {
    auto* element = std::pmr::polymorphic_allocator<>(&arena_).new_object<Element>();
    element->name_ = name;
    return element;
}

/// The first element of that name among the children: few names are searched along the sibling
/// chain.
Element* Document::firstOfName(const Element* parent, Element* siblingHead,
                               std::string_view name) const {
    if (parent->nameCount_ > kNamesWithoutIndex) {
        const NameIndex& names = nameIndexes_.at(parent);
        const auto found = names.find(name);
        return found == names.end() ? nullptr : found->second;
    }
    while (siblingHead != nullptr && siblingHead->name_ != name) {
        siblingHead = siblingHead->sibling_;
    }
    return siblingHead;
}

/// Updates the index of names, once there are many.
void Document::indexName(const Element* parent, Element* siblingHead, Element* element) {
    if (parent->nameCount_ <= kNamesWithoutIndex) {
        return;
    }
    NameIndex& names = nameIndexes_[parent];
    if (names.empty()) {
        for (Element* each = siblingHead; each != nullptr; each = each->sibling_) {
            names.emplace(each->name_, each);
        }
    }
    names[element->name_] = element;
}

/// Links the element into the chain of `following`, behind all of no greater offset.
void Document::linkByOffset(Element* Element::*following, Element*& head, Element*& last,
                            Element* element) {
    if (last == nullptr || last->offset_ <= element->offset_) {
        (last == nullptr ? head : last->*following) = element;
        last = element;
        return;
    }
    Element** place = &head;
    while ((*place)->offset_ <= element->offset_) {
        place = &((*place)->*following);
    }
    element->*following = *place;
    *place = element;
}

/// Removes the element from the chain of `following`.
void Document::unlink(Element* Element::*following, Element*& head, Element*& last,
                      Element* element) {
    Element* before = nullptr;
    for (Element* each = head; each != element; each = each->*following) {
        before = each;
    }
    (before == nullptr ? head : before->*following) = element->*following;
    element->*following = nullptr;
    if (last == element) {
        last = before;
    }
}

/// Puts the element into the chain of its name. A new first one takes its place in the sibling
/// chain, whose head may change.
void Document::linkName(Element* parent, Element*& siblingHead, Element* element) {
    Element* first = firstOfName(parent, siblingHead, element->name_);
    if (first != nullptr && first->offset_ <= element->offset_) {
        if (first->lastOfName_->offset_ <= element->offset_) {
            first->lastOfName_->next_ = element;
            first->lastOfName_ = element;
            return;
        }
        Element* before = first;
        while (before->next_->offset_ <= element->offset_) {
            before = before->next_;
        }
        element->next_ = before->next_;
        before->next_ = element;
        return;
    }
    element->lastOfName_ = element;
    if (first != nullptr) {
        unlink(&Element::sibling_, siblingHead, parent->lastSibling_, first);
        element->next_ = first;
        element->lastOfName_ = first->lastOfName_;
    } else {
        ++parent->nameCount_;
    }
    linkByOffset(&Element::sibling_, siblingHead, parent->lastSibling_, element);
    indexName(parent, siblingHead, element);
}

void Document::link(Element* parent, Element* element) {
    element->parent_ = parent;
    Element* siblingHead = parent->child_;
    linkName(parent, siblingHead, element);
    // The first child in document order is the first of its name too, so both chains have one
    // head.
    linkByOffset(&Element::ordered_, parent->child_, parent->lastChild_, element);
}

Element* Document::addChild(Element* parent, std::string_view name, std::size_t offset) {
    if (parent == nullptr) {
        return nullptr;
    }
    Element* element = newElement(keep(name));
    element->offset_ = static_cast<std::uint32_t>(offset);
    link(parent, element);
    return element;
}

/// Removes the first element of its name from the sibling chain. The next of that name, if any, is
/// inserted at its place in document order; `after` followed the element in that order.
void Document::replaceFirstOfName(Element* parent, Element* siblingHead, Element* element,
                                  const Element* after) {
    Element* next = std::exchange(element->next_, nullptr);
    if (next == nullptr) {
        unlink(&Element::sibling_, siblingHead, parent->lastSibling_, element);
        if (--parent->nameCount_ > kNamesWithoutIndex) {
            nameIndexes_.at(parent).erase(element->name_);
        } else {
            nameIndexes_.erase(parent);
        }
        return;
    }
    Element** place = &siblingHead;
    while (*place != element) {
        place = &(*place)->sibling_;
    }
    *place = std::exchange(element->sibling_, nullptr);
    for (; after != next; after = after->ordered_) {
        if (after == *place) {
            place = &(*place)->sibling_;
        }
    }
    next->sibling_ = std::exchange(*place, next);
    if (next->sibling_ == nullptr) {
        parent->lastSibling_ = next;
    }
    next->lastOfName_ = element->lastOfName_;
    indexName(parent, siblingHead, next);
}

Element* Document::cut(Element* element) {
    if (element == nullptr || element->parent_ == nullptr) {
        return element;
    }
    Element* parent = std::exchange(element->parent_, nullptr);
    Element* siblingHead = parent->child_;
    Element* first = firstOfName(parent, siblingHead, element->name_);
    const Element* after = element->ordered_;
    unlink(&Element::ordered_, parent->child_, parent->lastChild_, element);
    if (first == element) {
        replaceFirstOfName(parent, siblingHead, element, after);
    } else {
        unlink(&Element::next_, first, first->lastOfName_, element);
    }
    return element;
}

void Document::growText(Element* element, std::size_t capacity) {
    capacity = std::min<std::size_t>(capacity, std::numeric_limits<std::uint32_t>::max());
    char* grown = allocateText(capacity);
    if (element->textLength_ != 0) {
        std::memcpy(grown, element->text_, element->textLength_);
    }
    element->text_ = grown;
    element->textCapacity_ = static_cast<std::uint32_t>(capacity);
}

void Document::setText(Element* element, std::string_view text) {
    if (element == nullptr) {
        return;
    }
    const std::string_view kept = keep(text);
    element->text_ = const_cast<char*>(kept.data());
    element->textLength_ = static_cast<std::uint32_t>(kept.size());
    element->textCapacity_ = 0;
    element->hasOwnText_ = false;
}

/// Joins a run of text to the element's. `moved`: the run counts as the element's own text, to
/// which later runs are joined.
void Document::appendText(Element* element, std::string_view run, bool moved) {
    const auto added = static_cast<std::uint32_t>(run.size());
    if (element->text_ == nullptr) {
        // Not null, so that an empty run still counts as the first one.
        element->text_ = const_cast<char*>(run.empty() ? "" : run.data());
        element->textLength_ = added;
        element->hasOwnText_ = moved;
        return;
    }
    const std::size_t length = std::size_t{element->textLength_} + added;
    if (!element->hasOwnText_) {
        element->hasOwnText_ = true;
        // Zeros stand in for the first run (compatibility.md, 3), never what memory held.
        growText(element, 2 * length);
        std::memset(element->text_, 0, element->textLength_);
    } else if (length > element->textCapacity_) {
        growText(element, 2 * length);
    }
    std::copy(run.begin(), run.end(), element->text_ + element->textLength_);
    element->textLength_ = static_cast<std::uint32_t>(length);
}

void Document::setAttributes(Element* element, const std::vector<Attribute>& attributes) {
    const auto count = static_cast<std::uint32_t>(attributes.size());
    if (count == 0) {
        return;
    }
    element->attributes_ =
        std::pmr::polymorphic_allocator<>(&arena_).allocate_object<Attribute>(count);
    std::uninitialized_copy(attributes.begin(), attributes.end(), element->attributes_);
    element->attributeCount_ = element->attributeCapacity_ = count;
}

void Document::addAttribute(Element* element, Attribute attribute) {
    if (element->attributeCount_ == element->attributeCapacity_) {
        std::vector<Attribute> grown(element->begin(), element->end());
        grown.resize(std::max<std::size_t>(2 * grown.size(), 2));
        const std::uint32_t count = element->attributeCount_;
        setAttributes(element, grown);
        element->attributeCount_ = count;
    }
    element->attributes_[element->attributeCount_++] = attribute;
}

void Document::setAttribute(Element* element, std::string_view name,
                            std::optional<std::string_view> value) {
    if (element == nullptr) {
        return;
    }
    Attribute* end = element->attributes_ + element->attributeCount_;
    Attribute* found = findAttribute(element, name);
    if (!value) {
        if (found != end) {
            std::move(found + 1, end, found);
            --element->attributeCount_;
            attributeIndexes_.erase(element);
        }
    } else if (found != end) {
        found->value = keep(*value);
    } else {
        addAttribute(element, {keep(name), keep(*value)});
    }
}

/// The first attribute of that name, or the end of the attributes. Many are searched by an index,
/// which follows the attributes that are added at their end.
Attribute* Document::findAttribute(const Element* element, std::string_view name) {
    Attribute* const begin = element->attributes_;
    Attribute* const end = begin + element->attributeCount_;
    if (element->attributeCount_ <= kNamesWithoutIndex) {
        return std::find_if(begin, end,
                            [name](const Attribute& each) { return each.name == name; });
    }
    AttributeIndex& index = attributeIndexes_[element];
    for (; index.count < element->attributeCount_; ++index.count) {
        index.places.emplace(begin[index.count].name, index.count);
    }
    const auto found = index.places.find(name);
    return found == index.places.end() ? end : begin + found->second;
}

const Element* Document::child(const Element* element, std::string_view name) const {
    return element == nullptr ? nullptr : firstOfName(element, element->child_, name);
}

Element* Document::child(Element* element, std::string_view name) {
    return element == nullptr ? nullptr : firstOfName(element, element->child_, name);
}

const Element* Document::index(const Element* element, int index) {
    for (; element != nullptr && index > 0; --index) {
        element = element->next_;
    }
    return index == 0 ? element : nullptr;
}

void Document::addDefault(std::string_view elementName, std::string_view name,
                          std::optional<std::string_view> value) {
    AttributeDefaults& defaults = defaults_[elementName];
    if (defaults.declared.emplace(name, value).second && value) {
        defaults.values.push_back({name, *value});
    }
}

const AttributeDefaults* Document::defaultsOf(std::string_view elementName) const {
    if (defaults_.empty()) {
        return nullptr;
    }
    const auto found = defaults_.find(elementName);
    return found == defaults_.end() ? nullptr : &found->second;
}

std::optional<std::string_view> Document::attribute(const Element* element,
                                                    std::string_view name) const {
    if (element == nullptr) {
        return std::nullopt;
    }
    for (const Attribute& attribute : *element) {
        if (attribute.name == name) {
            return attribute.value;
        }
    }
    if (const auto* defaults = defaultsOf(element->name_)) {
        if (const auto found = defaults->declared.find(name); found != defaults->declared.end()) {
            return found->second;
        }
    }
    return std::nullopt;
}

const Element* Document::get(const Element* element, std::initializer_list<Step> path) const {
    for (const Step& step : path) {
        if (element == nullptr || step.name.empty()) {
            return element;
        }
        element = child(element, step.name);
        if (step.index < 0) {
            return element;
        }
        element = index(element, step.index);
    }
    return element;
}

void Document::addInstruction(std::string_view target, std::string_view text, bool afterRoot) {
    auto [entry, added] = instructionIndex_.try_emplace(target, instructions_.size());
    if (added) {
        instructions_.push_back({target, {}});
    }
    instructions_[entry->second].instructions.push_back({text, afterRoot});
}

const std::vector<Instruction>& Document::processingInstructions(std::string_view target) const {
    static const std::vector<Instruction> kNone;
    const auto found = instructionIndex_.find(target);
    return found == instructionIndex_.end() ? kNone : instructions_[found->second].instructions;
}

std::string_view Document::error(const Element* /*element*/) {
    return {};
}

}  // namespace kest::xml
