#pragma once

/// Visibility of the host's own classes. The library is compiled with hidden
/// visibility; host classes must stay visible so that their type information
/// is shared and dynamic casts work across the host's and the library's binaries.
#if defined(_WIN32)
#if defined(BRENNVIK_HOST_BUILDING)
#define BRENNVIK_HOST_EXPORT __declspec(dllexport)
#else
#define BRENNVIK_HOST_EXPORT __declspec(dllimport)
#endif
#else
#define BRENNVIK_HOST_EXPORT __attribute__((visibility("default")))
#endif
