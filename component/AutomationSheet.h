#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "component/invoke.h"
#include "zelkova/frame/Host.h"

/// The worksheets of the running spreadsheet application.
namespace zelkova {

/// What a cell holds; `NoValue` for an error.
Variant cellValue(const OwnedVariant& held);

class AutomationRange final : public Range {
 public:
  explicit AutomationRange(HostObject object) : object_(std::move(object)) {}

  Variant value() const override;
  void setValue(const Variant& value) override;

  std::unique_ptr<Font> font() override;
  std::unique_ptr<Border> border(BorderItem item) override;
  std::unique_ptr<Validation> validation() override;

  void setInteriorColorIndex(int color) override;
  void setHorizontalAlignment(HorizontalAlignment alignment) override;
  void setVerticalAlignment(VerticalAlignment alignment) override;
  void setWrapText(bool wrap) override;
  void setNumberFormat(std::string_view format) override;
  void setOrientation(int degrees) override;
  void setMergeCells(bool merge) override;
  void setColumnWidth(double characters) override;
  void setRowHeight(double points) override;

  std::unique_ptr<Comment> addComment(std::string_view text) override;
  void deleteCells(Shift shift) override;

 private:
  HostObject object_;
  std::optional<HostObject> borders_;  ///< kept: a form draws many lines, and a host may be another process
};

class AutomationSheet final : public Sheet {
 public:
  explicit AutomationSheet(HostObject object) : object_(std::move(object)) {}

  std::string name() const override;
  std::unique_ptr<Range> range(std::string_view address) override;
  std::unique_ptr<Range> rows(std::string_view address) override;
  std::unique_ptr<Range> columns(std::string_view address) override;

  IDispatch* object() const { return object_.pointer(); }

 private:
  HostObject object_;
};

}  // namespace zelkova
