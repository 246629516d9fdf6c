#pragma once

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "fakes/Rasters.h"
#include "tool/Main.h"

// Runs the tool in this process, as a user would at a terminal.

namespace kestms {

struct Outcome {
    int code = 0;
    std::string out;
    std::string err;

    nlohmann::json json() const { return nlohmann::json::parse(out); }
};

inline Outcome runTool(const std::vector<std::string>& arguments, const std::string& input = {}) {
    std::vector<const char*> argv = {"kestms", "--language", "en"};
    for (const std::string& argument : arguments) {
        argv.push_back(argument.c_str());
    }
    std::istringstream in(input);
    std::ostringstream out;
    std::ostringstream err;
    const int code = run(static_cast<int>(argv.size()), argv.data(), in, out, err);
    return {code, out.str(), err.str()};
}

/// A raster moved to the east, in metres.
inline fakes::Raster movedEast(double metres) {
    fakes::Raster raster;
    (*raster.transform)[0] += metres;
    return raster;
}

inline const std::string kLandsat = "L71195025_02520010730_";

/// Five bands of a Landsat 7 product, the last on a grid twice as fine.
inline std::vector<std::string> writeLandsat(const fakes::TempDirectory& directory) {
    std::vector<std::string> files;
    for (const char* band : {"B80", "B70", "B61", "B40", "B10"}) {
        fakes::Raster raster;
        if (band == std::string("B80")) {
            raster.width *= 2;
            raster.height *= 2;
            raster.transform = {{500000, 15, 0, 4600000, 0, -15}};
        }
        files.push_back(fakes::writeRaster(directory / (kLandsat + band + ".TIF"), raster));
    }
    return files;
}

}  // namespace kestms
