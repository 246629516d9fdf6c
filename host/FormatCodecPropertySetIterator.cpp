#include "pyxis/FormatCodecPropertySetIterator.h"

#include <algorithm>

namespace Pyxis {

using PropertySet = FormatCodecPropertySetIterator;

PropertySet::FormatCodecPropertySetIterator() = default;

PropertySet::FormatCodecPropertySetIterator(const FormatCodecPropertySetIterator& other) {
    properties_.reserve(other.properties_.size());
    for (const auto& property : other.properties_) {
        FormatCodecPropertySetIterator::appendProperty(property.get());
    }
}

PropertySet::~FormatCodecPropertySetIterator() = default;

void PropertySet::start() {
    cursor_ = 0;
}

void PropertySet::step() {
    cursor_ = std::min(cursor_ + 1, properties_.size());
}

bool PropertySet::endOfList() const {
    return cursor_ >= properties_.size();
}

int PropertySet::numProperties() const {
    return static_cast<int>(properties_.size());
}

FormatCodecPropertyInterface* PropertySet::openProperty(
    FormatCodecPropertyInterface::PropertyIdentifier identifier) {
    const auto found = std::find_if(
        properties_.begin(), properties_.end(),
        [identifier](const auto& property) { return property->getIdentifier() == identifier; });
    if (found == properties_.end()) {
        return nullptr;
    }
    cursor_ = static_cast<std::size_t>(found - properties_.begin());
    return found->get();
}

FormatCodecPropertyInterface* PropertySet::openProperty() {
    return endOfList() ? nullptr : properties_[cursor_].get();
}

void PropertySet::closeProperty() {
    // Nothing is held open: the list keeps its properties for as long as it lives.
}

void PropertySet::appendProperty(const FormatCodecPropertyInterface* property) {
    if (property == nullptr) {
        return;
    }
    std::unique_ptr<FormatCodecPropertyInterface> copy(property->clone());
    if (copy) {
        properties_.push_back(std::move(copy));
    }
}

}  // namespace Pyxis
