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
/// `codeCount` counts the codes of all products, for each of their file names; they share a limit.
std::string readCatalogue(std::string_view document,
                          std::vector<std::shared_ptr<const Product>>& products,
                          std::size_t& codeCount);

}  // namespace kest
