#include "host/Workbook.h"

#include <gtest/gtest.h>

#include <functional>

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

// Fault: a reference that does not follow deleted cells, or a text in quotes or a function taken for one.
TEST(Deletion, FormulasFollow) {
  const Deletion rows{rowArea("3:4"), Shift::Up}, columns{columnArea("C:D"), Shift::Left};
  const struct {
    const char *formula, *withoutRows, *withoutColumns;
  } cases[] = {{"=A1+E9", "=A1+E7", "=A1+C9"},
               {"=SUM(B2:F6)", "=SUM(B2:F4)", "=SUM(B2:D6)"},
               {"=SUM(B3:B4)*$E$5", "=SUM(#REF!)*$E$3", "=SUM(B3:B4)*$C$5"},
               {"=SUM(A4:F9)", "=SUM(A3:F7)", "=SUM(A4:D9)"},
               {"=C3&\"C3 E9\"", "=#REF!&\"C3 E9\"", "=#REF!&\"C3 E9\""},
               {"=LOG10(E9)+x_E9", "=LOG10(E7)+x_E9", "=LOG10(C9)+x_E9"},
               {"=IF(E5=\"\",\"a\"\"E9\",1)", "=IF(E3=\"\",\"a\"\"E9\",1)", "=IF(C5=\"\",\"a\"\"E9\",1)"}};
  for (const auto& [formula, withoutRows, withoutColumns] : cases) {
    EXPECT_EQ(rows.follow(formula), withoutRows);
    EXPECT_EQ(columns.follow(formula), withoutColumns);
  }
}

// Fault: values, formats, rules, comments, merged cells or sizes left behind, or cells moved that stand
// beside.
TEST(MemorySheet, DeletedCellsAreClosedUp) {
  const auto filled = [] {
    Workbook workbook;
    auto sheet = workbook.firstSheet();
    sheet->range("E5:F5")->setMergeCells(true);
    sheet->range("E5")->setValue("moves");
    sheet->range("E5")->setInteriorColorIndex(44);
    sheet->range("B5:F6")->validation()->addList("1,3,9");
    sheet->range("E6")->addComment("here");
    sheet->range("A9")->setValue("stays");
    sheet->columns("E:E")->setColumnWidth(30);
    sheet->rows("5:5")->setRowHeight(40);
    return sheet;
  };
  const auto columnsGone = filled();
  columnsGone->columns("C:D")->deleteCells(Shift::Left);
  EXPECT_EQ(columnsGone->cell(5, 3), Variant("moves"));
  EXPECT_EQ(columnsGone->format(5, 3).interior, 44);
  EXPECT_EQ(*columnsGone->mergedAt(5, 4), (CellArea{5, 3, 5, 4}));
  EXPECT_NE(columnsGone->ruleAt(6, 4), nullptr);
  EXPECT_EQ(columnsGone->ruleAt(6, 5), nullptr);
  EXPECT_NE(columnsGone->commentAt(6, 3), nullptr);
  EXPECT_EQ(columnsGone->columnWidth(3), 30);
  EXPECT_EQ(columnsGone->rowHeight(5), 40);

  const auto cellsGone = filled();
  cellsGone->range("E2:F3")->deleteCells(Shift::Up);
  EXPECT_EQ(cellsGone->cell(3, 5), Variant("moves"));
  EXPECT_EQ(cellsGone->format(3, 5).interior, 44);
  EXPECT_EQ(cellsGone->format(5, 5).interior, noColor);
  EXPECT_EQ(*cellsGone->mergedAt(3, 6), (CellArea{3, 5, 3, 6}));
  EXPECT_NE(cellsGone->ruleAt(3, 5), nullptr);
  EXPECT_NE(cellsGone->ruleAt(6, 4), nullptr);
  EXPECT_EQ(cellsGone->ruleAt(6, 5), nullptr);
  EXPECT_EQ(cellsGone->cell(9, 1), Variant("stays"));
  EXPECT_EQ(cellsGone->rowHeight(5), 40);

  const auto torn = filled();
  EXPECT_EQ(failureNumber([&] { torn->range("E1")->deleteCells(Shift::Up); }), 1004);
  EXPECT_EQ(torn->cell(5, 5), Variant("moves"));
}

// Fault: formats that wipe each other out, or a line that only one of its two cells knows.
TEST(MemorySheet, FormatsCombine) {
  Workbook workbook;
  const auto sheet = workbook.firstSheet();
  sheet->range("A1:C3")->font()->setBold(true);
  sheet->range("B2:D4")->setInteriorColorIndex(15);
  EXPECT_TRUE(sheet->format(2, 2).font.bold);
  EXPECT_EQ(sheet->format(2, 2).interior, 15);
  EXPECT_EQ(sheet->format(1, 1).interior, noColor);
  EXPECT_FALSE(sheet->format(4, 4).font.bold);

  sheet->range("B2")->border(BorderItem::EdgeRight)->setWeight(BorderWeight::Medium);
  EXPECT_EQ(sheet->format(2, 3).line(CellLine::Left).weight, BorderWeight::Medium);
  EXPECT_EQ(sheet->format(2, 3).line(CellLine::Left).style, LineStyle::Continuous);
  sheet->range("C2")->border(BorderItem::EdgeLeft)->setLineStyle(LineStyle::None);
  EXPECT_EQ(sheet->format(2, 2).line(CellLine::Right).style, LineStyle::None);
  EXPECT_EQ(failureNumber([&] {
              sheet->range("A1:C1")->border(BorderItem::InsideHorizontal)->setLineStyle(LineStyle::None);
            }),
            1004);

  sheet->range("A1:B2")->setMergeCells(true);
  EXPECT_EQ(sheet->format(2, 2).interior, noColor);  // as the upper left cell
  EXPECT_EQ(failureNumber([&] { sheet->range("B2:C2")->setMergeCells(true); }), 1004);
  sheet->range("A1:C3")->setMergeCells(true);
  EXPECT_EQ(sheet->merged().size(), 1U);
  sheet->range("C3")->setMergeCells(false);
  EXPECT_EQ(sheet->mergedAt(1, 1), nullptr);
}

// Fault: a number that is a text to the formulas, or a formula that spreadsheet programs stumble over.
TEST(MemorySheet, TakesValuesAsTheHostDoes) {
  Workbook workbook;
  const auto sheet = workbook.firstSheet();
  sheet->range("A1")->setValue("5");
  EXPECT_EQ(sheet->cell(1, 1), Variant(5.0));
  sheet->range("A2")->setNumberFormat("@");
  for (const char* text : {"5", "=", "=1+"}) {
    sheet->range("A2")->setValue(text);
    EXPECT_EQ(sheet->cell(2, 1), Variant(text));
  }
  for (const char* formula : {"=SUM(", "=1+", "=A1)", "=\"a", "=(A1))("}) {
    EXPECT_EQ(failureNumber([&] { sheet->range("A1")->setValue(formula); }), 1004) << formula;
  }
  for (const char* text : {"\xff", "\x01", "\xed\xa0\x80", "\xc0\xaf", "\xc3", "a\xc3("}) {
    EXPECT_EQ(failureNumber([&] { sheet->range("A1")->setValue(text); }), 1004);
    EXPECT_EQ(failureNumber([&] { sheet->range("A1")->addComment(text); }), 1004);
    EXPECT_EQ(failureNumber([&] { sheet->range("A1")->validation()->addList(text); }), 1004);
  }
  EXPECT_EQ(sheet->cell(1, 1), Variant(5.0));
  EXPECT_EQ(sheet->commentAt(1, 1), nullptr);
}

// Fault: numbers that mean nothing kept until the file is written.
TEST(MemorySheet, RefusesWhatNoSpreadsheetTakes) {
  Workbook workbook;
  const auto cell = workbook.firstSheet()->range("A1");
  const std::function<void()> calls[] = {[&] { cell->setInteriorColorIndex(57); },
                                         [&] { cell->font()->setColorIndex(-1); },
                                         [&] { cell->font()->setSize(0); },
                                         [&] { cell->font()->setName(""); },
                                         [&] { cell->setOrientation(91); },
                                         [&] { cell->setRowHeight(410); },
                                         [&] { cell->setColumnWidth(-1); },
                                         [&] { cell->setNumberFormat(""); },
                                         [&] { cell->setHorizontalAlignment(HorizontalAlignment{2}); },
                                         [&] { cell->border(BorderItem{13})->setLineStyle(LineStyle::Dot); },
                                         [&] { cell->deleteCells(Shift{1}); },
                                         [&] { cell->validation()->setShowError(true); },
                                         [&] { workbook.firstSheet()->rows("A:B"); },
                                         [&] { workbook.firstSheet()->columns("1:2"); }};
  int number = 0;
  for (const auto& call : calls) EXPECT_EQ(failureNumber(call), 1004) << number++;
  EXPECT_EQ(workbook.firstSheet()->format(1, 1), CellFormat());
}

}  // namespace
}  // namespace zelkova
