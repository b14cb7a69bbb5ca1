#pragma once

#include <string_view>

/// The option texts of the alternative hypothesis; compared exactly, case included.
namespace zelkova::TestType {

inline constexpr std::string_view LessThan = "Less than";        ///< the true value is below the tested one
inline constexpr std::string_view GreaterThan = "Greater than";  ///< the true value is above the tested one
inline constexpr std::string_view NotEquals = "Not equals";      ///< two-sided

}  // namespace zelkova::TestType
