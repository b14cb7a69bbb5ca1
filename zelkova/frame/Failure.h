#pragma once

#include <exception>
#include <string>
#include <string_view>

namespace zelkova {

/// Numbers of the failures that any routine may raise; the matrix kit has its own (modzMatrix.h).
enum class FailureNumber : int {
  InvalidCall = 5,      ///< invalid procedure call or argument
  Overflow = 6,         ///< a result is too large for a double, or for the integer asked for
  OutOfMemory = 7,      ///< out of memory
  OutOfRange = 9,       ///< subscript out of range, an array that was never filled included
  DivisionByZero = 11,  ///< division by zero
  TypeMismatch = 13,    ///< a text where a number is needed, and the like
  Internal = 51,        ///< a fault of the library's own
  NoObject = 91,        ///< an object that was never set
  NoHost = 429,         ///< the class needs a running host, and there is none
  HostRefused = 1004,  ///< the host refused: a worksheet function its arguments, a sheet what was asked of it
};

/// A failure that ends a call and reaches the caller as a number and a text.
class Failure : public std::exception {
 public:
  Failure(int number, std::string text);

  /// The failure's own text, as in "Division by zero".
  explicit Failure(FailureNumber number);

  /// The failure's own text, a colon and what went wrong: "Invalid procedure call or argument: ...".
  Failure(FailureNumber number, std::string_view detail);

  int number() const noexcept { return number_; }
  const std::string& text() const noexcept { return text_; }
  const char* what() const noexcept override { return text_.c_str(); }

 private:
  int number_;
  std::string text_;
};

/// Raises `number`; kept out of line so that checks stay small where they stand.
[[noreturn]] void raise(FailureNumber number);
[[noreturn]] void raise(FailureNumber number, std::string_view detail);

}  // namespace zelkova
