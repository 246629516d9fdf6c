#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "bands/catalogue/Product.h"

namespace kest {

/// Largest document, in bytes.
inline constexpr std::size_t kMaxCatalogueDocument = std::size_t{1} << 20U;

/// Reads a catalogue document (docs/catalogue.md) and adds its products. Returns why it cannot be
/// used, in one sentence without a full stop that follows the document's name; empty on success.
/// `bandCount` counts the bands of all products, which share a limit.
std::string readCatalogue(std::string_view document,
                          std::vector<std::shared_ptr<const Product>>& products,
                          std::size_t& bandCount);

}  // namespace kest
