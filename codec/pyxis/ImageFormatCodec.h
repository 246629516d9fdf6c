#pragma once

#include "pyxis/Export.h"
#include "pyxis/FileSpecifier.h"
#include "pyxis/FindFileInterface.h"
#include "pyxis/FormatCodecProperty.h"
#include "pyxis/Geometry.h"
#include "pyxis/ReadImageFile.h"

namespace Pyxis {

class WriteImageFileInterface;

/// The data model of an image to be written, for codecs that encode.
struct DataModelAttributes {
    PixelModel pixelModel = PixelModel::SingleChannel;
    SampleFormat sampleFormat = SampleFormat::UnsignedInteger;
    std::int32_t channels = 1;
    std::int32_t bitsPerPixel = 8;
};

enum class CodecCapability : int { None = 0, ReadOnly = 1, WriteOnly = 2, ReadWrite = 3 };

/// How a codec decides whether it reads a file: by its name or by its content.
enum class FormatType : int { ByName = 0, ByContent = 1 };

enum class FormatOrganization : int { Unspecified = 0, Frames = 1 };

enum class FormatFrameType : int { SingleFrame = 0, MultiFrame = 1 };

enum class FormatFeature : int {
    Compression = 0,
    ReducedResolutions = 1,
    Palette = 2,
    Tiling = 3,
    CompoundFiles = 4,
};

/// Answer to whether a codec reads a file.
enum class FormatDecodability : int {
    Decodable = 0,
    NotThisFormat = 1,
    Undetermined = 2,
    UndecodableSet = 3,  ///< the codec's format, but a set that does not fit together
};

/// One image format. The host owns its codecs and asks them; answers are const and repeatable.
class PYXIS_API ImageFormatCodec {
  public:
    virtual ~ImageFormatCodec();  // slot 0
    virtual void getLibVersionInfo(unsigned int& major, unsigned int& minor,
                                   unsigned int& build) const = 0;                       // slot 1
    virtual void getApiVersionInfo(unsigned int& major, unsigned int& minor) const = 0;  // slot 2
    virtual CodecCapability codecCapability() const = 0;                                 // slot 3
    virtual bool isValidFileName(const FileSpecifier& file) const = 0;                   // slot 4
    virtual FormatType getFormatDecodabilityType() const = 0;                            // slot 5
    virtual FormatOrganization getFormatOrganization() const = 0;                        // slot 6
    virtual FormatFrameType getFormatFrameType() const = 0;                              // slot 7
    virtual bool isFormatFeature(FormatFeature feature) const = 0;                       // slot 8
    /// Whether frames of this format may publish the property; custom ones are named by `name`.
    virtual bool isSupportedProperty(FormatCodecPropertyInterface::PropertyIdentifier identifier,
                                     StringBuffer* name) const = 0;          // slot 9
    virtual int getNumExtensions() const = 0;                                // slot 10
    virtual void getExtensionText(int index, StringBuffer& text) const = 0;  // slot 11
    virtual void getFormatName(StringBuffer& text) const = 0;                // slot 12
    virtual void getDescriptionText(StringBuffer& text) const = 0;           // slot 13
    virtual void getCopyrightText(StringBuffer& text) const = 0;             // slot 14
    virtual FormatDecodability isDecodableFile(const FileSpecifier& file,
                                               FindFileInterface* finder) const = 0;  // slot 15
    virtual bool isEncodableImage(const DataModelAttributes& attributes,
                                  Size size) const = 0;  // slot 16
    /// Slot 17 and 18: a new image owned by the caller, or null when the file cannot be opened.
    /// With `finder` the codec may look for files that belong to the image.
    PYXIS_OVERLOADS_IN_SLOT_ORDER(
        virtual ReadImageFileInterface* openImage(const FileSpecifier* file,
                                                  FindFileInterface& finder) const = 0,
        virtual ReadImageFileInterface* openImage(const FileSpecifier* file) const = 0);
    /// A new writer owned by the caller; null from codecs that only read.
    virtual WriteImageFileInterface* writeImage() const = 0;  // slot 19
    /// A second, independent image of the same file, owned by the caller; null when `image` is
    /// not this codec's.
    virtual ReadImageFileInterface* cloneOpenImage(
        const ReadImageFileInterface* image) const = 0;  // slot 20
};

}  // namespace Pyxis
