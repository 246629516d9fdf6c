#pragma once

#include <string>

namespace kestms::samples {

/// Pixels along each side of a scene, in the bands that are neither fine nor coarse.
inline constexpr int kUsualPixels = 256;

/// Writes one directory a naming scheme below `directory`, each with a small scene, a set.xml that
/// lists it, and a README.txt beside them. `pixels` stands in for kUsualPixels. Throws a Failure
/// with ExitCode::CannotWrite, and one with ExitCode::Interrupted.
void writeSamples(const std::string& directory, int pixels = kUsualPixels);

}  // namespace kestms::samples
