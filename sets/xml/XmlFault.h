#pragma once

#include <cstddef>
#include <string_view>

namespace kest::xml {

/// Receives every fault of a parse: its position, its message, and the value of its placeholder.
/// Nothing is recorded (compatibility.md, 1). Returns false, for the caller to return.
constexpr bool fault(std::size_t /*place*/, std::string_view /*message*/,
                     std::string_view /*argument*/ = {}) {
    return false;
}

}  // namespace kest::xml
