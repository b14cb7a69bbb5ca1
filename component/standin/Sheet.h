#pragma once

#include <memory>

#include "component/standin/Object.h"
#include "host/MemorySheet.h"

namespace zelkova {

/// A rectangle of cells, under the names of a spreadsheet's own objects. What can be set can be read. Where
/// looks or sizes of the cells differ, that is Null; `Validation`, `Comment`, `MergeCells` and `MergeArea`
/// are those of the upper left cell.
class RangeObject final : public Object {
 public:
  RangeObject(std::shared_ptr<MemorySheet> sheet, CellArea area);

 private:
  void addLooks();
  void addSizes();
  void addRulesAndComments();

  OwnedVariant value() const;
  void setValue(const VARIANT& passed);
  OwnedVariant item(Arguments arguments) const;
  OwnedVariant mergeArea() const;
  OwnedVariant comment() const;
  void deleteCells(Arguments arguments);

  Index rows() const { return area_.lastRow - area_.firstRow + 1; }
  Index columns() const { return area_.lastColumn - area_.firstColumn + 1; }

  std::shared_ptr<MemorySheet> sheet_;
  CellArea area_;
  std::unique_ptr<Range> cells_;
};

/// A worksheet: `Name`, `Range`, `Rows` and `Columns` by address, `Cells` by row and column.
class SheetObject final : public Object {
 public:
  explicit SheetObject(const std::shared_ptr<MemorySheet>& sheet);
};

}  // namespace zelkova
