#pragma once

#include <string>

namespace kestms::samples {

/// Pixels along each side of a scene, in the bands that are neither fine nor coarse.
inline constexpr int kUsualPixels = 256;

/// Writes one directory a naming scheme below `directory`, each with a small scene, a set.xml that
/// lists it, and a README.txt beside them; all of that or nothing. `pixels` stands in for
/// kUsualPixels. Throws a Failure with ExitCode::Usage for a file that is there already unless
/// `overwrite` is set, with ExitCode::CannotWrite, and with ExitCode::Interrupted.
void writeSamples(const std::string& directory, int pixels, bool overwrite);

}  // namespace kestms::samples
