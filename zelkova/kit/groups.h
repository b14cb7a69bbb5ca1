#pragma once

#include <vector>

#include "zelkova/frame/Array.h"

namespace zelkova {

/// The values of a column by their labels, groups in order of first appearance.
struct Groups {
  StringArray labels;
  std::vector<DoubleArray> values;  ///< one array a label; never filled where a label has no value

  Index count() const noexcept { return labels.size(); }
};

/// Splits `values` by the label beside each. The rows are those of `values`; failure 9 where there are fewer
/// labels.
Groups splitByLabel(const DoubleArray& values, const StringArray& labels);

}  // namespace zelkova
