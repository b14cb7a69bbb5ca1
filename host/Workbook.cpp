#include "host/Workbook.h"

#include "zelkova/frame/Failure.h"
#include "zelkova/frame/numberText.h"

namespace zelkova {

Workbook::Workbook() { addSheet("Sheet1"); }

std::shared_ptr<MemorySheet> Workbook::addSheet(const std::string& name) {
  for (const auto& sheet : sheets_) {
    if (sameIgnoringCase(sheet->name(), name)) {
      refuseAsHost("a sheet named \"" + name + "\" stands in the workbook already");
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

Workbook Workbook::copy() const {
  Workbook result = *this;
  for (auto& sheet : result.sheets_) sheet = sheet->copy();
  return result;
}

}  // namespace zelkova
