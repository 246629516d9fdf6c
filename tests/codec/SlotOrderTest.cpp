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

template <typename... Members>
void expectSlots(const char* what, int first, Members... members) {
    for (const int slot : {slotOf(members)...}) {
        EXPECT_EQ(slot, first++) << what;
    }
}

// An overload's result and arguments come from the table, so its pointer names one function.
#define SLOTS(type, first, ...) expectSlots(#type, first, FUNCTIONS(type, __VA_ARGS__));
#define OVERLOAD(type, function, result, arguments, slot) \
    expectSlots(#type "::" #function #arguments, slot,    \
                static_cast<result(type::*) arguments>(&type::function));

TEST(SlotOrderTest, EveryInterfaceFunctionTakesItsSlot){
#include "tests/codec/Slots.inc"
}

TEST(SlotOrderTest, TheCodecAddsNoVirtualFunction) {
    struct Next : KestMultispectralCodec {
        virtual void next() {}
    };
    EXPECT_EQ(slotOf(&Next::next), 21);
}

}  // namespace
