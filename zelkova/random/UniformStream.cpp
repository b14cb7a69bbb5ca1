#include "zelkova/random/UniformStream.h"

#include <chrono>

namespace zelkova::random {

UniformStream& UniformStream::get() {
  static UniformStream stream;
  return stream;
}

void UniformStream::randomize() {
  if (isSet_) return;
  // A draw of the stream so far keeps two calls within one tick of the clock apart.
  const auto clock = std::chrono::system_clock::now().time_since_epoch().count();
  engine_.seed(engine_() ^ static_cast<std::uint64_t>(clock));
}

void UniformStream::set(std::uint64_t seed) {
  engine_.seed(seed);
  isSet_ = true;
}

void UniformStream::unset() {
  isSet_ = false;
  randomize();
}

}  // namespace zelkova::random
