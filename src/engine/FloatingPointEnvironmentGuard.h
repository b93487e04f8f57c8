#pragma once

#include "engine/Platform.h"

#include <cfenv>

namespace korvane {

/// Saves which floating-point exceptions trap and the rounding mode, and puts back exactly those
/// when it goes out of scope, so that neither an engine library's start-up code nor any of its
/// calls can leave traps switched on (a later log10(0) would kill the host) or a rounding mode
/// that shifts every result of the host. Sticky exception flags are left as they are: raising a
/// flag is what arithmetic does, and the host may be watching its own.
class FloatingPointEnvironmentGuard {
public:
    FloatingPointEnvironmentGuard()
        : savedTraps_(platform::enabledFloatingPointTraps()), savedRounding_(std::fegetround()) {}
    ~FloatingPointEnvironmentGuard() {
        // Written back only when changed: the common engine call leaves both alone, and setting
        // the control registers costs more than reading them.
        if (platform::enabledFloatingPointTraps() != savedTraps_) platform::setEnabledFloatingPointTraps(savedTraps_);
        if (std::fegetround() != savedRounding_) std::fesetround(savedRounding_);
    }
    FloatingPointEnvironmentGuard(const FloatingPointEnvironmentGuard&) = delete;
    FloatingPointEnvironmentGuard& operator=(const FloatingPointEnvironmentGuard&) = delete;

private:
    int savedTraps_;
    int savedRounding_;
};

}  // namespace korvane
