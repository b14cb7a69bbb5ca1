#pragma once

#include "zelkova/frame/Array.h"

namespace zelkova {

// Two families of sorts, in place, with companions that move along with the key.
//
// The quick sorts take a range of element indices; a `high` of 0 means the whole array. They sort ascending,
// and for descending order reverse the finished array, all of it, as the last step. No member is stable: the
// order among equal keys is that of the middle-pivot quick sort, which swaps equal keys too (Hoare, 1962); on
// a pattern that would take that sort beyond 64 n log2 n comparisons, equal keys keep the order in which they
// came.
//
// The exchange sorts are meant for lists of levels; their order among equal keys is that of comparing each
// element with all after it and swapping at once. A list of more than 5000 labels that mixes numbers with
// texts which do not all come after them gets the numbers first.
//
// Failures, all before anything has moved: 9 for an array that was never filled, a range outside its bounds,
// or a companion that is shorter than the key. Elements of a companion beyond the key's length stay in place.
// No array may be passed twice.

/// Sorts an array of doubles.
void QuickSortD(DoubleArray& array, Index low = 1, Index high = 0, bool ascending = true);

/// Sorts an array of doubles with one companion.
void QuickSortD2(DoubleArray& array, DoubleArray& companion, Index low = 1, Index high = 0,
                 bool ascending = true);

/// Sorts an array of doubles with two companions.
void QuickSortD3(DoubleArray& array, DoubleArray& companion1, DoubleArray& companion2, Index low = 1,
                 Index high = 0, bool ascending = true);

/// Sorts labels with one companion. Two numeric labels compare as numbers, any other pair as upper-cased
/// texts (ASCII letters): "10" comes after "9", and "a" equals "A".
void QuickSortSD(StringArray& array, DoubleArray& companion, Index low = 1, Index high = 0,
                 bool ascending = true);

/// Sorts an array of doubles.
void ExchangeSortD(DoubleArray& array, bool ascending = true);

/// Sorts labels in the numeric-aware order of `QuickSortSD`.
void ExchangeSortS(StringArray& array, bool ascending = true);

/// Sorts an array of doubles with a companion of texts.
void ExchangeSortDS(DoubleArray& array, StringArray& companion, bool ascending = true);

/// Sorts an array of doubles with two companions.
void ExchangeSortD3(DoubleArray& array, DoubleArray& companion1, DoubleArray& companion2,
                    bool ascending = true);

}  // namespace zelkova
