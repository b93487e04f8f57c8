#include <korvane/Brinecast.h>

#include <gtest/gtest.h>

#include <utility>

using korvane::Brinecast::ConcentsWithUnit;
using korvane::Brinecast::ConcentUnit;
using korvane::Brinecast::NameValue;

namespace {

ConcentsWithUnit brine() {
    ConcentsWithUnit c;
    c.assign({{"Na", 1.0}, {"Cl", 1.5}}, korvane::Brinecast::MmolPerL);
    return c;
}

}  // namespace

TEST(ConcentsWithUnit, DefaultIsEmptyWithUndefinedUnit) {
    ConcentsWithUnit c;
    EXPECT_EQ(c.size(), 0u);
    EXPECT_EQ(c.unit, korvane::Brinecast::Undefined);
    EXPECT_EQ(c.begin(), c.end());
}

TEST(ConcentsWithUnit, CopiesAreIndependent) {
    ConcentsWithUnit a = brine();
    ConcentsWithUnit b(a);
    b[0].value = 9.0;
    EXPECT_EQ(a[0].value, 1.0);
    ConcentsWithUnit c;
    c = a;
    EXPECT_EQ(c.size(), 2u);
    EXPECT_EQ(c.unit, korvane::Brinecast::MmolPerL);
    c = c;  // self-assignment keeps the entries
    EXPECT_EQ(c.size(), 2u);
}

TEST(ConcentsWithUnit, MoveLeavesSourceEmptyButKeepsItsUnit) {
    ConcentsWithUnit a = brine();
    ConcentsWithUnit b(std::move(a));
    EXPECT_EQ(b.size(), 2u);
    EXPECT_EQ(b.unit, korvane::Brinecast::MmolPerL);
    EXPECT_EQ(a.size(), 0u);
    EXPECT_EQ(a.unit, korvane::Brinecast::MmolPerL);

    ConcentsWithUnit c;
    c.push_back({"K", 3.0});
    c = std::move(b);
    EXPECT_EQ(c.size(), 2u);
    EXPECT_EQ(c[1].name, "Cl");
    EXPECT_EQ(b.size(), 0u);
    EXPECT_EQ(b.unit, korvane::Brinecast::MmolPerL);

    ConcentsWithUnit& self = c;
    c = std::move(self);  // self-move keeps the entries
    EXPECT_EQ(c.size(), 2u);
}

TEST(ConcentsWithUnit, AssignWithOwnListOnlyChangesUnit) {
    ConcentsWithUnit c = brine();
    c.assign(c.values, korvane::Brinecast::MgPerL);
    EXPECT_EQ(c.size(), 2u);
    EXPECT_EQ(c.unit, korvane::Brinecast::MgPerL);
}

TEST(ConcentsWithUnit, RawPointerIterationVisitsEntriesInOrderAndAllowsRepeats) {
    ConcentsWithUnit c = brine();
    c.push_back({"Na", 0.5});
    double sum = 0.0;
    for (NameValue& e : c) sum += e.value;
    EXPECT_EQ(sum, 3.0);
    EXPECT_EQ(c.end() - c.begin(), 3);
    EXPECT_EQ(c[2].name, "Na");
}

TEST(ConcentsWithUnit, UnitHoldsAnyThirtyTwoBitValue) {
    static_assert(sizeof(ConcentUnit) == 4, "ConcentUnit is stored as a 32-bit integer");
    ConcentsWithUnit c;
    c.unit = static_cast<ConcentUnit>(7);
    EXPECT_EQ(static_cast<int>(c.unit), 7);
}
