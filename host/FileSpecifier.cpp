#include "pyxis/FileSpecifier.h"

namespace Pyxis {

FileSpecifier::FileSpecifier() = default;
FileSpecifier::FileSpecifier(const StringBuffer& string, Type type)
    : string_(string), type_(type) {}
FileSpecifier::FileSpecifier(const FileSpecifier& other) = default;
FileSpecifier& FileSpecifier::operator=(const FileSpecifier& other) = default;
FileSpecifier::~FileSpecifier() = default;

FileSpecifier::Type FileSpecifier::type() const {
    return type_;
}
const StringBuffer& FileSpecifier::string() const {
    return string_;
}
void FileSpecifier::assign(const FileSpecifier& other) {
    *this = other;
}
bool FileSpecifier::isEqual(const FileSpecifier& other) const {
    return type_ == other.type_ && string_ == other.string_;
}
bool FileSpecifier::isEmpty() const {
    return string_.isZero();
}
void FileSpecifier::set(const StringBuffer& string, Type type) {
    string_ = string;
    type_ = type;
}

}  // namespace Pyxis
