#include "zelkova/doe/codedRuns.h"

#include <string>

namespace zelkova::doe {

Index GetFactorIndex(std::string_view code) {
  constexpr std::string_view letters = "ABCDEFGHJKLMNOPQRSTUVWXYZ";
  constexpr std::size_t mostFactors = 47;
  const bool isDouble = code.size() == 2 && code[0] == code[1];
  if (code.size() != 1 && !isDouble) return 0;
  const std::size_t letter = letters.find(code[0]);
  if (letter == std::string_view::npos) return 0;
  const std::size_t place = letter + 1 + (isDouble ? letters.size() : 0);
  return place <= mostFactors ? static_cast<Index>(place) : 0;
}

DoubleArray codedSettings(const StringArray& dx, const StringArray& FLow, const StringArray& FHigh,
                          Index runs) {
  const Index factors = dx.columns();
  checkCovers(dx.rows(), runs, "dx");
  checkCovers(FLow.size(), factors, "FLow");
  checkCovers(FHigh.size(), factors, "FHigh");
  DoubleArray coded(runs, factors, 0.0);
  for (Index j = 1; j <= factors; ++j) {
    const std::string& low = FLow(j);
    const std::string& high = FHigh(j);
    const auto settings = dx.column(j);
    const auto codes = coded.column(j);
    for (std::size_t i = 0; i < codes.size(); ++i) {
      if (settings[i] == high) {
        codes[i] = 1;
      } else if (settings[i] == low) {
        codes[i] = -1;
      }
    }
  }
  return coded;
}

void checkCovers(Index length, Index needed, const char* name) {
  if (length >= needed) return;
  raise(FailureNumber::OutOfRange, std::string(name) + " is too short");
}

}  // namespace zelkova::doe
