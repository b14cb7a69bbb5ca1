#include <algorithm>
#include <cmath>
#include <initializer_list>

#include "host/MemorySheet.h"

namespace zelkova {

namespace {

constexpr int colorsOfPalette = 56;
constexpr double smallestFont = 1, largestFont = 409;
constexpr double largestBox = 10000;  ///< points
constexpr int steepest = 90;

[[noreturn]] void refuseProperty(const char* name, const char* object) {
  refuseAsHost(std::string("Unable to set the ") + name + " property of the " + object + " class");
}

/// A colour as it is kept; 0 is what the host takes for automatic.
int checkedColor(int color, const char* object) {
  if (color == 0) return automaticColor;
  if (color != noColor && color != automaticColor && (color < 1 || color > colorsOfPalette)) {
    refuseProperty("ColorIndex", object);
  }
  return color;
}

/// Numbers come from other programs too: `value` must be one of `known`.
template <class T>
T checkedChoice(T value, std::initializer_list<T> known, const char* name, const char* object) {
  if (std::find(known.begin(), known.end(), value) == known.end()) refuseProperty(name, object);
  return value;
}

class MemoryFont final : public Font {
 public:
  using Change = std::function<void(const std::function<void(FontFormat&)>&)>;

  explicit MemoryFont(Change apply) : apply_(std::move(apply)) {}

  void setName(std::string_view name) override {
    if (name.empty()) refuseProperty("Name", "Font");
    apply_([&](FontFormat& font) { font.name = name; });
  }
  void setSize(double points) override {
    if (!(points >= smallestFont && points <= largestFont)) refuseProperty("Size", "Font");
    apply_([&](FontFormat& font) { font.size = points; });
  }
  void setBold(bool bold) override {
    apply_([&](FontFormat& font) { font.bold = bold; });
  }
  void setColorIndex(int color) override {
    const int checked = checkedColor(color, "Font");
    apply_([&](FontFormat& font) { font.color = checked == noColor ? automaticColor : checked; });
  }

 private:
  Change apply_;
};

class MemoryBorder final : public Border {
 public:
  MemoryBorder(std::shared_ptr<MemorySheet> sheet, CellArea area, BorderItem item)
      : sheet_(std::move(sheet)), area_(area), item_(item) {}

  void setLineStyle(LineStyle style) override {
    checkedChoice(style,
                  {LineStyle::Continuous, LineStyle::DashDot, LineStyle::DashDotDot, LineStyle::None,
                   LineStyle::Dash, LineStyle::Dot, LineStyle::Double},
                  "LineStyle", "Border");
    sheet_->redraw(area_, item_, [&](LineFormat& line) { line.style = style; });
  }
  void setWeight(BorderWeight weight) override {
    checkedChoice(weight,
                  {BorderWeight::Hairline, BorderWeight::Thin, BorderWeight::Medium, BorderWeight::Thick},
                  "Weight", "Border");
    redrawLine([&](LineFormat& line) { line.weight = weight; });
  }
  void setColorIndex(int color) override {
    const int checked = checkedColor(color, "Border");
    redrawLine([&](LineFormat& line) { line.color = checked; });
  }

 private:
  /// What has a weight or a colour is drawn.
  template <class Change>
  void redrawLine(Change change) {
    sheet_->redraw(area_, item_, [&](LineFormat& line) {
      if (line.style == LineStyle::None) line.style = LineStyle::Continuous;
      change(line);
    });
  }

  std::shared_ptr<MemorySheet> sheet_;
  CellArea area_;
  BorderItem item_;
};

class MemoryValidation final : public Validation {
 public:
  MemoryValidation(std::shared_ptr<MemorySheet> sheet, CellArea area)
      : sheet_(std::move(sheet)), area_(area) {}

  void erase() override { sheet_->eraseRules(area_); }
  void addList(std::string_view list) override { sheet_->addRule(area_, std::string(list)); }

  void setIgnoreBlank(bool ignore) override { rule().ignoreBlank = ignore; }
  void setInCellDropdown(bool dropdown) override { rule().inCellDropdown = dropdown; }
  void setInputTitle(std::string_view title) override { rule().inputTitle = title; }
  void setInputMessage(std::string_view message) override { rule().inputMessage = message; }
  void setErrorTitle(std::string_view title) override { rule().errorTitle = title; }
  void setErrorMessage(std::string_view message) override { rule().errorMessage = message; }
  void setShowInput(bool show) override { rule().showInput = show; }
  void setShowError(bool show) override { rule().showError = show; }

 private:
  ValidationRule& rule() {
    const MemorySheet::Rule rule = sheet_->ruleAt(area_.firstRow, area_.firstColumn);
    if (rule == nullptr) refuseAsHost("the cells have no validation rule");
    return *rule;
  }

  std::shared_ptr<MemorySheet> sheet_;
  CellArea area_;
};

class MemoryComment final : public Comment {
 public:
  explicit MemoryComment(std::shared_ptr<CommentBox> box) : box_(std::move(box)) {}

  std::unique_ptr<Font> font() override {
    return std::make_unique<MemoryFont>([box = box_](const auto& change) { change(box->font); });
  }
  void setWidth(double points) override { box_->width = checkedSize(points, "Width"); }
  void setHeight(double points) override { box_->height = checkedSize(points, "Height"); }

 private:
  static double checkedSize(double points, const char* name) {
    if (!(points > 0 && points <= largestBox)) refuseProperty(name, "Shape");
    return points;
  }

  std::shared_ptr<CommentBox> box_;
};

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

  std::unique_ptr<Font> font() override {
    return std::make_unique<MemoryFont>([sheet = sheet_, area = area_](const auto& change) {
      sheet->reformat(area, [&](CellFormat& format) { change(format.font); });
    });
  }
  std::unique_ptr<Border> border(BorderItem item) override {
    return std::make_unique<MemoryBorder>(sheet_, area_, item);
  }
  std::unique_ptr<Validation> validation() override {
    return std::make_unique<MemoryValidation>(sheet_, area_);
  }

  void setInteriorColorIndex(int color) override {
    const int checked = checkedColor(color, "Interior");
    sheet_->reformat(area_, [&](CellFormat& format) { format.interior = checked; });
  }
  void setHorizontalAlignment(HorizontalAlignment alignment) override {
    checkedChoice(alignment,
                  {CellFormat::general, HorizontalAlignment::Left, HorizontalAlignment::Center,
                   HorizontalAlignment::Right},
                  "HorizontalAlignment", "Range");
    sheet_->reformat(area_, [&](CellFormat& format) { format.horizontal = alignment; });
  }
  void setVerticalAlignment(VerticalAlignment alignment) override {
    checkedChoice(alignment, {VerticalAlignment::Top, VerticalAlignment::Center, VerticalAlignment::Bottom},
                  "VerticalAlignment", "Range");
    sheet_->reformat(area_, [&](CellFormat& format) { format.vertical = alignment; });
  }
  void setWrapText(bool wrap) override {
    sheet_->reformat(area_, [&](CellFormat& format) { format.wrap = wrap; });
  }
  void setNumberFormat(std::string_view numberFormat) override {
    if (numberFormat.empty()) refuseProperty("NumberFormat", "Range");
    sheet_->reformat(area_, [&](CellFormat& format) { format.numberFormat = numberFormat; });
  }
  void setOrientation(int degrees) override {
    if (degrees < -steepest || degrees > steepest) refuseProperty("Orientation", "Range");
    sheet_->reformat(area_, [&](CellFormat& format) { format.orientation = degrees; });
  }

  void setMergeCells(bool merge) override {
    if (merge) {
      sheet_->merge(area_);
    } else {
      sheet_->separate(area_);
    }
  }
  void setColumnWidth(double characters) override { sheet_->setColumnWidth(area_, characters); }
  void setRowHeight(double points) override { sheet_->setRowHeight(area_, points); }

  std::unique_ptr<Comment> addComment(std::string_view text) override {
    return std::make_unique<MemoryComment>(
        sheet_->addComment(area_.firstRow, area_.firstColumn, std::string(text)));
  }

  void deleteCells(Shift shift) override {
    checkedChoice(shift, {Shift::Left, Shift::Up}, "Shift", "Range");
    // Whole rows and columns close up the only way there is.
    const bool wholeRows = area_.firstColumn == 1 && area_.lastColumn == columnsOfSheet;
    const bool wholeColumns = area_.firstRow == 1 && area_.lastRow == rowsOfSheet;
    sheet_->deleteCells({area_, wholeRows ? Shift::Up : wholeColumns ? Shift::Left : shift});
  }

 private:
  std::shared_ptr<MemorySheet> sheet_;
  CellArea area_;
};

}  // namespace

std::unique_ptr<Range> MemorySheet::cells(const CellArea& area) {
  return std::make_unique<MemoryRange>(shared_from_this(), area);
}

std::unique_ptr<Comment> MemorySheet::comment(Index row, Index column) {
  const std::shared_ptr<CommentBox> box = commentAt(row, column);
  if (box == nullptr) return nullptr;
  return std::make_unique<MemoryComment>(box);
}

std::unique_ptr<Range> MemorySheet::range(std::string_view address) { return cells(cellArea(address)); }
std::unique_ptr<Range> MemorySheet::rows(std::string_view address) { return cells(rowArea(address)); }
std::unique_ptr<Range> MemorySheet::columns(std::string_view address) { return cells(columnArea(address)); }

}  // namespace zelkova
