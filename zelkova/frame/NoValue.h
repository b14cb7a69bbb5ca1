#pragma once

#include <bit>
#include <cstdint>

namespace zelkova {

/// Marks an output slot that holds no value: 1E+99, bit for bit. Callers compare for equality with it.
inline constexpr double NoValue = 1E+99;

static_assert(std::bit_cast<std::uint64_t>(NoValue) == 0x547D42AEA2879F2EULL);

}  // namespace zelkova
