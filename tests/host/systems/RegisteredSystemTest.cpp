#include <gtest/gtest.h>
#include <ogr_spatialref.h>
#include <proj.h>

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "host/systems/ProjectedSystem.h"

namespace {

/// The codes of all projected systems in PROJ's database, those in other units and deprecated ones
/// among them.
std::vector<int> projectedSystems() {
    PROJ_STRING_LIST list = proj_get_codes_from_database(nullptr, "EPSG", PJ_TYPE_PROJECTED_CRS, 1);
    std::vector<int> codes;
    for (PROJ_STRING_LIST code = list; code != nullptr && *code != nullptr; ++code) {
        codes.push_back(std::atoi(*code));
    }
    proj_string_list_destroy(list);
    return codes;
}

/// GDAL's code and text; 0 and none for a system that is not in metres.
std::pair<int, std::string> systemOfGdal(int code) {
    OGRSpatialReference system;
    if (system.importFromEPSG(code) != OGRERR_NONE || system.GetLinearUnits() != 1.0) {
        return {0, ""};
    }
    const char* const options[] = {"FORMAT=WKT2_2018", "MULTILINE=NO", nullptr};
    char* text = nullptr;
    system.exportToWkt(&text, options);
    std::pair<int, std::string> found(std::atoi(system.GetAuthorityCode(nullptr)), text);
    CPLFree(text);
    return found;
}

TEST(RegisteredSystem, IsGdalsToTheByte) {
    const std::vector<int> codes = projectedSystems();
    ASSERT_GT(codes.size(), 1000);
    int inMetres = 0;
    for (const int each : codes) {
        const auto [code, text] = systemOfGdal(each);
        std::string own;
        ASSERT_EQ(pyxisProjectedSystem(each, own), code) << each;
        ASSERT_EQ(own, text) << each;
        inMetres += code != 0 ? 1 : 0;
    }
    EXPECT_GT(inMetres, 1000);
    std::string own;
    for (const int other : {0, -1, 4326, 4979, 999999, 7415}) {  // geographic, none, compound
        EXPECT_EQ(pyxisProjectedSystem(other, own), 0) << other;
    }
}

}  // namespace
