#pragma once

#include <string>
#include <utility>
#include <variant>

namespace Pyxis {

/// Why a file is not read.
struct Refusal {
    enum class Kind {
        Unreadable,   ///< missing, not a regular file, or reading fails
        Exhausted,    ///< the process can open no more files
        OtherFormat,  ///< not of the requested format
        Damaged,      ///< of the format, but incomplete or wrong
        Unsafe,       ///< leads to other files, or claims more than it can hold
    };

    Kind kind = Kind::Damaged;
    std::string reason;  ///< for the user; does not name the file
};

inline Refusal unreadable(std::string reason) {
    return {Refusal::Kind::Unreadable, std::move(reason)};
}

/// A value, or the refusal in its place.
template <typename T>
class [[nodiscard]] Expected {
  public:
    Expected(T value) : content_(std::in_place_index<0>, std::move(value)) {}
    Expected(Refusal refusal) : content_(std::in_place_index<1>, std::move(refusal)) {}

    explicit operator bool() const { return content_.index() == 0; }
    T& operator*() { return std::get<0>(content_); }
    const T& operator*() const { return std::get<0>(content_); }
    T* operator->() { return &std::get<0>(content_); }
    const T* operator->() const { return &std::get<0>(content_); }
    /// Only if there is no value.
    const Refusal& refusal() const { return std::get<1>(content_); }

  private:
    std::variant<T, Refusal> content_;
};

}  // namespace Pyxis
