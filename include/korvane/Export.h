#pragma once
/// Marks the declarations that the Brinecast library exports; everything else stays inside it.
/// On Windows the library itself (and whatever links its code statically, as its tests do) is
/// built with BRINECAST_BUILDING_LIBRARY and exports them; a host imports them from the DLL.
#if defined(_WIN32)
#if defined(BRINECAST_BUILDING_LIBRARY)
#define KORVANE_API __declspec(dllexport)
#else
#define KORVANE_API __declspec(dllimport)
#endif
#else
#define KORVANE_API __attribute__((visibility("default")))
#endif
