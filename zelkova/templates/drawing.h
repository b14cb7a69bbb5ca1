#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "zelkova/frame/Host.h"
#include "zelkova/frame/cellText.h"

/// The operations that every form is drawn with.
namespace zelkova::drawing {

/// "B3".
std::string address(Index column, Index row);

/// A rectangle of cells.
struct Cells {
  Index firstColumn, firstRow, lastColumn, lastRow;

  /// "B3:D7", or "B3" where that is all.
  std::string address() const;
  bool several() const { return lastColumn > firstColumn || lastRow > firstRow; }
};

/// A form's number of rows or columns; failure 5, which names it, below 1.
Index checkedSize(std::string_view name, Index given);

constexpr int noFill = -1;

/// Looks of a range; interiors are places in the host's palette, `noFill` for none.
struct Style {
  bool border = true;
  int interior = noFill;
  double fontSize = 8;
  bool bold = false;
  std::string_view horizontal = "Left";
  std::string_view vertical = "Top";
  bool wrap = true;
};

/// Formats the cells and puts `content`, unless it is nothing or an empty text, into each of them.
void format(Sheet& sheet, const std::string& cells, const Style& style, const Variant& content = {});

/// Thin lines around the cells and, with `inside`, between them; the interior.
void frame(Sheet& sheet, const std::string& cells, int interior, bool inside);

/// Formats the cells as one, merged where they are several, and puts `content` there.
void formatAsOne(Sheet& sheet, const Cells& cells, const Style& style, const Variant& content = {});

/// Makes one cell of them where they are several.
void merge(Sheet& sheet, const Cells& cells);

void comment(Sheet& sheet, const std::string& cell, std::string_view text, double width, double height);

/// A drop-down list of the values that are not empty; where none is, the host refuses it.
void list(Sheet& sheet, const std::string& cells, std::initializer_list<Variant> values);

}  // namespace zelkova::drawing
