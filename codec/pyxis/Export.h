#pragma once

// How symbols of the host library cross a module boundary, and in which order a compiler lays out
// overloads of one name.

#if defined(_WIN32)
#if defined(PYXIS_BUILDING)
#define PYXIS_API __declspec(dllexport)
#else
#define PYXIS_API __declspec(dllimport)
#endif
#else
#define PYXIS_API __attribute__((visibility("default")))
#endif

/// Declares two virtual overloads of one name so that `first` takes the lower slot.
/// Microsoft's compilers give overloads of one name their slots in reverse order of declaration,
/// others in the order of declaration.
#if defined(_MSC_VER)
#define PYXIS_OVERLOADS_IN_SLOT_ORDER(first, second) \
    second;                                          \
    first
#else
#define PYXIS_OVERLOADS_IN_SLOT_ORDER(first, second) \
    first;                                           \
    second
#endif
