#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "zelkova/catalogue/Catalogue.h"

namespace zelkova::cli {

/// How the files of a command line are written.
struct CsvStyle {
  enum class FirstRow { Names, Data, NamesUnlessNumbers };

  char separator = ',';

  /// A first row of nothing but numbers may be either, so it is refused unless the user says what it is.
  FirstRow firstRow = FirstRow::NamesUnlessNumbers;
};

/// A file of separated values, read whole: quoted fields, UTF-8 with or without a mark, any line end.
class Csv {
 public:
  /// RequestError, with the line's number, for a file that cannot be read or is malformed: an open quote, a
  /// row with more or fewer cells than the first, a blank line among the rows, a text that is not UTF-8.
  /// Blank lines and rows of blank cells at the end, in any order, are passed over.
  static Csv read(const std::string& path, const CsvStyle& style);

  /// The columns that `selection` names, as a value for `argument`: "length", "3" (a column by its number,
  /// unless one is named so) or "3-5" (a table). One column is a table too where a table is asked for.
  /// RequestError, with line and column, for a cell that has no number where one is needed.
  Value select(const Argument& argument, std::string_view selection) const;

 private:
  std::size_t findColumn(std::string_view selection) const;
  double number(std::size_t column, std::size_t row) const;
  Variant mixed(std::size_t column, std::size_t row) const;
  [[noreturn]] void refuseCell(std::size_t column, std::size_t row, const char* where) const;
  std::string columnName(std::size_t column) const;

  std::string path_;
  std::vector<std::string> names_;                 ///< empty where the file has no header
  std::vector<std::vector<std::string>> columns_;  ///< cells, column by column
  std::vector<std::size_t> lines_;                 ///< where each row begins
};

/// The files of one command line, each read once.
class CsvFiles {
 public:
  explicit CsvFiles(CsvStyle style) : style_(style) {}

  /// The value that "file.csv:selection" gives `argument`.
  Value select(const Argument& argument, std::string_view reference);

 private:
  CsvStyle style_;
  std::map<std::string, Csv, std::less<>> files_;
};

}  // namespace zelkova::cli
