#include "pyxis/StringBuffer.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

#include "host/Text.h"

namespace Pyxis {
namespace {

/// The 16-bit characters up to the terminator or the last whole one.
std::u16string wideCharacters(const StringBuffer& buffer) {
    std::u16string text(static_cast<std::size_t>(buffer.numDataBytes()) / 2, u'\0');
    if (!text.empty()) {
        std::memcpy(text.data(), buffer.data(), text.size() * 2);
    }
    text.resize(std::min(text.find(u'\0'), text.size()));
    return text;
}

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
    : bytes_(static_cast<std::size_t>(std::max(numBytes, 0))), type_(type) {}

StringBuffer::StringBuffer(int numBytes, const unsigned char* data, CharacterType type) {
    StringBuffer::set(numBytes, data, type);
}

StringBuffer::StringBuffer(const StringBuffer& other) = default;
StringBuffer& StringBuffer::operator=(const StringBuffer& other) = default;
StringBuffer::~StringBuffer() = default;

const unsigned char* StringBuffer::data() const {
    return bytes_.empty() ? nullptr : bytes_.data();
}

bool StringBuffer::isZero() const {
    if (type_ == CharacterType::Wide) {
        return bytes_.size() < 2 || (bytes_[0] == 0 && bytes_[1] == 0);
    }
    return bytes_.empty() || bytes_[0] == 0;
}

CharacterType StringBuffer::type() const {
    return type_;
}

void StringBuffer::set(int numBytes, const unsigned char* data, CharacterType type) {
    std::vector<unsigned char> bytes;
    if (data != nullptr && numBytes > 0) {
        bytes.assign(data, data + numBytes);
    }
    bytes_ = std::move(bytes);
    type_ = type;
}

int StringBuffer::numDataBytes() const {
    return static_cast<int>(bytes_.size());
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
    const std::string text =
        isWide(from) ? wideToUtf8(wideCharacters(from)) : std::string(bytes(from));
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
