#include "brinecast/AnalysisJsonReader.h"
#include "brinecast/InputError.h"

#include <gtest/gtest.h>

#include <string>

namespace bc = korvane::Brinecast;
using korvane::Brinecast::cli::Analysis;
using korvane::Brinecast::cli::AnalysisJsonReader;
using korvane::Brinecast::cli::ComponentNames;
using korvane::Brinecast::cli::InputError;

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

TEST(AnalysisJsonReader, ZeroAmountsAreAbsentComponentsAndArraysHoldSeveralAnalyses) {
    const std::vector<Analysis> all =
        read("[" + analysis(R"("Na+": 10, "Ba++": 0, "Cl-": 15)") + "," +
             analysis(R"("K+": 1)", "mol/kgw") + "]");
    ASSERT_EQ(all.size(), 2u);
    EXPECT_EQ(all[0].elements.size(), 2u);
    EXPECT_EQ(all[0].name, "water 1");
    EXPECT_EQ(all[1].source, "water.json analysis 2");
}

TEST(AnalysisJsonReader, BadInputNamesTheFieldTheValueAndWhatIsAccepted) {
    struct Case { std::string text; std::string message; };
    const std::string t = R"("temperature": {"value": 25, "unit": "°C"}, )";
    const std::string p = R"("pressure": {"value": 1, "unit": "bar"}, )";
    const Case cases[] = {
        {"  \n", "water.json: the file is empty"},
        {"{\"unit\": \"mg/L\",}", "water.json:1:17: not valid JSON"},
        {"[]", "water.json: the array holds no analysis"},
        {analysis(R"("Xx": 1)"), "water.json: field \"elements\" entry \"Xx\": \"Xx\" is not a "
                                 "known element or ion; use C, Ca, Cl,"},
        {analysis(R"("H+": 1)"), "\"H+\" is not a known element or ion"},
        {analysis(R"("Na+": -3)"), "the amount of Na+ is negative (-3)"},
        {analysis(R"("Na+": "12")"), "entry \"Na+\": must be a number"},
        {analysis(R"("Ca": 1, "Ca++": 2)"), "\"Ca++\" gives Ca a second time (first as \"Ca\")"},
        {analysis(R"("CO2": 1)"), "\"CO2\" is a dissolved gas; give it among the gases"},
        {analysis(R"("Na+": 1)", "ppm"), "field \"unit\": \"ppm\" is not a concentration unit; use "
                                         "mol/kgw, mmol/kgw, mmol/L, mg/L or mg/kg"},
        {analysis(R"("Na+": 1)", "mg/L", R"(, "gases": {"CH4": 1})"), "\"CH4\" is not a known gas; "
                                                                       "use CO2 or H2S"},
        {analysis(R"("Na+": 1)", "mg/L", R"(, "density": 1025)"), "1025 g/cm3 is not a brine density"},
        {analysis(R"("Na+": 1)", "mg/L", R"(, "densty": 1.0)"), "field \"densty\": is not a field"},
        {analysis(R"("Na+": 0)"), "no element or gas has an amount above zero"},
        {"{" + p + R"("unit": "mg/L", "elements": {"Na+": 1}})", "water.json: temperature: missing"},
        {"{" + t + R"("unit": "mg/L", "elements": {"Na+": 1}})", "water.json: pressure: missing"},
        {"{" + t + p + R"("elements": {"Na+": 1}})", "water.json: unit: missing"},
        {"{" + t + p + R"("unit": "mg/L"})", "field \"elements\": missing"},
        {"{" + p + R"("temperature": {"value": 25, "unit": "F"}, "unit": "mg/L", "elements": {}})",
         "field \"temperature\": \"F\" is not a temperature unit; use K or °C"},
        {"{" + p + R"("temperature": {"value": -300, "unit": "°C"}, "unit": "mg/L", "elements": {}})",
         "-300 °C is at or below absolute zero"},
        {"{" + t + R"("pressure": 1, "unit": "mg/L", "elements": {}})",
         "field \"pressure\": must be an object with a value and its unit"},
        {"{" + t + R"("pressure": {"value": 1, "unit": "atm"}, "unit": "mg/L", "elements": {}})",
         "\"atm\" is not a pressure unit; use Pa, kPa, bar, MPa or psi"},
        {"[" + analysis(R"("Na+": 1)") + ", 3]", "water.json analysis 2: analysis: must be a JSON object"},
    };
    for (const Case& c : cases) {
        try {
            read(c.text);
            ADD_FAILURE() << "accepted: " << c.text;
        } catch (const InputError& e) {
            EXPECT_NE(std::string(e.what()).find(c.message), std::string::npos)
                << "message: " << e.what() << "\nexpected: " << c.message;
        }
    }
}
