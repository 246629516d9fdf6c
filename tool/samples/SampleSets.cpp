#include "tool/samples/SampleSets.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "host/Text.h"
#include "sets/ComponentList.h"
#include "tool/raster/OutputFile.h"
#include "tool/samples/FastHeaderText.h"
#include "tool/samples/SampleRaster.h"
#include "tool/terminal/Failure.h"
#include "tool/terminal/Interrupt.h"

namespace fs = std::filesystem;

namespace kestms::samples {
namespace {

using enum Spectrum;

/// A raster file of a set: its bands, all of one pixel size.
struct SampleFile {
    std::string name;
    std::vector<Spectrum> bands;
    int pixels;  ///< along each side of a scene of the usual size
    std::string driver = "GTiff";
    std::string description = {};           ///< image description
    std::vector<std::string> options = {};  ///< creation options of the driver
};

/// A file of another kind: its name and content.
struct TextFile {
    std::string name;
    std::string content;
};

struct SampleSet {
    std::string directory;
    std::string title;
    double extent;  ///< metres along each side of the scene
    Samples samples;
    std::vector<SampleFile> files;
    std::vector<TextFile> texts = {};
};

constexpr int kNormal = kUsualPixels;
constexpr int kFine = 4 * kNormal;
constexpr int kHalfFine = 2 * kNormal;
constexpr int kCoarse = kNormal / 2;

/// Scales a number of pixels to scenes of that size.
int scaled(int pixels, int size) {
    return static_cast<int>(std::int64_t{pixels} * size / kUsualPixels);
}

const std::string kScene = "L71026029_02920000609_";

std::string bandList(const std::string& digits) {
    return "{\n  bandList = \n  (\n    " + digits + "\n  )\n}\n";
}

const std::string kProductMetadata =
    "Product Order Number: 1234567\n"
    "Sensor Type: Satellite\n"
    "Processing Level: Standard Geometrically Corrected\n"
    "Image Type: PAN/MSI\n"
    "Interpolation Method: Cubic Convolution\n"
    "Datum: WGS84\n"
    "Map Projection: Universal Transverse Mercator, zone 32 north\n"
    "Pixel Size X: 4.0000000000 meters\n"
    "Pixel Size Y: 4.0000000000 meters\n"
    "Acquisition Date/Time: 2000-06-09 10:12 GMT\n";

SampleFile nitf(const std::string& name, Spectrum band, const std::string& letter,
                int pixels = kNormal) {
    return {name, {band}, pixels, "NITF", {}, {"ICORDS=N", "IREPBAND=" + letter}};
}

SampleSet poProduct() {
    return {
        "po-product",
        "A \"po_\" product with its metadata text file: four bands and a finer panchromatic one",
        1024.0,
        Samples::ElevenBits,
        {{"po_1234567_red_0000000.tif", {Red}, kNormal},
         {"po_1234567_grn_0000000.tif", {Green}, kNormal},
         {"po_1234567_blu_0000000.tif", {Blue}, kNormal},
         {"po_1234567_nir_0000000.tif", {NearInfrared}, kNormal},
         {"po_1234567_pan_0000000.tif", {Panchromatic}, kFine}},
        {{"po_1234567_metadata.txt", kProductMetadata}}};
}

SampleSet poProductNitf() {
    return {"po-nitf",
            "The same product as NITF files",
            1024.0,
            Samples::ElevenBits,
            {nitf("po_1234567_red_0000000.ntf", Red, "M"),
             nitf("po_1234567_grn_0000000.ntf", Green, "M"),
             nitf("po_1234567_blu_0000000.ntf", Blue, "M"),
             nitf("po_1234567_nir_0000000.ntf", NearInfrared, "M")}};
}

SampleSet landsat7() {
    return {"landsat7",
            "An \"L7\" product with three pixel sizes: reflective, thermal and panchromatic bands",
            7680.0,
            Samples::EightBits,
            {{kScene + "B10.TIF", {Blue}, kNormal},
             {kScene + "B20.TIF", {Green}, kNormal},
             {kScene + "B30.TIF", {Red}, kNormal},
             {kScene + "B40.TIF", {NearInfrared}, kNormal},
             {kScene + "B50.TIF", {ShortWave1}, kNormal},
             {kScene + "B61.TIF", {Thermal}, kCoarse},
             {kScene + "B62.TIF", {Thermal}, kCoarse},
             {kScene + "B70.TIF", {ShortWave2}, kNormal},
             {kScene + "B80.TIF", {Panchromatic}, kHalfFine}}};
}

SampleSet landsat9() {
    const std::string scene = "LC09_L1TP_193026_20250712_20250712_02_T1_";
    return {"landsat9",
            "A Landsat 9 product of Collection 2, by the catalogue of products",
            7680.0,
            Samples::ElevenBits,
            {{scene + "B2.TIF", {Blue}, kNormal},
             {scene + "B3.TIF", {Green}, kNormal},
             {scene + "B4.TIF", {Red}, kNormal},
             {scene + "B5.TIF", {NearInfrared}, kNormal},
             {scene + "B6.TIF", {ShortWave1}, kNormal},
             {scene + "B7.TIF", {ShortWave2}, kNormal},
             {scene + "B8.TIF", {Panchromatic}, kHalfFine},
             {scene + "B10.TIF", {Thermal}, kNormal}}};
}

SampleSet sentinel2() {
    const std::string scene = "T32UMB_20250712T102559_";
    return {"sentinel2",
            "Bands of a Sentinel-2 level 2A product, by the catalogue of products",
            5120.0,
            Samples::ElevenBits,
            {{scene + "B02_10m.tif", {Blue}, kHalfFine},
             {scene + "B03_10m.tif", {Green}, kHalfFine},
             {scene + "B04_10m.tif", {Red}, kHalfFine},
             {scene + "B08_10m.tif", {NearInfrared}, kHalfFine},
             {scene + "B8A_20m.tif", {NearInfrared}, kNormal},
             {scene + "B11_20m.tif", {ShortWave1}, kNormal},
             {scene + "B12_20m.tif", {ShortWave2}, kNormal}}};
}

SampleSet numbered() {
    return {"numbered",
            "Files told apart by the two digits at the end of their names",
            7680.0,
            Samples::EightBits,
            {{"scene_01.tif", {Blue}, kNormal},
             {"scene_02.tif", {Green}, kNormal},
             {"scene_03.tif", {Red}, kNormal},
             {"scene_10.tif", {NearInfrared}, kNormal}}};
}

SampleSet generic() {
    return {"generic",
            "Files whose names follow no convention",
            7680.0,
            Samples::EightBits,
            {{"visible.tif", {Panchromatic}, kNormal},
             {"infrared.tif", {NearInfrared}, kNormal},
             {"thermal.tif", {Thermal}, kCoarse}}};
}

SampleSet quickBird(const std::string& list, const std::string& digits,
                    const std::vector<Spectrum>& bands) {
    return {"quickbird-" + list,
            "A QuickBird TIFF file with the band list " + digits,
            716.8,
            Samples::ElevenBits,
            {{"scene.tif", bands, kNormal, "GTiff", bandList(digits)}}};
}

SampleSet quickBirdPanchromatic() {
    const std::string list = bandList("1");
    return {"quickbird-1",
            "Two QuickBird TIFF files with a panchromatic band each",
            716.8,
            Samples::ElevenBits,
            {{"march.tif", {Panchromatic}, kFine, "GTiff", list},
             {"june.tif", {Panchromatic}, kFine, "GTiff", list}}};
}

SampleSet nitfLetters() {
    return {
        "nitf",
        "NITF files whose bands have the letters R, G, B, N and M",
        1024.0,
        Samples::ElevenBits,
        {nitf("north.ntf", Red, "R"), nitf("east.ntf", Green, "G"), nitf("south.ntf", Blue, "B"),
         nitf("west.ntf", NearInfrared, "N"), nitf("middle.ntf", Panchromatic, "M", kFine)}};
}

/// A header of the FAST format and the raw files of its bands.
struct FastPart {
    std::string header;
    std::vector<SampleFile> bands;
};

std::vector<FastPart> fastParts() {
    const auto band = [](const char* code, Spectrum spectrum, int pixels) {
        return SampleFile{kScene + code + ".FST", {spectrum}, pixels};
    };
    return {{kScene + "HRF.FST",
             {band("B10", Blue, kNormal), band("B20", Green, kNormal), band("B30", Red, kNormal),
              band("B40", NearInfrared, kNormal), band("B50", ShortWave1, kNormal),
              band("B70", ShortWave2, kNormal)}},
            {kScene + "HTM.FST", {band("B61", Thermal, kCoarse), band("B62", Thermal, kCoarse)}},
            {kScene + "HPN.FST", {band("B80", Panchromatic, kHalfFine)}}};
}

std::vector<SampleSet> sampleSets() {
    return {poProduct(),
            poProductNitf(),
            landsat7(),
            landsat9(),
            sentinel2(),
            numbered(),
            generic(),
            quickBird("1234", "1, 2, 3, 4", {Blue, Green, Red, NearInfrared}),
            quickBird("321", "3, 2, 1", {Red, Green, Blue}),
            quickBird("432", "4, 3, 2", {NearInfrared, Red, Green}),
            quickBirdPanchromatic(),
            nitfLetters()};
}

/// All the files of all sets, which appear together in the end or not at all.
class SampleFiles {
  public:
    explicit SampleFiles(bool overwrite) : overwrite_(overwrite) {}
    SampleFiles(const SampleFiles&) = delete;
    SampleFiles& operator=(const SampleFiles&) = delete;
    /// Removes the directories that it made, unless they contain files.
    ~SampleFiles() {
        files_.clear();
        for (; !made_.empty(); made_.pop_back()) {
            std::error_code isInUse;
            fs::remove(made_.back(), isInUse);
        }
    }

    std::string makeDirectory(const fs::path& directory) {
        const fs::path parent = directory.parent_path();
        if (!parent.empty() && !fs::exists(parent)) {
            makeDirectory(parent);
        }
        std::error_code error;
        if (fs::create_directory(directory, error)) {
            made_.push_back(directory);
        }
        if (!fs::is_directory(directory)) {
            throw Failure(ExitCode::CannotWrite, directory.string(),
                          error ? error.message() : "is no directory");
        }
        return fs::absolute(directory).lexically_normal().string();
    }

    OutputFile& add(const fs::path& path) {
        files_.push_back(
            std::make_unique<OutputFile>(path.string(), OutputRules{noInputs_, overwrite_}));
        return *files_.back();
    }

    void commit() { commitTogether(files_); }

  private:
    InputFiles noInputs_;
    bool overwrite_;
    std::vector<fs::path> made_;
    std::vector<std::unique_ptr<OutputFile>> files_;
};

void writeList(SampleFiles& files, const std::string& directory,
               const kest::ComponentListBuilder& list) {
    files.add(fs::path(directory) / "set.xml")
        .write(Pyxis::toUtf8(list.specifier().string()) + "\n");
}

void writeSet(SampleFiles& files, const fs::path& parent, const SampleSet& set, int size) {
    const std::string directory = files.makeDirectory(parent / set.directory);
    kest::ComponentListBuilder list;
    for (const SampleFile& file : set.files) {
        throwIfInterrupted();
        const std::string path = (fs::path(directory) / file.name).string();
        writeRaster(files.add(path), {file.bands, scaled(file.pixels, size), set.extent,
                                      set.samples, file.driver, file.description, file.options});
        for (int frame = 0; frame < static_cast<int>(file.bands.size()); ++frame) {
            list.append(Pyxis::fileSpecifier(path), frame);
        }
    }
    for (const TextFile& text : set.texts) {
        files.add(fs::path(directory) / text.name).write(text.content);
    }
    writeList(files, directory, list);
}

void writeFastSet(SampleFiles& files, const fs::path& parent, double extent, int size) {
    const std::string directory = files.makeDirectory(parent / "landsat7-fast");
    kest::ComponentListBuilder list;
    for (const FastPart& part : fastParts()) {
        throwIfInterrupted();
        const int pixels = scaled(part.bands.front().pixels, size);
        FastProduct product{{}, pixels, pixels, kOrigin.x, kOrigin.y, extent / pixels};
        const fs::path header = fs::path(directory) / part.header;
        for (const SampleFile& band : part.bands) {
            const SampleRaster raster{band.bands, pixels, extent, Samples::EightBits};
            files.add(fs::path(directory) / band.name).write(rawSamples(raster));
            list.append(Pyxis::fileSpecifier(header.string()),
                        static_cast<int>(product.bandFiles.size()));
            product.bandFiles.push_back(band.name);
        }
        files.add(header).write(fastHeaderText(product));
    }
    writeList(files, directory, list);
}

}  // namespace

void writeSamples(const std::string& directory, int pixels, bool overwrite) {
    SampleFiles files(overwrite);
    const fs::path parent = files.makeDirectory(directory);
    std::string readme =
        "Sample sets, one a directory. All show the same made-up scene; set.xml lists the files\n"
        "of each set, with absolute paths.\n\n";
    for (const SampleSet& set : sampleSets()) {
        writeSet(files, parent, set, pixels);
        readme += set.directory + ": " + set.title + "\n";
    }
    writeFastSet(files, parent, landsat7().extent, pixels);
    readme += "landsat7-fast: The \"L7\" product as FAST headers with raw band files\n";
    files.add(parent / "README.txt").write(readme);
    files.commit();
}

}  // namespace kestms::samples
