#pragma once

#include <string_view>

#include "pyxis/ComponentCodecs.h"
#include "pyxis/FormatCodecPropertySetIterator.h"

namespace Pyxis {

/// The properties of one frame.
class FrameProperties final : public FormatCodecPropertySetIterator {
  public:
    /// Appends a clone; null is left out.
    void append(const FormatCodecPropertyInterface* property) { appendProperty(property); }
};

/// A text from a file's metadata, narrow as in the file.
class TextProperty final : public FormatCodecStringProperty {
  public:
    TextProperty(std::string_view name, std::string_view description, std::string_view value);
    TextProperty* clone() const override;
};

/// The band file's name as in the FAST header.
class BandFilenameProperty final : public FASTBandFilenameProperty {
  public:
    explicit BandFilenameProperty(std::string_view fileName);
    BandFilenameProperty* clone() const override;
};

/// Narrow text with a terminator.
StringBuffer narrowBuffer(std::string_view text);

}  // namespace Pyxis
