#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/file/Expected.h"
#include "host/file/FileHead.h"
#include "host/raster/Gdal.h"
#include "host/raster/RasterFile.h"
#include "pyxis/ImageFormatCodec.h"

namespace Pyxis {

class FrameProperties;

/// How GDAL ranks the georeference in an auxiliary file of a format.
enum class AuxiliaryRank {
    Ignored,
    First,           ///< before the file itself and its world file
    Last,            ///< only if nothing else has a georeference
    LastAndNoSystem  ///< the same, without its coordinate system
};

/// A file that is about to be loaded.
struct SourceFile {
    std::string path;          ///< as given
    std::string absolutePath;  ///< cannot be mistaken for GDAL's name for part of a file
    FileHead head;
    AuxiliaryRank rank = AuxiliaryRank::Ignored;
    AuxiliaryPlace auxiliary = {};  ///< empty if ignored
};

/// One component format: how its files are recognised and loaded, and what their frames publish. A
/// format is a constant for the whole process, so that images and frames may outlive their codec.
struct Format {
    /// The codec interface of the format.
    enum class Interface { General, QuickBird, Tiff, Nitf, Fast };

    const char* name;
    const char* description;
    std::vector<const char*> extensions;  ///< without the dot
    /// Whether a file with such an extension counts as a raster even when it is damaged.
    bool countsByName = true;
    std::vector<FormatFeature> features;
    Interface interface = Interface::General;
    const char* ownProperty = nullptr;  ///< name of the property beside the geo-correlation
    int ownPropertyNumber = 0;          ///< its number, if callers use one

    /// GDAL's short name of the only driver that may open the files.
    const char* driver;
    View view = View::FileAlone;
    AuxiliaryRank auxiliary = AuxiliaryRank::Ignored;
    /// Whether a loaded file may be reused while it does not change.
    bool mayBeKept = true;
    /// Whether GDAL may look for reduced-resolution levels.
    bool hasOverviews = true;

    /// Whether a file that begins with these bytes (at most `FileHead::kBytes`) may be of this
    /// format. `path` is absolute, for formats recognised by the files beside them.
    bool (*recognise)(std::string_view head, const std::string& path);
    /// Loads a recognised file. The handle is opened only if the file's own bytes are not enough.
    Expected<RasterFacts> (*load)(const SourceFile& file, DatasetHandle& handle);
    /// For a format that is a subset of another one: why a loaded file is not of this format; empty
    /// when it is.
    std::string_view (*reject)(const RasterFacts& facts) = nullptr;
    /// Appends the properties of a frame, geo-correlation first.
    void (*describe)(RasterFile& file, int frame, FrameProperties& properties);
};

/// Whether the format's list of extensions has that of the file.
bool hasExtensionOf(const Format& format, const std::string& path);

/// Loads a file whose head has been read and recognised, and looks for its auxiliary file. When the
/// process can open no more files, idle ones are closed first.
Expected<RasterPointer> loadRaster(const Format& format, SourceFile& file);

/// Loads a file whose dataset's bands are its frames.
Expected<RasterFacts> loadAllBands(const SourceFile& file, DatasetHandle& handle);

/// Appends the geo-correlation of a frame, if it has one.
void describePlace(RasterFile& file, int frame, FrameProperties& properties);

/// Sets the georeference from the auxiliary file if that ranks first. This needs no open dataset.
void placeByFirstSideFile(RasterFacts& facts, const SourceFile& file);
/// The same if it ranks last and nothing else has a georeference.
void placeByLastSideFile(RasterFacts& facts, const SourceFile& file);

/// Sets the georeference from the side files, as far as they rank before the file's own.
void placeBySideFiles(RasterFacts& facts, const SourceFile& file, const Dataset& dataset,
                      DatasetHandle& handle);

Refusal damaged(std::string reason);
Refusal notOf(const Format& format);

}  // namespace Pyxis
