#include "host/xlsx/saveWorkbook.h"

#include <sys/stat.h>
#include <unistd.h>
#include <xlsxwriter.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <vector>

namespace zelkova {

namespace {

namespace files = std::filesystem;

/// The host's palette as it comes, red, green and blue.
constexpr lxw_color_t palette[] = {
    0x000000, 0xFFFFFF, 0xFF0000, 0x00FF00, 0x0000FF, 0xFFFF00, 0xFF00FF, 0x00FFFF, 0x800000, 0x008000,
    0x000080, 0x808000, 0x800080, 0x008080, 0xC0C0C0, 0x808080, 0x9999FF, 0x993366, 0xFFFFCC, 0xCCFFFF,
    0x660066, 0xFF8080, 0x0066CC, 0xCCCCFF, 0x000080, 0xFF00FF, 0xFFFF00, 0x00FFFF, 0x800080, 0x800000,
    0x008080, 0x0000FF, 0x00CCFF, 0xCCFFFF, 0xCCFFCC, 0xFFFF99, 0x99CCFF, 0xFF99CC, 0xCC99FF, 0xFFCC99,
    0x3366FF, 0x33CCCC, 0x99CC00, 0xFFCC00, 0xFF9900, 0xFF6600, 0x666699, 0x969696, 0x003366, 0x339966,
    0x003300, 0x333300, 0x993300, 0x993366, 0x333399, 0x333333};
static_assert(std::size(palette) == 56);

// A4 between the margins, in points. A sheet is printed on as many pages side by side as keep its texts
// legible.
constexpr double portraitWidth = 494, landscapeWidth = 741;
constexpr double smallestScale = 0.45;
constexpr std::uint8_t paperA4 = 9;

constexpr double pixelsPerPoint = 4.0 / 3;
constexpr double pixelsPerCharacter = 7, paddingOfColumn = 5;

/// The library's lines and columns begin at 0.
lxw_row_t row0(Index row) { return static_cast<lxw_row_t>(row - 1); }
lxw_col_t column0(Index column) { return static_cast<lxw_col_t>(column - 1); }

void check(lxw_error error) {
  if (error != LXW_NO_ERROR)
    refuseAsHost(std::string("the workbook cannot be saved: ") + lxw_strerror(error));
}

std::uint8_t lineOf(const LineFormat& line) {
  const bool isThin = line.weight == BorderWeight::Thin || line.weight == BorderWeight::Hairline;
  switch (line.style) {
    case LineStyle::None:
      return LXW_BORDER_NONE;
    case LineStyle::Dash:
      return isThin ? LXW_BORDER_DASHED : LXW_BORDER_MEDIUM_DASHED;
    case LineStyle::DashDot:
      return isThin ? LXW_BORDER_DASH_DOT : LXW_BORDER_MEDIUM_DASH_DOT;
    case LineStyle::DashDotDot:
      return isThin ? LXW_BORDER_DASH_DOT_DOT : LXW_BORDER_MEDIUM_DASH_DOT_DOT;
    case LineStyle::Dot:
      return LXW_BORDER_DOTTED;
    case LineStyle::Double:
      return LXW_BORDER_DOUBLE;
    case LineStyle::Continuous:
      break;
  }
  switch (line.weight) {
    case BorderWeight::Hairline:
      return LXW_BORDER_HAIR;
    case BorderWeight::Medium:
      return LXW_BORDER_MEDIUM;
    case BorderWeight::Thick:
      return LXW_BORDER_THICK;
    case BorderWeight::Thin:
      break;
  }
  return LXW_BORDER_THIN;
}

bool isPlace(int color) { return color >= 1 && color <= static_cast<int>(std::size(palette)); }
/// The library takes 0 for no colour at all.
lxw_color_t rgb(int color) {
  return palette[color - 1] == 0 ? lxw_color_t{LXW_COLOR_BLACK} : palette[color - 1];
}

std::uint8_t alignmentOf(HorizontalAlignment alignment) {
  switch (alignment) {
    case HorizontalAlignment::Left:
      return LXW_ALIGN_LEFT;
    case HorizontalAlignment::Center:
      return LXW_ALIGN_CENTER;
    case HorizontalAlignment::Right:
      return LXW_ALIGN_RIGHT;
  }
  return LXW_ALIGN_NONE;
}

std::uint8_t alignmentOf(VerticalAlignment alignment) {
  switch (alignment) {
    case VerticalAlignment::Top:
      return LXW_ALIGN_VERTICAL_TOP;
    case VerticalAlignment::Center:
      return LXW_ALIGN_VERTICAL_CENTER;
    case VerticalAlignment::Bottom:
      break;
  }
  return LXW_ALIGN_VERTICAL_BOTTOM;
}

void setLines(lxw_format* target, const CellFormat& format) {
  const auto set = [&](CellLine which, void (*setStyle)(lxw_format*, std::uint8_t),
                       void (*setColor)(lxw_format*, lxw_color_t)) {
    const LineFormat& line = format.line(which);
    setStyle(target, lineOf(line));
    if (line.style != LineStyle::None && isPlace(line.color)) setColor(target, rgb(line.color));
  };
  set(CellLine::Left, format_set_left, format_set_left_color);
  set(CellLine::Top, format_set_top, format_set_top_color);
  set(CellLine::Bottom, format_set_bottom, format_set_bottom_color);
  set(CellLine::Right, format_set_right, format_set_right_color);
  const bool down = format.line(CellLine::DiagonalDown).style != LineStyle::None;
  const bool up = format.line(CellLine::DiagonalUp).style != LineStyle::None;
  if (!down && !up) return;
  // The file knows one kind of line for both.
  const LineFormat& diagonal = format.line(down ? CellLine::DiagonalDown : CellLine::DiagonalUp);
  format_set_diag_type(target, down && up ? LXW_DIAGONAL_BORDER_UP_DOWN
                               : down     ? LXW_DIAGONAL_BORDER_DOWN
                                          : LXW_DIAGONAL_BORDER_UP);
  format_set_diag_border(target, lineOf(diagonal));
  if (isPlace(diagonal.color)) format_set_diag_color(target, rgb(diagonal.color));
}

lxw_format* addFormat(lxw_workbook* workbook, const CellFormat& format) {
  lxw_format* target = workbook_add_format(workbook);
  format_set_font_name(target, format.font.name.c_str());
  format_set_font_size(target, format.font.size);
  if (format.font.bold) format_set_bold(target);
  if (isPlace(format.font.color)) format_set_font_color(target, rgb(format.font.color));
  if (isPlace(format.interior)) format_set_bg_color(target, rgb(format.interior));
  if (const std::uint8_t align = alignmentOf(format.horizontal)) format_set_align(target, align);
  format_set_align(target, alignmentOf(format.vertical));
  if (format.wrap) format_set_text_wrap(target);
  if (format.orientation != 0) format_set_rotation(target, static_cast<std::int16_t>(format.orientation));
  if (format.numberFormat != "General") format_set_num_format(target, format.numberFormat.c_str());
  setLines(target, format);
  return target;
}

/// The entries of a list, as the file wants them: quotes doubled.
std::vector<std::string> entriesOf(const std::string& list) {
  std::vector<std::string> entries(1);
  for (const char c : list) {
    if (c == ',') {
      entries.emplace_back();
    } else {
      entries.back() += c == '"' ? "\"\"" : std::string(1, c);
    }
  }
  return entries;
}

/// The box of a comment on the sheet, in pixels.
struct Box {
  double left, top, width, height;

  bool meets(const Box& other) const {
    return left < other.left + other.width && other.left < left + width && top < other.top + other.height &&
           other.top < top + height;
  }
};

/// Writes one sheet down.
class SheetWriter {
 public:
  SheetWriter(const MemorySheet& sheet, lxw_workbook* workbook, lxw_worksheet* target)
      : sheet_(sheet), target_(target), formats_(sheet.formats().size()) {
    for (std::size_t i = 0; i < formats_.size(); ++i) {
      formats_[i] = addFormat(workbook, sheet.formats()[static_cast<FormatTable::Id>(i)]);
    }
  }

  void write() {
    writeSizes();
    for (const auto& [place, area] : sheet_.merged()) {
      check(worksheet_merge_range(target_, row0(area.firstRow), column0(area.firstColumn), row0(area.lastRow),
                                  column0(area.lastColumn), "", nullptr));
    }
    writeFormats();
    for (const auto& [place, value] : sheet_.values()) writeValue(place, value);
    for (const auto& [area, rule] : sheet_.rules()) writeRule(area, *rule);
    for (const auto& [place, comment] : sheet_.comments()) writeComment(place, *comment);
    if (const auto area = usedArea()) setUpPage(*area);
  }

 private:
  void writeSizes() {
    for (const auto& [row, height] : sheet_.rowHeights()) {
      check(worksheet_set_row(target_, row0(row), height, nullptr));
    }
    for (const auto& [column, width] : sheet_.columnWidths()) {
      check(worksheet_set_column(target_, column0(column), column0(column), width, nullptr));
    }
  }

  lxw_format* formatAt(Index row, Index column) const {
    const auto& rows = sheet_.formatIds();
    if (row > static_cast<Index>(rows.size())) return nullptr;
    const auto& ids = rows[static_cast<std::size_t>(row - 1)];
    if (column > static_cast<Index>(ids.size())) return nullptr;
    const FormatTable::Id id = ids[static_cast<std::size_t>(column - 1)];
    return id == 0 ? nullptr : formats_[id];
  }

  void writeFormats() {
    const auto& rows = sheet_.formatIds();
    for (std::size_t i = 0; i < rows.size(); ++i) {
      for (std::size_t j = 0; j < rows[i].size(); ++j) {
        if (rows[i][j] == 0) continue;
        check(worksheet_write_blank(target_, static_cast<lxw_row_t>(i), static_cast<lxw_col_t>(j),
                                    formats_[rows[i][j]]));
      }
    }
  }

  void writeValue(const MemorySheet::Place& place, const Variant& value) {
    const auto [row, column] = place;
    lxw_format* format = formatAt(row, column);
    const lxw_row_t r = row0(row);
    const lxw_col_t c = column0(column);
    if (value.isNumber()) return check(worksheet_write_number(target_, r, c, value.toNumber(), format));
    if (value.isFlag()) return check(worksheet_write_boolean(target_, r, c, value.toFlag() ? 1 : 0, format));
    const std::string text = value.toText();
    const bool isFormula =
        text.size() > 1 && text.starts_with('=') && sheet_.format(row, column).numberFormat != "@";
    // Without a stored result, so that every spreadsheet program works it out when it opens the file.
    check(isFormula ? worksheet_write_formula_str(target_, r, c, text.c_str(), format, "")
                    : worksheet_write_string(target_, r, c, text.c_str(), format));
  }

  void writeRule(const CellArea& area, const ValidationRule& rule) {
    std::vector<std::string> entries = entriesOf(rule.list);
    std::vector<char*> list;
    list.reserve(entries.size() + 1);
    for (std::string& entry : entries) list.push_back(entry.data());
    list.push_back(nullptr);
    // The library takes its texts as what could be changed, and copies them.
    const auto text = [](const std::string& s) { return s.empty() ? nullptr : const_cast<char*>(s.c_str()); };
    lxw_data_validation target{};
    if (rule.list.starts_with('=')) {
      target.validate = LXW_VALIDATION_TYPE_LIST_FORMULA;
      target.value_formula = text(rule.list);
    } else {
      target.validate = LXW_VALIDATION_TYPE_LIST;
      target.value_list = list.data();
    }
    const auto flag = [](bool on) {
      return static_cast<std::uint8_t>(on ? LXW_VALIDATION_ON : LXW_VALIDATION_OFF);
    };
    target.ignore_blank = flag(rule.ignoreBlank);
    target.dropdown = flag(rule.inCellDropdown);
    target.show_input = flag(rule.showInput);
    target.show_error = flag(rule.showError);
    target.error_type = LXW_VALIDATION_ERROR_TYPE_STOP;
    target.input_title = text(rule.inputTitle);
    target.input_message = text(rule.inputMessage);
    target.error_title = text(rule.errorTitle);
    target.error_message = text(rule.errorMessage);
    check(worksheet_data_validation_range(target_, row0(area.firstRow), column0(area.firstColumn),
                                          row0(area.lastRow), column0(area.lastColumn), &target));
  }

  /// Beside its cell at the right, and as far down as it takes to cover no other: all may be shown at once.
  void writeComment(const MemorySheet::Place& place, const CommentBox& comment) {
    constexpr double gap = 12, step = 4;
    const auto [row, column] = place;
    const auto beside = static_cast<lxw_col_t>(std::min(column, columnsOfSheet - 1));
    Box box{gap, gap / 2, comment.width * pixelsPerPoint, comment.height * pixelsPerPoint};
    for (Index i = 1; i <= beside; ++i) box.left += columnPixels(i);
    for (Index i = 1; i < row; ++i) box.top += sheet_.rowHeight(i) * pixelsPerPoint;
    const double cellTop = box.top - gap / 2;
    const auto isCovered = [&](const Box& other) { return other.meets(box); };
    while (std::any_of(boxes_.begin(), boxes_.end(), isCovered)) box.top += step;
    boxes_.push_back(box);

    lxw_comment_options options{};
    options.visible = LXW_COMMENT_DISPLAY_HIDDEN;
    options.width = static_cast<std::uint16_t>(std::lround(box.width));
    options.height = static_cast<std::uint16_t>(std::lround(box.height));
    options.start_row = row0(row);
    options.start_col = beside;
    options.x_offset = static_cast<std::int32_t>(gap);
    options.y_offset = static_cast<std::int32_t>(std::lround(box.top - cellTop));
    options.font_name = const_cast<char*>(comment.font.name.c_str());
    options.font_size = comment.font.size;
    check(worksheet_write_comment_opt(target_, row0(row), column0(column), comment.text.c_str(), &options));
  }

  double columnPixels(Index column) const {
    return sheet_.columnWidth(column) * pixelsPerCharacter + paddingOfColumn;
  }

  /// The cells that show something.
  std::optional<CellArea> usedArea() const {
    std::optional<CellArea> used;
    const auto take = [&](Index row, Index column) {
      if (!used) used = CellArea{row, column, row, column};
      used->firstRow = std::min(used->firstRow, row);
      used->firstColumn = std::min(used->firstColumn, column);
      used->lastRow = std::max(used->lastRow, row);
      used->lastColumn = std::max(used->lastColumn, column);
    };
    std::vector<bool> shows(sheet_.formats().size());
    for (std::size_t i = 0; i < shows.size(); ++i) {
      const CellFormat& format = sheet_.formats()[static_cast<FormatTable::Id>(i)];
      // A single line may be that of a neighbour.
      shows[i] = format.interior != noColor || (format.line(CellLine::Left).style != LineStyle::None &&
                                                format.line(CellLine::Top).style != LineStyle::None);
    }
    const auto& rows = sheet_.formatIds();
    for (std::size_t i = 0; i < rows.size(); ++i) {
      for (std::size_t j = 0; j < rows[i].size(); ++j) {
        if (shows[rows[i][j]]) take(static_cast<Index>(i + 1), static_cast<Index>(j + 1));
      }
    }
    for (const auto& [place, value] : sheet_.values()) take(place.first, place.second);
    for (const auto& [place, area] : sheet_.merged()) take(area.lastRow, area.lastColumn);
    return used;
  }

  void setUpPage(const CellArea& used) {
    double width = 0, height = 0;
    for (Index column = used.firstColumn; column <= used.lastColumn; ++column) {
      width += columnPixels(column) / pixelsPerPoint;
    }
    for (Index row = used.firstRow; row <= used.lastRow; ++row) height += sheet_.rowHeight(row);
    const bool isWide = width > height || width > portraitWidth;
    if (isWide) worksheet_set_landscape(target_);
    worksheet_set_paper(target_, paperA4);
    const double pages = std::ceil(width * smallestScale / (isWide ? landscapeWidth : portraitWidth));
    worksheet_fit_to_pages(target_, static_cast<std::uint16_t>(std::max(1.0, pages)), 0);
    check(worksheet_print_area(target_, row0(used.firstRow), column0(used.firstColumn), row0(used.lastRow),
                               column0(used.lastColumn)));
  }

  const MemorySheet& sheet_;
  lxw_worksheet* target_;
  std::vector<lxw_format*> formats_;
  std::vector<Box> boxes_;  ///< of the comments so far
};

void write(const Workbook& workbook, const std::string& path) {
  lxw_workbook* target = workbook_new(path.c_str());
  if (target == nullptr) raise(FailureNumber::OutOfMemory);
  try {
    for (const auto& sheet : workbook.sheets()) {
      lxw_worksheet* page = workbook_add_worksheet(target, sheet->name().c_str());
      if (page == nullptr)
        refuseAsHost("the workbook cannot be saved: \"" + sheet->name() + "\" names no sheet");
      SheetWriter(*sheet, target, page).write();
    }
  } catch (...) {
    lxw_workbook_free(target);
    throw;
  }
  check(workbook_close(target));
}

/// An empty file of its own beside `path`, which goes with this where it is still there.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& path) : path_(path + ".XXXXXX") {
    const int file = mkstemp(path_.data());
    if (file == -1) {
      path_.clear();
    } else {
      close(file);
    }
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    std::error_code error;
    if (!path_.empty()) files::remove(path_, error);
  }

  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

/// Of a file that is made anew.
files::perms usualPermissions() {
  const mode_t withheld = umask(0);
  umask(withheld);
  return static_cast<files::perms>(0666 & ~withheld);
}

}  // namespace

void saveWorkbook(const Workbook& workbook, const std::string& path) {
  const auto refuse = [&](const std::string& why) {
    refuseAsHost("the workbook cannot be saved as \"" + path + "\": " + why);
  };
  std::error_code error;
  const files::path wanted = files::exists(path, error) ? files::canonical(path, error) : files::path(path);
  const bool stands = files::exists(wanted, error);
  if (stands && !(files::is_regular_file(wanted, error) && std::ofstream(wanted, std::ios::app))) {
    refuse("that is no file to write to");
  }
  const TemporaryFile partial(wanted.string());
  if (partial.path().empty()) refuse("no file can be made there");
  write(workbook, partial.path());
  files::permissions(partial.path(), stands ? files::status(wanted, error).permissions() : usualPermissions(),
                     error);
  files::rename(partial.path(), wanted, error);
  if (error) refuse(error.message());
}

}  // namespace zelkova
