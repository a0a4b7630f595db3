#ifndef VORNIK_EXPORT_H
#define VORNIK_EXPORT_H

// VRK_API marks what the shared library exports. Programs that link the engine's objects into themselves
// define VORNIK_STATIC.
#if defined(_WIN32)
#if defined(VORNIK_BUILDING)
#define VRK_API __declspec(dllexport)
#elif defined(VORNIK_STATIC)
#define VRK_API
#else
#define VRK_API __declspec(dllimport)
#endif
#else
/// Marks what the shared library exports.
#define VRK_API __attribute__((visibility("default")))
#endif

#endif
