#pragma once

#include <utility>

namespace kest {

/// What `ask` gives, or `otherwise` when it throws: nothing may be thrown into the host.
template <typename Answer, typename Ask>
Answer answerOr(Answer otherwise, Ask&& ask) noexcept {
    try {
        return std::forward<Ask>(ask)();
    } catch (...) {
        return otherwise;
    }
}

/// Whether `act` came to its end without throwing.
template <typename Act>
bool attempt(Act&& act) noexcept {
    return answerOr(false, [&act] {
        act();
        return true;
    });
}

/// A new object owned by the caller, or null when it cannot be made.
template <typename Object, typename Make>
Object* makeOrNull(Make&& make) noexcept {
    return answerOr<Object*>(nullptr, std::forward<Make>(make));
}

}  // namespace kest
