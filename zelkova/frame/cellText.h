#pragma once

#include <string>
#include <string_view>

#include "zelkova/frame/Array.h"

namespace zelkova {

/// Whether the bytes are UTF-8 (RFC 3629): no overlong forms, no surrogates.
bool isUtf8(std::string_view text);

/// The letters of a column of a sheet, "A" for 1 to "IV" for 256; failure 9 for any other.
std::string columnLetters(Index column);

}  // namespace zelkova
