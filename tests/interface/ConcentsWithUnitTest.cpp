#include <korvane/Brinecast.h>

#include <gtest/gtest.h>

#include <utility>

using namespace korvane::Brinecast;

// Copies are deep, a moved-from list is empty but keeps its unit, and self-assignment, self-move
// and assigning the list its own entries keep them.
TEST(ConcentsWithUnit, CopiesAreDeepAndMovesKeepTheUnit) {
    static_assert(sizeof(ConcentUnit) == 4, "ConcentUnit is stored as a 32-bit integer");
    EXPECT_EQ(ConcentsWithUnit().unit, Undefined);
    ConcentsWithUnit a;
    a.assign({{"Na", 1.0}, {"Cl", 1.5}}, MmolPerL);
    ConcentsWithUnit b(a);
    b[0].value = 9.0;
    EXPECT_EQ(a[0].value, 1.0);
    b = b;
    b.assign(b.values, MgPerL);
    EXPECT_EQ(b.end() - b.begin(), 2);
    EXPECT_EQ(b.unit, MgPerL);

    ConcentsWithUnit c(std::move(a));
    EXPECT_EQ(a.size(), 0u);
    EXPECT_EQ(a.unit, MmolPerL);
    ConcentsWithUnit d;
    d.push_back({"K", 3.0});
    d = std::move(c);
    ConcentsWithUnit& self = d;
    d = std::move(self);
    EXPECT_EQ(d.size(), 2u);
    EXPECT_EQ(d[1].name, "Cl");
    EXPECT_EQ(d.unit, MmolPerL);
    EXPECT_EQ(c.size(), 0u);
    EXPECT_EQ(c.unit, MmolPerL);
}
