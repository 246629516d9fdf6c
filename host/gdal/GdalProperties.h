#pragma once

#include <memory>
#include <string_view>

#include "pyxis/ComponentCodecs.h"
#include "pyxis/FormatCodecPropertySetIterator.h"

namespace Pyxis {

/// The properties of one frame.
class GdalPropertySet final : public FormatCodecPropertySetIterator {
  public:
    /// Appends a clone; null is left out.
    void append(const FormatCodecPropertyInterface* property) { appendProperty(property); }
};

/// A text out of a file's metadata, narrow as the file has it.
class GdalStringProperty final : public FormatCodecStringProperty {
  public:
    GdalStringProperty(std::string_view name, std::string_view description, std::string_view value);
    GdalStringProperty* clone() const override;
};

/// The band file's name as the FAST header gives it.
class GdalBandFilenameProperty final : public FASTBandFilenameProperty {
  public:
    explicit GdalBandFilenameProperty(std::string_view fileName);
    GdalBandFilenameProperty* clone() const override;
};

/// Narrow text with a terminator.
StringBuffer narrowBuffer(std::string_view text);

}  // namespace Pyxis
