/// Marks what the library exports. Everything else stays hidden. Programs that are made of the library's objects
/// themselves, as its tests are, define VODREL_STATIC.
#pragma once

#if defined _WIN32
#if defined VODREL_BUILDING
#define VODREL_API __declspec(dllexport)
#elif defined VODREL_STATIC
#define VODREL_API
#else
#define VODREL_API __declspec(dllimport)
#endif
#else
#define VODREL_API __attribute__((visibility("default")))
#endif
