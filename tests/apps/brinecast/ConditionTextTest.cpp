#include "brinecast/readers/ConditionText.h"
#include "brinecast/readers/InputError.h"

#include <gtest/gtest.h>

#include <string>

using korvane::Brinecast::cli::ConditionText;
using korvane::Brinecast::cli::InputError;

TEST(ConditionText, ReadsTemperatureAndPressureAsTyped) {
    const struct {
        const char* text;
        double kelvin, pascal;
    } cases[] = {
        {"120 \xC2\xB0" "C,300 bar", 393.15, 3e7},
        {"120C,300bar", 393.15, 3e7},
        {" 393.15 K , 30 MPa ", 393.15, 3e7},
        {"25degC,101.325kPa", 298.15, 101325.0},
    };
    for (const auto& c : cases) {
        const ConditionText::Conditions read = ConditionText::both(c.text, "--from");
        EXPECT_NEAR(read.temperatureK, c.kelvin, 1e-9) << c.text;
        EXPECT_NEAR(read.pressurePa, c.pascal, 1e-6) << c.text;
    }
}

TEST(ConditionText, RefusalsNameTheOptionAndTheText) {
    const struct {
        const char* text;
        const char* named;
    } cases[] = {
        {"120 X,300 bar", "\"120 X\" has the unit \"X\""},
        {"120C,300 furlongs", "\"300 furlongs\" has the unit \"furlongs\""},
        {"hot,300 bar", "\"hot\" is not a temperature"},
        {"120C", "needs a temperature and a pressure"},
        {"120C,", "\"\" is not a pressure"},
    };
    for (const auto& c : cases) {
        try {
            ConditionText::both(c.text, "--to");
            ADD_FAILURE() << c.text;
        } catch (const InputError& e) {
            const std::string message = e.what();
            EXPECT_EQ(message.rfind("--to: ", 0), 0u) << message;
            EXPECT_NE(message.find(c.named), std::string::npos) << message;
        }
    }
}
