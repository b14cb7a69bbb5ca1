#include "unittests/component/windows/MemoryEnds.h"

#include <cstdlib>
#include <new>

namespace {

long left = -1;  ///< no limit where negative
bool reached = false;

}  // namespace

void* operator new(std::size_t size) {
  if (left == 0) reached = true;
  void* memory = left == 0 ? nullptr : std::malloc(size > 0 ? size : 1);
  if (memory == nullptr) throw std::bad_alloc();
  if (left > 0) --left;
  return memory;
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace zelkova {

MemoryEnds::MemoryEnds(long allowed) {
  reached = false;
  left = allowed;
}

MemoryEnds::~MemoryEnds() { left = -1; }

bool MemoryEnds::wasReached() const { return reached; }

}  // namespace zelkova
