#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

#include "codec/KestMultispectralCodec.h"
#include "pyxis/ComponentCodecs.h"
#include "pyxis/FindFileInterface.h"
#include "pyxis/FormatCodecApiVersionInterface.h"
#include "pyxis/FormatCodecGeoCorrelation.h"
#include "pyxis/FormatCodecPropertySetIterator.h"

namespace {

/// The slot that a call through the member pointer takes. g++ on either system and clang lay it
/// out alike: one more than the offset in the virtual table, whose destructor has two entries.
template <typename Member>
int slotOf(Member member) {
    std::uintptr_t word = 0;
    std::memcpy(&word, &member, sizeof word);
    const bool isVirtual = word % 2 == 1;
    return isVirtual ? static_cast<int>((word - 1) / sizeof(void*)) - 1 : -1;
}

struct Slot {
    const char* function;
    int actual;
    int expected;
};

// An overload's result and arguments come from the table, so its pointer names one function.
#define SLOT(type, function, slot) {#type "::" #function, slotOf(&type::function), slot},
#define OVERLOAD(type, function, result, arguments, slot) \
    {#type "::" #function #arguments, slotOf<result(type::*) arguments>(&type::function), slot},

const Slot kSlots[] = {
#include "Slots.inc"
};

TEST(SlotOrderTest, EveryInterfaceFunctionTakesItsSlot) {
    for (const Slot& slot : kSlots) {
        EXPECT_EQ(slot.actual, slot.expected) << slot.function;
    }
}

TEST(SlotOrderTest, TheCodecAddsNoVirtualFunction) {
    struct Next : KestMultispectralCodec {
        virtual void next() {}
    };
    EXPECT_EQ(slotOf(&Next::next), 21);
}

}  // namespace
