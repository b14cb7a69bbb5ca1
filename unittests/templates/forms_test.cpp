#include <gtest/gtest.h>

#include "unittests/support.h"
#include "unittests/templates/spreadsheet.h"
#include "zelkova/templates/yTemplate.h"

// Forms are drawn, filled in as a user would, saved, and opened by LibreOffice, which works the formulas out.
// Expected numbers are worked out by hand.
namespace zelkova {
namespace {

class Form : public testing::Test {
 protected:
  Form() { form.PassSheet(workbook.firstSheet()); }

  void fill(const std::string& address, const Variant& value) {
    workbook.firstSheet()->range(address)->setValue(value);
  }
  Variant at(const std::string& address) { return workbook.firstSheet()->range(address)->value(); }

  Workbook workbook;
  yTemplate form;
};

// Fault: a total that leaves out an output, weights it with another's importance, or reads another row.
TEST_F(Form, CauseAndEffectMatrixTotalsWeightedScores) {
  form.drawCNEM(3, 3);
  fill("B2", 9.0), fill("C2", 5.0), fill("D2", 7.0);
  fill("B4", 1.0), fill("C4", 3.0), fill("D4", 9.0);
  fill("B5", 9.0), fill("D5", 3.0);
  const ShownSheet shown = opened(workbook);
  EXPECT_EQ(shown["A2"], "Importance to Customer");
  EXPECT_EQ(shown["E3"], "Total");
  EXPECT_EQ(shown.number("E4"), 9 + 15 + 63);
  EXPECT_EQ(shown.number("E5"), 81 + 21);
  EXPECT_EQ(shown["E6"], "0");
}

// Fault: a verdict mirrored into the wrong cell or the wrong word, a weight of the scale, a share of another
// sum.
TEST_F(Form, PairwiseComparisonRanksFactors) {
  form.drawPairwise(4);
  fill("A2", "Cost");
  fill("C2", "Much more"), fill("D2", "Equal"), fill("E2", "Less");
  fill("D3", "More");  // factors 2 and 4 are not compared
  fill("E4", "Much less");
  const ShownSheet shown = opened(workbook);
  EXPECT_EQ(shown["B1"], "Cost");
  EXPECT_EQ(shown["E1"], "Factor 4");
  EXPECT_EQ(shown["B3"] + "," + shown["B4"] + "," + shown["B5"], "Much less,Equal,More");
  EXPECT_EQ(shown["C4"] + "," + shown["C5"] + "," + shown["D5"], "Less,,Much more");
  // Priorities of 93, 28, 13 and 108 ninths, 242 together; bars as long as the whole part of 25 times the
  // share.
  const struct {
    const char *row, *priority, *share, *rank;
    int bar;
  } expected[] = {{"2", "10.33", "38.43%", "2", 9},
                  {"3", "3.11", "11.57%", "3", 2},
                  {"4", "1.44", "5.37%", "4", 1},
                  {"5", "12.00", "44.63%", "1", 11}};
  for (const auto& [row, priority, share, rank, bar] : expected) {
    EXPECT_EQ(shown[std::string("F") + row], priority);
    EXPECT_EQ(shown[std::string("G") + row], share);
    EXPECT_EQ(shown[std::string("H") + row], rank);
    std::string bars;
    for (int i = 0; i < bar; ++i) bars += "\u2588";
    EXPECT_EQ(shown[std::string("I") + row], bars);
  }
}

// Fault: a single factor, which is compared with none, divides by 0 or has no rank.
TEST_F(Form, PairwiseComparisonOfOneFactorIsBlank) {
  form.drawPairwise(1);
  const ShownSheet shown = opened(workbook);
  EXPECT_EQ(shown["B1"], "Factor 1");
  EXPECT_EQ(shown["C2"] + "," + shown["D2"] + "," + shown["E2"] + "," + shown["F2"], "0.00,0.00%,1,");
  EXPECT_TRUE(workbook.firstSheet()->rules().empty());
}

// Fault: a net score that leaves priorities out or reads another alternative.
TEST_F(Form, PughMatrixScoresAlternatives) {
  form.drawPugh(2, 3);
  EXPECT_EQ(opened(workbook)["D6"], "0");
  fill("B3", 5.0), fill("B5", 3.0);  // the priority of the second criterion stays 1
  fill("D3", 3.0), fill("D4", -9.0);
  fill("E3", 9.0), fill("E4", 3.0), fill("E5", -3.0);
  const ShownSheet shown = opened(workbook);
  EXPECT_EQ(shown["C3"], "S");
  EXPECT_EQ(shown["A6"], "Net Score");
  EXPECT_EQ(shown.number("D6"), 15 - 9);
  EXPECT_EQ(shown.number("E6"), 45 + 3 - 9);
}

// Fault: a priority or total off by a row or column, with all rooms or after rooms above and beside have
// gone.
TEST_F(Form, HouseOfQualityKeepsItsSumsWithAnyRooms) {
  for (const bool rooms : {true, false}) {
    workbook = Workbook();
    form.PassSheet(workbook.firstSheet());
    form.drawQFD(3, 2, rooms, rooms, rooms);
    // Two rows of roof, goal, name, unit, target, difficulty and headings stand above the voices.
    const int first = rooms ? 9 : 7;
    const auto cell = [&](char column, int row) { return column + std::to_string(first + row); };
    fill(cell('B', 0), 5.0), fill(cell('C', 0), 9.0), fill(cell('E', 0), 3.0);
    fill(cell('B', 1), 3.0), fill(cell('C', 1), 1.0), fill(cell('G', 1), 9.0);
    if (rooms) fill("D2", "++");
    const ShownSheet shown = opened(workbook);
    EXPECT_EQ(shown[cell('A', -1)], "VOC");
    EXPECT_EQ(shown[cell('A', 2)], "Priority");
    EXPECT_EQ(shown.number(cell('C', 2)), 45 + 3);
    EXPECT_EQ(shown.number(cell('E', 2)), 15);
    EXPECT_EQ(shown.number(cell('G', 2)), 27);
    EXPECT_EQ(shown.number(cell('I', 0)), 12 * 5);
    EXPECT_EQ(shown.number(cell('I', 1)), 10 * 3);
    EXPECT_FALSE(shown.shows("#REF!") || shown.shows("Err:"));
    EXPECT_EQ(shown.shows("Benchmarking"), rooms);
    EXPECT_EQ(shown["D2"], rooms ? "++" : "");
    EXPECT_EQ(shown["O8"], rooms ? "5" : "");
  }
}

// Fault: the flags of the rooms exchanged, or cells of one room taken with another.
TEST_F(Form, HouseOfQualityLosesTheRoomsAskedFor) {
  for (int rooms = 0; rooms < 8; ++rooms) {
    const bool roomD = (rooms & 1) != 0, roomE = (rooms & 2) != 0, roomF = (rooms & 4) != 0;
    workbook = Workbook();
    form.PassSheet(workbook.firstSheet());
    form.drawQFD(3, 2, roomD, roomE, roomF);
    // The roof of three characteristics has two rows.
    const Index roof = roomF ? 2 : 0;
    const auto sheet = workbook.firstSheet();
    EXPECT_EQ(sheet->cell(roof + 1, 1), Variant("Goal"));
    EXPECT_EQ(sheet->cell(roof + 9, 1), Variant("Priority"));
    EXPECT_EQ(sheet->cell(roof + 1, 11) == Variant("Benchmarking"), roomD);
    EXPECT_EQ(sheet->cell(roof + 10, 2) == Variant("Benchmarking"), roomE);
    EXPECT_EQ(sheet->values().rbegin()->first.first, roof + (roomE ? 15 : 9));
    const auto rule = sheet->ruleAt(2, 4);
    EXPECT_EQ(rule != nullptr && rule->list == "++,+,-,--", roomF);
  }
}

/// How often `text` stands in `all`.
int count(const std::string& all, const std::string& text) {
  int found = 0;
  for (std::size_t at = all.find(text); at != std::string::npos; at = all.find(text, at + 1)) ++found;
  return found;
}

// Fault: what no calculation shows gets lost on the way into the file.
TEST_F(Form, FileHoldsListsCommentsAndMergedCells) {
  form.drawPugh(3, 5);
  workbook.addSheet("House");
  form.PassSheet(workbook.sheet("House"));
  form.drawQFD(3, 2, true, true, true);
  const TemporaryFolder folder;
  saveWorkbook(workbook, folder / "forms.xlsx");
  const std::string unpack = "unzip -q " + (folder / "forms.xlsx") + " -d " + (folder / "parts");
  ASSERT_EQ(std::system(unpack.c_str()), 0);

  const std::string pugh = contentOf(folder / "parts/xl/worksheets/sheet1.xml");
  EXPECT_EQ(count(pugh, "<dataValidation "), 1);
  EXPECT_EQ(count(pugh,
                  "type=\"list\" allowBlank=\"1\" showInputMessage=\"1\" showErrorMessage=\"1\" "
                  "errorTitle=\"Error\" error=\"Invalid input\" sqref=\"D3:F7\""),
            1);
  EXPECT_EQ(count(pugh, "<formula1>\"-9,-3,0,3,9\"</formula1>"), 1);
  EXPECT_EQ(count(pugh, "<mergeCell "), 3);
  for (const char* area : {"A1:A2", "B1:B2", "D1:F1"}) {
    EXPECT_EQ(count(pugh, std::string("<mergeCell ref=\"") + area), 1) << area;
  }
  EXPECT_EQ(count(pugh, "ht=\"83.25\""), 1);
  EXPECT_EQ(count(pugh, "orientation=\"landscape\""), 1);
  const std::string comments = contentOf(folder / "parts/xl/comments1.xml");
  EXPECT_EQ(count(comments, "<comment "), 4);
  EXPECT_EQ(count(comments, "ref=\"A8\""), 1);
  EXPECT_EQ(count(comments, "used to compare the solutions. (Below)"), 1);
  EXPECT_EQ(count(contentOf(folder / "parts/xl/drawings/vmlDrawing1.vml"), "width:96pt;height:"), 4);

  const std::string house = contentOf(folder / "parts/xl/worksheets/sheet2.xml");
  EXPECT_EQ(count(house, "<formula1>\"++,+,-,--\"</formula1>"), 2);
  EXPECT_EQ(count(house, "sqref=\"E1:F1\"") + count(house, "sqref=\"D2:G2\""), 2);
  EXPECT_EQ(count(house, "<formula1>\"1,3,9\"</formula1>"), 1);
  EXPECT_EQ(count(contentOf(folder / "parts/xl/styles.xml"), "formatCode=\"@\""), 1);  // the text format "@"
  EXPECT_EQ(count(contentOf(folder / "parts/xl/styles.xml"), "rgb=\"FFFFCC00\""), 1);
}

// Fault: what the library takes for nothing, or writes as it comes, lost or breaking the file.
TEST_F(Form, FileKeepsBlackAndQuotes) {
  const auto sheet = workbook.firstSheet();
  form.Superborder(sheet, "A1", 1, false);
  sheet->range("A2")->setValue("=");
  sheet->range("A3")->validation()->addList("3\",5\"");
  const TemporaryFolder folder;
  saveWorkbook(workbook, folder / "form.xlsx");
  const std::string unpack = "unzip -q " + (folder / "form.xlsx") + " -d " + (folder / "parts");
  ASSERT_EQ(std::system(unpack.c_str()), 0);
  EXPECT_EQ(count(contentOf(folder / "parts/xl/styles.xml"), "<fgColor rgb=\"FF000000\"/>"), 1);
  const std::string cells = contentOf(folder / "parts/xl/worksheets/sheet1.xml");
  EXPECT_EQ(count(cells, "<f>"), 0);
  EXPECT_EQ(count(cells, "<formula1>\"3\"\",5\"\"\"</formula1>"), 1);
}

// Fault: a form of one column merged with itself, or a cell of a form without its lines.
TEST_F(Form, SmallestFormsHaveLinesEverywhereAndMergeNothingAlone) {
  const auto lines = [&](Index rows, Index columns) {
    for (Index row = 1; row <= rows; ++row) {
      for (Index column = 1; column <= columns; ++column) {
        const CellFormat& format = workbook.firstSheet()->format(row, column);
        for (const CellLine line : {CellLine::Left, CellLine::Top, CellLine::Bottom, CellLine::Right}) {
          // Inside a merged cell there is none.
          if (workbook.firstSheet()->mergedAt(row, column) != nullptr) continue;
          EXPECT_EQ(format.line(line).style, LineStyle::Continuous) << row << ", " << column;
        }
      }
    }
    return workbook.firstSheet()->merged().size();
  };
  form.drawCNEM(1, 1);
  EXPECT_EQ(lines(4, 3), 1U);  // the note
  workbook = Workbook();
  form.PassSheet(workbook.firstSheet());
  form.drawPugh(1, 1);
  EXPECT_EQ(lines(4, 4), 2U);
  workbook = Workbook();
  form.PassSheet(workbook.firstSheet());
  form.drawPairwise(2);
  EXPECT_EQ(lines(3, 7), 0U);
}

// Fault: a size that cannot be drawn leaves half a form behind, or fails one column too early or too late.
TEST_F(Form, RefusesSizesBeforeItDraws) {
  const auto isBlank = [&] { return workbook.firstSheet()->values().empty(); };
  for (const std::int16_t size : {0, -1, -32768}) {
    EXPECT_EQ(failureNumber([&] { form.drawCNEM(size, 5); }), 5);
    EXPECT_EQ(failureNumber([&] { form.drawCNEM(5, size); }), 5);
    EXPECT_EQ(failureNumber([&] { form.drawPairwise(size); }), 5);
    EXPECT_EQ(failureNumber([&] { form.drawPugh(size, 5); }), 5);
    EXPECT_EQ(failureNumber([&] { form.drawPugh(5, size); }), 5);
    EXPECT_EQ(failureNumber([&] { form.drawQFD(size, 5, true, true, true); }), 5);
    EXPECT_EQ(failureNumber([&] { form.drawQFD(5, size, true, true, true); }), 5);
  }
  EXPECT_EQ(failureNumber([&] { form.drawCNEM(255, 1); }), 9);
  EXPECT_EQ(failureNumber([&] { form.drawPairwise(252); }), 9);
  EXPECT_EQ(failureNumber([&] { form.drawPugh(254, 1); }), 9);
  EXPECT_EQ(failureNumber([&] { form.drawQFD(124, 1, false, false, false); }), 9);
  EXPECT_EQ(failureNumber([&] { form.drawCNEM(32767, 32767); }), 9);
  EXPECT_TRUE(isBlank());
  form.drawCNEM(254, 1);
  EXPECT_EQ(at("IV3"), Variant("Total"));
  workbook = Workbook();
  form.PassSheet(workbook.firstSheet());
  form.drawPugh(253, 1);
  EXPECT_EQ(at("IV4"), Variant("=SUMPRODUCT(IV3:IV3,B3:B3)"));
}

TEST(Template, NeedsASheetFirst) {
  yTemplate form;
  EXPECT_EQ(failureNumber([&] { form.drawPugh(3, 5); }), 91);
  EXPECT_EQ(failureNumber([&] { form.PassSheet(nullptr); }), 91);
  EXPECT_EQ(failureNumber([&] { form.Superborder(nullptr, "A1", -1, true); }), 91);
  EXPECT_NE(failureText([&] { form.drawPairwise(3); }).find("PassSheet"), std::string::npos);
}

// Fault: an option text taken for another, a colour or font that does not arrive, lines drawn or wiped
// unasked.
TEST_F(Form, SuperFormatFormatsCells) {
  const auto sheet = workbook.firstSheet();
  form.SuperFormat(sheet, "B2:C3", true, 44, 12, true, "Right", "Center", false, Variant("=1+1"));
  const CellFormat first = sheet->format(2, 2);
  EXPECT_EQ(first.font, (FontFormat{"Arial", 12, true, automaticColor}));
  EXPECT_EQ(first.interior, 44);
  EXPECT_EQ(first.horizontal, HorizontalAlignment::Right);
  EXPECT_EQ(first.vertical, VerticalAlignment::Center);
  EXPECT_FALSE(first.wrap);
  EXPECT_EQ(sheet->cell(3, 3), Variant("=1+1"));
  EXPECT_EQ(first.line(CellLine::Right).style, LineStyle::Continuous);

  form.SuperFormat(sheet, "B2", false, -1, 8, false, "middle", "", true, Variant(""));
  const CellFormat& again = sheet->format(2, 2);
  EXPECT_EQ(again.horizontal, HorizontalAlignment::Right);
  EXPECT_EQ(again.vertical, VerticalAlignment::Center);
  EXPECT_EQ(again.interior, noColor);
  EXPECT_EQ(again.line(CellLine::Right).style, LineStyle::Continuous);
  EXPECT_EQ(sheet->cell(2, 2), Variant("=1+1"));

  form.Superborder(sheet, "B2:C3", 0, false);
  EXPECT_EQ(sheet->format(2, 2).line(CellLine::Right).style, LineStyle::None);
  EXPECT_EQ(sheet->format(2, 2).line(CellLine::Left).style, LineStyle::Continuous);
}

// Fault: blanks or gaps in the list, a second list refused because the first stands, an empty list.
TEST_F(Form, ListsJoinValuesInOrder) {
  const auto sheet = workbook.firstSheet();
  const Variant none;
  const auto list = [&](const Variant& a, const Variant& b, const Variant& c) {
    form.AddListVad(sheet, "B2:B9", a, b, c, none, none, none, none, none, none, Variant(0.5));
    return sheet->ruleAt(9, 2)->list;
  };
  EXPECT_EQ(list(1.0, none, "x"), "1,x,0.5");
  EXPECT_EQ(list("", "Much more", none), "Much more,0.5");
  EXPECT_EQ(failureNumber([&] {
              form.AddListVad(sheet, "B2", none, "", none, none, none, none, none, none, none, none);
            }),
            1004);
  form.AddComment(sheet, "B2", "why", 80, 40.5);
  const auto comment = sheet->commentAt(2, 2);
  EXPECT_EQ(comment->font, (FontFormat{"Arial", 8, false, automaticColor}));
  EXPECT_EQ(comment->height, 40.5);
  EXPECT_EQ(failureNumber([&] { form.AddComment(sheet, "B2", "again", 80, 40); }), 1004);
  EXPECT_EQ(failureNumber([&] { form.AddComment(sheet, "B3", "flat", 80, 0); }), 1004);
}

}  // namespace
}  // namespace zelkova
