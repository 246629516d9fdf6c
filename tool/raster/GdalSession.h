#pragma once

#include <string>

#include "host/gdal/ErrorCapture.h"
#include "host/gdal/PrivateFiles.h"
#include "host/gdal/ThreadOption.h"
#include "tool/terminal/Failure.h"

namespace kestms {

/// Keeps GDAL, on this thread, to the files that it is told to open and write: it writes masks
/// inside them and nothing beside them. Components are opened by names with nothing beside
/// them (`Pyxis::PrivateFiles`). What GDAL would print is kept from the terminal: it may
/// quote the files.
class GdalSession {
  public:
    /// Throws a Failure with ExitCode::CannotRead that names a component and says what GDAL has
    /// said last.
    [[noreturn]] void failToRead(const std::string& component) const {
        const std::string reason = Pyxis::PrivateFiles::withoutNames(silent_.message());
        throw Failure(ExitCode::CannotRead, component,
                      "its pixels cannot be read" + (reason.empty() ? "" : ": " + reason));
    }

  private:
    Pyxis::ThreadOption noAuxiliaryFiles_{"GDAL_PAM_ENABLED", "NO"};
    Pyxis::ThreadOption noListing_{"GDAL_DISABLE_READDIR_ON_OPEN", "YES"};
    Pyxis::ThreadOption masksInside_{"GDAL_TIFF_INTERNAL_MASK", "YES"};
    Pyxis::ErrorCapture silent_;
};

}  // namespace kestms
