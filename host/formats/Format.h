#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/file/Expected.h"
#include "host/file/FileHead.h"
#include "host/gdal/AuxiliaryPlace.h"
#include "host/gdal/RasterFile.h"
#include "pyxis/ImageFormatCodec.h"

namespace Pyxis {

class FrameProperties;

/// What GDAL makes of an auxiliary file that says where a file of a format lies.
enum class AuxiliaryRank {
    Ignored,
    First,           ///< it counts more than the file itself and its world file
    Last,            ///< it places a file that nothing else places
    LastAndNoSystem  ///< the same, and its coordinate system does not count
};

/// A file that is about to be loaded.
struct SourceFile {
    std::string path;          ///< as it was given
    std::string absolutePath;  ///< cannot read as one of GDAL's own names for parts of files
    FileHead head;
    AuxiliaryRank rank = AuxiliaryRank::Ignored;
    AuxiliaryPlace auxiliary = {};  ///< empty where it is ignored
};

/// One component format: how its files are recognised, what is known of them and what their frames
/// publish. A format is a constant that lives as long as the process, so that images and frames
/// that outlive their codec still have theirs.
struct Format {
    /// The codec interface under which hosts know the format.
    enum class Interface { General, QuickBird, Tiff, Nitf, Fast };

    const char* name;
    const char* description;
    std::vector<const char*> extensions;  ///< without the dot
    /// Whether a file so named is sure to be meant as a raster, even a damaged one.
    bool isToldByName = true;
    std::vector<FormatFeature> features;
    Interface interface = Interface::General;
    const char* ownProperty = nullptr;  ///< name of the property beside the geo-correlation
    int ownPropertyNumber = 0;          ///< its number, where callers ask for it by number

    /// GDAL's short name of the only driver that may open the files.
    const char* driver;
    View view = View::FileAlone;
    AuxiliaryRank auxiliary = AuxiliaryRank::Ignored;
    /// Whether a loaded file may be given out again for as long as the file itself stays as it is.
    bool mayBeKept = true;
    /// Whether GDAL may look for reduced-resolution levels.
    bool hasOverviews = true;

    /// Whether a file that begins with these bytes (at most `FileHead::kBytes`) may be of this
    /// format. `path` is absolute, for formats whose files are told by what lies beside them.
    bool (*recognise)(std::string_view head, const std::string& path);
    /// What is known of a file that was recognised. The handle is opened only where the file's own
    /// bytes do not tell everything.
    Expected<RasterFacts> (*load)(const SourceFile& file, DatasetHandle& handle);
    /// For a format whose files are all of another one, too: why a loaded file is not of this one;
    /// empty when it is.
    std::string_view (*reject)(const RasterFacts& facts) = nullptr;
    /// Appends the properties of a frame, geo-correlation first.
    void (*describe)(RasterFile& file, int frame, FrameProperties& properties);
};

/// Loads a plain regular file of this format. When the process can open no more files, idle ones
/// are closed first.
Expected<RasterPointer> loadRaster(const Format& format, const std::string& path);

/// The same for a file whose head has been read and recognised.
Expected<RasterPointer> loadRaster(const Format& format, SourceFile file);

/// Loads a file whose dataset's bands are its frames.
Expected<RasterFacts> loadAllBands(const SourceFile& file, DatasetHandle& handle);

/// Appends the geo-correlation of a frame, if it has one.
void describePlace(RasterFile& file, int frame, FrameProperties& properties);

/// Has a raster take the place in its auxiliary file where that one comes first. This may be known
/// before GDAL opens the file.
void placeByFirstSideFile(RasterFacts& facts, const SourceFile& file);
/// The same where it comes last, of a raster that nothing else places.
void placeByLastSideFile(RasterFacts& facts, const SourceFile& file);

/// Has a raster take the place in the files beside it, as far as they count beside its own.
void placeBySideFiles(RasterFacts& facts, const SourceFile& file, const Dataset& dataset,
                      DatasetHandle& handle);

Refusal damaged(std::string reason);
Refusal notOf(const Format& format);

}  // namespace Pyxis
