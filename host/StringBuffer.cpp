#include "pyxis/StringBuffer.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

#include "host/Text.h"

namespace Pyxis {
namespace {

std::string_view bytes(const StringBuffer& buffer) {
    const std::string_view all(reinterpret_cast<const char*>(buffer.data()),
                               static_cast<std::size_t>(buffer.numDataBytes()));
    return all.substr(0, all.find('\0'));
}

bool isWide(const StringBuffer& buffer) {
    return buffer.type() == CharacterType::Wide;
}

std::u16string asWide(const StringBuffer& buffer) {
    return isWide(buffer) ? wideCharacters(buffer) : utf8ToWide(bytes(buffer));
}

}  // namespace

StringBuffer::StringBuffer() = default;

StringBuffer::StringBuffer(int numBytes, CharacterType type)
    : numBytes_(std::max(numBytes, 0)), type_(type) {
    if (numBytes_ > 0) {
        bytes_ = std::make_shared<unsigned char[]>(static_cast<std::size_t>(numBytes_));
    }
}

StringBuffer::StringBuffer(int numBytes, const unsigned char* data, CharacterType type) {
    StringBuffer::set(numBytes, data, type);
}

StringBuffer::StringBuffer(const StringBuffer& other) = default;
StringBuffer& StringBuffer::operator=(const StringBuffer& other) = default;
StringBuffer::~StringBuffer() = default;

const unsigned char* StringBuffer::data() const {
    return bytes_.get();
}

bool StringBuffer::isZero() const {
    if (type_ == CharacterType::Wide) {
        return numBytes_ < 2 || (bytes_[0] == 0 && bytes_[1] == 0);
    }
    return numBytes_ == 0 || bytes_[0] == 0;
}

CharacterType StringBuffer::type() const {
    return type_;
}

void StringBuffer::set(int numBytes, const unsigned char* data, CharacterType type) {
    const int taken = data != nullptr ? std::max(numBytes, 0) : 0;
    std::shared_ptr<unsigned char[]> bytes;
    if (taken > 0) {
        bytes = std::make_shared_for_overwrite<unsigned char[]>(static_cast<std::size_t>(taken));
        std::memcpy(bytes.get(), data, static_cast<std::size_t>(taken));
    }
    bytes_ = std::move(bytes);
    numBytes_ = taken;
    type_ = type;
}

int StringBuffer::numDataBytes() const {
    return numBytes_;
}

bool StringBuffer::operator==(const StringBuffer& other) const {
    if (isWide(*this) || isWide(other)) {
        return asWide(*this) == asWide(other);
    }
    return bytes(*this) == bytes(other);
}

void StringBuffer::convertString(const StringBuffer& from, StringBuffer& to, CharacterType type) {
    if (type == CharacterType::Wide) {
        const std::u16string text = asWide(from);
        to.set(static_cast<int>((text.size() + 1) * 2),
               reinterpret_cast<const unsigned char*>(text.c_str()), type);
        return;
    }
    const std::string text = toUtf8(from);
    to.set(static_cast<int>(text.size() + 1), reinterpret_cast<const unsigned char*>(text.c_str()),
           type);
}

int StringBuffer::bytesInString(const unsigned char* text, CharacterType type) {
    if (text == nullptr) {
        return 0;
    }
    if (type != CharacterType::Wide) {
        return static_cast<int>(std::strlen(reinterpret_cast<const char*>(text)) + 1);
    }
    int length = 0;
    while (text[length] != 0 || text[length + 1] != 0) {
        length += 2;
    }
    return length + 2;
}

CharacterType StringBuffer::defaultCharacterType() {
    return CharacterType::Wide;
}

}  // namespace Pyxis
