#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "zelkova/frame/Array.h"
#include "zelkova/frame/Host.h"
#include "zelkova/frame/Variant.h"

namespace zelkova {

/// One argument or result on its way between a front end and a method; `std::monostate` is an argument left
/// out. The alternatives stand in the order of `ValueType`.
using Value = std::variant<std::monostate, double, std::int16_t, bool, std::string, Variant, DoubleArray,
                           StringArray, VariantArray, std::shared_ptr<Sheet>>;

/// What an argument is, as the method's own signature says.
enum class ValueType { None, Double, Integer, Flag, Text, Mixed, Doubles, Texts, MixedValues, Sheet };

inline ValueType typeOf(const Value& value) { return static_cast<ValueType>(value.index()); }

/// 0, false, the empty text or an array that was never filled.
Value emptyValue(ValueType type);

/// "number", "vector of texts", ...: the type in words; `shape` tells for arrays.
enum class Shape { Vector, Table, VectorOrTable };
std::string inWords(ValueType type, Shape shape);

inline bool isArray(ValueType type) {
  return type == ValueType::Doubles || type == ValueType::Texts || type == ValueType::MixedValues;
}

enum class Direction { In, Out, InOut };

/// One argument of a public method.
struct Argument {
  std::string name;
  std::string help;  ///< meaning, with unit and range
  ValueType type = ValueType::None;
  Direction direction = Direction::In;
  Shape shape = Shape::Vector;
  bool optional = false;
  bool spread =
      false;  ///< the last argument: the elements of its array may be passed as arguments of their own
  Value defaultValue;
  std::vector<std::string> choices;  ///< the option texts that mean something, where it takes one of a few
  bool anyCase = false;              ///< whether those texts are compared without regard to case
  std::vector<std::string> slots;    ///< names of a fixed vector's slots or of a fixed table's columns

  /// Whether `text` is one of the choices, or there are none to choose from.
  bool accepts(std::string_view text) const;

  bool isInput() const { return direction != Direction::Out; }
  bool isOutput() const { return direction != Direction::In; }

  /// Whether a call must pass it: an array that is left out counts as never filled.
  bool isNeeded() const { return isInput() && !optional && !isArray(type); }
};

/// One public method: everything that a front end needs to show it and to call it.
struct Method {
  std::string name;
  std::string help;
  std::vector<std::string> notes;  ///< paragraphs: choices that a user should know of
  std::vector<Argument> arguments;
  ValueType result = ValueType::None;

  /// Position of an argument in `arguments`, if there is one of that exact name.
  std::optional<std::size_t> find(std::string_view argument) const;

  /// Calls the method on an instance that `Class::create` made. There is a value for each argument, in order,
  /// of the argument's own type; what is left out gets its default, or an array that was never filled.
  /// Outputs stand in `values`
  /// afterwards; one that the method did not assign, because a failure ended it or it returned early, is as
  /// it came. Answers the method's own result. Raises `Failure` and nothing else.
  Value call(void* instance, std::span<Value> values) const;

  std::function<Value(void*, std::span<Value>)> invoke;  ///< the typed call, made from the signature
};

/// One public class.
struct Class {
  std::string name;
  std::string help;
  bool binds = false;  ///< needs a running host at creation
  std::vector<Method> methods;

  /// A new instance; failure 429 for a class that binds where no host runs.
  std::function<std::shared_ptr<void>()> create;

  const Method* find(std::string_view method) const;
};

/// The description of all that is public. Front ends, type library and documentation are made from it.
class Catalogue {
 public:
  /// The library's own, built at the first call.
  static const Catalogue& get();

  const std::vector<Class>& classes() const { return classes_; }

  /// The class of that exact name, or nothing.
  const Class* find(std::string_view name) const;

  /// The running host's functions, callable like methods: not a class of the library, but described in the
  /// same way.
  const Class& worksheetFunctions() const { return worksheetFunctions_; }

 private:
  Catalogue();

  std::vector<Class> classes_;
  Class worksheetFunctions_;
};

}  // namespace zelkova
