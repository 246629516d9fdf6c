#include "host/systems/ProjectedSystem.h"

#include <proj.h>

#include <cstdlib>
#include <memory>

namespace {

struct Release {
    void operator()(PJ_CONTEXT* context) const { proj_context_destroy(context); }
    void operator()(PJ* object) const { proj_destroy(object); }
    void operator()(PJ_OBJ_LIST* list) const { proj_list_destroy(list); }
};
using Context = std::unique_ptr<PJ_CONTEXT, Release>;
using Object = std::unique_ptr<PJ, Release>;

/// As GDAL does: the successor of a deprecated system if there is exactly one.
Object systemInUse(PJ_CONTEXT* context, int code) {
    Object system(proj_create_from_database(context, "EPSG", std::to_string(code).c_str(),
                                            PJ_CATEGORY_CRS, 1, nullptr));
    if (system && proj_is_deprecated(system.get()) != 0) {
        const std::unique_ptr<PJ_OBJ_LIST, Release> successors(
            proj_get_non_deprecated(context, system.get()));
        if (successors && proj_list_get_count(successors.get()) == 1) {
            if (Object successor{proj_list_get(context, successors.get(), 0)}) {
                return successor;
            }
        }
    }
    return system;
}

bool isProjectedInMetres(PJ_CONTEXT* context, const PJ* system) {
    if (proj_get_type(system) != PJ_TYPE_PROJECTED_CRS) {
        return false;
    }
    const Object axes(proj_crs_get_coordinate_system(context, system));
    double metres = 0;
    return axes &&
           proj_cs_get_axis_info(context, axes.get(), 0, nullptr, nullptr, nullptr, &metres,
                                 nullptr, nullptr, nullptr) != 0 &&
           metres == 1.0;
}

}  // namespace

int pyxisProjectedSystem(int code, std::string& wkt) {
    const Context context(proj_context_create());
    proj_log_level(context.get(), PJ_LOG_NONE);
    const Object system = systemInUse(context.get(), code);
    if (!system || !isProjectedInMetres(context.get(), system.get())) {
        return 0;
    }
    const char* const options[] = {"MULTILINE=NO", nullptr};
    const char* text = proj_as_wkt(context.get(), system.get(), PJ_WKT2_2018, options);
    const char* registered = proj_get_id_code(system.get(), 0);
    if (text == nullptr || registered == nullptr) {
        return 0;
    }
    wkt = text;
    return std::atoi(registered);
}
