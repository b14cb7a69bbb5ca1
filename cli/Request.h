#pragma once

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "zelkova/catalogue/Catalogue.h"

namespace zelkova::cli {

/// A request that cannot be read: one line that names the culprit.
class RequestError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// One call that a user asks for: a method and a value for each of its arguments.
class Request {
 public:
  /// `target` is "CLASS.METHOD" or "WorksheetFunction.NAME". RequestError where there is no such thing.
  explicit Request(std::string_view target);

  /// Reads `{"call": ..., "args": ..., "id": ..., "workbook": ...}`; RequestError where that is not what
  /// stands there.
  static Request fromJson(const nlohmann::json& json);

  /// Takes over arguments by name (an object) or by position (an array: in and in-out arguments in order,
  /// worksheets left out).
  void setArguments(const nlohmann::json& json);

  /// The argument of that name, which must be one that is passed in and was not given before.
  const Argument& claim(std::string_view name);

  void set(const Argument& argument, Value value);

  /// Names the file that the worksheet is saved in which the method draws on. RequestError where it draws on
  /// none, where one was named before, and for a name that does not end in ".xlsx".
  void setWorkbook(std::string path);
  const std::optional<std::string>& workbook() const { return workbook_; }

  /// RequestError that names the arguments that are needed and were not given. Worksheets come with the
  /// workbook.
  void checkComplete() const;

  /// A line for each text that is none of its argument's choices: no failure, but hardly what was meant.
  std::vector<std::string> warnings() const;

  const Class& target() const { return *class_; }
  const Method& method() const { return *method_; }
  std::string name() const { return class_->name + "." + method_->name; }

  /// One value an argument; outputs stand here after the call.
  std::span<Value> values() { return values_; }
  std::span<const Value> values() const { return values_; }

  /// The request's own mark, as JSON text, if it has one.
  const std::optional<std::string>& id() const { return id_; }

 private:
  void give(const Argument& argument, const nlohmann::json& value);

  const Class* class_ = nullptr;
  const Method* method_ = nullptr;
  std::vector<Value> values_;
  std::vector<bool> given_;
  std::optional<std::string> id_, workbook_;
};

/// The class of that name, "WorksheetFunction" for the host's functions; RequestError where there is none.
const Class& findClass(std::string_view name);

/// JSON text, read; RequestError that says where it is malformed. `what` names it in that text.
nlohmann::json parseJson(std::string_view text, std::string_view what);

/// The value that `json` gives `argument`: a number goes where a text is asked for as its number text, `null`
/// is `NoValue` as a double and an array that was never filled as an array. RequestError where it does not
/// fit.
Value valueFromJson(const Argument& argument, const nlohmann::json& json);

/// The value that `text` gives `argument` on a command line, a column of a file apart: a number, "true" or
/// "false", a text as it stands, a list with commas between, or an array in JSON.
Value valueFromText(const Argument& argument, const std::string& text);

/// RequestError where `value` has not the shape that `argument` asks for.
void checkShape(const Argument& argument, const Value& value);

/// RequestError about `argument`: "dy: ...".
[[noreturn]] void refuse(const Argument& argument, const std::string& why);

}  // namespace zelkova::cli
