#pragma once

#include <cstdint>
#include <random>

namespace zelkova::random {

/// The uniform draws of the process: one stream of a 64-bit Mersenne Twister (Matsumoto and Nishimura, 2000)
/// that every method with a random result draws from, at first from the clock. Not locked: calls that draw
/// take turns.
class UniformStream {
 public:
  static UniformStream& get();

  UniformStream(const UniformStream&) = delete;
  UniformStream& operator=(const UniformStream&) = delete;

  /// Starts the stream anew from the clock, as `yRandom` does at entry; the generators of designs go on from
  /// wherever it stands. Does nothing while the stream is set, so that a run of several calls can be
  /// repeated.
  void randomize();

  /// Starts the stream at `seed` and keeps it from being started anew.
  void set(std::uint64_t seed);

  /// Gives the stream back to the clock, which starts it anew.
  void unset();

  /// The next draw: one of the 2^53 multiples of 2^-53 in [0, 1).
  double next() { return static_cast<double>(static_cast<std::int64_t>(engine_() >> 11)) * 0x1p-53; }

 private:
  UniformStream() { randomize(); }

  std::mt19937_64 engine_;
  bool isSet_ = false;
};

}  // namespace zelkova::random
