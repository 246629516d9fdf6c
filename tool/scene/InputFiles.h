#pragma once

#include <set>
#include <string>

namespace kestms {

/// The files that a command was given to read, taken or not. No output may replace one of them or
/// a file that belongs to one.
class InputFiles {
  public:
    /// A list, a document or another file that is read.
    void add(const std::string& path) { files_.insert(path); }
    /// A raster: the files beside it may describe it.
    void addRaster(const std::string& path) { rasters_.insert(path); }

    /// Throws a Failure with ExitCode::Usage for an existing file that is an input, is a part of
    /// one (the bands of a header), lies beside a raster and is of no kind that the tool writes,
    /// or is there although `overwrite` is false.
    void refuseOutput(const std::string& path, bool overwrite) const;

  private:
    bool isInput(const std::string& path) const;
    bool liesBesideRaster(const std::string& path) const;

    std::set<std::string> files_;
    std::set<std::string> rasters_;
};

}  // namespace kestms
