#include "tool/scene/Explanation.h"

#include <algorithm>
#include <map>

#include "bands/NamingScheme.h"
#include "sets/ComponentList.h"
#include "tool/scene/Words.h"

namespace kestms {
namespace {

std::string kindText(int kind) {
    return kind == kest::SchemeGeneric ? "no naming convention" : std::string(schemeMeaning(kind));
}

std::string ruleOf(int scheme) {
    switch (scheme) {
        case kest::SchemeNone:
            return "the set has no components";
        case kest::SchemeGeneric:
            return "the files share no naming convention, and their names do not end in different "
                   "two-digit numbers";
        case kest::SchemeNumbered:
            return "the files share no naming convention, but no two names end in the same band "
                   "number";
        default:
            return "every component shows it: " + std::string(schemeMeaning(scheme));
    }
}

/// The file as the user would name it.
std::string label(const Component& component) {
    return component.frame == 0 ? component.path
                                : component.path + "#" + std::to_string(component.frame);
}

/// Why the components do not make a product scheme; empty when they agree on none.
std::string disagreement(const std::vector<ComponentScheme>& components) {
    const ComponentScheme& first = components.front();
    const auto other =
        std::find_if(components.begin(), components.end(),
                     [&first](const ComponentScheme& each) { return each.kind != first.kind; });
    if (other == components.end()) {
        return {};
    }
    return label(other->component) + " shows " + kindText(other->kind) + ", " +
           label(first.component) + " shows " + kindText(first.kind);
}

/// Which two components share a trailing band number; empty when none do.
std::string repetition(const std::vector<ComponentScheme>& components) {
    std::map<int, const ComponentScheme*> seen;
    for (const ComponentScheme& each : components) {
        const auto [earlier, isNew] = seen.try_emplace(each.trailingBandNumber, &each);
        if (!isNew) {
            return label(earlier->second->component) + " and " + label(each.component) +
                   (each.trailingBandNumber < 0
                        ? " both end in no band number"
                        : " share the band number " + std::to_string(each.trailingBandNumber));
        }
    }
    return {};
}

}  // namespace

Explanation explainScheme(const Pyxis::FileSpecifier& set) {
    const std::vector<kest::ComponentKind> kinds =
        kest::classifyComponents(kest::ComponentList(set));
    const std::vector<Component> components = componentsOf(set);
    Explanation explanation;
    explanation.scheme = kest::namingSchemeOf(kinds);
    explanation.rule = ruleOf(explanation.scheme);
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        explanation.components.push_back(
            {components[i], kinds[i].kind, kinds[i].trailingBandNumber});
    }
    const bool fellBack =
        explanation.scheme == kest::SchemeGeneric || explanation.scheme == kest::SchemeNumbered;
    if (fellBack) {
        explanation.obstacles.push_back(disagreement(explanation.components));
    }
    if (explanation.scheme == kest::SchemeGeneric) {
        explanation.obstacles.push_back(repetition(explanation.components));
    }
    std::erase(explanation.obstacles, std::string());
    return explanation;
}

}  // namespace kestms
