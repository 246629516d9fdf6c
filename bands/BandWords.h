#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "bands/BandTypes.h"

// Stable words for band types, channels and roles, in machine-readable output and in catalogues.

namespace kest {

template <typename Value>
struct WordRow {
    Value value;
    std::string_view word;
};

inline constexpr std::array kBandTypeWords{
    WordRow<BandType>{BandType::Unknown, "unknown"},
    WordRow<BandType>{BandType::Blue, "blue"},
    WordRow<BandType>{BandType::Green, "green"},
    WordRow<BandType>{BandType::Red, "red"},
    WordRow<BandType>{BandType::NearInfrared, "near-infrared"},
    WordRow<BandType>{BandType::MidInfrared, "mid-infrared"},
    WordRow<BandType>{BandType::ThermalLowGain, "thermal-low-gain"},
    WordRow<BandType>{BandType::ThermalHighGain, "thermal-high-gain"},
    WordRow<BandType>{BandType::Panchromatic, "panchromatic"},
};

inline constexpr std::array kChannelWords{
    WordRow<BandAssignment>{BandAssignment::NotAssigned, "none"},
    WordRow<BandAssignment>{BandAssignment::RedChannel, "red"},
    WordRow<BandAssignment>{BandAssignment::GreenChannel, "green"},
    WordRow<BandAssignment>{BandAssignment::BlueChannel, "blue"},
};

inline constexpr std::array kRoleWords{
    WordRow<BandRole>{BandRole::Band, "band"},
    WordRow<BandRole>{BandRole::Quality, "quality"},
    WordRow<BandRole>{BandRole::Mask, "mask"},
    WordRow<BandRole>{BandRole::Angle, "angle"},
    WordRow<BandRole>{BandRole::Ancillary, "ancillary"},
    WordRow<BandRole>{BandRole::Preview, "preview"},
    WordRow<BandRole>{BandRole::Metadata, "metadata"},
};

/// The word for a value; "unknown" for a value that is not in the table.
template <typename Table, typename Value>
constexpr std::string_view wordOf(const Table& table, Value value) {
    const auto row = std::find_if(table.begin(), table.end(),
                                  [value](const auto& each) { return each.value == value; });
    return row == table.end() ? "unknown" : row->word;
}

/// The value of a word; nothing for another word.
template <typename Table>
constexpr auto valueOf(const Table& table, std::string_view word) {
    const auto row = std::find_if(table.begin(), table.end(),
                                  [word](const auto& each) { return each.word == word; });
    return row == table.end() ? std::nullopt : std::optional(row->value);
}

}  // namespace kest
