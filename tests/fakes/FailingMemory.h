#pragma once

#include <cstdlib>
#include <limits>
#include <new>

// Replaces the program's allocation functions by ones that can be made to fail. For one source file
// of a test program.

namespace fakes {

/// Which allocation fails, counted from 0; every later one too when `sticky`.
struct MemoryFault {
    static constexpr int kNever = std::numeric_limits<int>::max();
    int failing = kNever;
    int requests = 0;
    bool sticky = false;
    /// Whether the current allocation neither fails nor counts; null: all count.
    bool (*passes)() = nullptr;

    bool failsNow() {
        if (failing == kNever || (passes != nullptr && passes())) {
            return false;
        }
        const int request = requests++;
        return request == failing || (sticky && request > failing);
    }
};

inline thread_local MemoryFault memoryFault;
/// Allocated by this thread, less what it freed.
inline thread_local long blocksInUse = 0;

}  // namespace fakes

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    void* memory = fakes::memoryFault.failsNow() ? nullptr : std::malloc(size == 0 ? 1 : size);
    fakes::blocksInUse += memory != nullptr ? 1 : 0;
    return memory;
}
void* operator new(std::size_t size) {
    if (void* memory = operator new(size, std::nothrow)) {
        return memory;
    }
    throw std::bad_alloc();
}
// Inlined, they look to a compiler as if they did not match `operator new`.
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    fakes::blocksInUse -= memory != nullptr ? 1 : 0;
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}
