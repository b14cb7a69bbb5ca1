#pragma once

#include <string>

#include "host/Workbook.h"

namespace zelkova {

/// Saves the workbook as an Office Open XML file (.xlsx), in place of a file of that name. Each sheet is set
/// up to print all that stands on it on A4, scaled to the width of one page or of as few as keep it legible,
/// in landscape where it is wider than high or than an upright page. Failure 1004 where the file cannot be
/// written; one that stood there is as it was then.
void saveWorkbook(const Workbook& workbook, const std::string& path);

}  // namespace zelkova
