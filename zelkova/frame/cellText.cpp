#include "zelkova/frame/cellText.h"

#include <cstdint>

#include "zelkova/frame/Failure.h"

namespace zelkova {

bool isUtf8(std::string_view text) {
  constexpr std::uint32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};  // by the number of bytes
  for (std::size_t i = 0; i < text.size();) {
    const auto first = static_cast<unsigned char>(text[i]);
    const std::size_t length = first < 0x80   ? 1
                               : first < 0xC0 ? 0
                               : first < 0xE0 ? 2
                               : first < 0xF0 ? 3
                               : first < 0xF8 ? 4
                                              : 0;
    if (length == 0 || length > text.size() - i) return false;
    std::uint32_t code = length == 1 ? first : first & (0x7FU >> length);
    for (std::size_t k = 1; k < length; ++k) {
      const auto next = static_cast<unsigned char>(text[i + k]);
      if ((next & 0xC0U) != 0x80) return false;
      code = (code << 6U) | (next & 0x3FU);
    }
    const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < smallest[length] || isSurrogate || code > 0x10FFFF) return false;
    i += length;
  }
  return true;
}

std::string columnLetters(Index column) {
  constexpr Index last = 256, alphabet = 26;
  if (column < 1 || column > last) raise(FailureNumber::OutOfRange, "the sheet ends at column IV");
  const auto letter = [](Index i) { return static_cast<char>('A' + (i - 1) % alphabet); };
  if (column <= alphabet) return {letter(column)};
  return {letter((column - 1) / alphabet), letter(column)};
}

}  // namespace zelkova
