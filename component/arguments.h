#pragma once

#include "component/automation.h"
#include "zelkova/catalogue/Catalogue.h"

/// The two crossings of an argument: from whatever form a client passed to the catalogue's value, and back
/// into the form that the client can use.
namespace zelkova {

/// An argument, or another value that crosses, that is no part of the catalogue.
Argument describedAs(std::string name, ValueType type, Shape shape = Shape::Vector);

/// What a client passed for an input. Values and references to them; arrays of numbers, texts and variants
/// with any lower bound, as values, as references and inside variants; objects, which are read through their
/// `Value`. A vector may come as a table of one row or one column (cells do), a table of one column as a
/// vector, and one value as an array of one element. An array that was never dimensioned, or a variant that
/// holds nothing, is an array that was never filled.
///
/// Numbers, dates, currency, flags and texts become what the method takes as automation converts them, in the
/// client's locale; a number becomes a text as the library writes it. Failure 13, with the argument and the
/// element in its text, for what cannot be converted, for a cell of an array that is empty where a number is
/// needed, or holds an error, and for numbers that are not finite; failure 6 for a number that is too large.
Value valueOf(const Argument& argument, const VARIANT& passed, LCID locale);

/// The number, text or flag that an output's variable holds before the call; nothing where it holds none, or
/// where the output is an array: those are replaced as a whole.
Value incomingValue(const Argument& argument, const VARIANT& passed, LCID locale);

/// A new variant for a method's own result; arrays become arrays of variants with lower bound 1.
OwnedVariant resultVariant(const Value& value);

/// The variable that a client passed for an output.
class Receiver {
 public:
  /// Failure 13 where `passed` cannot take the output: it is no reference, or one to another type.
  Receiver(const Argument& argument, VARIANT& passed);

  /// Makes the new content ready: a typed array for a reference to one, an array of variants for a variant,
  /// always with lower bound 1 (an array of fixed size keeps its own bounds). Failure 9 where an array of
  /// fixed size has another one; the variable is as it was.
  void prepare(const Value& value);

  /// Puts the content in place of what the variable held. Cannot fail.
  void commit() noexcept;

 private:
  [[noreturn]] void refuse() const;
  void checkReplaceable(SAFEARRAY* held) const;
  SAFEARRAY** typedArray() const;

  const Argument& argument_;
  VARIANT* target_;  ///< a reference to a typed value, or the variant to replace
  OwnedVariant content_;
};

}  // namespace zelkova
