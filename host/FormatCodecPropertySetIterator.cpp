#include "pyxis/FormatCodecPropertySetIterator.h"

#include <algorithm>

namespace Pyxis {

FormatCodecPropertySetIterator::FormatCodecPropertySetIterator() = default;

FormatCodecPropertySetIterator::FormatCodecPropertySetIterator(
    const FormatCodecPropertySetIterator& other) {
    properties_.reserve(other.properties_.size());
    for (const auto& property : other.properties_) {
        FormatCodecPropertySetIterator::appendProperty(property.get());
    }
}

FormatCodecPropertySetIterator::~FormatCodecPropertySetIterator() = default;

void FormatCodecPropertySetIterator::start() {
    cursor_ = 0;
}

void FormatCodecPropertySetIterator::step() {
    cursor_ = std::min(cursor_ + 1, properties_.size());
}

bool FormatCodecPropertySetIterator::endOfList() const {
    return cursor_ >= properties_.size();
}

int FormatCodecPropertySetIterator::numProperties() const {
    return static_cast<int>(properties_.size());
}

FormatCodecPropertyInterface* FormatCodecPropertySetIterator::openProperty(
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

FormatCodecPropertyInterface* FormatCodecPropertySetIterator::openProperty() {
    return endOfList() ? nullptr : properties_[cursor_].get();
}

void FormatCodecPropertySetIterator::closeProperty() {
    // Nothing to do: the list owns its properties for its whole life.
}

void FormatCodecPropertySetIterator::appendProperty(const FormatCodecPropertyInterface* property) {
    if (property == nullptr) {
        return;
    }
    std::unique_ptr<FormatCodecPropertyInterface> copy(property->clone());
    if (copy) {
        properties_.push_back(std::move(copy));
    }
}

}  // namespace Pyxis
