#include <benchmark/benchmark.h>

#include "primitives/ippi.h"
#include "primitives/kernels.h"

int main(int argc, char** argv) {
  ippStaticInit();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::AddCustomContext("processor_level", cpuLevelName(cpuLevel()));
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
