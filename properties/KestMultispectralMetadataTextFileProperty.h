#pragma once

#include "codec/strings/KestExport.h"
#include "properties/KestMultispectralProperty.h"
#include "pyxis/FileSpecifier.h"
#include "pyxis/FormatCodecProperty.h"

/// The whole text of a set's metadata text file, byte for byte, as a string value of the plain
/// character type.
class KEST_API KestMultispectralMetadataTextFileProperty : public Pyxis::FormatCodecStringProperty,
                                                           public KestMultispectralProperty {
  public:
    /// Reads the file. When it cannot be read whole the value stays empty and the property is not
    /// valid.
    explicit KestMultispectralMetadataTextFileProperty(const Pyxis::FileSpecifier& metadataFile);
    ~KestMultispectralMetadataTextFileProperty() override;
    Pyxis::FormatCodecPropertyInterface* clone() const override;

    /// Whether the whole file was read.
    bool isValid() const;
    /// Writes the file's specifier, valid or not, and returns `isValid` (compatibility.md, 29).
    /// `out` is unchanged on allocation failure.
    bool getMetadataFile(Pyxis::FileSpecifier& out) const;

  private:
    KestMultispectralMetadataTextFileProperty(
        const KestMultispectralMetadataTextFileProperty& other);
    bool readWhole();

    Pyxis::FileSpecifier metadataFile_;
    bool valid_ = false;
};
