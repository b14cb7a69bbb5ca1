#include "component/standin/Application.h"

#include <algorithm>
#include <utility>

#include "component/Dispatch.h"
#include "component/arguments.h"

namespace zelkova {

namespace {

/// A new object as a variant that holds its only reference.
template <class T, class... Arguments>
OwnedVariant made(Arguments&&... arguments) {
  return OwnedVariant::object(new T(std::forward<Arguments>(arguments)...));
}

OwnedVariant cellRange(const std::shared_ptr<MemorySheet>& sheet, Index row, Index column) {
  return made<RangeObject>(sheet, CellArea{row, column, row, column});
}

/// A row or column number, from 1.
Index place(const VARIANT& passed, const char* name) {
  const Argument argument = describedAs(name, ValueType::Double);
  const auto number = std::get<double>(valueOf(argument, passed, LOCALE_INVARIANT));
  if (!(number >= 1 && number <= 65536)) raise(FailureNumber::HostRefused, std::string("no such ") + name);
  return static_cast<Index>(number);
}

std::string textOf(const VARIANT& passed, const char* name) {
  const Argument argument = describedAs(name, ValueType::Text);
  return std::get<std::string>(valueOf(argument, passed, LOCALE_INVARIANT));
}

/// The host's functions, which live as long as the application does.
class FunctionsObject final : public Dispatch {
 public:
  explicit FunctionsObject(WorksheetFunction& functions)
      : Dispatch(Catalogue::get().worksheetFunctions(), {std::shared_ptr<void>(), &functions},
                 "WorksheetFunction") {}
};

}  // namespace

RangeObject::RangeObject(std::shared_ptr<MemorySheet> sheet, CellArea area)
    : Object("Range"), sheet_(std::move(sheet)), area_(area) {
  add(
      "Value", 0, [this](Arguments) { return value(); }, [this](const VARIANT& passed) { setValue(passed); });
  add("Count", 0, [this](Arguments) { return OwnedVariant(static_cast<double>(rows() * columns())); });
  add("Item", 2, [this](Arguments arguments) {
    return cellRange(sheet_, area_.firstRow + place(arguments[0], "row") - 1,
                     area_.firstColumn + place(arguments[1], "column") - 1);
  });
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

SheetObject::SheetObject(const std::shared_ptr<MemorySheet>& sheet) : Object("Worksheet") {
  add("Name", 0, [sheet](Arguments) { return OwnedVariant::text(sheet->name()); });
  add("Range", 1, [sheet](Arguments arguments) {
    return made<RangeObject>(sheet, cellArea(textOf(arguments[0], "the address")));
  });
  add("Cells", 2, [sheet](Arguments arguments) {
    return cellRange(sheet, place(arguments[0], "row"), place(arguments[1], "column"));
  });
}

ApplicationObject::ApplicationObject(std::function<void()> quit) : Object("Application") {
  add("Name", 0, [](Arguments) { return OwnedVariant::text("zelkova stand-in"); });
  add("WorksheetFunction", 0, [this](Arguments) { return made<FunctionsObject>(host_.worksheetFunction()); });
  add("ActiveSheet", 0, [this](Arguments) { return made<SheetObject>(host_.workbook().firstSheet()); });
  add("Quit", 0, [quit = std::move(quit)](Arguments) {
    quit();
    return OwnedVariant();
  });
}

}  // namespace zelkova
