#pragma once

#include <exception>
#include <memory>
#include <utility>

namespace Pyxis {

/// The action's answer, or `fallback` when it throws: callers of the codecs know results only.
template <typename Answer, typename Action>
Answer guarded(Answer fallback, Action&& action) noexcept {
    try {
        return std::forward<Action>(action)();
    } catch (const std::exception&) {
        return fallback;
    }
}

/// A new object for the caller to own; null when memory fails.
template <typename T, typename... Arguments>
T* newOrNull(Arguments&&... arguments) noexcept {
    return guarded<T*>(nullptr, [&] {
        return std::make_unique<T>(std::forward<Arguments>(arguments)...).release();
    });
}

}  // namespace Pyxis
