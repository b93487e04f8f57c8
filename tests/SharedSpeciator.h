#pragma once
/// One Speciator for a whole test program: the reaction data are parsed once, and every test
/// exercises the same immutable object, as a host's threads would.

#include <korvane/Speciator.h>

namespace brinecast_test {

inline const korvane::Brinecast::Speciator& speciator() {
    static const korvane::Brinecast::Speciator shared;
    return shared;
}

}  // namespace brinecast_test
