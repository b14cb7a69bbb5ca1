#include "cli/Request.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <numeric>
#include <set>
#include <utility>
#include <vector>

#include "cli/text.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/frame/numberText.h"

namespace zelkova::cli {

using nlohmann::json;

namespace {

/// How many letters must be put in, left out or replaced to turn `a` into `b`, whatever their case
/// (Levenshtein, 1966).
std::size_t editDistance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), 0);
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i + 1);
    for (std::size_t j = 0; j < b.size(); ++j) {
      const bool same = sameIgnoringCase(a.substr(i, 1), b.substr(j, 1));
      const std::size_t replaced = diagonal + (same ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
    }
  }
  return row[b.size()];
}

/// "; did you mean X?" with the one of `known` that is nearest to `name`, where that is near enough.
template <class Known>
std::string suggestion(std::string_view name, const Known& known) {
  // Two letters away, short names are like anything.
  const std::size_t farthest = name.size() < 5 ? 1 : 2;
  const std::string* nearest = nullptr;
  std::size_t least = farthest + 1;
  for (const auto& entry : known) {
    const std::string& candidate = entry.name;
    if (name.size() > candidate.size() + farthest || candidate.size() > name.size() + farthest) continue;
    const std::size_t distance = editDistance(name, candidate);
    if (distance >= least) continue;
    least = distance;
    nearest = &candidate;
  }
  return nearest == nullptr ? std::string() : "; did you mean " + *nearest + "?";
}

const Method& findMethod(const Class& target, std::string_view name) {
  if (const Method* found = target.find(name)) return *found;
  throw RequestError(target.name + " has no method " + inQuotes(name) + suggestion(name, target.methods) +
                     "; \"zelkova describe " + target.name + "\" names them");
}

std::string inputNames(const Method& method) {
  std::string names;
  for (const Argument& argument : method.arguments) {
    if (argument.isInput()) names += (names.empty() ? "" : ", ") + argument.name;
  }
  return names.empty() ? "none" : names;
}

/// The library quotes what it has read last, whatever that holds.
std::string oneLine(std::string_view text) {
  constexpr std::size_t longest = 200;
  const std::string json = jsonText(text.substr(0, longest));
  return json.substr(1, json.size() - 2);
}

/// A number, text or flag as it stands in JSON, for a line of an error.
std::string valueText(const json& value) {
  return value.is_string() ? inQuotes(value.get_ref<const std::string&>()) : value.dump();
}

[[noreturn]] void refuseType(const Argument& argument, const json& value) {
  refuse(argument, "needs a " + inWords(argument.type, argument.shape) + ", not " +
                       (value.is_structured() ? std::string(value.type_name()) : valueText(value)));
}

double number(const Argument& argument, const json& value) {
  if (value.is_null()) return NoValue;
  if (!value.is_number()) refuseType(argument, value);
  return value.get<double>();
}

std::string text(const Argument& argument, const json& value) {
  if (value.is_string()) return value.get<std::string>();
  if (value.is_number()) return numberText(value.get<double>());
  refuseType(argument, value);
}

Variant mixed(const Argument& argument, const json& value) {
  if (value.is_null()) return {};
  if (value.is_boolean()) return Variant::flag(value.get<bool>());
  if (value.is_string()) return value.get<std::string>();
  if (value.is_number()) return value.get<double>();
  refuseType(argument, value);
}

template <class T>
Value arrayFromJson(const Argument& argument, const json& value, T (*element)(const Argument&, const json&)) {
  if (value.is_null()) return Array<T>();
  if (!value.is_array()) refuseType(argument, value);
  if (value.empty()) refuse(argument, "has no elements; leave it out for an array that was never filled");
  if (!value.front().is_array()) {
    Array<T> result(static_cast<Index>(value.size()));
    Index i = 0;
    for (const json& entry : value) result(++i) = element(argument, entry);
    return result;
  }
  const std::size_t width = value.front().size();
  if (width == 0) refuse(argument, "has rows without elements");
  // Before the table is made: rows of any length in a short text could ask for all of the memory.
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (!value[i].is_array() || value[i].size() != width) {
      refuse(argument, "row " + std::to_string(i + 1) + " is not as long as row 1");
    }
  }
  Array<T> result(static_cast<Index>(value.size()), static_cast<Index>(width), T());
  Index i = 0;
  for (const json& row : value) {
    ++i;
    Index j = 0;
    for (const json& entry : row) result(i, ++j) = element(argument, entry);
  }
  return result;
}

std::int16_t wholeNumber(const Argument& argument, double value) {
  try {
    return toInteger<std::int16_t>(value);
  } catch (const Failure&) {
    refuse(argument, numberText(value) + " is beyond a 16-bit whole number");
  }
}

double numberFromText(const Argument& argument, std::string_view text) {
  if (trimmed(text) == "NoValue") return NoValue;
  if (const std::optional<double> value = numberOf(text)) return *value;
  refuse(argument, inQuotes(text) + " is not a number");
}

Variant mixedFromText(std::string_view text) {
  if (const std::optional<double> value = numberOf(text)) return *value;
  if (sameIgnoringCase(text, "true") || sameIgnoringCase(text, "false")) {
    return Variant::flag(sameIgnoringCase(text, "true"));
  }
  return std::string(text);
}

template <class Element>
auto listFromText(const std::string& text, Element element) {
  Array<decltype(element(std::string_view()))> list(1 + std::count(text.begin(), text.end(), ','));
  std::string_view rest = text;
  for (Index i = 1; i <= list.rows(); ++i) {
    const std::size_t end = rest.find(',');
    list(i) = element(trimmed(rest.substr(0, end)));
    if (end != std::string_view::npos) rest.remove_prefix(end + 1);
  }
  return list;
}

}  // namespace

const Class& findClass(std::string_view name) {
  const Catalogue& catalogue = Catalogue::get();
  if (name == catalogue.worksheetFunctions().name) return catalogue.worksheetFunctions();
  if (const Class* found = catalogue.find(name)) return *found;
  std::string meant = suggestion(name, catalogue.classes());
  if (catalogue.worksheetFunctions().find(name) != nullptr) {
    meant = "; did you mean WorksheetFunction." + std::string(name) + "?";
  }
  throw RequestError("there is no class " + inQuotes(name) + meant + "; \"zelkova list\" names them");
}

void refuse(const Argument& argument, const std::string& why) {
  throw RequestError(argument.name + ": " + why);
}

json parseJson(std::string_view text, std::string_view what) {
  // The library itself would keep the last of two members of one name and lose the other without a word.
  std::vector<std::set<std::string>> members;
  constexpr int deepest = 100;
  const auto inspect = [&](int depth, json::parse_event_t event, json& parsed) {
    if (depth > deepest) throw RequestError(std::string(what) + " is nested too deeply");
    if (event == json::parse_event_t::object_start) members.emplace_back();
    if (event == json::parse_event_t::object_end) members.pop_back();
    if (event == json::parse_event_t::key && !members.back().insert(parsed.get<std::string>()).second) {
      throw RequestError(std::string(what) + " holds " + valueText(parsed) + " twice");
    }
    return true;
  };
  try {
    return json::parse(text, inspect);
  } catch (const json::exception& error) {
    // The library's texts begin with "[json.exception.parse_error.101] ", which tells a user nothing.
    const std::string_view all = error.what();
    const std::size_t start = all.find("] ");
    throw RequestError(std::string(what) + " is not JSON: " +
                       oneLine(start == std::string_view::npos ? all : all.substr(start + 2)));
  }
}

Value valueFromJson(const Argument& argument, const json& value) {
  switch (argument.type) {
    case ValueType::None:
      break;
    case ValueType::Double:
      return number(argument, value);
    case ValueType::Integer:
      if (!value.is_number()) refuseType(argument, value);
      return wholeNumber(argument, value.get<double>());
    case ValueType::Flag:
      if (!value.is_boolean()) refuse(argument, "needs true or false");
      return value.get<bool>();
    case ValueType::Text:
      return text(argument, value);
    case ValueType::Mixed:
      return mixed(argument, value);
    case ValueType::Doubles:
      return arrayFromJson<double>(argument, value, number);
    case ValueType::Texts:
      return arrayFromJson<std::string>(argument, value, text);
    case ValueType::MixedValues:
      return arrayFromJson<Variant>(argument, value, mixed);
    case ValueType::Sheet:
      refuse(argument, "is a worksheet: it comes with the workbook");
  }
  refuseType(argument, value);
}

Value valueFromText(const Argument& argument, const std::string& text) {
  if (isArray(argument.type)) {
    if (trimmed(text).starts_with('[')) return valueFromJson(argument, parseJson(text, argument.name));
    if (trimmed(text).empty())
      refuse(argument, "has no elements; leave it out for an array that was never filled");
  }
  switch (argument.type) {
    case ValueType::None:
      break;
    case ValueType::Double:
      return numberFromText(argument, text);
    case ValueType::Integer:
      return wholeNumber(argument, numberFromText(argument, text));
    case ValueType::Flag:
      if (sameIgnoringCase(text, "true")) return true;
      if (sameIgnoringCase(text, "false")) return false;
      refuse(argument, "needs true or false");
    case ValueType::Text:
      return text;
    case ValueType::Mixed:
      return mixedFromText(text);
    case ValueType::Doubles:
      return listFromText(text, [&](std::string_view entry) { return numberFromText(argument, entry); });
    case ValueType::Texts:
      return listFromText(text, [](std::string_view entry) { return std::string(entry); });
    case ValueType::MixedValues:
      return listFromText(text, mixedFromText);
    case ValueType::Sheet:
      refuse(argument, "is a worksheet: it comes with the workbook");
  }
  refuse(argument, "cannot be given");
}

void checkShape(const Argument& argument, const Value& value) {
  if (argument.shape == Shape::VectorOrTable) return;
  const int wanted = argument.shape == Shape::Vector ? 1 : 2;
  std::visit(
      [&](const auto& array) {
        if constexpr (requires { array.dimensions(); }) {
          if (array.filled() && array.dimensions() != wanted) {
            refuse(argument, std::string("needs a ") + inWords(argument.type, argument.shape) + ", not a " +
                                 (wanted == 1 ? "table" : "vector"));
          }
        }
      },
      value);
}

Request::Request(std::string_view target) {
  const std::size_t dot = target.find('.');
  if (dot == std::string_view::npos) {
    throw RequestError(inQuotes(target) + " names no method; write CLASS.METHOD");
  }
  class_ = &findClass(target.substr(0, dot));
  method_ = &findMethod(*class_, target.substr(dot + 1));
  values_.resize(method_->arguments.size());
  given_.resize(values_.size());
}

Request Request::fromJson(const json& request) {
  if (!request.is_object()) throw RequestError("a request is a JSON object with the member \"call\"");
  for (const auto& [member, value] : request.items()) {
    if (member != "id" && member != "call" && member != "args" && member != "workbook") {
      throw RequestError("a request has no member " + inQuotes(member) + "; put arguments under \"args\"");
    }
  }
  if (!request.contains("call") || !request["call"].is_string()) {
    throw RequestError("the member \"call\" must name a method, as in \"yHTest.OneTOutput\"");
  }
  Request result(request["call"].get_ref<const std::string&>());
  if (request.contains("id")) result.id_ = request["id"].dump();
  if (request.contains("args") && !request["args"].is_null()) result.setArguments(request["args"]);
  if (request.contains("workbook")) {
    const json& path = request["workbook"];
    if (!path.is_string())
      throw RequestError("the member \"workbook\" must name a file, as in \"form.xlsx\"");
    result.setWorkbook(path.get<std::string>());
  }
  return result;
}

void Request::setArguments(const json& arguments) {
  if (arguments.is_object()) {
    for (const auto& [name, value] : arguments.items()) give(claim(name), value);
    return;
  }
  if (!arguments.is_array()) throw RequestError("\"args\" must be an object or an array");
  auto value = arguments.begin();
  for (const Argument& argument : method_->arguments) {
    if (value == arguments.end()) return;
    if (!argument.isInput() || argument.type == ValueType::Sheet) continue;
    if (argument.spread && !value->is_array() && !value->is_null()) {
      give(claim(argument.name), json(json::array_t(value, arguments.end())));
      return;
    }
    give(claim(argument.name), *value);
    ++value;
  }
  if (value != arguments.end()) {
    throw RequestError(name() + " takes no more arguments than " + inputNames(*method_));
  }
}

void Request::setWorkbook(std::string path) {
  const auto isSheet = [](const Argument& argument) { return argument.type == ValueType::Sheet; };
  const bool draws = class_->find("PassSheet") != nullptr ||
                     std::any_of(method_->arguments.begin(), method_->arguments.end(), isSheet);
  if (!draws) throw RequestError(name() + " draws on no worksheet, so there is no workbook to save");
  if (workbook_) throw RequestError("the workbook is named twice");
  if (!upperCase(path).ends_with(".XLSX")) {
    throw RequestError("the workbook " + inQuotes(path) + " must name a file that ends in .xlsx");
  }
  workbook_ = std::move(path);
}

void Request::give(const Argument& argument, const json& value) {
  // null is NoValue as a double, and leaves out anything else that may be left out.
  if (value.is_null() && argument.optional && argument.type != ValueType::Double) return;
  set(argument, valueFromJson(argument, value));
}

const Argument& Request::claim(std::string_view argument) {
  const std::optional<std::size_t> at = method_->find(argument);
  if (!at) {
    throw RequestError(name() + " has no argument " + inQuotes(argument) +
                       suggestion(argument, method_->arguments) + "; it takes " + inputNames(*method_));
  }
  if (!method_->arguments[*at].isInput()) refuse(method_->arguments[*at], "is a result and cannot be given");
  if (given_[*at]) refuse(method_->arguments[*at], "is given twice");
  given_[*at] = true;
  return method_->arguments[*at];
}

void Request::set(const Argument& argument, Value value) {
  checkShape(argument, value);
  values_[static_cast<std::size_t>(&argument - method_->arguments.data())] = std::move(value);
}

std::vector<std::string> Request::warnings() const {
  std::vector<std::string> warnings;
  for (std::size_t i = 0; i < values_.size(); ++i) {
    const Argument& argument = method_->arguments[i];
    const auto* text = std::get_if<std::string>(&values_[i]);
    if (text == nullptr || argument.accepts(*text)) continue;
    std::string warning = argument.name + " is " + inQuotes(*text) + ", which is none of its choices:";
    for (const std::string& choice : argument.choices) warning += " " + inQuotes(choice);
    warnings.push_back(std::move(warning));
  }
  return warnings;
}

void Request::checkComplete() const {
  std::vector<const Argument*> missing;
  for (std::size_t i = 0; i < values_.size(); ++i) {
    const Argument& argument = method_->arguments[i];
    if (!argument.isNeeded() || given_[i]) continue;
    if (argument.type != ValueType::Sheet) {
      missing.push_back(&argument);
    } else if (!workbook_) {
      refuse(argument,
             "is a worksheet: name the workbook to draw into, the member \"workbook\" or --out FILE");
    }
  }
  if (missing.empty()) return;
  std::string others;
  for (std::size_t i = 1; i < missing.size(); ++i)
    others += (i == 1 ? ", and so are " : ", ") + missing[i]->name;
  refuse(*missing.front(), "is missing" + others);
}

}  // namespace zelkova::cli
