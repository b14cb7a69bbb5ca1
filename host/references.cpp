#include "host/references.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "zelkova/frame/Failure.h"
#include "zelkova/frame/cellText.h"
#include "zelkova/frame/numberText.h"

namespace zelkova {

namespace {

void skipDollar(std::string_view& text) {
  if (text.starts_with('$')) text.remove_prefix(1);
}

/// Letters as a column number, 0 for none; moves `text` past them.
Index takeColumn(std::string_view& text) {
  skipDollar(text);
  Index column = 0;
  while (!text.empty() && text.front() >= 'A' && text.front() <= 'Z' && column <= columnsOfSheet) {
    column = column * 26 + (text.front() - 'A' + 1);
    text.remove_prefix(1);
  }
  return column;
}

Index takeRow(std::string_view& text) {
  skipDollar(text);
  Index row = 0;
  while (!text.empty() && text.front() >= '0' && text.front() <= '9' && row <= rowsOfSheet) {
    row = row * 10 + (text.front() - '0');
    text.remove_prefix(1);
  }
  return row;
}

bool isRow(Index row) { return row >= 1 && row <= rowsOfSheet; }
bool isColumn(Index column) { return column >= 1 && column <= columnsOfSheet; }

/// Reads "corner" or "corner:corner".
template <class Corner>
CellArea readArea(std::string_view address, Corner corner) {
  const std::string upper = upperCase(address);
  std::string_view text = upper;
  const auto read = [&] {
    const std::optional<CellArea> cells = corner(text);
    if (!cells) refuseAsHost("Range: \"" + std::string(address) + "\" names no cells");
    return *cells;
  };
  const CellArea first = read();
  CellArea last = first;
  if (text.starts_with(':')) {
    text.remove_prefix(1);
    last = read();
  }
  if (!text.empty()) refuseAsHost("Range: \"" + std::string(address) + "\" names no cells");
  return {std::min(first.firstRow, last.firstRow), std::min(first.firstColumn, last.firstColumn),
          std::max(first.lastRow, last.lastRow), std::max(first.lastColumn, last.lastColumn)};
}

bool isWordCharacter(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '.' || c == '$' || c == '!';
}

/// A reference to a cell inside a formula, with the dollar signs that hold it.
struct CellReference {
  Index row, column;
  bool holdsRow, holdsColumn;
};

/// The reference that `word` is, if it is one.
std::optional<CellReference> cellReference(std::string_view word) {
  CellReference reference{};
  reference.holdsColumn = word.starts_with('$');
  reference.column = takeColumn(word);
  reference.holdsRow = word.starts_with('$');
  reference.row = takeRow(word);
  if (!word.empty() || !isColumn(reference.column) || !isRow(reference.row)) return std::nullopt;
  return reference;
}

std::string textOf(const CellReference& reference, Index row, Index column) {
  return (reference.holdsColumn ? "$" : "") + columnLetters(column) + (reference.holdsRow ? "$" : "") +
         std::to_string(row);
}

/// The span [first, last] after `count` places from `from` on have gone; nothing where none is left.
std::optional<std::pair<Index, Index>> closedUp(Index first, Index last, Index from, Index count) {
  const auto place = [&](Index i) { return i < from ? i : std::max(from, i - count); };
  const Index newFirst = place(first);
  const Index newLast = last < from ? last : last < from + count ? from - 1 : last - count;
  if (newLast < newFirst) return std::nullopt;
  return std::pair(newFirst, newLast);
}

}  // namespace

void refuseAsHost(const std::string& text) {
  throw Failure(static_cast<int>(FailureNumber::HostRefused), text);
}

CellArea cellArea(std::string_view address) {
  return readArea(address, [](std::string_view& text) -> std::optional<CellArea> {
    const Index column = takeColumn(text), row = takeRow(text);
    if (!isColumn(column) || !isRow(row)) return std::nullopt;
    return CellArea{row, column, row, column};
  });
}

CellArea rowArea(std::string_view address) {
  return readArea(address, [](std::string_view& text) -> std::optional<CellArea> {
    const Index row = takeRow(text);
    if (!isRow(row)) return std::nullopt;
    return CellArea{row, 1, row, columnsOfSheet};
  });
}

CellArea columnArea(std::string_view address) {
  return readArea(address, [](std::string_view& text) -> std::optional<CellArea> {
    const Index column = takeColumn(text);
    if (!isColumn(column)) return std::nullopt;
    return CellArea{1, column, rowsOfSheet, column};
  });
}

CellArea Deletion::band() const {
  CellArea band = area;
  (shift == Shift::Up ? band.lastRow : band.lastColumn) = shift == Shift::Up ? rowsOfSheet : columnsOfSheet;
  return band;
}

std::optional<CellArea> Deletion::moved(const CellArea& cells) const {
  CellArea result = cells;
  if (shift == Shift::Up) {
    if (cells.firstColumn < area.firstColumn || cells.lastColumn > area.lastColumn) return cells;
    const auto rows =
        closedUp(cells.firstRow, cells.lastRow, area.firstRow, area.lastRow - area.firstRow + 1);
    if (!rows) return std::nullopt;
    std::tie(result.firstRow, result.lastRow) = *rows;
  } else {
    if (cells.firstRow < area.firstRow || cells.lastRow > area.lastRow) return cells;
    const auto columns = closedUp(cells.firstColumn, cells.lastColumn, area.firstColumn,
                                  area.lastColumn - area.firstColumn + 1);
    if (!columns) return std::nullopt;
    std::tie(result.firstColumn, result.lastColumn) = *columns;
  }
  return result;
}

std::string Deletion::follow(const std::string& formula) const {
  std::string result;
  std::size_t at = 0;
  const auto takeWord = [&](std::size_t from) {
    std::size_t end = from;
    while (end < formula.size() && isWordCharacter(formula[end])) ++end;
    return formula.substr(from, end - from);
  };
  while (at < formula.size()) {
    if (formula[at] == '"') {
      const std::size_t close = std::min(formula.find('"', at + 1), formula.size() - 1);
      result += formula.substr(at, close - at + 1);
      at = close + 1;
      continue;
    }
    const std::string word = takeWord(at);
    if (word.empty()) {
      result += formula[at++];
      continue;
    }
    at += word.size();
    const std::string reference = upperCase(word);
    const std::optional<CellReference> first = cellReference(reference);
    if (!first || (at < formula.size() && formula[at] == '(')) {
      result += word;
      continue;
    }
    std::optional<CellReference> last;
    if (at < formula.size() && formula[at] == ':') {
      const std::string second = upperCase(takeWord(at + 1));
      last = cellReference(second);
      if (last) at += 1 + second.size();
    }
    const CellReference& end = last ? *last : *first;
    const std::optional<CellArea> cells = moved({first->row, first->column, end.row, end.column});
    if (!cells) {
      result += "#REF!";
      continue;
    }
    result += textOf(*first, cells->firstRow, cells->firstColumn);
    if (last) result += ":" + textOf(*last, cells->lastRow, cells->lastColumn);
  }
  return result;
}

}  // namespace zelkova
