#include "host/MemorySheet.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "zelkova/frame/cellText.h"
#include "zelkova/frame/numberText.h"

namespace zelkova {

namespace {

constexpr double standardColumnWidth = 8.43;
constexpr double standardRowHeight = 15;
constexpr double largestColumnWidth = 255;
constexpr double largestRowHeight = 409;
constexpr std::size_t longestList = 255;

template <class Change>
void forEachCell(const CellArea& area, Change change) {
  for (Index row = area.firstRow; row <= area.lastRow; ++row) {
    for (Index column = area.firstColumn; column <= area.lastColumn; ++column) change(row, column);
  }
}

/// What of `area` lies outside `hole`: up to four rectangles.
std::vector<CellArea> without(const CellArea& area, const CellArea& hole) {
  if (!area.meets(hole)) return {area};
  std::vector<CellArea> rest;
  const Index top = std::max(area.firstRow, hole.firstRow), bottom = std::min(area.lastRow, hole.lastRow);
  if (area.firstRow < top) rest.push_back({area.firstRow, area.firstColumn, top - 1, area.lastColumn});
  if (area.firstColumn < hole.firstColumn)
    rest.push_back({top, area.firstColumn, bottom, hole.firstColumn - 1});
  if (area.lastColumn > hole.lastColumn) rest.push_back({top, hole.lastColumn + 1, bottom, area.lastColumn});
  if (area.lastRow > bottom) rest.push_back({bottom + 1, area.firstColumn, area.lastRow, area.lastColumn});
  return rest;
}

CellArea overlap(const CellArea& a, const CellArea& b) {
  return {std::max(a.firstRow, b.firstRow), std::max(a.firstColumn, b.firstColumn),
          std::min(a.lastRow, b.lastRow), std::min(a.lastColumn, b.lastColumn)};
}

CellArea single(const MemorySheet::Place& place) {
  return {place.first, place.second, place.first, place.second};
}

void setSizes(std::map<Index, double>& sizes, Index first, Index last, double size, double largest,
              const char* what) {
  if (!(size >= 0 && size <= largest)) {
    refuseAsHost(std::string("Unable to set the ") + what + " property of the Range class");
  }
  for (Index i = first; i <= last; ++i) sizes.insert_or_assign(i, size);
}

double sizeAt(const std::map<Index, double>& sizes, Index i, double standard) {
  const auto found = sizes.find(i);
  return found == sizes.end() ? standard : found->second;
}

/// The sizes that are left when the places from `first` to `last` have gone.
void closeUp(std::map<Index, double>& sizes, Index first, Index last) {
  std::map<Index, double> rest;
  for (const auto& [i, size] : sizes) {
    if (i < first) rest.emplace(i, size);
    if (i > last) rest.emplace(i - (last - first + 1), size);
  }
  sizes = std::move(rest);
}

/// Whether a formula has closed what it opens and does not end in the middle.
bool isWhole(std::string_view formula) {
  int open = 0;
  bool isQuoted = false;
  for (const char c : formula) {
    if (c == '"') isQuoted = !isQuoted;
    if (isQuoted) continue;
    if (c == '(') ++open;
    if (c == ')' && --open < 0) return false;
  }
  return open == 0 && !isQuoted &&
         std::string_view("=+-*/^&<>,(:").find(formula.back()) == std::string_view::npos;
}

/// Whether a file can hold the text: UTF-8, no control characters other than tabs and line ends.
bool isText(std::string_view text) {
  const auto isControl = [](char c) {
    return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
  };
  return isUtf8(text) && std::none_of(text.begin(), text.end(), isControl);
}

const std::string& checkedText(const std::string& text) {
  if (!isText(text)) refuseAsHost("a text holds what is no character");
  return text;
}

/// What a cell of that number format holds when it is given `value`.
Variant taken(const Variant& value, const std::string& numberFormat) {
  if (!value.isText()) return value;
  const std::string text = checkedText(value.toText());
  if (numberFormat == "@") return text;
  if (text.size() > 1 && text.starts_with('=')) {
    if (!isWhole(text)) refuseAsHost("\"" + text + "\" is no formula");
    return text;
  }
  if (const std::optional<double> number = numberOf(text)) return *number;
  return text;
}

template <class T>
void moveEntries(std::map<MemorySheet::Place, T>& entries, const Deletion& deletion) {
  std::map<MemorySheet::Place, T> rest;
  for (auto& [place, entry] : entries) {
    if (const auto cell = deletion.moved(single(place))) {
      rest.emplace(MemorySheet::Place(cell->firstRow, cell->firstColumn), std::move(entry));
    }
  }
  entries = std::move(rest);
}

}  // namespace

Variant MemorySheet::cell(Index row, Index column) const {
  const auto found = values_.find({row, column});
  return found == values_.end() ? Variant() : found->second;
}

void MemorySheet::setCell(Index row, Index column, const Variant& value) {
  if (value.isNothing()) {
    values_.erase({row, column});
  } else {
    values_.insert_or_assign({row, column}, taken(value, format(row, column).numberFormat));
  }
}

FormatTable::Id MemorySheet::formatId(Index row, Index column) const {
  if (row > static_cast<Index>(formatIds_.size())) return 0;
  const auto& ids = formatIds_[static_cast<std::size_t>(row - 1)];
  return column > static_cast<Index>(ids.size()) ? 0 : ids[static_cast<std::size_t>(column - 1)];
}

FormatTable::Id& MemorySheet::formatIdRef(Index row, Index column) {
  if (row > static_cast<Index>(formatIds_.size())) formatIds_.resize(static_cast<std::size_t>(row));
  auto& ids = formatIds_[static_cast<std::size_t>(row - 1)];
  if (column > static_cast<Index>(ids.size())) ids.resize(static_cast<std::size_t>(column));
  return ids[static_cast<std::size_t>(column - 1)];
}

void MemorySheet::reformat(const CellArea& area, const std::function<void(CellFormat&)>& change) {
  // Few formats stand in many cells: each is changed once.
  constexpr auto unknown = std::numeric_limits<FormatTable::Id>::max();
  std::vector<FormatTable::Id> changed(formats_.size(), unknown);
  if (formatIds_.size() < static_cast<std::size_t>(area.lastRow)) {
    formatIds_.resize(static_cast<std::size_t>(area.lastRow));
  }
  for (Index row = area.firstRow; row <= area.lastRow; ++row) {
    auto& ids = formatIds_[static_cast<std::size_t>(row - 1)];
    if (ids.size() < static_cast<std::size_t>(area.lastColumn))
      ids.resize(static_cast<std::size_t>(area.lastColumn));
    for (Index column = area.firstColumn; column <= area.lastColumn; ++column) {
      FormatTable::Id& id = ids[static_cast<std::size_t>(column - 1)];
      FormatTable::Id& next = changed[id];
      if (next == unknown) {
        CellFormat format = formats_[id];
        change(format);
        next = formats_.id(format);
      }
      id = next;
    }
  }
}

void MemorySheet::changeLines(const CellArea& area, CellLine line,
                              const std::function<void(LineFormat&)>& change) {
  reformat(area, [&](CellFormat& format) { change(format.line(line)); });
}

void MemorySheet::redraw(const CellArea& area, BorderItem item,
                         const std::function<void(LineFormat&)>& change) {
  const Index top = area.firstRow, left = area.firstColumn, bottom = area.lastRow, right = area.lastColumn;
  const auto column = [&](Index first, Index last, CellLine line) {
    if (first >= 1 && last <= columnsOfSheet && first <= last)
      changeLines({top, first, bottom, last}, line, change);
  };
  const auto row = [&](Index first, Index last, CellLine line) {
    if (first >= 1 && last <= rowsOfSheet && first <= last)
      changeLines({first, left, last, right}, line, change);
  };
  switch (item) {
    case BorderItem::DiagonalDown:
      return changeLines(area, CellLine::DiagonalDown, change);
    case BorderItem::DiagonalUp:
      return changeLines(area, CellLine::DiagonalUp, change);
    case BorderItem::EdgeLeft:
      column(left, left, CellLine::Left);
      return column(left - 1, left - 1, CellLine::Right);
    case BorderItem::EdgeRight:
      column(right, right, CellLine::Right);
      return column(right + 1, right + 1, CellLine::Left);
    case BorderItem::EdgeTop:
      row(top, top, CellLine::Top);
      return row(top - 1, top - 1, CellLine::Bottom);
    case BorderItem::EdgeBottom:
      row(bottom, bottom, CellLine::Bottom);
      return row(bottom + 1, bottom + 1, CellLine::Top);
    case BorderItem::InsideVertical:
      if (left == right)
        refuseAsHost("Unable to set the Borders property: a single column has no line inside");
      column(left, right - 1, CellLine::Right);
      return column(left + 1, right, CellLine::Left);
    case BorderItem::InsideHorizontal:
      if (top == bottom) refuseAsHost("Unable to set the Borders property: a single row has no line inside");
      row(top, bottom - 1, CellLine::Bottom);
      return row(top + 1, bottom, CellLine::Top);
  }
  refuseAsHost("Unable to get the Borders property: there is no such line");
}

const CellArea* MemorySheet::mergedAt(Index row, Index column) const {
  const auto found = mergedInto_.find({row, column});
  return found == mergedInto_.end() ? nullptr : &merged_.at(found->second);
}

void MemorySheet::merge(const CellArea& area) {
  if (area.isSingle()) return;
  forEachCell(area, [&](Index row, Index column) {
    const CellArea* other = mergedAt(row, column);
    if (other != nullptr && !area.contains(*other)) refuseAsHost("We can't do that to a merged cell.");
  });
  separate(area);
  const Index top = area.firstRow, left = area.firstColumn, bottom = area.lastRow, right = area.lastColumn;
  const CellFormat first = format(top, left);
  reformat(area, [&](CellFormat& cell) {
    const auto lines = cell.lines;
    cell = first;
    cell.lines = lines;
  });
  const auto none = [](LineFormat& line) { line = LineFormat(); };
  if (left < right) redraw(area, BorderItem::InsideVertical, none);
  if (top < bottom) redraw(area, BorderItem::InsideHorizontal, none);
  merged_.emplace(Place(top, left), area);
  forEachCell(area, [&](Index row, Index column) {
    mergedInto_.emplace(Place(row, column), Place(top, left));
    if (row != top || column != left) values_.erase({row, column});
  });
}

void MemorySheet::separate(const CellArea& area) {
  if (merged_.empty()) return;
  std::vector<Place> gone;
  forEachCell(area, [&](Index row, Index column) {
    const auto found = mergedInto_.find({row, column});
    if (found != mergedInto_.end() && (gone.empty() || gone.back() != found->second))
      gone.push_back(found->second);
  });
  for (const Place& place : gone) {
    const auto found = merged_.find(place);
    if (found == merged_.end()) continue;
    forEachCell(found->second, [&](Index row, Index column) { mergedInto_.erase({row, column}); });
    merged_.erase(found);
  }
}

void MemorySheet::eraseRules(const CellArea& area) {
  std::vector<std::pair<CellArea, Rule>> rest;
  for (auto& [cells, rule] : rules_) {
    for (const CellArea& part : without(cells, area)) rest.emplace_back(part, rule);
  }
  rules_ = std::move(rest);
}

MemorySheet::Rule MemorySheet::addRule(const CellArea& area, const std::string& list) {
  if (list.empty()) refuseAsHost("a list needs at least one value");
  if (list.size() > longestList) refuseAsHost("a list has at most 255 characters");
  const bool stands =
      std::any_of(rules_.begin(), rules_.end(), [&](const auto& entry) { return entry.first.meets(area); });
  if (stands) refuseAsHost("the cells have a validation rule already");
  auto rule = std::make_shared<ValidationRule>();
  rule->list = checkedText(list);
  rules_.emplace_back(area, rule);
  return rule;
}

MemorySheet::Rule MemorySheet::ruleAt(Index row, Index column) const {
  const CellArea cell = single({row, column});
  for (const auto& [cells, rule] : rules_) {
    if (cells.meets(cell)) return rule;
  }
  return nullptr;
}

std::shared_ptr<CommentBox> MemorySheet::addComment(Index row, Index column, const std::string& text) {
  checkedText(text);
  const auto [entry, isNew] = comments_.try_emplace({row, column});
  if (!isNew) refuseAsHost("the cell has a comment already");
  entry->second = std::make_shared<CommentBox>();
  entry->second->text = text;
  return entry->second;
}

std::shared_ptr<CommentBox> MemorySheet::commentAt(Index row, Index column) const {
  const auto found = comments_.find({row, column});
  return found == comments_.end() ? nullptr : found->second;
}

void MemorySheet::setColumnWidth(const CellArea& area, double characters) {
  setSizes(columnWidths_, area.firstColumn, area.lastColumn, characters, largestColumnWidth, "ColumnWidth");
}
void MemorySheet::setRowHeight(const CellArea& area, double points) {
  setSizes(rowHeights_, area.firstRow, area.lastRow, points, largestRowHeight, "RowHeight");
}
double MemorySheet::columnWidth(Index column) const {
  return sizeAt(columnWidths_, column, standardColumnWidth);
}
double MemorySheet::rowHeight(Index row) const { return sizeAt(rowHeights_, row, standardRowHeight); }

void MemorySheet::checkNotTorn(const Deletion& deletion) const {
  const CellArea band = deletion.band();
  for (const auto& [place, area] : merged_) {
    if (!area.meets(band)) continue;
    const bool isTorn = deletion.shift == Shift::Up
                            ? area.firstColumn < band.firstColumn || area.lastColumn > band.lastColumn
                            : area.firstRow < band.firstRow || area.lastRow > band.lastRow;
    if (isTorn) refuseAsHost("We can't do that to a merged cell.");
  }
}

void MemorySheet::deleteCells(const Deletion& deletion) {
  checkNotTorn(deletion);
  const CellArea& area = deletion.area;
  const auto height = static_cast<std::ptrdiff_t>(area.lastRow - area.firstRow + 1);
  const auto width = static_cast<std::ptrdiff_t>(area.lastColumn - area.firstColumn + 1);

  moveEntries(values_, deletion);
  moveEntries(comments_, deletion);
  for (auto& [place, value] : values_) {
    if (value.isText() && value.toText().starts_with('=')) value = deletion.follow(value.toText());
  }

  const auto rowsWithFormat = static_cast<Index>(formatIds_.size());
  if (deletion.shift == Shift::Left) {
    for (Index row = area.firstRow; row <= std::min(area.lastRow, rowsWithFormat); ++row) {
      auto& ids = formatIds_[static_cast<std::size_t>(row - 1)];
      const auto size = static_cast<std::ptrdiff_t>(ids.size());
      const std::ptrdiff_t first = std::min(size, static_cast<std::ptrdiff_t>(area.firstColumn - 1));
      ids.erase(ids.begin() + first, ids.begin() + std::min(size, first + width));
    }
  } else if (width == columnsOfSheet) {
    const std::ptrdiff_t first = std::min<std::ptrdiff_t>(rowsWithFormat, area.firstRow - 1);
    formatIds_.erase(formatIds_.begin() + first,
                     formatIds_.begin() + std::min<std::ptrdiff_t>(rowsWithFormat, first + height));
  } else {
    for (Index row = area.firstRow; row <= rowsWithFormat; ++row) {
      for (Index column = area.firstColumn; column <= area.lastColumn; ++column) {
        const FormatTable::Id below = formatId(row + height, column);
        if (formatId(row, column) != below) formatIdRef(row, column) = below;
      }
    }
  }

  std::map<Place, CellArea> merged;
  mergedInto_.clear();
  for (const auto& [place, cells] : merged_) {
    const auto left = deletion.moved(cells);
    if (!left || left->isSingle()) continue;
    const Place first(left->firstRow, left->firstColumn);
    merged.emplace(first, *left);
    forEachCell(*left, [&](Index row, Index column) { mergedInto_.emplace(Place(row, column), first); });
  }
  merged_ = std::move(merged);

  std::vector<std::pair<CellArea, Rule>> rules;
  for (const auto& [cells, rule] : rules_) {
    for (const CellArea& part : without(cells, deletion.band())) rules.emplace_back(part, rule);
    if (!cells.meets(deletion.band())) continue;
    if (const auto left = deletion.moved(overlap(cells, deletion.band()))) rules.emplace_back(*left, rule);
  }
  rules_ = std::move(rules);

  if (width == columnsOfSheet) closeUp(rowHeights_, area.firstRow, area.lastRow);
  if (height == rowsOfSheet) closeUp(columnWidths_, area.firstColumn, area.lastColumn);
}

void MemorySheet::clear(const CellArea& area) {
  const auto isInside = [&](const auto& entry) { return area.contains(single(entry.first)); };
  std::erase_if(values_, isInside);
  std::erase_if(comments_, isInside);
  eraseRules(area);
  separate(area);
  reformat(area, [](CellFormat& format) { format = CellFormat(); });
}

std::shared_ptr<MemorySheet> MemorySheet::copy() const {
  auto result = std::make_shared<MemorySheet>(*this);
  for (auto& [place, box] : result->comments_) box = std::make_shared<CommentBox>(*box);
  for (auto& [area, rule] : result->rules_) rule = std::make_shared<ValidationRule>(*rule);
  return result;
}

void MemorySheet::clear() { *this = MemorySheet(name_); }

}  // namespace zelkova
