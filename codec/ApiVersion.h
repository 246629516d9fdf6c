#pragma once

namespace kest {

/// The version of the host interfaces that the plug-in was built for (compatibility.md, 26).
inline constexpr char kApiMajorVersion[] = "6";
inline constexpr char kApiMinorVersion[] = "0";

}  // namespace kest
