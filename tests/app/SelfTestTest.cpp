#include <gtest/gtest.h>

#include <sstream>

#include "Catalog.h"
#include "SelfTest.h"

using namespace quellton;

// The whole catalog passes through the program (QuelltonOptions); here, entries made to fail.
TEST(SelfTest, NamesEachFailedCheckOnceAndCountsTheEntriesItWasGiven) {
    std::vector<Visualizer> entries(catalog().begin(), catalog().begin() + 3);
    const auto report = [&] {
        std::ostringstream out;
        const int status = selftest(out, entries, 14);
        return std::pair(status, out.str());
    };
    EXPECT_EQ(report(), std::pair(0, std::string("Selbsttest bestanden (3 Darstellungen)\n")));
    entries.push_back(entries[1]);
    EXPECT_EQ(report(), std::pair(1, std::string("FEHLER: Kennungen eindeutig\nSelbsttest fehlgeschlagen\n")));
    entries[0].palette = 14;
    entries[2].palette = -1;
    EXPECT_EQ(report(), std::pair(1, std::string("FEHLER: Kennungen eindeutig\nFEHLER: Farbwelten gültig\n"
                                                 "Selbsttest fehlgeschlagen\n")));
}
