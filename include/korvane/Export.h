#pragma once
/// Marks the declarations that libbrinecast.so exports; everything else has hidden visibility.
#if defined(_WIN32)
#define KORVANE_API
#else
#define KORVANE_API __attribute__((visibility("default")))
#endif
