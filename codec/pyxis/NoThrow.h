#pragma once

#include <utility>

// Nothing is thrown from one module into another: failures are results.

namespace Pyxis {

/// The result of `ask`, or `otherwise` when it throws.
template <typename Answer, typename Ask>
Answer answerOr(Answer otherwise, Ask&& ask) noexcept {
    try {
        return std::forward<Ask>(ask)();
    } catch (...) {
        return otherwise;
    }
}

/// Whether `act` returned without throwing.
template <typename Act>
bool attempt(Act&& act) noexcept {
    return answerOr(false, [&act] {
        act();
        return true;
    });
}

/// A new object owned by the caller, or null when `make` throws.
template <typename Object, typename Make>
Object* makeOrNull(Make&& make) noexcept {
    return answerOr<Object*>(nullptr, std::forward<Make>(make));
}

}  // namespace Pyxis
