#pragma once
/// The codes the reference engine reports. Below 201: warnings, the answer stands; from 201 on:
/// errors, the call failed.

#include <cstdint>

namespace korvane {
namespace reference {

enum EngineCode : std::int32_t {
    // Warnings: answered with a stated substitute.
    PressureRaisedToSaturation = 101,  ///< pressure below the boiling pressure: saturated liquid reported
    MolalityExtrapolated = 102,        ///< NaCl between 5.7 and 6.0 mol/kg, past the fitted data

    // Names the engine does not know.
    UnknownComponent = 210,        ///< only "WATER" and "NaCl"
    UnknownBipSet = 211,           ///< only "LBIP1", "LBIP2", "LBIP3"
    UnknownModel = 212,            ///< only "MCPA"
    UnknownSaltDensityModel = 213, ///< only "MSALTDEN"
    UnknownPhase = 214,            ///< only "water"
    SolventIsNotWater = 215,       ///< the phase's solvent must be the "WATER" component

    // Calls out of order or malformed.
    NoContext = 220,           ///< null context handle
    SetUpIncomplete = 221,     ///< evaluation before WATER, MCPA, MSALTDEN and the phase were added
    AmountCountMismatch = 222, ///< amount count differs from the number of components loaded
    NotEvaluated = 223,        ///< volume asked for without a successful evaluation
    UnknownPhaseIndex = 224,   ///< no phase with that index
    MissingOutput = 225,       ///< a null output pointer

    // States outside the models' validity.
    NotFinite = 230,                  ///< temperature, pressure or an amount is NaN or infinite
    AmountOutOfRange = 231,           ///< water amount <= 0 mol or NaCl amount < 0 mol
    TemperatureBelowRange = 232,      ///< below 273.15 K (ice)
    TemperatureAboveWaterRange = 233, ///< above 623.15 K, the end of IF97 Region 1
    TemperatureAboveBrineRange = 234, ///< above 548.15 K with NaCl, the end of the Spivey range
    PressureOutOfRange = 235,         ///< pressure <= 0 Pa or above 100 MPa
    MolalityAboveRange = 236,         ///< NaCl above 6.0 mol/kg, near halite saturation

    // The engine itself.
    OutOfMemory = 240,
    InternalError = 241,
};

}  // namespace reference
}  // namespace korvane
