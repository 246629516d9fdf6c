#include "gdal/CommonLevels.h"

#include <algorithm>

#include "pyxis/NoThrow.h"

namespace kestgdal {
namespace {

std::vector<Pyxis::Size> sizesOf(PixelSource& samples) {
    return Pyxis::answerOr(std::vector<Pyxis::Size>(), [&] {
        std::vector<Pyxis::Size> sizes;
        for (int level = 1; level <= samples.numLevels(); ++level) {
            sizes.push_back(samples.levelSize(level));
        }
        return sizes;
    });
}

}  // namespace

const std::vector<Pyxis::Size>& CommonLevels::sizes() {
    if (!sizes_) {
        for (const std::weak_ptr<PixelSource>& each : samples_) {
            const std::shared_ptr<PixelSource> samples = each.lock();
            const auto own = samples ? sizesOf(*samples) : std::vector<Pyxis::Size>();
            if (!sizes_) {
                sizes_ = own;
            }
            const auto same = [](const Pyxis::Size& a, const Pyxis::Size& b) {
                return a.width == b.width && a.height == b.height;
            };
            sizes_->erase(
                std::mismatch(sizes_->begin(), sizes_->end(), own.begin(), own.end(), same).first,
                sizes_->end());
        }
        if (!sizes_) {
            sizes_.emplace();
        }
    }
    return *sizes_;
}

}  // namespace kestgdal
