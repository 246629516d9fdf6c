#pragma once

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "tests/fakes/Rasters.h"
#include "tool/CommandLine.h"

// Runs the tool in this process, as a user would at a terminal.

namespace kestms {

struct Outcome {
    int code = 0;
    std::string out;
    std::string err;

    nlohmann::json json() const { return nlohmann::json::parse(out); }
};

using Strings = std::vector<std::string>;

inline Strings joined(Strings arguments, const Strings& more) {
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
}

/// Runs the tool in the user's language, perhaps with an output that fails.
inline Outcome runAsTheUser(const Strings& arguments, std::istream&& in, bool canWrite = true) {
    std::vector<const char*> argv = {"kestms"};
    for (const std::string& argument : arguments) {
        argv.push_back(argument.c_str());
    }
    std::ostringstream out;
    std::ostringstream err;
    out.setstate(canWrite ? std::ios::goodbit : std::ios::badbit);
    const int code = run(static_cast<int>(argv.size()), argv.data(), in, out, err);
    return {code, out.str(), err.str()};
}

inline Outcome runTool(const Strings& arguments, const std::string& input = {}) {
    return runAsTheUser(joined({"--language", "en"}, arguments), std::istringstream(input));
}

/// The text that each entry of a list has under a key.
inline Strings valuesOf(const nlohmann::json& list, const char* key) {
    Strings values;
    for (const nlohmann::json& entry : list) {
        values.push_back(entry[key]);
    }
    return values;
}

/// A test with its own directory.
class InDirectory : public testing::Test {
  protected:
    std::string write(const std::string& name, const fakes::Raster& raster = {}) const {
        return fakes::writeRaster(directory_ / name, raster);
    }

    fakes::TempDirectory directory_;
};

/// A raster shifted to the east, in metres.
inline fakes::Raster movedEast(double metres) {
    fakes::Raster raster;
    (*raster.transform)[0] += metres;
    return raster;
}

inline const std::string kLandsat = "L71195025_02520010730_";

/// Five bands of a Landsat 7 product, the last on a grid twice as fine.
inline Strings writeLandsat(const fakes::TempDirectory& directory) {
    const fakes::Raster fine{
        .width = 24, .height = 16, .transform = {{500000, 15, 0, 4600000, 0, -15}}};
    Strings files = {fakes::writeRaster(directory / (kLandsat + "B80.TIF"), fine)};
    for (const char* band : {"B70", "B61", "B40", "B10"}) {
        files.push_back(fakes::writeRaster(directory / (kLandsat + band + ".TIF")));
    }
    return files;
}

}  // namespace kestms
