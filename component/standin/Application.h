#pragma once

#include <memory>

#include "component/standin/Object.h"
#include "host/EmbeddedHost.h"

namespace zelkova {

/// A rectangle of cells: `Value` (of one cell, or an array of rows and columns), `Count` and `Item`.
class RangeObject final : public Object {
 public:
  RangeObject(std::shared_ptr<MemorySheet> sheet, CellArea area);

 private:
  OwnedVariant value() const;
  void setValue(const VARIANT& passed);
  Index rows() const { return area_.lastRow - area_.firstRow + 1; }
  Index columns() const { return area_.lastColumn - area_.firstColumn + 1; }

  std::shared_ptr<MemorySheet> sheet_;
  CellArea area_;
};

/// A worksheet: `Name`, `Range` by address and `Cells` by row and column.
class SheetObject final : public Object {
 public:
  explicit SheetObject(const std::shared_ptr<MemorySheet>& sheet);
};

/// The application: `Name`, `WorksheetFunction`, `ActiveSheet` and `Quit`.
class ApplicationObject final : public Object {
 public:
  /// `quit` ends the program.
  explicit ApplicationObject(std::function<void()> quit);

 private:
  EmbeddedHost host_;
};

}  // namespace zelkova
