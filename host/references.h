#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/Host.h"

/// How a sheet names its cells, and what becomes of names and places when cells are deleted.
namespace zelkova {

constexpr Index rowsOfSheet = 65536;
constexpr Index columnsOfSheet = 256;

/// Cells named by column and row, both from 1.
struct CellArea {
  Index firstRow, firstColumn, lastRow, lastColumn;

  bool isSingle() const { return firstRow == lastRow && firstColumn == lastColumn; }
  bool contains(const CellArea& other) const {
    return firstRow <= other.firstRow && other.lastRow <= lastRow && firstColumn <= other.firstColumn &&
           other.lastColumn <= lastColumn;
  }
  bool meets(const CellArea& other) const {
    return firstRow <= other.lastRow && other.firstRow <= lastRow && firstColumn <= other.lastColumn &&
           other.firstColumn <= lastColumn;
  }

  friend bool operator==(const CellArea&, const CellArea&) = default;
};

/// Ends a call as the host would.
[[noreturn]] void refuseAsHost(const std::string& text);

/// Reads "B2" or "A1:C3", with or without dollar signs, in any case; failure 1004 for anything else and for
/// cells outside the 65536 rows by 256 columns ("IV") of a sheet.
CellArea cellArea(std::string_view address);

/// Reads whole rows, "2:5", and whole columns, "B:D", in the same way.
CellArea rowArea(std::string_view address);
CellArea columnArea(std::string_view address);

/// Cells that leave the sheet, and the way those behind them go.
struct Deletion {
  CellArea area;
  Shift shift;

  /// The cells that leave or move: everything from the area on, in the direction of the shift.
  CellArea band() const;

  /// Where an area lies afterwards; nothing where all of it is deleted. An area that the band takes in only
  /// in part, crosswise, stays.
  std::optional<CellArea> moved(const CellArea& cells) const;

  /// A formula whose references to cells and rectangles of cells follow; one to deleted cells becomes
  /// "#REF!".
  std::string follow(const std::string& formula) const;
};

}  // namespace zelkova
