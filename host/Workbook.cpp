#include "host/Workbook.h"

#include <algorithm>

#include "zelkova/frame/numberText.h"

namespace zelkova {

namespace {

constexpr Index lastRowOfSheet = 65536;
constexpr Index lastColumnOfSheet = 256;

[[noreturn]] void refuse(std::string_view address) {
  raise(FailureNumber::HostRefused, "Range: \"" + std::string(address) + "\" names no cells");
}

/// One corner of an area, "$B$2"; moves `text` past it.
std::pair<Index, Index> corner(std::string_view& text, std::string_view address) {
  const auto skipDollar = [&] {
    if (text.starts_with('$')) text.remove_prefix(1);
  };
  skipDollar();
  Index column = 0;
  while (!text.empty() && text.front() >= 'A' && text.front() <= 'Z' && column <= lastColumnOfSheet) {
    column = column * 26 + (text.front() - 'A' + 1);
    text.remove_prefix(1);
  }
  skipDollar();
  Index row = 0;
  while (!text.empty() && text.front() >= '0' && text.front() <= '9' && row <= lastRowOfSheet) {
    row = row * 10 + (text.front() - '0');
    text.remove_prefix(1);
  }
  if (row < 1 || row > lastRowOfSheet || column < 1 || column > lastColumnOfSheet) refuse(address);
  return {row, column};
}

class MemoryRange final : public Range {
 public:
  MemoryRange(std::shared_ptr<MemorySheet> sheet, CellArea area) : sheet_(std::move(sheet)), area_(area) {}

  Variant value() const override { return sheet_->cell(area_.firstRow, area_.firstColumn); }

  void setValue(const Variant& value) override {
    for (Index row = area_.firstRow; row <= area_.lastRow; ++row) {
      for (Index column = area_.firstColumn; column <= area_.lastColumn; ++column) {
        sheet_->setCell(row, column, value);
      }
    }
  }

 private:
  std::shared_ptr<MemorySheet> sheet_;
  CellArea area_;
};

}  // namespace

CellArea cellArea(std::string_view address) {
  const std::string upper = upperCase(address);
  std::string_view text = upper;
  const auto [row1, column1] = corner(text, address);
  if (text.empty()) return {row1, column1, row1, column1};
  if (!text.starts_with(':')) refuse(address);
  text.remove_prefix(1);
  const auto [row2, column2] = corner(text, address);
  if (!text.empty()) refuse(address);
  return {std::min(row1, row2), std::min(column1, column2), std::max(row1, row2), std::max(column1, column2)};
}

std::unique_ptr<Range> MemorySheet::range(std::string_view address) {
  return std::make_unique<MemoryRange>(shared_from_this(), cellArea(address));
}

Variant MemorySheet::cell(Index row, Index column) const {
  const auto found = cells_.find({row, column});
  return found == cells_.end() ? Variant() : found->second;
}

void MemorySheet::setCell(Index row, Index column, const Variant& value) {
  if (value.isNothing()) {
    cells_.erase({row, column});
  } else {
    cells_.insert_or_assign({row, column}, value);
  }
}

Workbook::Workbook() { addSheet("Sheet1"); }

std::shared_ptr<MemorySheet> Workbook::addSheet(const std::string& name) {
  for (const auto& sheet : sheets_) {
    if (sameIgnoringCase(sheet->name(), name)) {
      raise(FailureNumber::HostRefused, "a sheet named \"" + name + "\" stands in the workbook already");
    }
  }
  return sheets_.emplace_back(std::make_shared<MemorySheet>(name));
}

std::shared_ptr<MemorySheet> Workbook::sheet(std::string_view name) const {
  for (const auto& sheet : sheets_) {
    if (sameIgnoringCase(sheet->name(), name)) return sheet;
  }
  raise(FailureNumber::OutOfRange, "the workbook has no sheet \"" + std::string(name) + "\"");
}

}  // namespace zelkova
