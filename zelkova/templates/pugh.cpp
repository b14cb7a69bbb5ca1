#include "zelkova/templates/drawing.h"
#include "zelkova/templates/yTemplate.h"

namespace zelkova {

using namespace drawing;

namespace {

constexpr int headingColor = 44;
constexpr double commentWidth = 96;

}  // namespace

void yTemplate::drawPugh(std::int16_t NC, std::int16_t nr) const {
  Sheet& sheet = target();
  const Index firstRow = 3, lastRow = checkedSize("nr", nr) + 2, netScore = lastRow + 1;
  const Index firstAlternative = 4, lastAlternative = checkedSize("NC", NC) + 3;
  const std::string lastColumn = columnLetters(lastAlternative);

  sheet.columns("A:A")->setColumnWidth(32);
  sheet.columns("B:B")->setColumnWidth(14);
  sheet.columns("C:C")->setColumnWidth(14);
  sheet.columns("D:" + lastColumn)->setColumnWidth(14);
  sheet.rows("1:1")->setRowHeight(83.25);
  sheet.rows("2:" + std::to_string(netScore))->setRowHeight(18.75);

  const Style heading{.interior = headingColor, .bold = true, .horizontal = "Center", .vertical = "Center"};
  Style leftHeading = heading;
  leftHeading.horizontal = "Left";
  const Style left{.vertical = "Center"};
  const Style centred{.horizontal = "Center", .vertical = "Center"};
  Style total = centred;
  total.bold = true;

  formatAsOne(sheet, {1, 1, 1, 2}, leftHeading, "CTQ or Criteria");
  formatAsOne(sheet, {2, 1, 2, 2}, heading, "CTQ or Criteria Priority (Optional)");
  format(sheet, "C1", heading, "Baseline");
  format(sheet, "C2", heading, "Current Solution");
  formatAsOne(sheet, {firstAlternative, 1, lastAlternative, 1}, heading, "Alternative Solution");
  format(sheet, Cells{firstAlternative, 2, lastAlternative, 2}.address(), centred);

  const Cells priorities{2, firstRow, 2, lastRow};
  format(sheet, Cells{1, firstRow, 1, lastRow}.address(), left);
  format(sheet, priorities.address(), centred, "=1");
  format(sheet, Cells{3, firstRow, 3, lastRow}.address(), centred, "S");
  const std::string scores = Cells{firstAlternative, firstRow, lastAlternative, lastRow}.address();
  format(sheet, scores, centred, "=0");
  list(sheet, scores, {-9.0, -3.0, 0.0, 3.0, 9.0});

  format(sheet, address(1, netScore), leftHeading, "Net Score");
  format(sheet, Cells{2, netScore, lastAlternative, netScore}.address(), total);
  const std::string weights = address(2, firstRow) + ":" + address(2, lastRow);
  for (Index column = firstAlternative; column <= lastAlternative; ++column) {
    sheet.range(address(column, netScore))
        ->setValue("=SUMPRODUCT(" + address(column, firstRow) + ":" + address(column, lastRow) + "," +
                   weights + ")");
  }

  comment(sheet, "A1", "Enter the CTQ or criteria used to compare the solutions. (Below)", commentWidth, 57);
  comment(
      sheet, "B1",
      "Enter the CTQ or criteria priority index.  An important CTQ or criteria should have a higher priority "
      "index. (Below)",
      commentWidth, 81);
  comment(sheet, "D1",
          "Enter the alternative solutions and select its effectiveness relative to the current solution. "
          "(Below)",
          commentWidth, 69);
  comment(sheet, address(1, netScore),
          "Shows the net score for each alternative solution.  An alternative solution with high positive "
          "outperforms the current solution. (Right)",
          commentWidth, 102);
}

}  // namespace zelkova
