#pragma once

#include "database/ReactionRecord.h"
#include "solver/SpeciationSystem.h"

#include <korvane/ActivityModel.h>

#include <memory>
#include <vector>

namespace korvane {
namespace Brinecast {

/// An activity model prepared for one speciation system at one temperature and pressure. The
/// solver asks it for log γ, log K and the water activity at the current ionic strength and solute
/// molality, and knows no model by name. Immutable once prepared, so any number of calculations on
/// the same system may share it.
class ActivityCoefficientModel {
public:
    virtual ~ActivityCoefficientModel() = default;

    /// True when every γ and the water activity are 1: the speciation needs no activity iteration.
    virtual bool ideal() const { return false; }
    /// log10 γ of every species of the system at `ionicStrength` (mol/kgw); water gets 0.
    virtual void logActivityCoefficients(double ionicStrength, double* logGamma) const = 0;
    /// log10 K per formula unit of every species' formation at `ionicStrength` (mol/kgw): log K(T)
    /// with whatever pressure correction the model makes.
    virtual void logEquilibriumConstants(double ionicStrength, double* logK) const = 0;
    /// log10 of the water activity when the solutes add up to `soluteMolality` (mol/kgw).
    virtual double logWaterActivity(double soluteMolality) const = 0;

    /// `model` prepared for `system` (picked from `records`) at `temperatureK` (K) and
    /// `pressurePa` (Pa). Throws std::invalid_argument for a model that does not exist yet.
    static std::unique_ptr<const ActivityCoefficientModel> prepare(ActivityModel model, const SpeciationSystem& system,
                                                                   const std::vector<ReactionRecord>& records,
                                                                   double temperatureK, double pressurePa);

protected:
    /// The linear water activity of dilute solutions, 1 − 0.017·Σm, which the Debye–Hückel
    /// parameters of the records were fitted with. NaN once the solutes exceed about 59 mol/kgw.
    static double linearLogWaterActivity(double soluteMolality);
};

}  // namespace Brinecast
}  // namespace korvane
