#include "zelkova/templates/drawing.h"
#include "zelkova/templates/yTemplate.h"

namespace zelkova {

using namespace drawing;

namespace {

constexpr int factorColor = 36;
constexpr int mirrorColor = 15;
constexpr int barColor = 1;

/// Of the bar that shows a share of 1.
constexpr const char* barLength = "25";
constexpr const char* barCharacter = "\u2588";

/// The verdict on a pair seen from its other factor.
std::string mirrored(const std::string& cell) {
  const auto verdict = [&](const char* given, const char* shown, const std::string& otherwise) {
    return "IF(" + cell + "=\"" + given + "\",\"" + shown + "\"," + otherwise + ")";
  };
  return "=" + verdict("Much more", "Much less",
                       verdict("More", "Less",
                               verdict("Equal", "Equal",
                                       verdict("Less", "More", verdict("Much less", "Much more", "\"\"")))));
}

std::string weighted(const Cells& row) {
  const std::string verdicts =
      address(row.firstColumn, row.firstRow) + ":" + address(row.lastColumn, row.lastRow);
  const auto count = [&](const char* verdict) { return "COUNTIF(" + verdicts + ",\"" + verdict + "\")"; };
  return "=" + count("Much more") + "*9+" + count("More") + "*3+" + count("Equal") + "*1+" + count("Less") +
         "/3+" + count("Much less") + "/9";
}

std::string shareOf(const std::string& one, const std::string& all) {
  return "=IF(SUM(" + all + ")>0," + one + "/SUM(" + all + "),0)";
}

std::string rankOf(const std::string& one, const std::string& all) {
  return "=RANK(" + one + "," + all + ")";
}

std::string barOf(const std::string& share) {
  return "=IF(" + share + "=0,\"\",REPT(\"" + barCharacter + "\"," + share + "*" + barLength + "))";
}

}  // namespace

void yTemplate::drawPairwise(std::int16_t NP) const {
  Sheet& sheet = target();
  const Index factors = checkedSize("NP", NP), last = factors + 1;
  const Index priority = last + 1, share = priority + 1, rank = share + 1, chart = rank + 1;
  const std::string chartColumn = columnLetters(chart);

  sheet.columns("A:A")->setColumnWidth(20.71);
  sheet.columns("B:" + columnLetters(rank))->setColumnWidth(9);
  sheet.columns(chartColumn + ":" + chartColumn)->setColumnWidth(27.86);
  sheet.rows("1:1")->setRowHeight(112.5);
  sheet.rows("2:" + std::to_string(last))->setRowHeight(18.75);

  const Style bottomLeft{.vertical = "Bottom"};
  const Style bottomCentred{.horizontal = "Center", .vertical = "Bottom"};
  const Style left{.vertical = "Center"};
  const Style centred{.horizontal = "Center", .vertical = "Center"};
  const Style factor{.interior = factorColor, .vertical = "Center"};
  Style diagonal = centred, mirror = centred;
  diagonal.interior = factorColor;
  mirror.interior = mirrorColor;

  format(sheet, "A1", bottomLeft, "Factors");
  format(sheet, Cells{2, 1, last, 1}.address(), bottomCentred);
  sheet.range(Cells{2, 1, last, 1}.address())->setOrientation(90);
  format(sheet, address(priority, 1), bottomCentred, "Priority");
  format(sheet, address(share, 1), bottomCentred, "Priority%");
  format(sheet, address(rank, 1), bottomCentred, "Rank");
  format(sheet, address(chart, 1), bottomLeft, "Chart");

  format(sheet, Cells{1, 2, 1, last}.address(), factor);
  format(sheet, Cells{2, 2, last, last}.address(), centred);
  for (Index i = 1; i <= factors; ++i) {
    const Index row = i + 1, own = i + 1;
    sheet.range(address(1, row))->setValue("Factor " + std::to_string(i));
    sheet.range(address(own, 1))->setValue("=" + address(1, row));
    format(sheet, address(own, row), diagonal);
    if (own < last) {
      list(sheet, Cells{own + 1, row, last, row}.address(),
           {"Much more", "More", "Equal", "Less", "Much less"});
    }
    if (i > 1) format(sheet, Cells{2, row, own - 1, row}.address(), mirror);
    for (Index column = 2; column < own; ++column) {
      sheet.range(address(column, row))->setValue(mirrored(address(row, column)));
    }
  }

  format(sheet, Cells{priority, 2, rank, last}.address(), centred);
  format(sheet, Cells{chart, 2, chart, last}.address(), left);
  const std::string priorities = address(priority, 2) + ":" + address(priority, last);
  for (Index row = 2; row <= last; ++row) {
    const std::string own = address(priority, row), ownShare = address(share, row);
    sheet.range(own)->setValue(weighted({2, row, last, row}));
    sheet.range(ownShare)->setValue(shareOf(own, priorities));
    sheet.range(address(rank, row))->setValue(rankOf(own, priorities));
    sheet.range(address(chart, row))->setValue(barOf(ownShare));
  }
  sheet.range(priorities)->setNumberFormat("0.00");
  sheet.range(Cells{share, 2, share, last}.address())->setNumberFormat("0.00%");
  sheet.range(Cells{chart, 2, chart, last}.address())->font()->setColorIndex(barColor);
}

}  // namespace zelkova
