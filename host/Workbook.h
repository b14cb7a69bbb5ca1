#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/MemorySheet.h"

namespace zelkova {

/// The embedded host's workbook: sheets in memory, in order; it opens with one, "Sheet1".
class Workbook {
 public:
  Workbook();

  /// Appends an empty sheet; failure 1004 where one of that name stands already, whatever the case.
  std::shared_ptr<MemorySheet> addSheet(const std::string& name);

  /// The sheet of that name, whatever the case; failure 9 where there is none.
  std::shared_ptr<MemorySheet> sheet(std::string_view name) const;

  std::shared_ptr<MemorySheet> firstSheet() const { return sheets_.front(); }
  /// A workbook of its own that holds the same.
  Workbook copy() const;

  const std::vector<std::shared_ptr<MemorySheet>>& sheets() const { return sheets_; }

 private:
  std::vector<std::shared_ptr<MemorySheet>> sheets_;
};

}  // namespace zelkova
