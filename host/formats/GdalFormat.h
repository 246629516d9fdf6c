#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "pyxis/ImageFormatCodec.h"

namespace Pyxis {

class GdalPropertySet;
class OpenedFile;
struct FileHead;
struct KnownFacts;

/// What a format tells users and callers about itself.
struct FormatTexts {
    const char* name;
    const char* description;
    std::vector<const char*> extensions;  ///< without the dot
    std::vector<FormatFeature> features;
    const char* ownProperty;    ///< name of the property beside the geo-correlation
    int ownPropertyNumber = 0;  ///< its number, where callers ask for it by number

    bool hasFeature(FormatFeature feature) const {
        return std::find(features.begin(), features.end(), feature) != features.end();
    }
};

/// One format that GDAL reads: how its files are recognised, which frames they hold and what those
/// publish. Formats have no state and live as long as the process, so that images and frames that
/// outlive their codec still have theirs.
class GdalFormat {
  public:
    GdalFormat(const GdalFormat&) = delete;
    GdalFormat& operator=(const GdalFormat&) = delete;
    virtual ~GdalFormat();

    virtual const FormatTexts& texts() const = 0;
    /// GDAL's short name of the only driver that may open the files.
    virtual const char* driver() const = 0;
    /// Whether a file that begins with these bytes (at most `FileHead::kBytes`) may be of this
    /// format.
    virtual bool matches(std::string_view head) const = 0;
    /// Why GDAL must not be given the file; empty when it may.
    virtual std::string refuse(const std::string& path, const FileHead& head) const;
    /// Adds the frames of the file just opened. The answer says why it cannot be read after all;
    /// empty when it can. The default: every band of the one dataset is a frame.
    virtual std::string load(OpenedFile& file) const;
    /// Whether a world file may say where the raster lies.
    virtual bool takesWorldFile() const;
    /// Why an opened file is not of this format; empty when it is.
    virtual std::string_view reject(const OpenedFile& file) const;
    /// Whether an opened file may be given out again for as long as the file itself stays as it is.
    virtual bool mayBeKept() const;
    /// What the file's own bytes tell.
    virtual KnownFacts knownFacts(const std::string& path, const FileHead& head) const;
    /// Whether GDAL may look for reduced-resolution levels.
    virtual bool hasOverviews() const;
    /// Appends the properties of a frame, geo-correlation first.
    virtual void describe(OpenedFile& file, int frame, GdalPropertySet& properties) const = 0;

  protected:
    GdalFormat();
};

/// The formats themselves, for their codecs and for whoever explains why a file is unreadable.
const GdalFormat& quickBirdFormat();
const GdalFormat& tiffFormat();
const GdalFormat& nitfFormat();
const GdalFormat& fastFormat();

}  // namespace Pyxis
