#pragma once

#include "engine/Platform.h"

namespace korvane {

/// Saves which floating-point exceptions trap and restores exactly that set when it goes out of
/// scope, so that a library's start-up code cannot switch traps on or off in the host process.
/// Sticky exception flags and the rounding mode are left as they are.
class FloatingPointMaskGuard {
public:
    FloatingPointMaskGuard() : savedTraps_(platform::enabledFloatingPointTraps()) {}
    ~FloatingPointMaskGuard() { platform::setEnabledFloatingPointTraps(savedTraps_); }
    FloatingPointMaskGuard(const FloatingPointMaskGuard&) = delete;
    FloatingPointMaskGuard& operator=(const FloatingPointMaskGuard&) = delete;

private:
    int savedTraps_;
};

}  // namespace korvane
