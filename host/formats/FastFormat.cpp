#include <cpl_conv.h>
#include <cpl_string.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "host/formats/FastHeader.h"
#include "host/formats/FastSiblings.h"
#include "host/formats/GdalFormat.h"
#include "host/gdal/GdalProperties.h"
#include "host/gdal/OpenedFile.h"

namespace Pyxis {
namespace {

std::string directoryOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

std::string nameOf(const std::string& path) {
    return path.substr(directoryOf(path).size());
}

/// The band files that GDAL opened, in band order, as paths beside the header.
std::vector<std::string> openedBandFiles(OpenedFile& file) {
    const CPLStringList list(file.mainDataset().GetFileList());
    std::vector<std::string> bands;
    for (int i = 1; i < list.Count(); ++i) {  // the first one is the header
        bands.push_back(directoryOf(file.path()) + nameOf(list[i]));
    }
    return bands;
}

/// A band file's name as the header spells it. GDAL also finds files whose names differ in case,
/// and for some satellites files that the header does not name.
std::string nameInHeader(const std::string& fileName, const std::vector<std::string>& names) {
    const auto found = std::find_if(names.begin(), names.end(), [&fileName](const auto& name) {
        return EQUAL(name.c_str(), fileName.c_str());
    });
    return found != names.end() ? *found : fileName;
}

bool endsBeforePixels(const std::string& bandFile, GDALDataset& dataset) {
    struct stat status {};
    const std::uint64_t needed = static_cast<std::uint64_t>(dataset.GetRasterXSize()) *
                                 static_cast<std::uint64_t>(dataset.GetRasterYSize()) *
                                 static_cast<std::uint64_t>(GDALGetDataTypeSizeBytes(
                                     dataset.GetRasterBand(1)->GetRasterDataType()));
    return stat(bandFile.c_str(), &status) != 0 ||
           static_cast<std::uint64_t>(status.st_size) < needed;
}

class FastFormat final : public GdalFormat {
  public:
    const FormatTexts& texts() const override {
        static const FormatTexts kTexts = {
            "FAST", "Header file that names one file for each band", {"fst"}, {}, "Band File Name"};
        return kTexts;
    }
    const char* driver() const override { return "FAST"; }
    bool matches(std::string_view head) const override { return looksLikeFastHeader(head); }
    std::string refuse(const std::string& path, const FileHead& head) const override;
    std::string load(OpenedFile& file) const override;
    /// An image is made of several files, and one more may turn up.
    bool mayBeKept() const override { return false; }
    /// The format has none of its own, and this driver would take a file of any format beside the
    /// header for them.
    bool hasOverviews() const override { return false; }
    void describe(OpenedFile& file, int frame, GdalPropertySet& properties) const override;
};

/// GDAL opens whatever the header names. A name with a directory could lead anywhere.
std::string FastFormat::refuse(const std::string& path, const FileHead& head) const {
    const std::vector<std::string> names = fastBandFileNames(head.bytes);
    for (const std::string& name : names) {
        if (!isPlainFileName(name)) {
            return "the header names a file outside its directory: " + name;
        }
    }
    return whyNotSafeBeside(path, names);
}

std::string FastFormat::load(OpenedFile& file) const {
    std::string why;
    const std::optional<FileHead> head = readHead(file.path(), why);
    if (!head) {
        return why;
    }
    const std::vector<std::string> names = fastBandFileNames(head->bytes);
    std::vector<std::string> namesOfBands;
    for (const std::string& bandFile : openedBandFiles(file)) {
        if (endsBeforePixels(bandFile, file.mainDataset())) {
            return "shorter than its header says: " + nameOf(bandFile);
        }
        file.addFile(bandFile);
        namesOfBands.push_back(nameInHeader(nameOf(bandFile), names));
    }
    // GDAL opens seven bands but lists six.
    const auto bands = static_cast<std::size_t>(file.mainDataset().GetRasterCount());
    if (namesOfBands.size() < bands && !names.empty()) {
        namesOfBands.push_back(names.back());
    }
    file.addBandsOf(file.mainDataset(), namesOfBands);
    return {};
}

void FastFormat::describe(OpenedFile& file, int frame, GdalPropertySet& properties) const {
    if (const auto facts = file.geoFacts(frame)) {
        properties.append(correlationOf(facts).get());
    }
    const GdalBandFilenameProperty fileName(file.frame(frame).ownText);
    properties.append(&fileName);
}

}  // namespace

const GdalFormat& fastFormat() {
    static const FastFormat format;
    return format;
}

}  // namespace Pyxis
