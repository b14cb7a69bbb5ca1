#pragma once

#include <optional>
#include <string_view>

#include "zelkova/frame/numberText.h"

namespace zelkova {

/// The number in the text of an option, nothing where it is blank; failure 13, naming the argument, where it
/// holds something else.
inline std::optional<double> givenNumber(std::string_view text, const char* argument) {
  if (trimmed(text).empty()) return std::nullopt;
  return toNumber(text, argument);
}

}  // namespace zelkova
