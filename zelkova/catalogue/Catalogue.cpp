#include "zelkova/catalogue/Catalogue.h"

#include <algorithm>
#include <new>
#include <stdexcept>
#include <utility>

#include "zelkova/catalogue/describe.h"
#include "zelkova/catalogue/subjects.h"
#include "zelkova/frame/numberText.h"

namespace zelkova {

namespace {

template <std::size_t I>
Value emptyAlternative(ValueType type) {
  if constexpr (I < std::variant_size_v<Value>) {
    if (static_cast<std::size_t>(type) == I) return Value(std::in_place_index<I>);
    return emptyAlternative<I + 1>(type);
  } else {
    return {};
  }
}

/// Gives what was left out its default, and outputs a place to stand in.
void prepare(const Argument& argument, Value& value) {
  if (typeOf(value) == argument.type) return;
  if (!argument.isInput()) {
    value = emptyValue(argument.type);
    return;
  }
  if (typeOf(value) != ValueType::None) {
    raise(FailureNumber::TypeMismatch,
          argument.name + " must be a " + inWords(argument.type, argument.shape));
  }
  if (argument.isNeeded()) raise(FailureNumber::InvalidCall, argument.name + " is missing");
  value = argument.optional ? argument.defaultValue : emptyValue(argument.type);
}

bool neverFilled(const Value& value) {
  return std::visit(
      [](const auto& held) {
        if constexpr (requires { held.filled(); }) {
          return !held.filled();
        } else {
          return false;
        }
      },
      value);
}

/// The names of the input arrays that have no elements, with commas between.
std::string arraysLeftOut(const std::vector<Argument>& arguments, std::span<const Value> values) {
  std::string names;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (!arguments[i].isInput() || arguments[i].optional || !neverFilled(values[i])) continue;
    names += (names.empty() ? "" : ", ") + arguments[i].name;
  }
  return names;
}

}  // namespace

Value emptyValue(ValueType type) { return emptyAlternative<1>(type); }

std::string inWords(ValueType type, Shape shape) {
  const std::string array = shape == Shape::Vector  ? "vector"
                            : shape == Shape::Table ? "table"
                                                    : "vector or table";
  switch (type) {
    case ValueType::None:
      break;
    case ValueType::Double:
      return "number";
    case ValueType::Integer:
      return "whole number";
    case ValueType::Flag:
      return "flag";
    case ValueType::Text:
      return "text";
    case ValueType::Mixed:
      return "number, text or flag";
    case ValueType::Doubles:
      return array + " of numbers";
    case ValueType::Texts:
      return array + " of texts";
    case ValueType::MixedValues:
      return array + " of numbers and texts";
    case ValueType::Sheet:
      return "worksheet";
  }
  return "nothing";
}

std::optional<std::size_t> Method::find(std::string_view argument) const {
  const auto found =
      std::find_if(arguments.begin(), arguments.end(), [&](const Argument& a) { return a.name == argument; });
  if (found == arguments.end()) return std::nullopt;
  return static_cast<std::size_t>(found - arguments.begin());
}

Value Method::call(void* instance, std::span<Value> values) const {
  if (values.size() != arguments.size()) raise(FailureNumber::InvalidCall, "wrong number of arguments");
  for (std::size_t i = 0; i < values.size(); ++i) prepare(arguments[i], values[i]);
  const std::string leftOut = arraysLeftOut(arguments, values);
  try {
    return invoke(instance, values);
  } catch (const Failure& failure) {
    // A subscript out of range that says no more is most often an array that the caller forgot.
    const bool saysMore = failure.text() != Failure(FailureNumber::OutOfRange).text();
    if (leftOut.empty() || saysMore) throw;
    const bool several = leftOut.find(',') != std::string::npos;
    raise(FailureNumber::OutOfRange,
          "nothing was given for " + leftOut + (several ? "; at least one of them is needed" : ""));
  } catch (const std::bad_alloc&) {
    raise(FailureNumber::OutOfMemory);
  } catch (const std::length_error&) {
    raise(FailureNumber::OutOfMemory);
  } catch (const std::exception& error) {
    raise(FailureNumber::Internal, error.what());
  }
}

const Method* Class::find(std::string_view method) const {
  const auto found =
      std::find_if(methods.begin(), methods.end(), [&](const Method& m) { return m.name == method; });
  return found == methods.end() ? nullptr : &*found;
}

const Catalogue& Catalogue::get() {
  static const Catalogue catalogue;
  return catalogue;
}

Catalogue::Catalogue() : worksheetFunctions_(describeWorksheetFunctions()) {
  for (const auto& describeSubject : {
           describeFrame,
           describeKit,
           describeHypothesis,
           describeModels,
           describeANOM,
           describeCharts,
           describeCapability,
           describeGage,
           describePlots,
           describeLogistic,
           describePower,
           describeRandom,
           describeDOE,
           describeReliability,
           describeTemplates,
       })
    describeSubject(classes_);
}

const Class* Catalogue::find(std::string_view name) const {
  const auto found =
      std::find_if(classes_.begin(), classes_.end(), [&](const Class& c) { return c.name == name; });
  return found == classes_.end() ? nullptr : &*found;
}

bool Argument::accepts(std::string_view text) const {
  return choices.empty() || std::any_of(choices.begin(), choices.end(), [&](const std::string& choice) {
           return anyCase ? sameIgnoringCase(choice, text) : choice == text;
         });
}

ArgumentNote& ArgumentNote::slots(std::string_view names) {
  argument_.slots.clear();
  for (std::size_t start = 0; start <= names.size();) {
    const std::size_t end = std::min(names.find(',', start), names.size());
    argument_.slots.emplace_back(trimmed(names.substr(start, end - start)));
    start = end + 1;
  }
  return *this;
}

}  // namespace zelkova
