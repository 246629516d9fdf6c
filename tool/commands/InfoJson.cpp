#include "tool/commands/InfoJson.h"

#include <string>

#include "tool/terminal/Words.h"

namespace kestms {
namespace {

Json bandJson(const BandView& band) {
    Json json = {{"frame", band.frame},
                 {"number", band.number},
                 {"name", band.name},
                 {"type", bandTypeWord(band.type)},
                 {"displayChannel", channelWord(band.assignment)},
                 {"commonName", textOrNull(commonName(band.type, band.number))},
                 {"bucket", band.bucket},
                 {"indexInBucket", band.indexInBucket},
                 {"file", band.componentPath},
                 {"fileFrame", band.componentFrame},
                 {"size", {band.width, band.height}},
                 {"bitsPerPixel", band.bits},
                 {"pixelModel", pixelModelWord(band.model)},
                 {"sampleFormat", sampleFormatWord(band.format)}};
    if (band.georeference) {
        const Georeference& geo = *band.georeference;
        json["pixelSize"] = {geo.pixelWidth, geo.pixelHeight};
        json["rotation"] = geo.rotation;
        json["coordinateSystem"] = systemJson(geo.epsg, geo.coordinateSystem);
        json["corners"] = cornersJson(geo);
    }
    return json;
}

Json bucketJson(const BucketView& bucket) {
    return {{"index", bucket.index},
            {"number", bucket.number},
            {"name", bucket.name},
            {"bandCount", bucket.bandCount},
            {"pixelSize", {bucket.pixelWidth, bucket.pixelHeight}}};
}

}  // namespace

Json setJson(const SetView& set) {
    Json buckets = Json::array();
    for (const BucketView& bucket : set.buckets) {
        buckets.push_back(bucketJson(bucket));
    }
    Json bands = Json::array();
    for (const BandView& band : set.bands) {
        bands.push_back(bandJson(band));
    }
    const Json metadata = set.metadataFile.empty()
                              ? Json(nullptr)
                              : Json{{"file", set.metadataFile}, {"readable", set.metadataIsValid}};
    const auto [width, height] = finestSize(set);
    return {{"referenceName", set.referenceName},
            {"namingScheme", {{"number", set.scheme}, {"name", schemeWord(set.scheme)}}},
            {"size", {width, height}},
            {"files", set.files},
            {"metadataTextFile", metadata},
            {"buckets", std::move(buckets)},
            {"bands", std::move(bands)}};
}

}  // namespace kestms
