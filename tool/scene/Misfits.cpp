#include "tool/scene/Misfits.h"

#include <vector>

#include "tool/scene/Diagnosis.h"

namespace kestms {

Pyxis::FileSpecifier withoutMisfits(Context& context, const Pyxis::FileSpecifier& set) {
    if (!context.skipMisfits && context.layers.empty()) {
        return set;
    }
    std::vector<Component> fitting;
    for (const ComponentDiagnosis& each : diagnose(context.session(), set).components) {
        const std::string& path = each.component.path;
        const bool mayGo = context.skipMisfits || context.layers.count(path) > 0;
        if (each.verdict == Verdict::Accepted || !mayGo) {
            fitting.push_back(each.component);
        } else {
            context.warn(path, "left out: " + each.detail);
        }
    }
    return setOf(fitting);
}

bool isSetWithoutMisfits(Session& session, const Pyxis::FileSpecifier& set) {
    return diagnose(session, set).count(Verdict::Accepted) >= 2;
}

}  // namespace kestms
