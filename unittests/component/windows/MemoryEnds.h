#pragma once

namespace zelkova {

/// While this lives, so many allocations of the program succeed, and all after them fail.
class MemoryEnds {
 public:
  explicit MemoryEnds(long allowed);
  MemoryEnds(const MemoryEnds&) = delete;
  MemoryEnds& operator=(const MemoryEnds&) = delete;
  ~MemoryEnds();

  /// Whether one failed.
  bool wasReached() const;
};

}  // namespace zelkova
