#pragma once

#include <optional>
#include <string_view>

#include "zelkova/frame/numberText.h"

/// Options that come as texts, blank where they are not given.
namespace zelkova::capability {

/// The number of an option; failure 13 for a text that is neither blank nor a number.
inline std::optional<double> givenNumber(std::string_view text) {
  if (trimmed(text).empty()) return std::nullopt;
  return toNumber(text);
}

}  // namespace zelkova::capability
