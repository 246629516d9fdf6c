#include "host/file/PathPolicy.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <utility>

namespace Pyxis {
namespace {

constexpr std::string_view kVirtual = "/vsi";
constexpr std::array<std::string_view, 3> kArchives = {"/vsizip/", "/vsitar/", "/vsigzip/"};
/// Prefixes of GDAL's names; a slash, a question mark or "_streaming" follows.
constexpr std::array<std::string_view, 9> kRemotes = {"/vsicurl",  "/vsis3",   "/vsigs",
                                                      "/vsiaz",    "/vsiadls", "/vsioss",
                                                      "/vsiswift", "/vsihdfs", "/vsiwebhdfs"};

bool startsAny(std::string_view path, const auto& beginnings) {
    return std::any_of(beginnings.begin(), beginnings.end(),
                       [path](std::string_view one) { return path.starts_with(one); });
}

/// The path within an archive's name: there GDAL also reads "vsis3/..." as "/vsis3/...".
std::string withinArchive(std::string_view path) {
    path.remove_prefix(path.find('/', 1));
    path.remove_prefix(std::min(path.find_first_not_of("/{"), path.size()));
    return "/" + std::string(path);
}

struct Shared {
    std::mutex mutex;
    PathPolicy policy;
};

/// Never destroyed: threads that read ahead may use it until the process ends.
Shared& shared() {
    static auto* const shared = new Shared;
    return *shared;
}

thread_local bool refusesVirtualRasters = false;

}  // namespace

PathKind kindOf(std::string_view path) {
    if (!path.starts_with(kVirtual)) {
        return PathKind::Plain;
    }
    if (startsAny(path, kRemotes)) {
        return PathKind::Remote;
    }
    if (!startsAny(path, kArchives)) {
        return PathKind::Other;
    }
    const std::string archive = withinArchive(path);
    return !archive.starts_with(kVirtual) ? PathKind::InArchive
           : startsAny(archive, kRemotes) ? PathKind::Remote
                                          : PathKind::Other;
}

void setPathPolicy(PathPolicy policy) {
    const std::lock_guard<std::mutex> lock(shared().mutex);
    shared().policy = std::move(policy);
}

PathPolicy pathPolicy() {
    const std::lock_guard<std::mutex> lock(shared().mutex);
    return shared().policy;
}

bool allowsVirtualRasters() {
    return !refusesVirtualRasters && pathPolicy().virtualRasters;
}

WithoutVirtualRasters::WithoutVirtualRasters(bool refuse) : before_(refusesVirtualRasters) {
    refusesVirtualRasters = before_ || refuse;
}

WithoutVirtualRasters::~WithoutVirtualRasters() {
    refusesVirtualRasters = before_;
}

std::string_view whyNotAllowed(const std::string& path) {
    const std::lock_guard<std::mutex> lock(shared().mutex);
    const PathPolicy& policy = shared().policy;
    switch (kindOf(path)) {
        case PathKind::Plain:
            return {};
        case PathKind::InArchive:
            return policy.archives ? "" : "in an archive";
        case PathKind::Remote:
            return policy.remote || policy.named.count(path) > 0 ? "" : kRemoteNotAllowed;
        case PathKind::Other:
            break;
    }
    return "not a plain file";
}

}  // namespace Pyxis
