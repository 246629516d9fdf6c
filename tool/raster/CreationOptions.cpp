#include "tool/raster/CreationOptions.h"

#include <gdal_priv.h>

#include <algorithm>
#include <array>
#include <future>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "host/gdal/ErrorCapture.h"
#include "tool/terminal/Failure.h"

namespace kestms {
namespace {

/// Options for a georeference beside the file. The file has its own.
constexpr std::array kBesideFile = {"TFW", "WORLDFILE", "RPB", "RPCTXT", "PROFILE"};

/// As many threads as possible: GDAL waits for ever for those that it fails to start.
const char* threadsToUse() {
    const unsigned wanted = std::thread::hardware_concurrency() + 1;  // one reads ahead
    std::promise<void> end;
    const std::shared_future<void> ended = end.get_future().share();
    std::vector<std::thread> threads;
    const char* answer = "ALL_CPUS";
    try {
        while (threads.size() < wanted) {
            threads.emplace_back([ended] { ended.wait(); });
        }
    } catch (const std::system_error&) {
        answer = "1";
    }
    end.set_value();
    for (std::thread& thread : threads) {
        thread.join();
    }
    return answer;
}

std::string compressionOf(const GeoTiffOptions& settings) {
    return settings.compression.value_or("DEFLATE");
}

/// The differences between neighbours compress better than the samples.
const char* predictorFor(GDALDataType type, const std::string& compression) {
    constexpr int kLargestInteger = 32;
    if (compression == "NONE" || GDALDataTypeIsComplex(type) != FALSE) {
        return "1";
    }
    if (GDALDataTypeIsFloating(type) != FALSE) {
        return "3";
    }
    return GDALGetDataTypeSizeBits(type) <= kLargestInteger ? "2" : "1";
}

/// Options that the user gives take the place of those that are there.
void addUsers(const GeoTiffOptions& settings, CPLStringList& options) {
    CPLStringList users;
    for (const std::string& option : settings.creationOptions) {
        users.AddString(option.c_str());
    }
    if (users.FetchNameValue("COMPRESS") != nullptr || users.FetchNameValue("NBITS") != nullptr) {
        options.SetNameValue("PREDICTOR", nullptr);  // not all of them have one
    }
    for (const std::string& option : settings.creationOptions) {
        const std::size_t mark = option.find('=');
        options.SetNameValue(option.substr(0, mark).c_str(), option.substr(mark + 1).c_str());
    }
}

}  // namespace

void checkCreationOptions(const GeoTiffOptions& options) {
    const char* name = options.cloudOptimized ? "COG" : "GTiff";
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName(name);
    CPLStringList before;
    if (options.compression) {
        before.SetNameValue("COMPRESS", options.compression->c_str());
    }
    for (const std::string& option : options.creationOptions) {
        CPLStringList list;
        list.AddString(option.c_str());
        const Pyxis::ErrorCapture silence;
        if (option.find('=') == std::string::npos ||
            GDALValidateCreationOptions(driver, list.List()) == FALSE) {
            throw Failure(ExitCode::Usage, "--co " + option,
                          std::string("no creation option of GDAL's driver ") + name);
        }
        const std::string key = option.substr(0, option.find('='));
        const std::string value = option.substr(key.size() + 1);
        if (const char* other = before.FetchNameValue(key.c_str())) {
            throw Failure(ExitCode::Usage, "--co " + option,
                          std::string("is given as ") + other + " already");
        }
        before.SetNameValue(key.c_str(), value.c_str());
        if (EQUAL(key.c_str(), "COMPRESS") && EQUAL(value.c_str(), "WEBP")) {
            throw Failure(ExitCode::Usage, "--co " + option,
                          "is for pictures of three or four bands of bytes");
        }
        if (std::any_of(kBesideFile.begin(), kBesideFile.end(),
                        [&key](const char* each) { return EQUAL(key.c_str(), each); })) {
            throw Failure(ExitCode::Usage, "--co " + option,
                          "the georeference is in the file, not beside it");
        }
    }
}

CPLStringList creationOptions(const GeoTiffOptions& settings, GDALDataType type, bool withUsers) {
    CPLStringList options;
    options.SetNameValue("TILED", "YES");
    const std::string compression = compressionOf(settings);
    options.SetNameValue("COMPRESS", compression.c_str());
    options.SetNameValue("PREDICTOR", predictorFor(type, compression));
    options.SetNameValue("INTERLEAVE", "BAND");
    options.SetNameValue("BIGTIFF", "IF_SAFER");
    options.SetNameValue("NUM_THREADS", threadsToUse());
    if (compression == "DEFLATE") {
        // In the differences there is little to find for more effort, which takes longer.
        options.SetNameValue("ZLEVEL", "1");
    }
    // Colours are said band by band, not by the file's colour model.
    options.SetNameValue("PHOTOMETRIC", "MINISBLACK");
    options.SetNameValue("ALPHA", "NO");
    if (withUsers) {
        addUsers(settings, options);
    }
    return options;
}

CPLStringList cloudCreationOptions(const GeoTiffOptions& settings, GDALDataType type) {
    CPLStringList options;
    const std::string compression = compressionOf(settings);
    options.SetNameValue("COMPRESS", compression.c_str());
    const bool differs = compression != "NONE" && GDALDataTypeIsComplex(type) == FALSE;
    options.SetNameValue("PREDICTOR", differs ? "YES" : "NO");
    options.SetNameValue("BIGTIFF", "IF_SAFER");
    options.SetNameValue("NUM_THREADS", threadsToUse());
    addUsers(settings, options);
    return options;
}

}  // namespace kestms
