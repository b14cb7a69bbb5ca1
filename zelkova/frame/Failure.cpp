#include "zelkova/frame/Failure.h"

#include <utility>

namespace zelkova {

namespace {

std::string standardText(FailureNumber number) {
  switch (number) {
    case FailureNumber::InvalidCall:
      return "Invalid procedure call or argument";
    case FailureNumber::Overflow:
      return "Overflow";
    case FailureNumber::OutOfMemory:
      return "Out of memory";
    case FailureNumber::OutOfRange:
      return "Subscript out of range";
    case FailureNumber::DivisionByZero:
      return "Division by zero";
    case FailureNumber::TypeMismatch:
      return "Type mismatch";
    case FailureNumber::Internal:
      return "Internal error";
    case FailureNumber::NoObject:
      return "Object variable not set";
    case FailureNumber::NoHost:
      return "The object cannot be created";
    case FailureNumber::HostRefused:
      return "Unable to evaluate the worksheet function";
  }
  return "Failure";
}

}  // namespace

Failure::Failure(int number, std::string text) : number_(number), text_(std::move(text)) {}

Failure::Failure(FailureNumber number) : Failure(static_cast<int>(number), standardText(number)) {}

Failure::Failure(FailureNumber number, std::string_view detail)
    : Failure(static_cast<int>(number), standardText(number) + ": " + std::string(detail)) {}

void raise(FailureNumber number) { throw Failure(number); }

void raise(FailureNumber number, std::string_view detail) { throw Failure(number, detail); }

}  // namespace zelkova
