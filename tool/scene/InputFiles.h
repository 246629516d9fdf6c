#pragma once

#include <set>
#include <string>

namespace kestms {

/// The input files of a command, used or not. No output may replace one of them or a file that
/// belongs to one.
class InputFiles {
  public:
    /// A list, a document or another file that is read.
    void add(const std::string& path) { files_.insert(path); }
    /// A raster: the files beside it may describe it.
    void addRaster(const std::string& path) { rasters_.insert(path); }

    /// Throws a Failure with ExitCode::Usage for an existing file that is an input, is part of one
    /// (the bands of a header), is beside a raster and of a kind that the tool does not write, or
    /// would be overwritten although `overwrite` is false.
    void refuseOutput(const std::string& path, bool overwrite) const;

  private:
    bool isInput(const std::string& path) const;
    bool liesBesideRaster(const std::string& path) const;

    std::set<std::string> files_;
    std::set<std::string> rasters_;
};

}  // namespace kestms
