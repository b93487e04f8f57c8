#include "brinecast/readers/AnalysisJsonReader.h"
#include "brinecast/reports/NumberText.h"
#include "BadInputCases.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>

namespace bc = korvane::Brinecast;
using korvane::Brinecast::cli::Analysis;
using korvane::Brinecast::cli::AnalysisJsonReader;
using korvane::Brinecast::cli::ComponentNames;

namespace {

const ComponentNames& names() {
    static const ComponentNames n;
    return n;
}

std::vector<Analysis> read(const std::string& text) {
    return AnalysisJsonReader(names()).read(text, "water.json");
}

std::string analysis(const std::string& elements, const std::string& unit = "mg/L",
                     const std::string& extra = "") {
    return R"({"temperature": {"value": 60, "unit": "°C"}, "pressure": {"value": 2, "unit": "MPa"},
               "unit": ")" + unit + R"(", "elements": {)" + elements + "}" + extra + "}";
}

}  // namespace

TEST(AnalysisJsonReader, LabIonNamesBecomeLibraryElements) {
    const Analysis a = read(analysis(
        R"("Na+": 100, "Ca++": 40, "Mg+2": 2, "SO4--": 96, "HS-": 1, "Fe++": 0.5, "Cl": 35, "Br-": 1)",
        "mg/L", R"(, "gases": {"CO2": 0.01, "H2S": 0.002}, "name": "W-3", "density": 1.05)"))[0];
    std::vector<std::string> elements;
    for (const bc::NameValue& e : a.elements) elements.push_back(e.name);
    EXPECT_EQ(elements, (std::vector<std::string>{"Na", "Ca", "Mg", "S(6)", "S(-2)", "Fe(+2)", "Cl",
                                                  "Br"}));
    EXPECT_EQ(a.elements[3].value, 96.0);  // sulfate mass stays sulfate mass
    EXPECT_EQ(a.name, "W-3");
    EXPECT_EQ(a.unit, bc::MgPerL);
    EXPECT_DOUBLE_EQ(a.temperatureK, 333.15);
    EXPECT_DOUBLE_EQ(a.pressurePa, 2e6);
    EXPECT_EQ(a.densityGcm3, 1.05);
    ASSERT_EQ(a.gases.size(), 2u);
    EXPECT_EQ(a.gases[1].name, "H2S");
    // A zero amount is an absent component; an array holds several analyses.
    const std::vector<Analysis> all =
        read("[" + analysis(R"("Na+": 10, "Ba++": 0, "Cl-": 15)") + "," + analysis(R"("K+": 1)") + "]");
    ASSERT_EQ(all.size(), 2u);
    EXPECT_EQ(all[0].elements.size(), 2u);
    EXPECT_EQ(all[0].name, "water 1");
    EXPECT_EQ(all[1].source, "water.json analysis 2");
}

TEST(AnalysisJsonReader, CarbonateIsCountedAsTheSameCarbon) {
    // The library counts a mass of C as bicarbonate mass (61.0191 g/mol), so 60.0111 mg of
    // carbonate, one mmol of carbon, must arrive as 61.0191 mg.
    const Analysis mass = read(analysis(R"("HCO3-": 61.0191, "CO3--": 60.0111, "Na+": 46)"))[0];
    ASSERT_EQ(mass.elements[0].name, "C");
    EXPECT_NEAR(mass.elements[0].value, 2 * 61.0191, 1e-9);
    EXPECT_NEAR(mass.carbonateCarbon, 61.0191, 1e-9);
    EXPECT_EQ(mass.notes.size(), 1u);
    // In amounts of substance carbonate carbon is carbon as it stands.
    const Analysis molar = read(analysis(R"("CO3-2": 1.5, "Na+": 3)", "mmol/L"))[0];
    EXPECT_EQ(molar.elements[0].value, 1.5);
    EXPECT_EQ(molar.carbonateCarbon, 1.5);
}

TEST(AnalysisJsonReader, BadInputNamesTheFieldTheValueAndWhatIsAccepted) {
    expectEveryCaseRefused("bad-json-analyses.txt", [](const std::string& text) { read(text); });
}

// Shortest round-trip texts, as the program writes its numbers, must read back to the very same
// doubles, or a report fed back as input would not be the same analysis (one in ten came back
// one ulp off before the reader used full precision).
TEST(AnalysisJsonReader, NumbersReadBackToTheSameDoubles) {
    std::mt19937_64 random(11);
    std::uniform_real_distribution<double> mantissa(1.0, 2.0);
    std::string elements;
    std::vector<double> amounts;
    for (int i = 0; i < 400; ++i) {
        // 0.6 mg/L to 60 g/L, every bit of the mantissa random.
        amounts.push_back(std::ldexp(mantissa(random), static_cast<int>(random() % 17)));
    }
    std::size_t wrong = 0;
    for (std::size_t i = 0; i < amounts.size(); i += 2) {
        const Analysis a = read(analysis(R"("Na+": )" + bc::cli::NumberText::exact(amounts[i]) +
                                         R"(, "Cl-": )" + bc::cli::NumberText::exact(amounts[i + 1])))[0];
        wrong += (a.elements[0].value != amounts[i]) + (a.elements[1].value != amounts[i + 1]);
    }
    EXPECT_EQ(wrong, 0u);
}

// A zero written with an exponent is zero, an absent component: RapidJSON's own full-precision
// path read "0e-30" as 9.6e-240 and "0.0e-300" as -9.7e-122 (a negative amount). Below the
// smallest double is zero too; past the largest one is refused, naming where.
TEST(AnalysisJsonReader, ZerosWithExponentsAndOutOfRangeNumbers) {
    const std::pair<const char*, double> exact[] = {{"0e-30", 0.0}, {"0.0e-300", 0.0}, {"0e5", 0.0},
                                                     {"1e-400", 0.0}, {"25", 25.0}, {"2.5e1", 25.0}};
    for (const auto& [text, value] : exact) {
        const Analysis a = read(analysis(std::string(R"("Na+": 1, "Cl-": )") + text))[0];
        ASSERT_EQ(a.elements.size(), value == 0.0 ? 1u : 2u) << text;
        if (value != 0.0) {
            EXPECT_EQ(a.elements[1].value, value) << text;
        }
    }
    try {
        read(analysis(R"("Na+": 1, "Cl-": 1e400)"));
        ADD_FAILURE() << "a number past the largest double was read";
    } catch (const bc::cli::InputError& e) {
        EXPECT_NE(std::string(e.what()).find("Number too big"), std::string::npos) << e.what();
    }
}
