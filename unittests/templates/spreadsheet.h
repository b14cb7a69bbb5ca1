#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "host/xlsx/saveWorkbook.h"

namespace zelkova {

/// A folder of its own that goes with it.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "zelkova-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) ADD_FAILURE() << "no temporary folder";
    path_ = name;
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() { std::filesystem::remove_all(path_); }

  std::string operator/(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

inline std::string contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

/// The cells of a sheet as a spreadsheet program shows them.
class ShownSheet {
 public:
  explicit ShownSheet(const std::string& csv) {
    std::istringstream lines(csv);
    for (std::string line; std::getline(lines, line);) {
      std::vector<std::string>& row = rows_.emplace_back();
      std::istringstream cells(line);
      for (std::string cell; std::getline(cells, cell, ';');) row.push_back(cell);
    }
  }

  /// The text of a cell, blank outside the sheet.
  std::string operator[](const std::string& address) const {
    const CellArea area = cellArea(address);
    const auto row = static_cast<std::size_t>(area.firstRow - 1);
    const auto column = static_cast<std::size_t>(area.firstColumn - 1);
    return row < rows_.size() && column < rows_[row].size() ? rows_[row][column] : "";
  }
  double number(const std::string& address) const { return std::strtod((*this)[address].c_str(), nullptr); }

  /// Whether a cell shows that text.
  bool shows(const std::string& text) const {
    for (const auto& row : rows_) {
      for (const std::string& cell : row) {
        if (cell.find(text) != std::string::npos) return true;
      }
    }
    return false;
  }

 private:
  std::vector<std::vector<std::string>> rows_;
};

/// Saves the workbook, has LibreOffice open the file and work its formulas out, and reads what it shows.
inline ShownSheet opened(const Workbook& workbook) {
  const TemporaryFolder folder;
  saveWorkbook(workbook, folder / "form.xlsx");
  const std::string command = "soffice -env:UserInstallation=file://" + (folder / "profile") +
                              " --headless --convert-to "
                              "'csv:Text - txt - csv (StarCalc):59,34,76,1,,0,false,false' --outdir " +
                              (folder / "out") + " " + (folder / "form.xlsx") + " >" + (folder / "log") +
                              " 2>&1";
  if (std::system(command.c_str()) != 0) {
    ADD_FAILURE() << "LibreOffice cannot open the file: " << contentOf(folder / "log");
  }
  return ShownSheet(contentOf(folder / "out/form.csv"));
}

}  // namespace zelkova
