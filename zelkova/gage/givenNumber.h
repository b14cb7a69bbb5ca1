#pragma once

#include <optional>
#include <string>

#include "zelkova/frame/numberText.h"

namespace zelkova {

/// The number in a text that may be blank; failure 13 where it holds something else.
inline std::optional<double> givenNumber(const std::string& text) {
  const std::string_view given = trimmed(text);
  if (given.empty()) return std::nullopt;
  return toNumber(given);
}

}  // namespace zelkova
