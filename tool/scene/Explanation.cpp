#include "tool/scene/Explanation.h"

#include <algorithm>
#include <map>
#include <optional>

#include "bands/NamingScheme.h"
#include "bands/Scheme.h"
#include "bands/catalogue/ProductCatalogue.h"
#include "host/Text.h"
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

/// The file as FILE or FILE#FRAME.
std::string label(const Component& component) {
    return component.frame == 0 ? component.path
                                : component.path + "#" + std::to_string(component.frame);
}

/// Which two components differ in kind; empty when none do.
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

/// The first product that a file's name fits, and its scene there.
std::optional<kest::ProductFile> productFileOf(const kest::ProductCatalogue& catalogue,
                                               const ComponentScheme& each) {
    const auto files = catalogue.filesNamed(Pyxis::utf8ToWide(each.component.path));
    return files.empty() ? std::nullopt : std::optional(files.front());
}

std::string productText(const std::optional<kest::ProductFile>& file) {
    return file ? "looks like scene " + Pyxis::wideToUtf8(file->scene) + " of " +
                      Pyxis::wideToUtf8(file->product->name.in("en"))
                : "fits no known product";
}

/// Which two components are not of one scene of a product; empty when none matches a product.
std::string productDisagreement(const std::vector<ComponentScheme>& components) {
    const auto catalogue = kest::currentCatalogue();
    if (catalogue == nullptr || components.empty()) {
        return {};
    }
    const ComponentScheme& first = components.front();
    const auto firstFile = productFileOf(*catalogue, first);
    for (const ComponentScheme& each : components) {
        const auto file = productFileOf(*catalogue, each);
        const bool isSame = file && firstFile ? file->product == firstFile->product &&
                                                    file->sceneKey == firstFile->sceneKey
                                              : file.has_value() == firstFile.has_value();
        if (!isSame) {
            return label(each.component) + " " + productText(file) + ", " + label(first.component) +
                   " " + productText(firstFile);
        }
    }
    return {};
}

/// Why a recognised product does not name a band; empty when it does.
std::string missingName(int scheme, const Component& component) {
    const kest::Scheme* row = kest::schemeOf(scheme);
    const std::string why =
        row == nullptr || row->whyGeneric == nullptr
            ? std::string()
            : row->whyGeneric({Pyxis::fileSpecifier(component.path), component.frame});
    return why.empty() ? why : label(component) + " is not named by its product: " + why;
}

}  // namespace

Explanation explainScheme(Session& session, const Pyxis::FileSpecifier& set) {
    const kest::ComponentList list(set);
    const std::vector<kest::ComponentKind> kinds = kest::classifyComponents(list);
    const kest::SetNaming naming = kest::nameSet(list, &session.codec(), &session.finder());
    const std::vector<Component> components = componentsOf(set);
    Explanation explanation;
    explanation.scheme = naming.scheme;
    explanation.rule = naming.product ? "every file belongs to one scene of " +
                                            Pyxis::wideToUtf8(naming.product->name.in("en"))
                                      : ruleOf(explanation.scheme);
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        explanation.components.push_back({components[i],
                                          naming.product ? explanation.scheme : kinds[i].kind,
                                          kinds[i].trailingBandNumber});
    }
    const bool fellBack =
        explanation.scheme == kest::SchemeGeneric || explanation.scheme == kest::SchemeNumbered;
    if (fellBack) {
        explanation.obstacles.push_back(disagreement(explanation.components));
        explanation.obstacles.push_back(productDisagreement(explanation.components));
    }
    if (explanation.scheme == kest::SchemeGeneric) {
        explanation.obstacles.push_back(repetition(explanation.components));
    }
    for (const ComponentScheme& each : explanation.components) {
        explanation.obstacles.push_back(missingName(explanation.scheme, each.component));
    }
    std::erase(explanation.obstacles, std::string());
    return explanation;
}

}  // namespace kestms
