#include "activity/pitzer/PitzerDatabase.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

using namespace korvane::Brinecast;

namespace {

std::string document(const std::string& species, const std::string& minerals, const std::string& parameters) {
    return "{\"species\": [{\"name\": \"H+\", \"charge\": 1}, {\"name\": \"Na+\", \"charge\": 1}, "
           "{\"name\": \"Cl-\", \"charge\": -1}" + species + "], \"minerals\": [" + minerals +
           "], \"parameters\": [" + parameters + "]}";
}

}  // namespace

// The embedded set is the one the model note describes: 18 species besides water, the seven
// minerals, 198 virial lines.
TEST(PitzerDatabase, EmbeddedDataHoldsTheWholeParameterSet) {
    const PitzerDatabase& data = PitzerDatabase::embedded();
    EXPECT_EQ(data.species().size(), 18u);
    EXPECT_EQ(data.minerals().size(), 7u);
    EXPECT_EQ(data.parameters().size(), 198u);
}

TEST(PitzerDatabase, MalformedRecordsAreRefusedNamingThem) {
    struct Case {
        std::string json;
        const char* named;
    };
    const Case cases[] = {
        {"[]", "document"},
        {document(", {\"name\": \"NaCl\", \"charge\": 0, \"stoich\": {\"Na+\": -1, \"Br-\": -1, \"NaCl\": 1}, "
                  "\"log_k\": 0}", "", ""),
         "NaCl is formed from \"Br-\""},
        {document("", "{\"name\": \"Halite\", \"stoich\": {\"NaCl\": -1, \"Na+\": 1, \"Cl-\": 1}, \"log_k\": 1.57}", ""),
         "Halite has no \"vm_solid\""},
        {document("", "", "{\"type\": \"B9\", \"species\": [\"Na+\", \"Cl-\"], \"coef\": [0.1], \"source\": \"line 7\"}"),
         "line 7 has the unknown type \"B9\""},
        {document("", "", "{\"type\": \"PSI\", \"species\": [\"Na+\", \"Cl-\"], \"coef\": [0.1], \"source\": \"line 8\"}"),
         "line 8 names the wrong number of species"},
        {document("", "", "{\"type\": \"B0\", \"species\": [\"Na+\", \"Cl-\"], \"coef\": \"x\", \"source\": \"line 9\"}"),
         "line 9 has a \"coef\" that is no short list"},
    };
    for (const Case& c : cases) {
        try {
            PitzerDatabase data(c.json);
            ADD_FAILURE() << "accepted " << c.json;
        } catch (const std::logic_error& e) {
            EXPECT_NE(std::string(e.what()).find(c.named), std::string::npos) << e.what();
        }
    }
}
