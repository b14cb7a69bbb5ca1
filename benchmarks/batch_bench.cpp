#include <benchmark/benchmark.h>

#include <sstream>

#include "cli/batch.h"

namespace zelkova::cli {
namespace {

/// A thousand small calls through the program's own loop; items per second are calls per second.
void batchOneT(benchmark::State& state) {
  constexpr int calls = 1000;
  std::string requests;
  for (int i = 0; i < calls; ++i) {
    requests += R"({"id": )" + std::to_string(i) +
                R"(, "call": "yHTest.OneTOutput", "args": {"dy": [4.9, 5.1, 5.3, 5.05, 4.97], "TestMean": 5,)"
                R"( "CLevel": 0.95, "TestType": "Not equals"}})"
                "\n";
  }
  Session session;
  for (auto _ : state) {
    std::istringstream in(requests);
    std::ostringstream out, err;
    runBatch(session, in, out, err);
    benchmark::DoNotOptimize(out);
  }
  state.SetItemsProcessed(state.iterations() * calls);
}
BENCHMARK(batchOneT)->Name("batch/one_t")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelkova::cli
