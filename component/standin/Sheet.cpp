#include "component/standin/Sheet.h"

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

#include "component/arguments.h"
#include "component/standin/passed.h"

namespace zelkova {

namespace {

using SheetPointer = std::shared_ptr<MemorySheet>;

/// What `read` finds in all of the `looks`, or Null where they differ.
template <class Look, class Read>
OwnedVariant common(const std::vector<Look>& looks, Read read) {
  const auto first = read(looks.front());
  if (std::all_of(looks.begin(), looks.end(), [&](const Look& look) { return read(look) == first; })) {
    return answered(first);
  }
  OwnedVariant differing;
  differing.vt = VT_NULL;
  return differing;
}

/// The different formats of an area.
std::vector<CellFormat> looksOf(const MemorySheet& sheet, const CellArea& area) {
  // Rows behind the last formatted one are like it has never been touched: one of them stands for all.
  const auto formatted = static_cast<Index>(sheet.formatIds().size());
  const Index last = std::min(area.lastRow, std::max(area.firstRow, formatted + 1));
  std::set<const CellFormat*> different;
  for (Index row = area.firstRow; row <= last; ++row) {
    for (Index column = area.firstColumn; column <= area.lastColumn; ++column) {
      different.insert(&sheet.format(row, column));
    }
  }
  std::vector<CellFormat> looks;
  looks.reserve(different.size());
  for (const CellFormat* format : different) looks.push_back(*format);
  return looks;
}

/// The lines of that kind at an area.
std::vector<LineFormat> linesOf(const MemorySheet& sheet, const CellArea& area, BorderItem item) {
  const auto [top, left, bottom, right] = area;
  const auto lines = [&](const CellArea& cells, CellLine line) {
    std::vector<LineFormat> result;
    if (cells.firstRow > cells.lastRow || cells.firstColumn > cells.lastColumn) return result;
    for (const CellFormat& look : looksOf(sheet, cells)) result.push_back(look.line(line));
    return result;
  };
  switch (item) {
    case BorderItem::DiagonalDown:
      return lines(area, CellLine::DiagonalDown);
    case BorderItem::DiagonalUp:
      return lines(area, CellLine::DiagonalUp);
    case BorderItem::EdgeLeft:
      return lines({top, left, bottom, left}, CellLine::Left);
    case BorderItem::EdgeTop:
      return lines({top, left, top, right}, CellLine::Top);
    case BorderItem::EdgeBottom:
      return lines({bottom, left, bottom, right}, CellLine::Bottom);
    case BorderItem::EdgeRight:
      return lines({top, right, bottom, right}, CellLine::Right);
    case BorderItem::InsideVertical:
      return lines({top, left, bottom, right - 1}, CellLine::Right);
    case BorderItem::InsideHorizontal:
      return lines({top, left, bottom - 1, right}, CellLine::Bottom);
  }
  return {};
}

class FontObject final : public Object {
 public:
  using Looks = std::function<std::vector<FontFormat>()>;

  FontObject(const std::shared_ptr<Font>& font, const Looks& looks) : Object("Font") {
    add(
        "Name", 0,
        [=](Arguments) { return common(looks(), [](const FontFormat& look) { return look.name; }); },
        [=](const VARIANT& passed) { font->setName(textIn(passed, "Name")); });
    add(
        "Size", 0,
        [=](Arguments) { return common(looks(), [](const FontFormat& look) { return look.size; }); },
        [=](const VARIANT& passed) { font->setSize(numberIn(passed, "Size")); });
    add(
        "Bold", 0,
        [=](Arguments) { return common(looks(), [](const FontFormat& look) { return look.bold; }); },
        [=](const VARIANT& passed) { font->setBold(flagIn(passed, "Bold")); });
    add(
        "ColorIndex", 0,
        [=](Arguments) { return common(looks(), [](const FontFormat& look) { return look.color; }); },
        [=](const VARIANT& passed) { font->setColorIndex(wholeIn(passed, "ColorIndex")); });
  }
};

class InteriorObject final : public Object {
 public:
  InteriorObject(const SheetPointer& sheet, const CellArea& area) : Object("Interior") {
    add(
        "ColorIndex", 0,
        [=](Arguments) {
          return common(looksOf(*sheet, area), [](const CellFormat& look) { return look.interior; });
        },
        [=](const VARIANT& passed) {
          sheet->cells(area)->setInteriorColorIndex(wholeIn(passed, "ColorIndex"));
        });
  }
};

class BorderObject final : public Object {
 public:
  BorderObject(const SheetPointer& sheet, const CellArea& area, BorderItem item) : Object("Border") {
    const std::shared_ptr<Border> border = sheet->cells(area)->border(item);
    const auto lines = [=] {
      std::vector<LineFormat> found = linesOf(*sheet, area, item);
      if (found.empty()) found.emplace_back();  // inside a single row or column: none
      return found;
    };
    add(
        "LineStyle", 0,
        [=](Arguments) { return common(lines(), [](const LineFormat& line) { return line.style; }); },
        [=](const VARIANT& passed) {
          border->setLineStyle(static_cast<LineStyle>(wholeIn(passed, "LineStyle")));
        });
    add(
        "Weight", 0,
        [=](Arguments) { return common(lines(), [](const LineFormat& line) { return line.weight; }); },
        [=](const VARIANT& passed) {
          border->setWeight(static_cast<BorderWeight>(wholeIn(passed, "Weight")));
        });
    add(
        "ColorIndex", 0,
        [=](Arguments) { return common(lines(), [](const LineFormat& line) { return line.color; }); },
        [=](const VARIANT& passed) { border->setColorIndex(wholeIn(passed, "ColorIndex")); });
  }
};

OwnedVariant borderOf(const SheetPointer& sheet, const CellArea& area, const VARIANT& passed) {
  const int item = wholeIn(passed, "the border");
  if (item < static_cast<int>(BorderItem::DiagonalDown) ||
      item > static_cast<int>(BorderItem::InsideHorizontal)) {
    refuseAsHost("Unable to get the Item property of the Borders class");
  }
  return made<BorderObject>(sheet, area, static_cast<BorderItem>(item));
}

class BordersObject final : public Object {
 public:
  BordersObject(const SheetPointer& sheet, const CellArea& area) : Object("Borders") {
    add("Item", 1, [=](Arguments arguments) { return borderOf(sheet, area, arguments[0]); });
  }
};

/// The rule of the cells, of which the upper left one speaks for all. Lists are the only rules there are.
class ValidationObject final : public Object {
 public:
  ValidationObject(const SheetPointer& sheet, const CellArea& area) : Object("Validation") {
    const std::shared_ptr<Validation> cells = sheet->cells(area)->validation();
    const auto rule = [=] {
      MemorySheet::Rule found = sheet->ruleAt(area.firstRow, area.firstColumn);
      if (found == nullptr) refuseAsHost("the cells have no validation rule");
      return found;
    };
    const auto constant = [&](const char* name, int value) {
      add(name, 0, [=](Arguments) {
        rule();
        return answered(value);
      });
    };
    constant("Type", typeList);
    constant("AlertStyle", alertStop);
    constant("Operator", firstOperator);
    add("Formula1", 0, [=](Arguments) { return answered(rule()->list); });
    add("Delete", 0, [=](Arguments) {
      cells->erase();
      return OwnedVariant();
    });
    add("Add", {4, 5}, [=](Arguments arguments) {
      checkRule(arguments);
      cells->addList(textIn(arguments[3], "Formula1"));
      return OwnedVariant();
    });
    const auto flag = [&](const char* name, bool ValidationRule::*held, void (Validation::*set)(bool)) {
      add(
          name, 0, [=](Arguments) { return answered((*rule()).*held); },
          [=](const VARIANT& passed) { (*cells.*set)(flagIn(passed, name)); });
    };
    flag("IgnoreBlank", &ValidationRule::ignoreBlank, &Validation::setIgnoreBlank);
    flag("InCellDropdown", &ValidationRule::inCellDropdown, &Validation::setInCellDropdown);
    flag("ShowInput", &ValidationRule::showInput, &Validation::setShowInput);
    flag("ShowError", &ValidationRule::showError, &Validation::setShowError);
    const auto text = [&](const char* name, std::string ValidationRule::*held,
                          void (Validation::*set)(std::string_view)) {
      add(
          name, 0, [=](Arguments) { return answered((*rule()).*held); },
          [=](const VARIANT& passed) { (*cells.*set)(textIn(passed, name)); });
    };
    text("InputTitle", &ValidationRule::inputTitle, &Validation::setInputTitle);
    text("InputMessage", &ValidationRule::inputMessage, &Validation::setInputMessage);
    text("ErrorTitle", &ValidationRule::errorTitle, &Validation::setErrorTitle);
    text("ErrorMessage", &ValidationRule::errorMessage, &Validation::setErrorMessage);
  }

 private:
  static constexpr int typeList = 3, alertStop = 1, firstOperator = 1, lastOperator = 8;

  static void checkRule(Arguments arguments) {
    const auto given = [&](std::size_t i, const char* name, int otherwise) {
      return isMissing(arguments[i]) ? otherwise : wholeIn(arguments[i], name);
    };
    if (wholeIn(arguments[0], "Type") != typeList) refuseAsHost("a validation rule is a list, Type 3");
    if (given(1, "AlertStyle", alertStop) != alertStop)
      refuseAsHost("a list stops other input, AlertStyle 1");
    const int comparison = given(2, "Operator", firstOperator);
    if (comparison < firstOperator || comparison > lastOperator) refuseAsHost("there is no such Operator");
  }
};

class CharactersObject final : public Object {
 public:
  CharactersObject(const std::shared_ptr<Comment>& comment, const std::shared_ptr<CommentBox>& box)
      : Object("Characters") {
    add("Text", 0, [=](Arguments) { return answered(box->text); });
    add("Font", 0, [=](Arguments) {
      return made<FontObject>(comment->font(), [box] { return std::vector{box->font}; });
    });
  }
};

class TextFrameObject final : public Object {
 public:
  TextFrameObject(const std::shared_ptr<Comment>& comment, const std::shared_ptr<CommentBox>& box)
      : Object("TextFrame") {
    add("Characters", 0, [=](Arguments) { return made<CharactersObject>(comment, box); });
  }
};

class ShapeObject final : public Object {
 public:
  ShapeObject(const std::shared_ptr<Comment>& comment, const std::shared_ptr<CommentBox>& box)
      : Object("Shape") {
    add("TextFrame", 0, [=](Arguments) { return made<TextFrameObject>(comment, box); });
    add(
        "Width", 0, [=](Arguments) { return answered(box->width); },
        [=](const VARIANT& passed) { comment->setWidth(numberIn(passed, "Width")); });
    add(
        "Height", 0, [=](Arguments) { return answered(box->height); },
        [=](const VARIANT& passed) { comment->setHeight(numberIn(passed, "Height")); });
  }
};

class CommentObject final : public Object {
 public:
  CommentObject(const std::shared_ptr<Comment>& comment, const std::shared_ptr<CommentBox>& box)
      : Object("Comment") {
    add("Text", 0, [=](Arguments) { return answered(box->text); });
    add("Shape", 0, [=](Arguments) { return made<ShapeObject>(comment, box); });
  }
};

/// All rows or all columns of a sheet.
class LinesObject final : public Object {
 public:
  LinesObject(const SheetPointer& sheet, const char* name, Index count, CellArea (*find)(std::string_view))
      : Object(name) {
    add("Item", 1, [=](Arguments arguments) {
      return made<RangeObject>(sheet, find(textIn(arguments[0], "the address")));
    });
    add("Count", 0, [=](Arguments) { return answered(static_cast<int>(count)); });
  }
};

OwnedVariant cellRange(const SheetPointer& sheet, Index row, Index column) {
  if (row > rowsOfSheet || column > columnsOfSheet) refuseAsHost("the cell lies outside the sheet");
  return made<RangeObject>(sheet, CellArea{row, column, row, column});
}

}  // namespace

RangeObject::RangeObject(SheetPointer sheet, CellArea area)
    : Object("Range"), sheet_(std::move(sheet)), area_(area), cells_(sheet_->cells(area_)) {
  add(
      "Value", 0, [this](Arguments) { return value(); }, [this](const VARIANT& passed) { setValue(passed); });
  add("Count", 0, [this](Arguments) { return OwnedVariant(static_cast<double>(rows() * columns())); });
  add("Item", 2, [this](Arguments arguments) { return item(arguments); });
  addLooks();
  addSizes();
  addRulesAndComments();
  add("Clear", 0, [this](Arguments) {
    sheet_->clear(area_);
    return OwnedVariant();
  });
  add("Delete", {0, 1}, [this](Arguments arguments) {
    deleteCells(arguments);
    return OwnedVariant();
  });
}

void RangeObject::addLooks() {
  const auto looks = [this] { return looksOf(*sheet_, area_); };
  add("Font", 0, [=, this](Arguments) {
    return made<FontObject>(cells_->font(), [sheet = sheet_, area = area_] {
      std::vector<FontFormat> fonts;
      for (const CellFormat& look : looksOf(*sheet, area)) fonts.push_back(look.font);
      return fonts;
    });
  });
  add("Interior", 0, [this](Arguments) { return made<InteriorObject>(sheet_, area_); });
  add("Borders", {0, 1}, [this](Arguments arguments) {
    return arguments.empty() ? made<BordersObject>(sheet_, area_) : borderOf(sheet_, area_, arguments[0]);
  });
  add(
      "HorizontalAlignment", 0,
      [=](Arguments) { return common(looks(), [](const CellFormat& look) { return look.horizontal; }); },
      [this](const VARIANT& passed) {
        cells_->setHorizontalAlignment(
            static_cast<HorizontalAlignment>(wholeIn(passed, "HorizontalAlignment")));
      });
  add(
      "VerticalAlignment", 0,
      [=](Arguments) { return common(looks(), [](const CellFormat& look) { return look.vertical; }); },
      [this](const VARIANT& passed) {
        cells_->setVerticalAlignment(static_cast<VerticalAlignment>(wholeIn(passed, "VerticalAlignment")));
      });
  add(
      "WrapText", 0,
      [=](Arguments) { return common(looks(), [](const CellFormat& look) { return look.wrap; }); },
      [this](const VARIANT& passed) { cells_->setWrapText(flagIn(passed, "WrapText")); });
  add(
      "NumberFormat", 0,
      [=](Arguments) { return common(looks(), [](const CellFormat& look) { return look.numberFormat; }); },
      [this](const VARIANT& passed) { cells_->setNumberFormat(textIn(passed, "NumberFormat")); });
  add(
      "Orientation", 0,
      [=](Arguments) { return common(looks(), [](const CellFormat& look) { return look.orientation; }); },
      [this](const VARIANT& passed) { cells_->setOrientation(wholeIn(passed, "Orientation")); });
  add(
      "MergeCells", 0,
      [this](Arguments) { return answered(sheet_->mergedAt(area_.firstRow, area_.firstColumn) != nullptr); },
      [this](const VARIANT& passed) { cells_->setMergeCells(flagIn(passed, "MergeCells")); });
  add("MergeArea", 0, [this](Arguments) { return mergeArea(); });
}

void RangeObject::addSizes() {
  const auto sizes = [](Index first, Index last, auto read) {
    std::vector<double> result;
    for (Index i = first; i <= last; ++i) result.push_back(read(i));
    return common(result, [](double size) { return size; });
  };
  add(
      "ColumnWidth", 0,
      [=, this](Arguments) {
        return sizes(area_.firstColumn, area_.lastColumn,
                     [this](Index column) { return sheet_->columnWidth(column); });
      },
      [this](const VARIANT& passed) { cells_->setColumnWidth(numberIn(passed, "ColumnWidth")); });
  add(
      "RowHeight", 0,
      [=, this](Arguments) {
        return sizes(area_.firstRow, area_.lastRow, [this](Index row) { return sheet_->rowHeight(row); });
      },
      [this](const VARIANT& passed) { cells_->setRowHeight(numberIn(passed, "RowHeight")); });
}

void RangeObject::addRulesAndComments() {
  add("Validation", 0, [this](Arguments) { return made<ValidationObject>(sheet_, area_); });
  add("AddComment", 1, [this](Arguments arguments) {
    cells_->addComment(textIn(arguments[0], "Text"));
    return comment();
  });
  add("Comment", 0, [this](Arguments) { return comment(); });
}

OwnedVariant RangeObject::value() const {
  if (rows() * columns() == 1) return resultVariant(sheet_->cell(area_.firstRow, area_.firstColumn));
  VariantArray cells(rows(), columns(), Variant());
  for (Index j = 1; j <= columns(); ++j) {
    for (Index i = 1; i <= rows(); ++i) {
      cells(i, j) = sheet_->cell(area_.firstRow + i - 1, area_.firstColumn + j - 1);
    }
  }
  return resultVariant(cells);
}

void RangeObject::setValue(const VARIANT& passed) {
  const Argument argument = describedAs("Value", ValueType::MixedValues, Shape::VectorOrTable);
  const auto values = std::get<VariantArray>(valueOf(argument, passed, LOCALE_INVARIANT));
  const auto at = [&](Index i, Index j) -> Variant {
    if (!values.filled()) return {};
    if (values.size() == 1) return values.elements().front();
    // A vector lies along a row, as in a spreadsheet.
    const Index row = values.dimensions() == 2 ? i : 1;
    const Index height = values.dimensions() == 2 ? values.rows() : 1;
    const Index width = values.dimensions() == 2 ? values.columns() : values.rows();
    if (row > height || j > width) return {};
    return values.elements()[static_cast<std::size_t>((j - 1) * height + row - 1)];
  };
  for (Index j = 1; j <= columns(); ++j) {
    for (Index i = 1; i <= rows(); ++i) {
      sheet_->setCell(area_.firstRow + i - 1, area_.firstColumn + j - 1, at(i, j));
    }
  }
}

OwnedVariant RangeObject::item(Arguments arguments) const {
  return cellRange(sheet_, area_.firstRow + placeIn(arguments[0], "row") - 1,
                   area_.firstColumn + placeIn(arguments[1], "column") - 1);
}

OwnedVariant RangeObject::mergeArea() const {
  const CellArea* merged = sheet_->mergedAt(area_.firstRow, area_.firstColumn);
  return made<RangeObject>(sheet_, merged == nullptr ? area_ : *merged);
}

OwnedVariant RangeObject::comment() const {
  const std::shared_ptr<Comment> held = sheet_->comment(area_.firstRow, area_.firstColumn);
  if (held == nullptr) return OwnedVariant::object(nullptr);
  return made<CommentObject>(held, sheet_->commentAt(area_.firstRow, area_.firstColumn));
}

void RangeObject::deleteCells(Arguments arguments) {
  cells_->deleteCells(arguments.empty() ? Shift::Up : static_cast<Shift>(wholeIn(arguments[0], "Shift")));
}

SheetObject::SheetObject(const SheetPointer& sheet) : Object("Worksheet") {
  add("Name", 0, [sheet](Arguments) { return OwnedVariant::text(sheet->name()); });
  add("Range", 1, [sheet](Arguments arguments) {
    return made<RangeObject>(sheet, cellArea(textIn(arguments[0], "the address")));
  });
  add("Cells", 2, [sheet](Arguments arguments) {
    return cellRange(sheet, placeIn(arguments[0], "row"), placeIn(arguments[1], "column"));
  });
  const auto lines = [&](const char* name, Index count, CellArea (*find)(std::string_view)) {
    add(name, {0, 1}, [=](Arguments arguments) {
      if (arguments.empty()) return made<LinesObject>(sheet, name, count, find);
      return made<RangeObject>(sheet, find(textIn(arguments[0], "the address")));
    });
  };
  lines("Rows", rowsOfSheet, rowArea);
  lines("Columns", columnsOfSheet, columnArea);
}

}  // namespace zelkova
