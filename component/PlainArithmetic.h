#pragma once

#include <xmmintrin.h>

namespace zelkova {

/// While this lives, the processor computes as the library needs it: no traps, rounding to nearest, gradual
/// underflow, and the full width in the C library's functions. Hosts have settings of their own (some trap
/// divisions, graphics libraries shorten the precision), which would cost digits or end the process. They are
/// put back afterwards.
class PlainArithmetic {
 public:
  PlainArithmetic() noexcept : vectorControl_(_mm_getcsr()) {
    asm volatile("fnstcw %0" : "=m"(control_));
    setControl(0x37F);
    _mm_setcsr(0x1F80);
  }
  PlainArithmetic(const PlainArithmetic&) = delete;
  PlainArithmetic& operator=(const PlainArithmetic&) = delete;
  ~PlainArithmetic() {
    setControl(control_);
    _mm_setcsr(vectorControl_);
  }

 private:
  /// Flags that were raised meanwhile would trap as soon as the host's settings let them.
  static void setControl(unsigned short control) noexcept {
    asm volatile("fnclex\n\tfldcw %0" : : "m"(control));
  }

  unsigned short control_ = 0;
  unsigned vectorControl_;
};

}  // namespace zelkova
