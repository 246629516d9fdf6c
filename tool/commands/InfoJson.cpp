#include "tool/commands/InfoJson.h"

#include "tool/commands/PlaceJson.h"
#include "tool/scene/Words.h"

namespace kestms {
namespace {

Json bucketJson(const Bucket& bucket) {
    return {{"index", bucket.index},
            {"number", bucket.number},
            {"name", bucket.name},
            {"bandCount", bucket.bandCount},
            {"pixelSize", {bucket.pixelWidth, bucket.pixelHeight}}};
}

}  // namespace

Json bandJson(const Band& band) {
    Json json = {{"frame", band.frame},
                 {"number", band.number},
                 {"name", band.name},
                 {"type", bandTypeWord(band.type)},
                 {"displayChannel", channelWord(band.assignment)},
                 {"commonName", textOrNull(band.commonName)},
                 {"bucket", band.bucket},
                 {"indexInBucket", band.indexInBucket},
                 {"file", band.componentPath},
                 {"fileFrame", band.componentFrame},
                 {"size", {band.width, band.height}},
                 {"bitsPerPixel", band.bits},
                 {"pixelModel", pixelModelWord(band.model)},
                 {"sampleFormat", sampleFormatWord(band.format)},
                 {"sampleType", textOrNull(sampleTypeWord(band.format, band.bits))},
                 {"noData", band.noData ? numberOrWord(*band.noData) : Json(nullptr)}};
    if (band.georeference) {
        const Georeference& geo = *band.georeference;
        json["pixelSize"] = {geo.pixelWidth, geo.pixelHeight};
        json["rotation"] = geo.rotation;
        json["coordinateSystem"] = systemJson(geo.epsg, *geo.coordinateSystem);
        json["corners"] = cornersJson(geo);
    }
    return json;
}

Json setJson(const OpenedSet& set) {
    Json buckets = Json::array();
    for (const Bucket& bucket : set.buckets()) {
        buckets.push_back(bucketJson(bucket));
    }
    const SetDescription& shared = set.description();
    const Json metadata = shared.metadataFile.empty() ? Json(nullptr)
                                                      : Json{{"file", shared.metadataFile},
                                                             {"readable", shared.metadataIsValid}};
    const auto [width, height] = set.finestSize();
    Json json = documentOf("kestms info", 1);
    json["referenceName"] = shared.referenceName;
    json["namingScheme"] = {{"number", shared.scheme}, {"name", schemeWord(shared.scheme)}};
    json["size"] = {width, height};
    json["files"] = set.files();
    json["metadataTextFile"] = metadata;
    json["buckets"] = std::move(buckets);
    return json;
}

}  // namespace kestms
