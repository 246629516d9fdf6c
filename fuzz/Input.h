#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

namespace fuzz {

/// Aborts the run unless the condition holds.
inline void require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "Does not hold: %s\n", what);
        std::abort();
    }
}

/// An input is a text, then a record separator (0x1E), then the choices. This way seeds can be
/// written by hand: with a text alone every choice is the first one, the ordinary case.
class Input {
  public:
    Input(const std::uint8_t* data, std::size_t size)
        : text_(reinterpret_cast<const char*>(data), size) {
        if (const std::size_t end = text_.find('\x1E'); end != std::string_view::npos) {
            choices_ = text_.substr(end + 1);
            text_ = text_.substr(0, end);
        }
    }

    std::string_view text() const { return text_; }
    /// The lines of the text, at most `most`.
    std::vector<std::string_view> lines(std::size_t most) const {
        std::vector<std::string_view> lines;
        for (std::string_view rest = text_; !rest.empty() && lines.size() < most;) {
            const std::size_t length = std::min(rest.find('\n'), rest.size());
            lines.push_back(rest.substr(0, length));
            rest.remove_prefix(std::min(length + 1, rest.size()));
        }
        return lines;
    }

    bool hasChoices() const { return !choices_.empty(); }
    /// The next choice, 0 to `count` - 1.
    std::size_t below(std::size_t count) { return static_cast<std::uint8_t>(byte()) % count; }
    bool flag() { return below(2) != 0; }
    /// True for one choice in eight.
    bool rarely() { return below(8) == 7; }
    template <typename Value, std::size_t kCount>
    const Value& oneOf(const Value (&values)[kCount]) {
        return values[below(kCount)];
    }
    /// The next bytes, at most 255; the choice before them is their number.
    std::string_view bytes() {
        const std::string_view taken = choices_.substr(0, below(256));
        choices_.remove_prefix(taken.size());
        return taken;
    }
    int integer() {
        std::uint32_t value = 0;
        for (int i = 0; i < 4; ++i) {
            value = value << 8U | static_cast<std::uint8_t>(byte());
        }
        return static_cast<int>(value);
    }

  private:
    char byte() {
        if (choices_.empty()) {
            return '\0';
        }
        const char first = choices_.front();
        choices_.remove_prefix(1);
        return first;
    }

    std::string_view text_;
    std::string_view choices_;
};

}  // namespace fuzz
