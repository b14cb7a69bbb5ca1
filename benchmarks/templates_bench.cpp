#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>

#include "host/xlsx/saveWorkbook.h"
#include "zelkova/templates/yTemplate.h"

namespace zelkova {
namespace {

/// A cause and effect matrix of 200 outputs and 1000 steps, drawn and saved.
void formCNEM(benchmark::State& state) {
  const std::string path = (std::filesystem::temp_directory_path() / "zelkova-bench.xlsx").string();
  for (auto _ : state) {
    Workbook workbook;
    yTemplate form;
    form.PassSheet(workbook.firstSheet());
    form.drawCNEM(200, 1000);
    saveWorkbook(workbook, path);
  }
  std::remove(path.c_str());
}
BENCHMARK(formCNEM)->Name("form_cnem/200x1000")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelkova
