#pragma once

#include <memory>
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

/// A text out of a file's metadata, narrow as the file has it.
class TextProperty final : public FormatCodecStringProperty {
  public:
    TextProperty(std::string_view name, std::string_view description, std::string_view value);
    TextProperty* clone() const override;
};

/// The band file's name as the FAST header gives it.
class BandFilenameProperty final : public FASTBandFilenameProperty {
  public:
    explicit BandFilenameProperty(std::string_view fileName);
    BandFilenameProperty* clone() const override;
};

/// Narrow text with a terminator.
StringBuffer narrowBuffer(std::string_view text);

}  // namespace Pyxis
