#include "component/AutomationSheet.h"

#include "component/arguments.h"
#include "zelkova/frame/NoValue.h"

namespace zelkova {

namespace {

// Constants and colours are long integers to a host, which may refuse a double in their place.
OwnedVariant whole(int number) { return OwnedVariant::longInteger(number); }
template <class Constant>
OwnedVariant constant(Constant value) {
  return whole(static_cast<int>(value));
}

class AutomationFont final : public Font {
 public:
  explicit AutomationFont(HostObject object) : object_(std::move(object)) {}

  void setName(std::string_view name) override { object_.set(L"Name", OwnedVariant::text(name)); }
  void setSize(double points) override { object_.set(L"Size", OwnedVariant(points)); }
  void setBold(bool bold) override { object_.set(L"Bold", OwnedVariant::flag(bold)); }
  void setColorIndex(int color) override { object_.set(L"ColorIndex", whole(color)); }

 private:
  HostObject object_;
};

class AutomationBorder final : public Border {
 public:
  explicit AutomationBorder(HostObject object) : object_(std::move(object)) {}

  void setLineStyle(LineStyle style) override { object_.set(L"LineStyle", constant(style)); }
  void setWeight(BorderWeight weight) override { object_.set(L"Weight", constant(weight)); }
  void setColorIndex(int color) override { object_.set(L"ColorIndex", whole(color)); }

 private:
  HostObject object_;
};

class AutomationValidation final : public Validation {
 public:
  explicit AutomationValidation(HostObject object) : object_(std::move(object)) {}

  void erase() override { object_.get(L"Delete"); }
  void addList(std::string_view list) override {
    constexpr int typeList = 3, alertStop = 1, operatorBetween = 1;
    object_.get(L"Add", whole(typeList), whole(alertStop), whole(operatorBetween), OwnedVariant::text(list));
  }

  void setIgnoreBlank(bool ignore) override { set(L"IgnoreBlank", ignore); }
  void setInCellDropdown(bool dropdown) override { set(L"InCellDropdown", dropdown); }
  void setInputTitle(std::string_view title) override { set(L"InputTitle", title); }
  void setInputMessage(std::string_view message) override { set(L"InputMessage", message); }
  void setErrorTitle(std::string_view title) override { set(L"ErrorTitle", title); }
  void setErrorMessage(std::string_view message) override { set(L"ErrorMessage", message); }
  void setShowInput(bool show) override { set(L"ShowInput", show); }
  void setShowError(bool show) override { set(L"ShowError", show); }

 private:
  void set(const wchar_t* name, bool flag) { object_.set(name, OwnedVariant::flag(flag)); }
  void set(const wchar_t* name, std::string_view text) { object_.set(name, OwnedVariant::text(text)); }

  HostObject object_;
};

class AutomationComment final : public Comment {
 public:
  explicit AutomationComment(const HostObject& object) : shape_(object.object(L"Shape")) {}

  std::unique_ptr<Font> font() override {
    return std::make_unique<AutomationFont>(
        shape_.object(L"TextFrame").object(L"Characters").object(L"Font"));
  }
  void setWidth(double points) override { shape_.set(L"Width", OwnedVariant(points)); }
  void setHeight(double points) override { shape_.set(L"Height", OwnedVariant(points)); }

 private:
  HostObject shape_;
};

}  // namespace

Variant cellValue(const OwnedVariant& held) {
  if (held.vt == VT_ERROR) return NoValue;
  const Argument cell = describedAs("the cell", ValueType::Mixed);
  return std::get<Variant>(valueOf(cell, held, LOCALE_USER_DEFAULT));
}

Variant AutomationRange::value() const {
  const OwnedVariant held = object_.get(L"Value");
  if ((held.vt & VT_ARRAY) == 0) return cellValue(held);
  // Several cells come as an array; the upper left one is asked for.
  return AutomationRange(object_.object(L"Item", whole(1), whole(1))).value();
}

void AutomationRange::setValue(const Variant& value) { object_.set(L"Value", resultVariant(Value(value))); }

std::unique_ptr<Font> AutomationRange::font() {
  return std::make_unique<AutomationFont>(object_.object(L"Font"));
}

// Deliberate: the collection is read first, here and at rows and columns. These properties take no arguments,
// and not every host takes those of its collection for them.
std::unique_ptr<Border> AutomationRange::border(BorderItem item) {
  if (!borders_) borders_ = object_.object(L"Borders");
  return std::make_unique<AutomationBorder>(borders_->object(L"Item", constant(item)));
}

std::unique_ptr<Validation> AutomationRange::validation() {
  return std::make_unique<AutomationValidation>(object_.object(L"Validation"));
}

void AutomationRange::setInteriorColorIndex(int color) {
  object_.object(L"Interior").set(L"ColorIndex", whole(color));
}

void AutomationRange::setHorizontalAlignment(HorizontalAlignment alignment) {
  object_.set(L"HorizontalAlignment", constant(alignment));
}

void AutomationRange::setVerticalAlignment(VerticalAlignment alignment) {
  object_.set(L"VerticalAlignment", constant(alignment));
}

void AutomationRange::setWrapText(bool wrap) { object_.set(L"WrapText", OwnedVariant::flag(wrap)); }

void AutomationRange::setNumberFormat(std::string_view format) {
  object_.set(L"NumberFormat", OwnedVariant::text(format));
}

void AutomationRange::setOrientation(int degrees) { object_.set(L"Orientation", whole(degrees)); }

void AutomationRange::setMergeCells(bool merge) { object_.set(L"MergeCells", OwnedVariant::flag(merge)); }

void AutomationRange::setColumnWidth(double characters) {
  object_.set(L"ColumnWidth", OwnedVariant(characters));
}

void AutomationRange::setRowHeight(double points) { object_.set(L"RowHeight", OwnedVariant(points)); }

std::unique_ptr<Comment> AutomationRange::addComment(std::string_view text) {
  return std::make_unique<AutomationComment>(object_.object(L"AddComment", OwnedVariant::text(text)));
}

void AutomationRange::deleteCells(Shift shift) { object_.get(L"Delete", constant(shift)); }

std::string AutomationSheet::name() const { return cellValue(object_.get(L"Name")).toText(); }

std::unique_ptr<Range> AutomationSheet::range(std::string_view address) {
  return std::make_unique<AutomationRange>(object_.object(L"Range", OwnedVariant::text(address)));
}

std::unique_ptr<Range> AutomationSheet::rows(std::string_view address) {
  return std::make_unique<AutomationRange>(
      object_.object(L"Rows").object(L"Item", OwnedVariant::text(address)));
}

std::unique_ptr<Range> AutomationSheet::columns(std::string_view address) {
  return std::make_unique<AutomationRange>(
      object_.object(L"Columns").object(L"Item", OwnedVariant::text(address)));
}

}  // namespace zelkova
