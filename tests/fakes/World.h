#pragma once

#include <functional>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "pyxis/ReadImageFile.h"

// What happens among the fakes: one World counts and records all calls.

namespace fakes {

/// How a host call fails, if it does: with its usual failure, with another one, or with an
/// exception.
struct Fault {
    enum Kind { None, Fail, FailOtherwise, Throw } kind;
    Fault(Kind how) : kind(how) {}                    // NOLINT: made to be converted
    Fault(bool fails) : kind(fails ? Fail : None) {}  // NOLINT: made to be converted
    operator Kind() const { return kind; }
};

/// What happened, in order, and how many host objects are alive.
struct World {
    World() = default;
    World(const World&) = delete;
    World& operator=(const World&) = delete;
    /// Closes the images that nobody deleted, as the host does.
    ~World() {
        while (!images.empty()) {
            delete images.back();
        }
    }

    std::vector<std::string> events;
    int misuse = 0;  ///< how often host objects were not returned in order
    std::vector<Pyxis::ReadImageFileInterface*> images;
    int alive = 0;
    /// Called at every host call that may fail, with its name; returns whether the call fails, as
    /// a bool or a Fault.
    std::function<Fault(std::string_view)> fail;
    /// Called at those that cannot report failure; returns whether the call throws.
    std::function<bool(std::string_view)> failing;

    Fault fails(std::string_view call) const {
        const Fault fault = fail ? fail(call) : Fault(Fault::None);
        if (fault == Fault::Throw) {
            throw 42;
        }
        return fault;
    }
    void mayThrow(std::string_view call) const {
        if (failing && failing(call)) {
            throw 42;
        }
    }
    /// Never throws: destructors report here too.
    void note(std::string_view event) {
        try {
            events.emplace_back(event);
        } catch (const std::bad_alloc&) {
            events.clear();
        }
    }
};

/// Part of a host object that tracks its lifetime, and whether it is destroyed before its parts.
class Lifetime {
  public:
    Lifetime(World& world, std::string_view ending,
             std::shared_ptr<int> whole = std::make_shared<int>(0))
        : world_(world), ending_(ending), whole_(std::move(whole)) {
        ++*whole_;
        ++world_.alive;
    }
    Lifetime(const Lifetime&) = delete;
    Lifetime& operator=(const Lifetime&) = delete;
    ~Lifetime() {
        --*whole_;
        world_.misuse += *parts_ != 0 ? 1 : 0;
        --world_.alive;
        world_.note(ending_);
    }
    const std::shared_ptr<int>& parts() const { return parts_; }

  private:
    World& world_;
    std::string_view ending_;
    std::shared_ptr<int> whole_;
    std::shared_ptr<int> parts_ = std::make_shared<int>(0);
};

}  // namespace fakes
