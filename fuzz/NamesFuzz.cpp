// What the plug-in derives from file names and component codecs: naming scheme, band, bucket,
// reference name and metadata text file. Each line of the text is the name of a file.

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "bands/AsciiText.h"
#include "bands/BandIdentification.h"
#include "bands/FileName.h"
#include "bands/IntegerPattern.h"
#include "bands/MetadataTextFile.h"
#include "bands/NamingScheme.h"
#include "bands/ReferenceName.h"
#include "fuzz/Host.h"
#include "fuzz/Input.h"
#include "fuzz/Texts.h"
#include "platform/Platform.h"
#include "sets/ComponentList.h"

namespace {

using fuzz::require;
using Pyxis::FileSpecifier;

constexpr int kUntouched = -77;

bool isScheme(int scheme) {
    return scheme >= kest::SchemeGeneric && scheme <= kest::SchemeNitf;
}

std::u16string nameText(const Pyxis::StringBuffer& buffer) {
    std::u16string text = fuzz::wellFormed(buffer);
    require(text.size() <= kest::kMaxNameLength, "names are cut");
    return text;
}

void checkBand(int scheme, int ordinal, const FileSpecifier& file, int frame) {
    kest::BandTypeInfo info;
    info.bandNumber = kUntouched;
    kest::getBandTypeInfo(scheme, ordinal, file, frame, info);
    if (info.bandNumber == kUntouched) {
        require(!isScheme(scheme) || scheme == kest::SchemeNitf, "every scheme names its bands");
        require(info.bandName.numDataBytes() == 0, "nothing at all is written");
        return;
    }
    require(isScheme(scheme), "nothing is written outside the schemes");
    const std::u16string name = nameText(info.bandName);
    if (scheme == kest::SchemeNumbered) {
        const std::u16string fileName = kest::fileNameOf(file).name;
        require(name.starts_with(u'B') && fileName.ends_with(name.substr(1)) &&
                    name.size() == std::min<std::size_t>(fileName.size(), 2) + 1,
                "a numbered band is named by the end of its file name");
        require(info.bandNumber >= -9 && info.bandNumber <= 99, "two characters hold the number");
    } else {
        require(!name.empty(), "a band has a name");
        require(info.bandNumber == ordinal || info.bandNumber == kest::kUnrecognisedNumber ||
                    (info.bandNumber >= 0 && info.bandNumber <= 8),
                "the number is a row's, or the ordinal");
    }
}

void checkBucket(int scheme, int ordinal, const FileSpecifier& file, int frame) {
    Pyxis::StringBuffer name;
    int number = kUntouched;
    kest::getBucketInfo(scheme, ordinal, file, frame, 0.0, 0.0, name, number);
    if (number == kUntouched) {
        require(!isScheme(scheme) || scheme == kest::SchemeNitf, "every scheme names its buckets");
        require(name.numDataBytes() == 0, "nothing at all is written");
        return;
    }
    require(isScheme(scheme) && !nameText(name).empty(), "a bucket has a name");
    require(
        number == ordinal || number == kest::kUnrecognisedNumber || (number >= 0 && number <= 2),
        "the number is a row's, or the ordinal");
}

void checkReferenceName(int scheme, const FileSpecifier& file) {
    Pyxis::StringBuffer name;
    kest::getReferenceName(scheme, file, name);
    require(isScheme(scheme) == (name.numDataBytes() != 0), "the schemes have reference names");
    if (isScheme(scheme)) {
        const std::u16string fileName = kest::fileNameOf(file).name;
        const std::u16string reference = nameText(name);
        require(kest::equalIgnoringCase(reference, fileName.substr(0, reference.size())),
                "the reference name begins the file name");
        require(reference.empty() == fileName.empty(), "a cut leaves something");
    }
}

void checkFileName(const FileSpecifier& file) {
    const auto [name, extension] = kest::fileNameOf(file);
    require(name.size() <= kest::platform::kMaxNamePart &&
                extension.size() <= kest::platform::kMaxNamePart,
            "parts of a name are cut");
    require((name + extension).find(u'/') == name.npos, "no part holds a directory");
    require(extension.find(u'.') == (extension.empty() ? extension.npos : 0),
            "the extension begins with its only dot");

    FileSpecifier metadata;
    kest::getMetadataTextFile(file, metadata);
    const bool isPo = kest::isPoProductName(file);
    require(!isPo || !metadata.isEmpty(), "a product has a metadata text file");
    if (!metadata.isEmpty()) {
        const std::u16string text = nameText(metadata.string());
        require(kest::equalIgnoringCase(text.substr(0, 3), u"po_") && text.find(u'/') == text.npos,
                "a name beside the file");
    }
    require(!isPo || !kest::isLandsat7Name(file), "no name is of both products");

    const std::unique_ptr<char[]> list = kest::getQuickBirdBandList(file);
    require(list == nullptr || std::string_view(list.get()).size() == 4, "a list of four places");
}

/// The scheme follows from the kinds and trailing numbers of the components.
void checkScheme(const FileSpecifier& spec) {
    const kest::ComponentList components(spec);
    const std::vector<kest::ComponentKind> kinds = kest::classifyComponents(components);
    const int scheme = kest::getNamingScheme(spec);
    require(kinds.empty() == (scheme == kest::SchemeNone), "only an empty list has no scheme");
    bool agree = true;
    bool differ = true;
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        require(isScheme(kinds[i].kind) && kinds[i].kind != kest::SchemeNumbered, "a kind");
        agree = agree && kinds[i].kind == kinds[0].kind && kinds[i].kind != kest::SchemeGeneric;
        for (std::size_t j = 0; j < i; ++j) {
            differ = differ && kinds[i].trailingBandNumber != kinds[j].trailingBandNumber;
        }
    }
    require(kinds.empty() || scheme == (agree    ? kinds[0].kind
                                        : differ ? kest::SchemeNumbered
                                                 : kest::SchemeGeneric),
            "the scheme of the kinds");
}

/// Where printf accepts a pattern, its text is the same.
void checkPattern(fuzz::Input& input) {
    const std::string_view around = input.bytes();
    const int value = input.integer();
    kest::formatInteger(std::u16string(around.begin(), around.end()), value);

    std::string pattern = "%";
    for (std::size_t flags = input.below(5); flags > 0; --flags) {
        pattern += "-+ 0"[input.below(4)];
    }
    if (input.flag()) {
        pattern += std::to_string(1 + input.below(255));
    }
    pattern += "diu"[input.below(3)];
    char printed[300];
    const int length = std::snprintf(printed, sizeof printed, pattern.c_str(), value);
    const std::string_view expected(printed, static_cast<std::size_t>(length));
    require(kest::formatInteger(std::u16string(pattern.begin(), pattern.end()), value) ==
                std::u16string(expected.begin(), expected.end()),
            "a pattern is filled as printf does");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    fuzz::loadTexts();
    fuzz::Host host(input);
    std::vector<FileSpecifier> files;
    for (const std::string_view line : input.lines(12)) {
        files.emplace_back(fuzz::bufferFrom(line, input), FileSpecifier::Type::PlainFile);
        host.add(Pyxis::toUtf8(files.back().string()));
    }
    kest::ComponentListBuilder list;
    for (const FileSpecifier& file : files) {
        list.append(file, 0);
        checkFileName(file);
    }
    checkScheme(list.specifier());
    if (input.rarely()) {
        host.letCallsFail();
    }
    const int frame = input.rarely() ? input.integer() : static_cast<int>(input.below(5));
    int ordinal = 0;
    for (const FileSpecifier& file : files) {
        ++ordinal;
        for (int scheme = -1; scheme <= 9; ++scheme) {
            checkBand(scheme, ordinal, file, frame);
            checkBucket(scheme, ordinal, file, frame);
            checkReferenceName(scheme, file);
        }
    }
    checkPattern(input);
    return 0;
}
