#pragma once

#include <memory>

#include "pyxis/Export.h"

namespace Pyxis {

/// How to read the bytes of a StringBuffer.
enum class CharacterType : int {
    Plain = 0,       ///< the host's plain single-byte type; UTF-8 in this host
    Narrow = 1,      ///< 8-bit text, UTF-8
    Wide = 2,        ///< 16-bit text, UTF-16 in the machine's byte order
    SingleByte = 4,  ///< a second single-byte type, handled as Plain
};

/// Text in one of several character types, with its byte count. A value: copies share their bytes,
/// which never change in place, so copies cost no memory.
///
/// The count includes a terminator if the text was built with one, but nothing here relies on
/// a terminator or on an even number of bytes in wide text.
class PYXIS_API StringBuffer {
  public:
    /// An empty buffer of type Plain.
    StringBuffer();
    /// A buffer of `numBytes` zero bytes (none when `numBytes` is not positive).
    StringBuffer(int numBytes, CharacterType type);
    /// Copies `numBytes` bytes, terminator included. A null `data` gives an empty buffer.
    StringBuffer(int numBytes, const unsigned char* data, CharacterType type);
    StringBuffer(const StringBuffer& other);
    StringBuffer& operator=(const StringBuffer& other);

    virtual ~StringBuffer();  // slot 0
    /// The bytes, valid until the buffer changes; null when there are none.
    virtual const unsigned char* data() const;  // slot 1
    /// True when the buffer holds no text: no bytes, or a terminator first.
    virtual bool isZero() const;         // slot 2
    virtual CharacterType type() const;  // slot 3
    /// Replaces the content; `set(0, nullptr, CharacterType::Plain)` empties the buffer. The data
    /// may lie inside this buffer.
    virtual void set(int numBytes, const unsigned char* data, CharacterType type);  // slot 4
    /// Number of bytes, terminator included.
    virtual int numDataBytes() const;  // slot 5

    /// True when both hold the same text up to their terminators, whatever their types.
    bool operator==(const StringBuffer& other) const;

    /// Writes the text of `from`, cut at its terminator, into `to` in the given type and with a
    /// terminator. Both may be one buffer. Invalid UTF-8 bytes become lone surrogates U+DC80 to
    /// U+DCFF in wide text, and are converted back to the same bytes.
    static void convertString(const StringBuffer& from, StringBuffer& to, CharacterType type);
    /// Byte length of a terminated string, terminator included; 0 for null.
    static int bytesInString(const unsigned char* text, CharacterType type);
    /// The host's default character type: Wide.
    static CharacterType defaultCharacterType();

  private:
    std::shared_ptr<const unsigned char[]> bytes_;
    int numBytes_ = 0;
    CharacterType type_ = CharacterType::Plain;
};

}  // namespace Pyxis
