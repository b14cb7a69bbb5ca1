#include "zelkova/templates/drawing.h"
#include "zelkova/templates/yTemplate.h"

namespace zelkova {

using namespace drawing;

namespace {

constexpr int headingColor = 44;
constexpr int ratingColor = 36;
constexpr int totalColor = 15;

constexpr Index ratings = 5;
constexpr const char* key = "Company   |   Symbol";

/// Where the rooms of a house of quality lie. From column C on all columns are narrow, and a characteristic
/// takes two: so the roof's cell of a pair stands over the middle between both.
class House {
 public:
  House(Index characteristics, Index voices) : characteristics_(characteristics), voices_(voices) {}

  Index characteristics() const { return characteristics_; }
  Index voices() const { return voices_; }

  // Columns.
  static constexpr Index voice = 1, importance = 2, firstNarrow = 3;
  Index characteristic(Index i) const { return firstNarrow + 2 * (i - 1); }
  Index lastOfMatrix() const { return characteristic(characteristics_) + 1; }
  Index total() const { return lastOfMatrix() + 1; }
  Index firstRating() const { return total() + 2; }
  Index lastRating() const { return firstRating() + ratings - 1; }

  // Rows.
  Index roofRows() const { return characteristics_ - 1; }
  Index goal() const { return roofRows() + 1; }
  Index name() const { return goal() + 1; }
  Index unit() const { return name() + 1; }
  Index target() const { return unit() + 1; }
  Index difficulty() const { return target() + 1; }
  Index heading() const { return difficulty() + 1; }
  Index firstVoice() const { return heading() + 1; }
  Index lastVoice() const { return heading() + voices_; }
  Index priority() const { return lastVoice() + 1; }
  Index firstTechnical() const { return priority() + 1; }
  Index lastTechnical() const { return firstTechnical() + ratings; }

 private:
  Index characteristics_, voices_;
};

const Style centred{.horizontal = "Center", .vertical = "Center"};
const Style left{.vertical = "Center"};
const Style heading{.interior = headingColor, .bold = true, .horizontal = "Center", .vertical = "Center"};
const Style leftHeading{.interior = headingColor, .bold = true, .vertical = "Center"};
const Style rating{.interior = ratingColor, .horizontal = "Center", .vertical = "Center"};
const Style sum{.interior = totalColor, .horizontal = "Center", .vertical = "Center"};

void setSizes(Sheet& sheet, const House& house) {
  const auto setWidth = [&](Index first, Index last, double width) {
    sheet.columns(columnLetters(first) + ":" + columnLetters(last))->setColumnWidth(width);
  };
  const auto setHeight = [&](Index first, Index last, double height) {
    sheet.rows(std::to_string(first) + ":" + std::to_string(last))->setRowHeight(height);
  };
  setWidth(House::voice, House::voice, 30);
  setWidth(House::importance, House::importance, 11);
  setWidth(House::firstNarrow, house.lastRating(), 3.57);
  setHeight(1, house.lastTechnical(), 18.75);
  setHeight(house.name(), house.name(), 108.75);
}

/// A row of cells, one a characteristic, and their heading at the left.
void drawHeader(Sheet& sheet, const House& house, Index row, const char* label) {
  formatAsOne(sheet, {House::voice, row, House::importance, row}, leftHeading, label);
  for (Index i = 1; i <= house.characteristics(); ++i) {
    formatAsOne(sheet, {house.characteristic(i), row, house.characteristic(i) + 1, row}, centred);
  }
}

void drawHeaders(Sheet& sheet, const House& house) {
  drawHeader(sheet, house, house.goal(), "Goal");
  drawHeader(sheet, house, house.name(), "CTQ");
  drawHeader(sheet, house, house.unit(), "Unit");
  drawHeader(sheet, house, house.target(), "Target");
  drawHeader(sheet, house, house.difficulty(), "Difficulty Rating");
  const auto names =
      sheet.range(Cells{House::firstNarrow, house.name(), house.lastOfMatrix(), house.name()}.address());
  names->setOrientation(90);
  names->setVerticalAlignment(VerticalAlignment::Bottom);
  format(sheet, address(House::voice, house.heading()), leftHeading, "VOC");
  format(sheet, address(House::importance, house.heading()), heading, "Importance");
  for (Index i = 1; i <= house.characteristics(); ++i) {
    formatAsOne(sheet,
                {house.characteristic(i), house.heading(), house.characteristic(i) + 1, house.heading()},
                heading, static_cast<double>(i));
  }
}

void drawMatrix(Sheet& sheet, const House& house) {
  const Cells matrix{House::firstNarrow, house.firstVoice(), house.lastOfMatrix(), house.lastVoice()};
  format(sheet, Cells{House::voice, house.firstVoice(), House::voice, house.lastVoice()}.address(), left);
  format(sheet, Cells{House::importance, house.firstVoice(), House::importance, house.lastVoice()}.address(),
         centred);
  format(sheet, matrix.address(), centred);
  list(sheet, matrix.address(), {1.0, 3.0, 9.0});
  for (Index row = house.firstVoice(); row <= house.lastVoice(); ++row) {
    for (Index i = 1; i <= house.characteristics(); ++i) {
      merge(sheet, {house.characteristic(i), row, house.characteristic(i) + 1, row});
    }
  }
}

/// How much of each voice the characteristics carry, and how much each of them carries of all voices.
void drawSums(Sheet& sheet, const House& house) {
  formatAsOne(sheet, {house.total(), house.goal(), house.total() + 1, house.heading()}, heading, "Total");
  for (Index row = house.firstVoice(); row <= house.lastVoice(); ++row) {
    formatAsOne(sheet, {house.total(), row, house.total() + 1, row}, sum,
                "=SUM(" + address(House::firstNarrow, row) + ":" + address(house.lastOfMatrix(), row) + ")*" +
                    address(House::importance, row));
  }
  const Index row = house.priority();
  formatAsOne(sheet, {House::voice, row, House::importance, row}, leftHeading, "Priority");
  const auto voices = [&](Index column) {
    return address(column, house.firstVoice()) + ":" + address(column, house.lastVoice());
  };
  for (Index i = 1; i <= house.characteristics(); ++i) {
    const Index column = house.characteristic(i);
    formatAsOne(sheet, {column, row, column + 1, row}, sum,
                "=SUMPRODUCT(" + voices(House::importance) + "," + voices(column) + ")");
  }
}

/// A level a row, neighbours at the bottom: each cell stands midway between the two characteristics that it
/// relates.
void drawRoof(Sheet& sheet, const House& house) {
  for (Index distance = 1; distance <= house.roofRows(); ++distance) {
    const Index row = house.characteristics() - distance;
    const Index first = House::firstNarrow + distance, last = house.lastOfMatrix() - distance;
    const std::string level = Cells{first, row, last, row}.address();
    format(sheet, level, centred);
    sheet.range(level)->setNumberFormat("@");
    list(sheet, level, {"++", "+", "-", "--"});
    for (Index column = first; column < last; column += 2) merge(sheet, {column, row, column + 1, row});
  }
}

void drawCustomerBenchmarking(Sheet& sheet, const House& house) {
  const auto across = [&](Index row) { return Cells{house.firstRating(), row, house.lastRating(), row}; };
  formatAsOne(sheet, across(house.goal()), heading, "Benchmarking");
  Style keyStyle = heading;
  keyStyle.vertical = "Bottom";
  formatAsOne(sheet, across(house.name()), keyStyle, key);
  for (Index row = house.unit(); row <= house.difficulty(); ++row) formatAsOne(sheet, across(row), centred);
  for (Index i = 1; i <= ratings; ++i) {
    format(sheet, address(house.firstRating() + i - 1, house.heading()), rating, static_cast<double>(i));
  }
  format(sheet,
         Cells{house.firstRating(), house.firstVoice(), house.lastRating(), house.lastVoice()}.address(),
         centred);
}

void drawTechnicalBenchmarking(Sheet& sheet, const House& house) {
  const Index top = house.firstTechnical();
  format(sheet, address(House::voice, top), leftHeading, key);
  formatAsOne(sheet, {House::importance, top, house.lastOfMatrix(), top}, leftHeading, "Benchmarking");
  format(sheet, Cells{House::voice, top + 1, House::voice, house.lastTechnical()}.address(), left);
  for (Index i = 1; i <= ratings; ++i) {
    const Index row = house.lastTechnical() - i + 1;
    format(sheet, address(House::importance, row), rating, static_cast<double>(i));
    for (Index j = 1; j <= house.characteristics(); ++j) {
      formatAsOne(sheet, {house.characteristic(j), row, house.characteristic(j) + 1, row}, centred);
    }
  }
}

}  // namespace

void yTemplate::drawQFD(std::int16_t NC, std::int16_t nr, bool roomD, bool roomE, bool roomF) const {
  Sheet& sheet = target();
  const House house(checkedSize("NC", NC), checkedSize("nr", nr));
  const std::string firstRating = columnLetters(house.firstRating()),
                    lastRating = columnLetters(house.lastRating());

  format(sheet, "A1:IV500", {.border = false});
  setSizes(sheet, house);
  drawHeaders(sheet, house);
  drawMatrix(sheet, house);
  drawSums(sheet, house);
  drawRoof(sheet, house);
  drawCustomerBenchmarking(sheet, house);
  drawTechnicalBenchmarking(sheet, house);

  // From the end of the sheet to its start: the rows that are still to go keep their places.
  if (!roomD) sheet.columns(firstRating + ":" + lastRating)->deleteCells(Shift::Left);
  const auto deleteRows = [&](Index first, Index last) {
    sheet.rows(std::to_string(first) + ":" + std::to_string(last))->deleteCells(Shift::Up);
  };
  if (!roomE) deleteRows(house.firstTechnical(), house.lastTechnical());
  if (!roomF && house.roofRows() > 0) deleteRows(1, house.roofRows());
}

}  // namespace zelkova
