#pragma once

#include <concepts>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "zelkova/catalogue/Catalogue.h"
#include "zelkova/frame/HostBound.h"

/// The words in which a class is described. Types and directions are never written down: they come from the
/// member functions' own signatures.
namespace zelkova {

/// What a signature cannot tell of one argument.
class ArgumentNote {
 public:
  ArgumentNote(std::string name, std::string help) {
    argument_.name = std::move(name);
    argument_.help = std::move(help);
  }

  /// The slots of a fixed vector or the columns of a fixed table: the `names` of a ZELKOVA_SLOTS.
  ArgumentNote& slots(std::string_view names);

  /// The option texts that a text argument may be; they are compared exactly.
  ArgumentNote& choices(std::vector<std::string> texts) {
    argument_.choices = std::move(texts);
    return *this;
  }

  /// The same, compared without regard to case.
  ArgumentNote& choicesOfAnyCase(std::vector<std::string> texts) {
    argument_.anyCase = true;
    return choices(std::move(texts));
  }

  /// An array argument that is a table, or may be either; without these it is a vector.
  ArgumentNote& table() { return shape(Shape::Table); }
  ArgumentNote& vectorOrTable() { return shape(Shape::VectorOrTable); }

  /// An array whose elements may be passed as arguments of their own, as many as there are.
  ArgumentNote& spread() {
    argument_.spread = true;
    return *this;
  }

  /// A by-reference argument that is read as well as written.
  ArgumentNote& inOut() {
    argument_.direction = Direction::InOut;
    return *this;
  }

  /// An argument that may be left out; an input has a default of its own type. Arguments behind it are
  /// optional too.
  ArgumentNote& optional(Value defaultValue = {}) {
    argument_.optional = true;
    argument_.defaultValue = std::move(defaultValue);
    return *this;
  }

  const Argument& argument() const { return argument_; }

 private:
  ArgumentNote& shape(Shape shape) {
    argument_.shape = shape;
    return *this;
  }

  Argument argument_;
};

namespace detail {

/// The place of `T` among the alternatives of `Value`, which is its `ValueType`.
template <class T, std::size_t I = 1>
constexpr ValueType valueType() {
  static_assert(I < std::variant_size_v<Value>,
                "a public method has an argument of a type that Value cannot hold");
  if constexpr (std::is_same_v<T, std::variant_alternative_t<I, Value>>) {
    return static_cast<ValueType>(I);
  } else {
    return valueType<T, I + 1>();
  }
}

template <class Parameter>
constexpr bool isOutput =
    std::is_lvalue_reference_v<Parameter> && !std::is_const_v<std::remove_reference_t<Parameter>>;

template <class Parameter>
Argument complete(const ArgumentNote& note) {
  Argument argument = note.argument();
  argument.type = valueType<std::remove_cvref_t<Parameter>>();
  if (isOutput<Parameter> && argument.direction == Direction::In) argument.direction = Direction::Out;
  return argument;
}

/// Faults of a description, found when the catalogue is built.
template <class... Parameters>
void check(const Method& method) {
  const std::vector<bool> byReference = {isOutput<Parameters>...};
  const auto fail = [&](const Argument& argument, const char* why) {
    throw std::logic_error(method.name + ", " + argument.name + ": " + why);
  };
  for (std::size_t i = 0; i < method.arguments.size(); ++i) {
    const Argument& argument = method.arguments[i];
    if (argument.isOutput() && !byReference[i]) fail(argument, "is not passed by reference");
    if (argument.optional && argument.isInput() && typeOf(argument.defaultValue) != argument.type) {
      fail(argument, "has a default of another type");
    }
    if (i > 0 && method.arguments[i - 1].optional && !argument.optional)
      fail(argument, "follows an optional one");
  }
}

template <class Parameter>
std::remove_cvref_t<Parameter>& as(Value& value) {
  return std::get<std::remove_cvref_t<Parameter>>(value);
}

template <class T, class Member, class Result, class... Parameters, std::size_t... I>
Method makeMethod(std::string name, Member member, std::string help,
                  [[maybe_unused]] const std::vector<ArgumentNote>& notes, std::index_sequence<I...>) {
  Method method;
  method.name = std::move(name);
  method.help = std::move(help);
  (method.arguments.push_back(complete<Parameters>(notes[I])), ...);
  check<Parameters...>(method);
  method.invoke = [member](void* instance, [[maybe_unused]] std::span<Value> values) -> Value {
    T& object = *static_cast<T*>(instance);
    if constexpr (std::is_void_v<Result>) {
      (object.*member)(as<Parameters>(values[I])...);
      return {};
    } else {
      return Value(std::in_place_type<Result>, (object.*member)(as<Parameters>(values[I])...));
    }
  };
  if constexpr (!std::is_void_v<Result>) method.result = valueType<Result>();
  return method;
}

}  // namespace detail

/// Collects the methods of `T`.
template <class T>
class Description {
 public:
  Description(std::string name, std::string help) {
    class_.name = std::move(name);
    class_.help = std::move(help);
    class_.binds = std::derived_from<T, HostBound>;
    if constexpr (!std::is_abstract_v<T>) {
      class_.create = [] { return std::make_shared<T>(); };
    }
  }

  /// Adds a method; there is one note for each parameter, in order.
  template <class Result, class... Parameters, class... Notes>
  Description& method(std::string name, Result (T::*member)(Parameters...), std::string help,
                      Notes... notes) {
    static_assert(sizeof...(Notes) == sizeof...(Parameters), "each parameter has one note");
    return add<decltype(member), Result, Parameters...>(std::move(name), member, std::move(help), {notes...});
  }
  template <class Result, class... Parameters, class... Notes>
  Description& method(std::string name, Result (T::*member)(Parameters...) const, std::string help,
                      Notes... notes) {
    static_assert(sizeof...(Notes) == sizeof...(Parameters), "each parameter has one note");
    return add<decltype(member), Result, Parameters...>(std::move(name), member, std::move(help), {notes...});
  }

  /// Adds a paragraph to the method added last.
  Description& note(std::string paragraph) {
    class_.methods.back().notes.push_back(std::move(paragraph));
    return *this;
  }

  Class done() { return std::move(class_); }

 private:
  template <class Member, class Result, class... Parameters>
  Description& add(std::string name, Member member, std::string help,
                   const std::vector<ArgumentNote>& notes) {
    class_.methods.push_back(detail::makeMethod<T, Member, Result, Parameters...>(
        std::move(name), member, std::move(help), notes, std::index_sequence_for<Parameters...>()));
    return *this;
  }

  Class class_;
};

}  // namespace zelkova
