#pragma once

#include <cpl_conv.h>

#include <array>
#include <string>
#include <utility>

#include "host/gdal/ErrorCapture.h"
#include "host/gdal/PrivateFiles.h"
#include "tool/terminal/Failure.h"

namespace kestms {

/// Keeps GDAL, on this thread, to the files that it is told to open and write: it writes masks
/// inside them and nothing beside them. Components are opened by names with nothing beside
/// them (`Pyxis::PrivateFiles`). What GDAL would print is kept from the terminal: it may
/// quote the files.
class GdalSession {
  public:
    GdalSession() {
        for (const auto& [key, value] : kOptions) {
            CPLSetThreadLocalConfigOption(key, value);
        }
    }
    GdalSession(const GdalSession&) = delete;
    GdalSession& operator=(const GdalSession&) = delete;
    ~GdalSession() {
        for (const auto& [key, value] : kOptions) {
            CPLSetThreadLocalConfigOption(key, nullptr);
        }
    }

    /// Throws a Failure with ExitCode::CannotRead that names a component and says what GDAL has
    /// said last.
    [[noreturn]] void failToRead(const std::string& component) const {
        const std::string reason = Pyxis::PrivateFiles::withoutNames(silent_.message());
        throw Failure(ExitCode::CannotRead, component,
                      "its pixels cannot be read" + (reason.empty() ? "" : ": " + reason));
    }

  private:
    static constexpr std::array<std::pair<const char*, const char*>, 3> kOptions = {{
        {"GDAL_PAM_ENABLED", "NO"},
        {"GDAL_DISABLE_READDIR_ON_OPEN", "YES"},
        {"GDAL_TIFF_INTERNAL_MASK", "YES"},
    }};

    Pyxis::ErrorCapture silent_;
};

}  // namespace kestms
