#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "tool/raster/OutputFile.h"

namespace kestms {

/// A picture of red, green, blue and alpha samples, 8 bits each.
class Picture {
  public:
    using Pixel = std::array<std::uint8_t, 4>;

    /// Fully transparent.
    Picture(int width, int height);

    int width() const { return width_; }
    int height() const { return height_; }
    Pixel& at(int column, int row);

    /// Writes a PNG, JPEG or WebP file, as the path's extension says, in one step: there is a whole
    /// one afterwards, or none. A JPEG is white where the picture is transparent. Throws a Failure
    /// with ExitCode::CannotWrite or ExitCode::Usage.
    void write(const std::string& path, const OutputRules& rules) const;

  private:
    int width_;
    int height_;
    std::vector<Pixel> pixels_;
};

}  // namespace kestms
