#include <algorithm>
#include <functional>
#include <map>

#include "component/AutomationSheet.h"
#include "component/Dispatch.h"
#include "component/standin/Sheet.h"
#include "component/standin/passed.h"
#include "unittests/component/windows/client.h"
#include "zelkova/catalogue/Catalogue.h"
#include "zelkova/templates/yTemplate.h"

/// Forms drawn through automation on the stand-in's sheet, all in this process, where what came out can be
/// compared in full.
namespace zelkova {
namespace {

using Numbers = std::vector<double>;

ComPtr<IDispatch> objectOn(const std::shared_ptr<MemorySheet>& sheet) {
  ComPtr<IDispatch> object;
  object = new SheetObject(sheet);
  return object;
}

class FormsTest : public Client {
 protected:
  FormsTest() : sheet_(std::make_shared<MemorySheet>("Sheet1")), object_(objectOn(sheet_)) {
    const Class* forms = Catalogue::get().find("yTemplate");
    form_ = new Dispatch(*forms, forms->create(), "zelkova.yTemplate");
    EXPECT_EQ(call(form_.Get(), L"PassSheet", {OwnedVariant::object(object_.Get())}).code, S_OK);
  }

  Ending draw(const wchar_t* method, const Numbers& sizes) {
    std::vector<VARIANT> arguments;
    for (const double size : sizes) arguments.push_back(OwnedVariant(size));
    return call(form_.Get(), method, arguments);
  }

  std::shared_ptr<Sheet> automated() const {
    return std::make_shared<AutomationSheet>(HostObject(object_.Get()));
  }

  /// "A1.Font.Name" by its steps. Numbers come as doubles, whatever they were.
  Variant property(const char* address, const std::vector<const wchar_t*>& steps) const {
    HostObject object = HostObject(object_.Get()).object(L"Range", OwnedVariant::text(address));
    for (std::size_t i = 0; i + 1 < steps.size(); ++i) object = object.object(steps[i]);
    return cellValue(object.get(steps.back()));
  }

  std::shared_ptr<MemorySheet> sheet_;
  ComPtr<IDispatch> object_, form_;
};

template <class Entries>
void expectSameEntries(const Entries& actual, const Entries& expected, const char* what) {
  const bool same =
      std::equal(actual.begin(), actual.end(), expected.begin(), expected.end(),
                 [](const auto& a, const auto& b) { return a.first == b.first && *a.second == *b.second; });
  EXPECT_TRUE(same) << what;
}

void expectSame(const MemorySheet& actual, const MemorySheet& expected) {
  EXPECT_EQ(actual.values(), expected.values());
  EXPECT_EQ(actual.merged(), expected.merged());
  EXPECT_EQ(actual.columnWidths(), expected.columnWidths());
  EXPECT_EQ(actual.rowHeights(), expected.rowHeights());
  expectSameEntries(actual.rules(), expected.rules(), "rules");
  expectSameEntries(actual.comments(), expected.comments(), "comments");
  const auto rows = static_cast<Index>(std::max(actual.formatIds().size(), expected.formatIds().size()));
  int different = 0;
  for (Index row = 1; row <= rows; ++row) {
    for (Index column = 1; column <= columnsOfSheet; ++column) {
      if (actual.format(row, column) != expected.format(row, column)) ++different;
    }
  }
  EXPECT_EQ(different, 0) << "cells look different";
}

// A property that arrives under another name, with another constant or at another range.
TEST_F(FormsTest, LookAsOnTheEmbeddedSheet) {
  struct Case {
    const wchar_t* method;
    Numbers sizes;
    std::function<void(const yTemplate&)> draw;
  };
  const Case cases[] = {
      {L"drawCNEM", {3, 4}, [](const yTemplate& form) { form.drawCNEM(3, 4); }},
      {L"drawCNEM", {1, 1}, [](const yTemplate& form) { form.drawCNEM(1, 1); }},
      {L"drawPairwise", {4}, [](const yTemplate& form) { form.drawPairwise(4); }},
      {L"drawPugh", {2, 3}, [](const yTemplate& form) { form.drawPugh(2, 3); }},
      {L"drawQFD", {3, 2, 1, 1, 1}, [](const yTemplate& form) { form.drawQFD(3, 2, true, true, true); }},
      {L"drawQFD", {3, 2, 0, 0, 0}, [](const yTemplate& form) { form.drawQFD(3, 2, false, false, false); }},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(utf8(std::wstring_view(c.method)));
    sheet_->clear();
    const Ending ending = draw(c.method, c.sizes);
    ASSERT_EQ(ending.code, S_OK) << ending.text;
    const auto embedded = std::make_shared<MemorySheet>("Sheet1");
    yTemplate form;
    form.PassSheet(embedded);
    c.draw(form);
    ASSERT_FALSE(embedded->values().empty());
    expectSame(*sheet_, *embedded);
  }
}

// `Clear` that leaves a rule, a comment or a merged area behind: the form could not be drawn again.
TEST_F(FormsTest, CanBeDrawnAgainOnClearedCells) {
  ASSERT_EQ(draw(L"drawCNEM", {2, 2}).code, S_OK);
  const auto once = sheet_->values();
  const Ending again = draw(L"drawCNEM", {2, 2});
  EXPECT_EQ(again.number, 1004);
  EXPECT_EQ(again.text, "the cell has a comment already");
  EXPECT_EQ(again.source, "zelkova.yTemplate");

  HostObject(object_.Get()).object(L"Range", OwnedVariant::text("A1:D5")).get(L"Clear");
  EXPECT_TRUE(sheet_->values().empty() && sheet_->merged().empty() && sheet_->rules().empty());
  EXPECT_EQ(sheet_->format(1, 1), CellFormat());
  EXPECT_EQ(draw(L"drawCNEM", {2, 2}).code, S_OK);
  EXPECT_EQ(sheet_->values(), once);
}

// A property of the stand-in that reads another than it sets. The expected values are what the calls ask for,
// and the constants of the spreadsheet's object model.
TEST_F(FormsTest, AnswerWhatWasSet) {
  const std::shared_ptr<Sheet> sheet = automated();
  const yTemplate form;
  form.SuperFormat(sheet, "B2:C3", true, 36, 10, true, "Right", "Center", false, "=1+1");
  form.AddListVad(sheet, "B2", 1.0, 3.0, {}, "nine", {}, {}, {}, {}, {}, {});
  form.AddComment(sheet, "B2", "Enter a score", 96, 28.5);
  const auto cells = sheet->range("B2");
  cells->setOrientation(90);
  cells->setNumberFormat("0.00%");
  cells->setColumnWidth(5.43);
  cells->setRowHeight(18.75);
  cells->border(BorderItem::EdgeLeft)->setWeight(BorderWeight::Medium);
  sheet->range("E1:F1")->setMergeCells(true);

  const Variant yes = Variant::flag(true), no = Variant::flag(false);
  const std::vector<std::pair<std::vector<const wchar_t*>, Variant>> expected = {
      {{L"Value"}, "=1+1"},
      {{L"Font", L"Name"}, "Arial"},
      {{L"Font", L"Size"}, 10.0},
      {{L"Font", L"Bold"}, yes},
      {{L"Font", L"ColorIndex"}, -4105.0},
      {{L"Interior", L"ColorIndex"}, 36.0},
      {{L"HorizontalAlignment"}, -4152.0},
      {{L"VerticalAlignment"}, -4108.0},
      {{L"WrapText"}, no},
      {{L"Orientation"}, 90.0},
      {{L"NumberFormat"}, "0.00%"},
      {{L"ColumnWidth"}, 5.43},
      {{L"RowHeight"}, 18.75},
      {{L"MergeCells"}, no},
      {{L"Validation", L"Type"}, 3.0},
      {{L"Validation", L"AlertStyle"}, 1.0},
      {{L"Validation", L"Operator"}, 1.0},
      {{L"Validation", L"Formula1"}, "1,3,nine"},
      {{L"Validation", L"IgnoreBlank"}, yes},
      {{L"Validation", L"InCellDropdown"}, yes},
      {{L"Validation", L"ErrorTitle"}, "Error"},
      {{L"Validation", L"ErrorMessage"}, "Invalid input"},
      {{L"Validation", L"InputTitle"}, ""},
      {{L"Validation", L"ShowError"}, yes},
      {{L"Comment", L"Text"}, "Enter a score"},
      {{L"Comment", L"Shape", L"Width"}, 96.0},
      {{L"Comment", L"Shape", L"Height"}, 28.5},
      {{L"Comment", L"Shape", L"TextFrame", L"Characters", L"Font", L"Name"}, "Arial"},
  };
  for (const auto& [steps, value] : expected) {
    EXPECT_EQ(property("B2", steps), value) << utf8(std::wstring_view(steps.back()));
  }
  EXPECT_EQ(property("F1", {L"MergeCells"}), yes);
  EXPECT_EQ(property("F1", {L"MergeArea", L"Count"}), Variant(2.0));
  EXPECT_EQ(property("B2:C3", {L"Font", L"Size"}), Variant(10.0));
  const HostObject all = HostObject(object_.Get()).object(L"Range", OwnedVariant::text("A1:C3"));
  EXPECT_EQ(all.object(L"Interior").get(L"ColorIndex").vt, VT_NULL);

  const std::pair<int, std::array<int, 2>> lines[] = {{5, {-4142, 2}}, {7, {1, -4138}}, {8, {1, 2}},
                                                      {9, {1, 2}},     {10, {1, 2}},    {11, {-4142, 2}}};
  const HostObject borders =
      HostObject(object_.Get()).object(L"Range", OwnedVariant::text("B2")).object(L"Borders");
  for (const auto& [item, look] : lines) {
    const HostObject line = borders.object(L"Item", OwnedVariant::longInteger(item));
    EXPECT_EQ(line.get(L"LineStyle").lVal, look[0]) << item;
    EXPECT_EQ(line.get(L"Weight").lVal, look[1]) << item;
    EXPECT_EQ(line.get(L"ColorIndex").lVal, -4105) << item;
  }
}

// A wrong constant that is taken, or a refusal that loses the host's words on its way.
TEST_F(FormsTest, BringBackWhatTheHostRefuses) {
  const std::shared_ptr<Sheet> sheet = automated();
  const auto cell = sheet->range("A1");
  cell->validation()->addList("1,3,9");
  cell->addComment("Here");
  const auto unable = [](const char* name, const char* object) {
    return "Unable to set the " + std::string(name) + " property of the " + object + " class";
  };
  const std::vector<std::pair<std::function<void()>, std::string>> refused = {
      {[&] { cell->validation()->addList("1"); }, "the cells have a validation rule already"},
      {[&] { sheet->range("B1")->validation()->setShowError(true); }, "the cells have no validation rule"},
      {[&] { cell->addComment("Again"); }, "the cell has a comment already"},
      {[&] { cell->setColumnWidth(256); }, unable("ColumnWidth", "Range")},
      {[&] { cell->setRowHeight(-1); }, unable("RowHeight", "Range")},
      {[&] { cell->setInteriorColorIndex(57); }, unable("ColorIndex", "Interior")},
      {[&] { cell->font()->setSize(0); }, unable("Size", "Font")},
      {[&] { cell->setOrientation(91); }, unable("Orientation", "Range")},
      {[&] { cell->setHorizontalAlignment(HorizontalAlignment{-1}); },
       unable("HorizontalAlignment", "Range")},
      {[&] { cell->border(BorderItem::EdgeTop)->setLineStyle(LineStyle{3}); }, unable("LineStyle", "Border")},
      {[&] { cell->border(BorderItem{13}); }, "Unable to get the Item property of the Borders class"},
      {[&] { cell->deleteCells(Shift{0}); }, unable("Shift", "Range")},
      {[&] { AutomationSheet(HostObject(form_.Get())).rows("1:1"); },
       "Unable to evaluate the worksheet function: the host has no Rows"},
  };
  for (const auto& [act, text] : refused) {
    try {
      act();
      ADD_FAILURE() << "not refused: " << text;
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.number(), 1004) << text;
      EXPECT_EQ(failure.text(), text);
    }
  }
  for (const char* address : {"nowhere", "IW1", "A65537", ""}) {
    EXPECT_THROW(sheet->range(address), Failure) << address;
    EXPECT_THROW(sheet->rows(address), Failure) << address;
  }
}

/// A host that takes everything and keeps the types in which it came.
class Recorder final : public Object {
 public:
  explicit Recorder(std::map<std::string, VARTYPE>& types) : Object("Recorder") {
    for (const char* child : {"Font", "Interior", "Borders", "Validation", "AddComment", "Shape"}) {
      const std::size_t count = child == std::string("AddComment") ? 1 : 0;
      add(child, count, [&types](Arguments) { return made<Recorder>(types); });
    }
    add("Item", 1, [&types](Arguments passed) {
      types["Item"] = passed[0].vt;
      return made<Recorder>(types);
    });
    add("Add", 4, [&types](Arguments passed) {
      types["Type"] = passed[0].vt;
      types["Operator"] = passed[2].vt;
      types["Formula1"] = passed[3].vt;
      return OwnedVariant();
    });
    for (const char* name : {"ColorIndex", "LineStyle", "Weight", "Bold", "Size", "HorizontalAlignment",
                             "Orientation", "WrapText", "MergeCells", "Width", "Value"}) {
      add(name, 0, {}, [&types, name](const VARIANT& passed) { types[name] = passed.vt; });
    }
  }
};

// Spreadsheets refuse a double for a constant and a number for a flag; and a property such as `Borders` need
// not take the arguments of its collection.
TEST(AutomationRange, PassesTheTypesThatAHostExpects) {
  std::map<std::string, VARTYPE> types;
  ComPtr<IDispatch> host;
  host = new Recorder(types);
  AutomationRange range{HostObject(host.Get())};
  range.font()->setBold(true);
  range.font()->setSize(8);
  range.setInteriorColorIndex(44);
  range.border(BorderItem::EdgeTop)->setLineStyle(LineStyle::Continuous);
  range.border(BorderItem::EdgeTop)->setWeight(BorderWeight::Thin);
  range.setHorizontalAlignment(HorizontalAlignment::Center);
  range.setOrientation(90);
  range.setWrapText(true);
  range.setMergeCells(true);
  range.validation()->addList("1,3,9");
  range.addComment("Here")->setWidth(96);
  range.setValue("=A1");
  const std::map<std::string, VARTYPE> expected = {
      {"Bold", VT_BOOL},
      {"Size", VT_R8},
      {"ColorIndex", VT_I4},
      {"Item", VT_I4},
      {"LineStyle", VT_I4},
      {"Weight", VT_I4},
      {"HorizontalAlignment", VT_I4},
      {"Orientation", VT_I4},
      {"WrapText", VT_BOOL},
      {"Type", VT_I4},
      {"Operator", VT_I4},
      {"Formula1", VT_BSTR},
      {"MergeCells", VT_BOOL},
      {"Width", VT_R8},
      {"Value", VT_BSTR},
  };
  EXPECT_EQ(types, expected);
}

}  // namespace
}  // namespace zelkova
