#pragma once

#include <string_view>

#include "zelkova/frame/Array.h"

/// A run sheet read back.
namespace zelkova::doe {

/// The place of a factor by its code: A to H, J to Z for the first 25, AA to HH, JJ to WW for 26 to 47; 0 for
/// any other text.
Index GetFactorIndex(std::string_view code);

/// The settings `dx` of the first `runs` runs, (run, factor): 1 at the high level, -1 at the low, 0 at
/// neither. Levels compare as texts; one that is both counts as high. Failure 9 where `dx` has fewer runs, or
/// a factor has no levels.
DoubleArray codedSettings(const StringArray& dx, const StringArray& FLow, const StringArray& FHigh,
                          Index runs);

/// Failure 9, which names the argument, unless `length` covers `needed`.
void checkCovers(Index length, Index needed, const char* name);

}  // namespace zelkova::doe
