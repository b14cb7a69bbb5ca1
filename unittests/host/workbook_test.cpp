#include "host/Workbook.h"

#include <gtest/gtest.h>

#include "host/EmbeddedHost.h"
#include "unittests/support.h"

namespace zelkova {
namespace {

// Fault: a cell address read off by one row or column, or a text taken for an address.
TEST(CellArea, ReadsTheHostsAddresses) {
  const struct {
    const char* address;
    CellArea area;
  } cases[] = {{"A1", {1, 1, 1, 1}},
               {"$b$12", {12, 2, 12, 2}},
               {"Z9:AA3", {3, 26, 9, 27}},
               {"IV65536", {65536, 256, 65536, 256}}};
  for (const auto& [address, expected] : cases) {
    const CellArea area = cellArea(address);
    EXPECT_EQ(area.firstRow, expected.firstRow) << address;
    EXPECT_EQ(area.firstColumn, expected.firstColumn) << address;
    EXPECT_EQ(area.lastRow, expected.lastRow) << address;
    EXPECT_EQ(area.lastColumn, expected.lastColumn) << address;
  }
  for (const char* address : {"", "A", "1", "A0", "IW1", "A65537", "A1:", "A1:B", "A1 ", "A1:B2:C3",
                              "AAAAAAAAAAAAAA1", "A99999999999999999999", "1A", "A-1"}) {
    EXPECT_EQ(failureNumber([&] { cellArea(address); }), 1004) << address;
  }
}

// Fault: a value put into one cell of a range only, or lost with the range that put it there.
TEST(Workbook, KeepsWhatIsPutIntoItsCells) {
  EmbeddedHost host;
  host.activeSheet()->range("B2:C3")->setValue(Variant("x"));
  host.activeSheet()->range("C3")->setValue(Variant(4.5));
  const auto sheet = host.workbook().sheet("SHEET1");
  EXPECT_EQ(sheet->range("b2:d9")->value(), Variant("x"));
  EXPECT_EQ(sheet->cell(3, 3), Variant(4.5));
  EXPECT_TRUE(sheet->cell(4, 3).isNothing());
  sheet->range("A1:IV10")->setValue(Variant());
  EXPECT_TRUE(sheet->cell(2, 2).isNothing());

  EXPECT_EQ(failureNumber([&] { host.workbook().addSheet("sheet1"); }), 1004);
  EXPECT_EQ(failureNumber([&] { host.workbook().sheet("Form"); }), 9);
  EXPECT_EQ(host.workbook().addSheet("Form")->name(), "Form");
}

}  // namespace
}  // namespace zelkova
