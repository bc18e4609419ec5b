#include <gtest/gtest.h>

#include <sstream>

#include "Catalog.h"
#include "Palette.h"
#include "SelfTest.h"

using namespace quellton;

TEST(SelfTest, PassesWithTheRealCatalog) {
    std::ostringstream out;
    EXPECT_EQ(selftest(out), 0);
    EXPECT_EQ(out.str(), "Selbsttest bestanden (97 Darstellungen)\n");
}

TEST(SelfTest, ReportsARepeatedIdentifier) {
    std::vector<Visualizer> entries(catalog().begin(), catalog().begin() + 5);
    entries.push_back(entries[2]);
    std::ostringstream out;
    EXPECT_EQ(selftest(out, entries, 14), 1);
    EXPECT_EQ(out.str(), "FEHLER: Kennungen eindeutig\nSelbsttest fehlgeschlagen\n");
}

TEST(SelfTest, ReportsBadPalettesOnceAndKeepsChecking) {
    std::vector<Visualizer> entries(catalog().begin(), catalog().begin() + 5);
    entries[1].palette = 14;
    entries[3].palette = -1;
    entries.push_back(entries[0]);
    std::ostringstream out;
    EXPECT_EQ(selftest(out, entries, 14), 1);
    EXPECT_EQ(out.str(), "FEHLER: Kennungen eindeutig\nFEHLER: Farbwelten gültig\nSelbsttest fehlgeschlagen\n");
}

TEST(SelfTest, CountsTheEntriesItWasGiven) {
    std::vector<Visualizer> entries(catalog().begin(), catalog().begin() + 3);
    std::ostringstream out;
    EXPECT_EQ(selftest(out, entries, int(Palette::all().size())), 0);
    EXPECT_EQ(out.str(), "Selbsttest bestanden (3 Darstellungen)\n");
}
