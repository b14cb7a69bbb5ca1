#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "zelkova/frame/Failure.h"
#include "zelkova/frame/numberText.h"

namespace zelkova {

/// The number in the text of an option, nothing where it is blank; failure 13, naming the argument, where it
/// holds something else.
inline std::optional<double> givenNumber(std::string_view text, const char* argument) {
  if (trimmed(text).empty()) return std::nullopt;
  return toNumber(text, argument);
}

/// The same for the width of something; failure 5, naming the argument, where it is negative.
inline std::optional<double> givenWidth(std::string_view text, const char* argument) {
  const std::optional<double> width = givenNumber(text, argument);
  if (width && *width < 0) raise(FailureNumber::InvalidCall, std::string(argument) + " must not be negative");
  return width;
}

}  // namespace zelkova
