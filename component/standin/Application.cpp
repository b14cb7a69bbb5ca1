#include "component/standin/Application.h"

#include <utility>

#include "component/Dispatch.h"
#include "component/standin/Sheet.h"
#include "component/standin/passed.h"
#include "zelkova/catalogue/Catalogue.h"

namespace zelkova {

namespace {

/// The host's functions, which live as long as the application does.
class FunctionsObject final : public Dispatch {
 public:
  explicit FunctionsObject(WorksheetFunction& functions)
      : Dispatch(Catalogue::get().worksheetFunctions(), {std::shared_ptr<void>(), &functions},
                 "WorksheetFunction") {}
};

/// The sheets of the workbook, which lives as long as the application does. A sheet that is added goes to the
/// end; the first stays in front.
class WorksheetsObject final : public Object {
 public:
  explicit WorksheetsObject(Workbook& workbook) : Object("Worksheets") {
    add("Item", 1, [&](Arguments arguments) { return sheet(workbook, arguments[0]); });
    add("Count", 0, [&](Arguments) { return answered(static_cast<int>(workbook.sheets().size())); });
    add("Add", 0, [&](Arguments) {
      const std::string name = "Sheet" + std::to_string(workbook.sheets().size() + 1);
      return made<SheetObject>(workbook.addSheet(name));
    });
  }

  static OwnedVariant sheet(const Workbook& workbook, const VARIANT& name) {
    return made<SheetObject>(workbook.sheet(textIn(name, "the sheet")));
  }
};

}  // namespace

ApplicationObject::ApplicationObject(std::function<void()> quit) : Object("Application") {
  add("Name", 0, [](Arguments) { return OwnedVariant::text("zelkova stand-in"); });
  add("WorksheetFunction", 0, [this](Arguments) { return made<FunctionsObject>(host_.worksheetFunction()); });
  add("ActiveSheet", 0, [this](Arguments) { return made<SheetObject>(host_.workbook().firstSheet()); });
  add("Worksheets", {0, 1}, [this](Arguments arguments) {
    return arguments.empty() ? made<WorksheetsObject>(host_.workbook())
                             : WorksheetsObject::sheet(host_.workbook(), arguments[0]);
  });
  add("Quit", 0, [quit = std::move(quit)](Arguments) {
    quit();
    return OwnedVariant();
  });
}

}  // namespace zelkova
