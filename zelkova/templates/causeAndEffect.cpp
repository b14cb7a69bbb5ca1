#include "zelkova/templates/drawing.h"
#include "zelkova/templates/yTemplate.h"

namespace zelkova {

using namespace drawing;

namespace {

constexpr int headingColor = 44;
constexpr int noteColor = 15;
constexpr double commentWidth = 96;

}  // namespace

void yTemplate::drawCNEM(std::int16_t NC, std::int16_t nr) const {
  Sheet& sheet = target();
  const Index firstRow = 4, lastRow = checkedSize("nr", nr) + 3;
  const Index lastOutput = checkedSize("NC", NC) + 1, total = lastOutput + 1;
  const std::string T = columnLetters(total), lastOutputColumn = columnLetters(lastOutput);

  sheet.columns("A:A")->setColumnWidth(25);
  sheet.columns("B:" + lastOutputColumn)->setColumnWidth(5.43);
  sheet.columns(T + ":" + T)->setColumnWidth(11.57);
  sheet.rows("1:1")->setRowHeight(108.75);
  sheet.rows("2:" + std::to_string(lastRow))->setRowHeight(18.75);

  const Style heading{.interior = headingColor, .fontSize = 10, .bold = true, .vertical = "Center"};
  Style centredHeading = heading;
  centredHeading.horizontal = "Center";
  const Style left{.fontSize = 10, .vertical = "Center"};
  const Style centred{.fontSize = 10, .horizontal = "Center", .vertical = "Center"};
  const Style outputName{.fontSize = 10, .horizontal = "Center", .vertical = "Bottom"};
  const Style note{.interior = noteColor, .horizontal = "Center"};

  format(sheet, "A1", heading, "Process Output");
  format(sheet, "A2", heading, "Importance to Customer");
  format(sheet, "A3", heading, "Process Step / Input");
  const Cells outputNames{2, 1, lastOutput, 1};
  format(sheet, outputNames.address(), outputName);
  sheet.range(outputNames.address())->setOrientation(90);
  format(sheet, Cells{2, 2, lastOutput, 2}.address(), centred);
  Style scoresHeading = centredHeading;
  scoresHeading.wrap = false;  // there is height for one line
  formatAsOne(sheet, {2, 3, lastOutput, 3}, scoresHeading, "Correlation Scores");
  formatAsOne(
      sheet, {total, 1, total, 2}, note,
      "To add a column, select the last 'Process Output' column, right-click and select insert.  To add a "
      "row, copy and paste from any 'Process Step / Input' row.");
  format(sheet, T + "3", centredHeading, "Total");

  format(sheet, Cells{1, firstRow, 1, lastRow}.address(), left);
  const std::string scores = Cells{2, firstRow, lastOutput, lastRow}.address();
  format(sheet, scores, centred);
  list(sheet, scores, {1.0, 3.0, 9.0});
  format(sheet, Cells{total, firstRow, total, lastRow}.address(), centred);
  for (Index row = firstRow; row <= lastRow; ++row) {
    sheet.range(address(total, row))
        ->setValue("=SUMPRODUCT(B" + std::to_string(row) + ":" + address(lastOutput, row) +
                   ",B2:" + lastOutputColumn + "2)");
  }

  comment(sheet, "A1", "Enter the key output of the target process. (Right)", commentWidth, 36);
  comment(sheet, "A2", "Enter a rating of how important  each process output is to the customer. (Right)",
          commentWidth, 50.25);
  comment(sheet, "A3", "Enter the process step or input. (Below)", commentWidth, 28.5);
  comment(
      sheet, "B3",
      "Enter the correlation scores between the process step or input and the process output.  Use a high "
      "score to indicate a key process step or input to the process output. (Below)",
      commentWidth, 108);
  comment(sheet, T + "3",
          "Total score for the process step or input.  A process step or input with high total score is an "
          "important factor to the process.",
          commentWidth, 84);
}

}  // namespace zelkova
