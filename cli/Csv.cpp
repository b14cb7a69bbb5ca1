#include "cli/Csv.h"

#include <csv.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <memory>
#include <new>
#include <optional>
#include <utility>

#include "cli/Request.h"
#include "cli/text.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/cellText.h"
#include "zelkova/frame/numberText.h"

namespace zelkova::cli {

namespace {

/// How far the first line of `text` reaches, its end included: a line feed, a carriage return or both.
std::size_t lineLength(std::string_view text) {
  const std::size_t end = text.find_first_of("\r\n");
  if (end == std::string_view::npos) return text.size();
  return text.substr(end, 2) == "\r\n" ? end + 2 : end + 1;
}

bool isBlank(std::string_view line, char separator) {
  return line.find(separator) == std::string_view::npos && trimmed(line).empty();
}

/// A question for whoever reads a file with the wrong separator.
std::string separatorHint(const std::vector<std::string>& firstRow) {
  if (firstRow.size() != 1 || firstRow.front().find_first_of(";\t") == std::string::npos) return {};
  return "; is the separator another one? (--separator)";
}

std::optional<std::size_t> columnNumber(std::string_view text) {
  std::size_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

/// "3-5" as 3 and 5.
std::optional<std::pair<std::size_t, std::size_t>> columnSpan(std::string_view text) {
  const std::size_t dash = text.find('-');
  if (dash == std::string_view::npos) return std::nullopt;
  const auto first = columnNumber(text.substr(0, dash));
  const auto last = columnNumber(text.substr(dash + 1));
  if (!first || !last) return std::nullopt;
  return std::pair{*first, *last};
}

[[noreturn]] void fail(const std::string& path, std::size_t line, const std::string& why) {
  throw RequestError(path + ": line " + std::to_string(line) + " " + why);
}

/// The rows of a file and the lines on which they begin; what the parser's callbacks fill.
struct Rows {
  std::vector<std::vector<std::string>> cells;
  std::vector<std::size_t> lines;
  std::vector<std::string> current;
  std::size_t currentLine = 0;  ///< where the row that is being read begins, 0 between rows
  std::size_t blankLine = 0;    ///< the first blank line, 0 where there is none
  std::size_t rowsBeforeBlank = 0;

  static void field(void* text, std::size_t length, void* self) {
    static_cast<Rows*>(self)->current.emplace_back(static_cast<const char*>(text), length);
  }
  static void endOfRow(int, void* self) {
    auto& rows = *static_cast<Rows*>(self);
    rows.cells.push_back(std::exchange(rows.current, {}));
    rows.lines.push_back(std::exchange(rows.currentLine, 0));
  }
};

Rows readRows(const std::string& path, char separator) {
  const std::string content = readFile(path);
  std::string_view text = content;
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);

  csv_parser parser;
  if (csv_init(&parser, CSV_STRICT | CSV_STRICT_FINI) != 0) throw std::bad_alloc();
  const std::unique_ptr<csv_parser, decltype(&csv_free)> owner(&parser, csv_free);
  csv_set_delim(&parser, static_cast<unsigned char>(separator));

  Rows rows;
  std::size_t line = 0;
  while (!text.empty()) {
    ++line;
    const std::string_view piece = text.substr(0, lineLength(text));
    text.remove_prefix(piece.size());
    if (rows.currentLine == 0) {
      // The parser passes over blank lines, but in a column a blank line may be a lost value.
      if (isBlank(piece, separator)) {
        if (rows.blankLine == 0) {
          rows.blankLine = line;
          rows.rowsBeforeBlank = rows.cells.size();
        }
        continue;
      }
      rows.currentLine = line;
    }
    if (!isUtf8(piece)) fail(path, line, "is not UTF-8");
    if (csv_parse(&parser, piece.data(), piece.size(), Rows::field, Rows::endOfRow, &rows) != piece.size()) {
      fail(path, line, "has a quote that is out of place");
    }
  }
  const std::size_t lastLine = rows.currentLine;
  if (csv_fini(&parser, Rows::field, Rows::endOfRow, &rows) != 0) {
    fail(path, lastLine, "opens a quote that is never closed");
  }
  if (rows.cells.empty()) throw RequestError(path + ": is empty");
  return rows;
}

/// Spreadsheets write rows of blank cells below the data.
void dropBlankEnd(Rows& rows) {
  const auto isBlankRow = [](const std::vector<std::string>& row) {
    return std::all_of(row.begin(), row.end(), [](const std::string& cell) { return trimmed(cell).empty(); });
  };
  while (rows.cells.size() > 1 && isBlankRow(rows.cells.back())) {
    rows.cells.pop_back();
    rows.lines.pop_back();
  }
}

/// Refuses a blank line above a row that is left.
void checkGaps(const std::string& path, const Rows& rows) {
  if (rows.blankLine != 0 && rows.rowsBeforeBlank < rows.cells.size()) fail(path, rows.blankLine, "is blank");
}

void checkWidths(const std::string& path, const Rows& rows) {
  const std::vector<std::string>& first = rows.cells.front();
  for (std::size_t i = 0; i < rows.cells.size(); ++i) {
    if (rows.cells[i].size() == first.size()) continue;
    fail(path, rows.lines[i],
         "has " + std::to_string(rows.cells[i].size()) + " cells where the first row has " +
             std::to_string(first.size()) + separatorHint(first));
  }
}

}  // namespace

Csv Csv::read(const std::string& path, const CsvStyle& style) {
  Rows rows = readRows(path, style.separator);
  dropBlankEnd(rows);
  checkGaps(path, rows);
  checkWidths(path, rows);

  Csv csv;
  csv.path_ = path;
  std::size_t firstRow = 0;
  if (style.firstRow != CsvStyle::FirstRow::Data) {
    csv.names_ = rows.cells.front();
    firstRow = 1;
    const bool isAmbiguous = std::all_of(csv.names_.begin(), csv.names_.end(),
                                         [](const std::string& name) { return numberOf(name).has_value(); });
    if (isAmbiguous && style.firstRow == CsvStyle::FirstRow::NamesUnlessNumbers) {
      fail(path, rows.lines.front(),
           "holds numbers only: say whether they are data (--no-header) or names (--header)");
    }
  }
  csv.columns_.resize(rows.cells.front().size());
  for (std::size_t j = 0; j < csv.columns_.size(); ++j) {
    csv.columns_[j].reserve(rows.cells.size());
    for (std::size_t i = firstRow; i < rows.cells.size(); ++i) {
      csv.columns_[j].push_back(std::move(rows.cells[i][j]));
    }
  }
  csv.lines_.assign(rows.lines.begin() + static_cast<std::ptrdiff_t>(firstRow), rows.lines.end());
  return csv;
}

std::string Csv::columnName(std::size_t column) const {
  return names_.empty() || names_[column].empty() ? std::to_string(column + 1) : inQuotes(names_[column]);
}

std::size_t Csv::findColumn(std::string_view selection) const {
  const auto count = std::count(names_.begin(), names_.end(), selection);
  if (count > 1) throw RequestError(path_ + ": two columns are named " + inQuotes(selection));
  if (count == 1) {
    return static_cast<std::size_t>(std::find(names_.begin(), names_.end(), selection) - names_.begin());
  }
  const std::optional<std::size_t> number = columnNumber(selection);
  if (number && *number >= 1 && *number <= columns_.size()) return *number - 1;
  constexpr std::size_t mostNames = 10;
  std::string known;
  for (std::size_t j = 0; j < std::min(columns_.size(), mostNames); ++j) {
    known += (j == 0 ? "" : ", ") + columnName(j);
  }
  if (columns_.size() > mostNames) known += ", ...";
  throw RequestError(path_ + ": has no column " + inQuotes(selection) + "; it has " + known +
                     separatorHint(names_));
}

double Csv::number(std::size_t column, std::size_t row) const {
  const std::string& cell = columns_[column][row];
  if (const std::optional<double> value = numberOf(cell)) return *value;
  if (trimmed(cell) == "NoValue") return NoValue;
  refuseCell(column, row, "where a number is needed");
}

Variant Csv::mixed(std::size_t column, std::size_t row) const {
  const std::string& cell = columns_[column][row];
  if (const std::optional<double> value = numberOf(cell)) return *value;
  if (trimmed(cell).empty()) refuseCell(column, row, "where a value is needed");
  return cell;
}

void Csv::refuseCell(std::size_t column, std::size_t row, const char* where) const {
  const std::string& cell = columns_[column][row];
  throw RequestError(path_ + ": line " + std::to_string(lines_[row]) + ", column " + columnName(column) +
                     ": " + (trimmed(cell).empty() ? "a blank cell" : inQuotes(cell)) + " " + where);
}

Value Csv::select(const Argument& argument, std::string_view selection) const {
  if (lines_.empty()) throw RequestError(path_ + ": has no rows of data for " + argument.name);
  const bool isName = std::find(names_.begin(), names_.end(), selection) != names_.end();
  const auto span = isName ? std::nullopt : columnSpan(selection);
  std::size_t first = 0;
  std::size_t last = 0;
  if (span) {
    std::tie(first, last) = *span;
    if (first < 1 || first > last || last > columns_.size()) {
      throw RequestError(path_ + ": has no columns " + inQuotes(selection) + "; it has " +
                         std::to_string(columns_.size()));
    }
    --first;
  } else {
    first = findColumn(selection);
    last = first + 1;
  }

  const auto fill = [&]<class T>(Array<T>, auto cell) -> Value {
    const auto rows = static_cast<Index>(lines_.size());
    const bool isTable = span || argument.shape == Shape::Table;
    Array<T> result = isTable ? Array<T>(rows, static_cast<Index>(last - first), T()) : Array<T>(rows);
    auto at = result.elements().begin();
    for (std::size_t j = first; j < last; ++j) {
      for (std::size_t i = 0; i < lines_.size(); ++i) *at++ = cell(j, i);
    }
    return result;
  };
  switch (argument.type) {
    case ValueType::Doubles:
      return fill(DoubleArray(), [&](std::size_t j, std::size_t i) { return number(j, i); });
    case ValueType::Texts:
      return fill(StringArray(), [&](std::size_t j, std::size_t i) { return columns_[j][i]; });
    case ValueType::MixedValues:
      return fill(VariantArray(), [&](std::size_t j, std::size_t i) { return mixed(j, i); });
    default:
      refuse(argument, "is one " + inWords(argument.type, argument.shape) + ", not a column of a file");
  }
}

Value CsvFiles::select(const Argument& argument, std::string_view reference) {
  // Names of files and of columns may hold colons: the last one that ends the name of a file counts.
  const std::size_t last = reference.rfind(':');
  if (last == std::string_view::npos) refuse(argument, "needs a column: @file.csv:name or @file.csv:3-5");
  std::size_t colon = last;
  while (colon != std::string_view::npos && colon > 0 &&
         !std::filesystem::exists(reference.substr(0, colon))) {
    colon = reference.rfind(':', colon - 1);
  }
  if (colon == std::string_view::npos || colon == 0) colon = last;
  const std::string path(reference.substr(0, colon));
  auto found = files_.find(path);
  if (found == files_.end()) found = files_.emplace(path, Csv::read(path, style_)).first;
  return found->second.select(argument, reference.substr(colon + 1));
}

}  // namespace zelkova::cli
