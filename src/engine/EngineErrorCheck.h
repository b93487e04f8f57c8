#pragma once

#include <cstdint>

namespace korvane {

/// Turns the error array that the thermodynamic engine fills into an exception. Codes below 201
/// (negative ones included) are informational; any code of 201 or more makes the whole list a
/// `KorvaneError` that names every reported code.
void checkEngineErrors(std::int32_t count, const std::int32_t* codes);

}  // namespace korvane
