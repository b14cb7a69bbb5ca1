#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "zelkova/frame/Host.h"

namespace zelkova {

/// Cells named by column and row, both from 1.
struct CellArea {
  Index firstRow, firstColumn, lastRow, lastColumn;
};

/// Reads "B2" or "A1:C3", with or without dollar signs, in any case; failure 1004 for anything else and for
/// cells outside the 65536 rows by 256 columns ("IV") of a sheet.
CellArea cellArea(std::string_view address);

/// A sheet that lives in memory.
class MemorySheet final : public Sheet, public std::enable_shared_from_this<MemorySheet> {
 public:
  explicit MemorySheet(std::string name) : name_(std::move(name)) {}

  std::string name() const override { return name_; }
  std::unique_ptr<Range> range(std::string_view address) override;

  Variant cell(Index row, Index column) const;
  void setCell(Index row, Index column, const Variant& value);

 private:
  std::string name_;
  std::map<std::pair<Index, Index>, Variant> cells_;
};

/// The embedded host's workbook: sheets in memory, in order; it opens with one, "Sheet1".
class Workbook {
 public:
  Workbook();

  /// Appends an empty sheet; failure 1004 where one of that name stands already, whatever the case.
  std::shared_ptr<MemorySheet> addSheet(const std::string& name);

  /// The sheet of that name, whatever the case; failure 9 where there is none.
  std::shared_ptr<MemorySheet> sheet(std::string_view name) const;

  std::shared_ptr<MemorySheet> firstSheet() const { return sheets_.front(); }

 private:
  std::vector<std::shared_ptr<MemorySheet>> sheets_;
};

}  // namespace zelkova
