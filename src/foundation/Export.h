/// Marks what the library exports. Everything else stays hidden.
#pragma once

#if defined _WIN32
#if defined VODREL_BUILDING
#define VODREL_API __declspec(dllexport)
#else
#define VODREL_API __declspec(dllimport)
#endif
#else
#define VODREL_API __attribute__((visibility("default")))
#endif
