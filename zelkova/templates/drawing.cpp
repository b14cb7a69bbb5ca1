#include "zelkova/templates/drawing.h"

#include "zelkova/frame/Failure.h"

namespace zelkova::drawing {

namespace {

constexpr std::string_view fontName = "Arial";
constexpr double commentFontSize = 8;

bool isEmpty(const Variant& value) { return value.isNothing() || (value.isText() && value.toText().empty()); }

void setInterior(Range& range, int interior) {
  range.setInteriorColorIndex(interior >= 0 ? interior : noColor);
}

void drawLine(Range& range, BorderItem item) {
  const auto border = range.border(item);
  border->setLineStyle(LineStyle::Continuous);
  border->setWeight(BorderWeight::Thin);
  border->setColorIndex(automaticColor);
}

void drawLines(Range& range, bool inside) {
  for (const BorderItem item : {BorderItem::DiagonalDown, BorderItem::DiagonalUp}) {
    range.border(item)->setLineStyle(LineStyle::None);
  }
  for (const BorderItem item :
       {BorderItem::EdgeLeft, BorderItem::EdgeTop, BorderItem::EdgeBottom, BorderItem::EdgeRight}) {
    drawLine(range, item);
  }
  for (const BorderItem item : {BorderItem::InsideVertical, BorderItem::InsideHorizontal}) {
    try {
      if (inside) {
        drawLine(range, item);
      } else {
        range.border(item)->setLineStyle(LineStyle::None);
      }
    } catch (const Failure&) {
      // Deliberate: a single row or column has no line inside, and hosts refuse to draw it.
    }
  }
}

void setHorizontal(Range& range, std::string_view alignment) {
  if (alignment == "Left") range.setHorizontalAlignment(HorizontalAlignment::Left);
  if (alignment == "Right") range.setHorizontalAlignment(HorizontalAlignment::Right);
  if (alignment == "Center") range.setHorizontalAlignment(HorizontalAlignment::Center);
}

void setVertical(Range& range, std::string_view alignment) {
  if (alignment == "Top") range.setVerticalAlignment(VerticalAlignment::Top);
  if (alignment == "Bottom") range.setVerticalAlignment(VerticalAlignment::Bottom);
  if (alignment == "Center") range.setVerticalAlignment(VerticalAlignment::Center);
}

}  // namespace

std::string address(Index column, Index row) { return columnLetters(column) + std::to_string(row); }

std::string Cells::address() const {
  const std::string first = drawing::address(firstColumn, firstRow);
  return several() ? first + ":" + drawing::address(lastColumn, lastRow) : first;
}

Index checkedSize(std::string_view name, Index given) {
  if (given < 1) raise(FailureNumber::InvalidCall, std::string(name) + " must be at least 1");
  return given;
}

void format(Sheet& sheet, const std::string& cells, const Style& style, const Variant& content) {
  const auto range = sheet.range(cells);
  const auto font = range->font();
  font->setName(fontName);
  font->setSize(style.fontSize);
  font->setBold(style.bold);
  range->setWrapText(style.wrap);
  if (!isEmpty(content)) range->setValue(content);
  setHorizontal(*range, style.horizontal);
  setVertical(*range, style.vertical);
  setInterior(*range, style.interior);
  if (style.border) drawLines(*range, true);
}

void frame(Sheet& sheet, const std::string& cells, int interior, bool inside) {
  const auto range = sheet.range(cells);
  setInterior(*range, interior);
  drawLines(*range, inside);
}

void formatAsOne(Sheet& sheet, const Cells& cells, const Style& style, const Variant& content) {
  format(sheet, cells.address(), style);
  merge(sheet, cells);
  if (!isEmpty(content)) sheet.range(address(cells.firstColumn, cells.firstRow))->setValue(content);
}

void merge(Sheet& sheet, const Cells& cells) {
  if (cells.several()) sheet.range(cells.address())->setMergeCells(true);
}

void comment(Sheet& sheet, const std::string& cell, std::string_view text, double width, double height) {
  const auto comment = sheet.range(cell)->addComment(text);
  const auto font = comment->font();
  font->setName(fontName);
  font->setSize(commentFontSize);
  font->setBold(false);
  font->setColorIndex(automaticColor);
  comment->setWidth(width);
  comment->setHeight(height);
}

void list(Sheet& sheet, const std::string& cells, std::initializer_list<Variant> values) {
  std::string joined;
  for (const Variant& value : values) {
    if (!isEmpty(value)) joined += (joined.empty() ? "" : ",") + value.toText();
  }
  const auto validation = sheet.range(cells)->validation();
  validation->erase();
  validation->addList(joined);
  validation->setIgnoreBlank(true);
  validation->setInCellDropdown(true);
  validation->setErrorTitle("Error");
  validation->setErrorMessage("Invalid input");
  validation->setShowInput(true);
  validation->setShowError(true);
}

}  // namespace zelkova::drawing
