#pragma once

#include <string>

namespace kestms::samples {

/// Writes one directory a naming scheme below `directory`, each with a small scene, a set.xml that
/// lists it, and a README.txt beside them. Throws a Failure with ExitCode::CannotWrite.
void writeSamples(const std::string& directory);

}  // namespace kestms::samples
