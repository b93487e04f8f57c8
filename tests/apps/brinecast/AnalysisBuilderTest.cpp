#include "brinecast/readers/AnalysisBuilder.h"

#include <gtest/gtest.h>

#include <string>

namespace bc = korvane::Brinecast;
using korvane::Brinecast::cli::Analysis;
using korvane::Brinecast::cli::AnalysisBuilder;
using korvane::Brinecast::cli::ComponentNames;

namespace {

const ComponentNames& names() {
    static const ComponentNames n;
    return n;
}

/// One component in `unit`, read at 25 °C and 1 atm.
Analysis readOne(const std::string& unit, const std::string& name, double value) {
    AnalysisBuilder b(names(), "lab.json", "lab");
    b.temperature(77.0, "\xC2\xB0" "F", "temperature", "temperature");
    b.pressure(0.0, "psig", "pressure", "pressure");
    b.element(name, value, "elements");
    b.unit(unit, "unit");  // a JSON file may give the unit after the amounts
    return b.build();
}

}  // namespace

// Units the library lacks become its own as the analysis is read; meq/L divides by the charge of
// the ion as named, or for an element name by that of the ion it is reported as.
TEST(AnalysisBuilder, LabAmountUnitsBecomeLibraryUnits) {
    struct Case {
        const char* unit;
        const char* name;
        double value;
        bc::ConcentUnit libraryUnit;
        const char* element;
        double libraryValue;
    };
    const Case cases[] = {
        {"g/L", "Na+", 10.5, bc::MgPerL, "Na", 10500.0},
        {"ppm", "Cl-", 19000.0, bc::MgPerKg, "Cl", 19000.0},
        {"meq/L", "Ca++", 20.0, bc::MmolPerL, "Ca", 10.0},
        {"meq/L", "Ca", 20.0, bc::MmolPerL, "Ca", 10.0},
        {"meq/L", "SO4-2", 20.0, bc::MmolPerL, "S(6)", 10.0},
        {"meq/L", "S(6)", 20.0, bc::MmolPerL, "S(6)", 10.0},
        {"meq/L", "HCO3-", 5.0, bc::MmolPerL, "C", 5.0},
        {"meq/L", "C", 5.0, bc::MmolPerL, "C", 5.0},
        {"meq/L", "CO3--", 4.0, bc::MmolPerL, "C", 2.0},
        {"meq/L", "Fe+3", 3.0, bc::MmolPerL, "Fe(+3)", 1.0},
        {"MEQ/L", "K+", 3.0, bc::MmolPerL, "K", 3.0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.unit) + " " + c.name);
        const Analysis a = readOne(c.unit, c.name, c.value);
        EXPECT_EQ(a.unit, c.libraryUnit);
        ASSERT_EQ(a.elements.size(), 1u);
        EXPECT_EQ(a.elements[0].name, c.element);
        EXPECT_DOUBLE_EQ(a.elements[0].value, c.libraryValue);
        ASSERT_FALSE(a.notes.empty());  // the report says what the lab unit was read as
        EXPECT_NE(a.notes[0].find(std::string("amounts in ") + c.unit), std::string::npos) << a.notes[0];
    }
    EXPECT_TRUE(readOne("mg/L", "Na+", 1.0).notes.empty());
    // g/L of carbonate: the same carbon, counted as bicarbonate mass in mg/L.
    const Analysis carbonate = readOne("g/L", "CO3--", 0.060);
    EXPECT_NEAR(carbonate.elements[0].value, 60.0 * names().carbonateToBicarbonateMass(), 1e-9);
}
