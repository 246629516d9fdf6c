#pragma once

namespace kest {

/// The version of the host interfaces that the plug-in was built for, kept as the decimal text
/// that releases have always carried and converted whenever it is asked for.
inline constexpr char kApiMajorVersion[] = "6";
inline constexpr char kApiMinorVersion[] = "0";

}  // namespace kest
