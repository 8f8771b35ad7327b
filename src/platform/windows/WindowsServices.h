/// The services of Windows, without the names that its header takes from everybody else. Private to the Windows half of
/// the platform layer.
#pragma once

#if !defined WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#if !defined NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#undef FreeModule
#undef SetCurrentDirectory
