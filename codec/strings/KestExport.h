#pragma once

// Marks what the plug-in module exports; everything else is hidden.

#if defined(KEST_STATIC)
#define KEST_API
#elif defined(_WIN32)
#if defined(KEST_BUILDING)
#define KEST_API __declspec(dllexport)
#else
#define KEST_API __declspec(dllimport)
#endif
#else
#define KEST_API __attribute__((visibility("default")))
#endif
