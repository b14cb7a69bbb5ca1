#pragma once

#include <span>
#include <string>

#include "zelkova/frame/Array.h"

namespace zelkova {

/// The first `n` rows of a column that stands beside the data; failure 9 where it has fewer.
template <class T>
std::span<const T> firstRows(const Array<T>& column, Index n, const char* name) {
  const std::span<const T> rows = column.vector();
  if (rows.size() < static_cast<std::size_t>(n)) {
    raise(FailureNumber::OutOfRange, std::string(name) + " has fewer rows than the data");
  }
  return rows.first(static_cast<std::size_t>(n));
}

}  // namespace zelkova
