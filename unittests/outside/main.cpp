#include <cmath>
#include <cstdio>

#include "host/EmbeddedHost.h"
#include "zelkova/catalogue/Catalogue.h"
#include "zelkova/hypothesis/yHTest.h"

// What a C++ program does with an installed library: start a host, run a test, read the slots.
int main() {
  zelkova::startEmbeddedHost();
  const zelkova::yHTest test;
  zelkova::DoubleArray result;
  test.OneTOutput({4.9, 5.1, 5.3}, 5, 0.95, "Not equals", result);
  std::printf("p = %.6f\n", result(zelkova::OneT::PValue));
  // R: t.test(c(4.9, 5.1, 5.3), mu = 5)$p.value
  const bool right = std::abs(result(zelkova::OneT::PValue) - 0.477767032132907) < 1e-12;
  return right && zelkova::Catalogue::get().find("yHTest") != nullptr ? 0 : 1;
}
