#pragma once

#include <array>
#include <filesystem>
#include <set>
#include <string>

namespace kestms {

/// What the names of files beside a raster end in that GDAL reads as a part of it.
inline constexpr std::array kSideFileEndings = {".aux.xml", ".ovr", ".msk", ".OVR", ".MSK"};

/// The input files of a command, used or not. No output may replace one of them or a file that
/// belongs to one.
class InputFiles {
  public:
    /// A list, a document, a folder or another file that is read.
    void add(const std::string& path) { files_.insert(path); }
    /// A raster: the files beside it may describe it. Of one in an archive, the archive counts.
    void addRaster(const std::string& path);

    /// Throws a Failure with ExitCode::Usage for an existing file that is an input, is part of one
    /// (the bands of a header), is beside a raster or in a folder that is an input and of a kind
    /// that the tool does not write, or would be overwritten although `overwrite` is false; and for
    /// any file that would become part of an input.
    void refuseOutput(const std::string& path, bool overwrite) const;
    /// The same for a file that goes or changes with an output beside it, of whatever kind.
    void refuseSideFile(const std::string& path, bool overwrite) const;
    /// Whether an input is in the directory itself.
    bool areIn(const std::filesystem::path& directory) const;

  private:
    bool isInput(const std::string& path) const;
    bool isBesideInputs(const std::string& path) const;

    std::set<std::string> files_;
    std::set<std::string> rasters_;
};

}  // namespace kestms
