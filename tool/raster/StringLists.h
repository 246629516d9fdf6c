#pragma once

#include <string>
#include <vector>

namespace kestms {

/// The texts of one of GDAL's lists, which may be null.
inline std::vector<std::string> listItems(const char* const* list) {
    std::vector<std::string> items;
    for (; list != nullptr && *list != nullptr; ++list) {
        items.emplace_back(*list);
    }
    return items;
}

}  // namespace kestms
