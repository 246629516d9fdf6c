#pragma once

#include <cpl_conv.h>

#include <optional>
#include <string>

namespace Pyxis {

/// Sets a GDAL configuration option for this thread, restored on destruction.
class ThreadOption {
  public:
    ThreadOption(const char* key, const char* value) : key_(key) {
        const char* before = CPLGetThreadLocalConfigOption(key, nullptr);
        if (before != nullptr) {
            before_ = before;
        }
        CPLSetThreadLocalConfigOption(key, value);
    }
    ThreadOption(const ThreadOption&) = delete;
    ThreadOption& operator=(const ThreadOption&) = delete;
    ~ThreadOption() { CPLSetThreadLocalConfigOption(key_, before_ ? before_->c_str() : nullptr); }

  private:
    const char* key_;
    std::optional<std::string> before_;
};

}  // namespace Pyxis
