#pragma once

#include "zelkova/frame/Array.h"

/// Names the slots of a fixed result vector, or the columns of a fixed result table, once: as constants for
/// the code (`result(OneT::PValue)`) and as the text that the catalogue shows, so that the two cannot differ.
/// `ZELKOVA_SLOTS(OneT, TestMean, CLevel, ...)` numbers them from 1; `OneT::size` is how many there are.
#define ZELKOVA_SLOTS(Result, ...)                             \
  struct Result {                                              \
    enum Slot : ::zelkova::Index { none_, __VA_ARGS__, end_ }; \
    static constexpr ::zelkova::Index size = end_ - 1;         \
    static constexpr const char* names = #__VA_ARGS__;         \
  }
