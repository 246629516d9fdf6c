#include "host/gdal/AuxiliaryPlace.h"

#include <cpl_conv.h>
#include <cpl_minixml.h>
#include <cpl_string.h>

#include <cstddef>

#include "host/gdal/ErrorCapture.h"

namespace Pyxis {

AuxiliaryPlace auxiliaryPlaceIn(const std::string& text) {
    if (text.empty()) {
        return {};
    }
    const ErrorCapture silent;
    const CPLXMLTreeCloser document(CPLParseXMLString(text.c_str()));
    CPLXMLNode* const root = document.get();  // GDAL accepts any name
    if (root == nullptr) {
        return {};
    }
    AuxiliaryPlace place;
    place.system = CPLGetXMLValue(root, "SRS", "");
    const CPLStringList numbers(
        CSLTokenizeString2(CPLGetXMLValue(root, "GeoTransform", ""), ",", 0));
    GeoTransform transform{};
    if (numbers.size() == static_cast<int>(transform.size())) {
        for (std::size_t i = 0; i < transform.size(); ++i) {
            transform[i] = CPLAtof(numbers[static_cast<int>(i)]);
        }
        place.transform = transform;
    }
    return place;
}

}  // namespace Pyxis
