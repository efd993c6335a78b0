/// @file
/// Linkage and compile-time helpers of the public headers. Valid in C11 and in C++.
#pragma once

#if defined(_WIN32)
#if defined(VELMORCORE_BUILDING)
#define VELMORCORE_API __declspec(dllexport)
#else
#define VELMORCORE_API __declspec(dllimport)
#endif
#else
/// Marks what the library exports.
#define VELMORCORE_API __attribute__((visibility("default")))
#endif

/// What an exported class names without exporting it.
#if defined(_WIN32)
#define VELMORCORE_HIDDEN
#else
#define VELMORCORE_HIDDEN __attribute__((visibility("hidden")))
#endif

/// Lets the compiler check printf-style arguments: positions count from 1.
#if defined(__GNUC__)
#define VELMORCORE_PRINTF(formatPosition, firstArgument) \
    __attribute__((format(printf, formatPosition, firstArgument)))
#else
#define VELMORCORE_PRINTF(formatPosition, firstArgument)
#endif
