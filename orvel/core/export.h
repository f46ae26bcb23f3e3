#pragma once

/// Marks what the shared library offers to a host; everything else stays hidden inside it.
#if defined(_WIN32)
#if defined(ORVEL_BUILDING)
#define ORVEL_EXPORT __declspec(dllexport)
#else
#define ORVEL_EXPORT __declspec(dllimport)
#endif
#else
#define ORVEL_EXPORT __attribute__((visibility("default")))
#endif
