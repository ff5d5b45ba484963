#include <cstdlib>
#include <cstring>
#include <initializer_list>

#include "primitives/ippi.h"
#include "primitives/kernels.h"

namespace {

bool processorHas(CpuLevel level) {
#if defined(__x86_64__)
  if (level == CpuLevel::avx2) return __builtin_cpu_supports("avx2");
  if (level == CpuLevel::sse41) return __builtin_cpu_supports("sse4.1");
#endif
  return level == CpuLevel::base;
}

CpuLevel bestLevel() {
  if (processorHas(CpuLevel::avx2)) return CpuLevel::avx2;
  return processorHas(CpuLevel::sse41) ? CpuLevel::sse41 : CpuLevel::base;
}

CpuLevel levelFromEnvironment(CpuLevel best) {
  const char* wanted = std::getenv("PORTRAITCUT_CPU");
  if (wanted == nullptr) return best;
  for (CpuLevel level : {CpuLevel::base, CpuLevel::sse41}) {
    if (level < best && std::strcmp(wanted, cpuLevelName(level)) == 0) return level;
  }
  return best;
}

// A higher level starts from the lower one's table and replaces what it does faster.
Kernels makeTable(CpuLevel level) {
  Kernels table{};
  fillPixelKernelsBase(table.pixel);
  fillResampleKernelsBase(table.resample);
  fillHaarKernelsBase(table.haar);
  fillOverlayKernelsBase(table.overlay);
  fillVectorKernelsBase(table.vector);
  fillPatchKernelsBase(table.patch);
#if defined(__x86_64__)
  if (level >= CpuLevel::sse41) {
    fillPixelKernelsSse41(table.pixel);
    fillResampleKernelsSse41(table.resample);
    fillHaarKernelsSse41(table.haar);
    fillOverlayKernelsSse41(table.overlay);
    fillVectorKernelsSse41(table.vector);
    fillPatchKernelsSse41(table.patch);
  }
  if (level >= CpuLevel::avx2) {
    fillPixelKernelsAvx2(table.pixel);
    fillResampleKernelsAvx2(table.resample);
    fillHaarKernelsAvx2(table.haar);
    fillOverlayKernelsAvx2(table.overlay);
    fillVectorKernelsAvx2(table.vector);
    fillPatchKernelsAvx2(table.patch);
  }
#else
  (void)level;
#endif
  return table;
}

}  // namespace

const char* cpuLevelName(CpuLevel level) {
  constexpr const char* kNames[] = {"base", "sse41", "avx2"};
  return kNames[static_cast<int>(level)];
}

const Kernels* kernelsOf(CpuLevel level) {
  static const Kernels tables[] = {makeTable(CpuLevel::base), makeTable(CpuLevel::sse41), makeTable(CpuLevel::avx2)};
  return processorHas(level) ? &tables[static_cast<int>(level)] : nullptr;
}

CpuLevel cpuLevel() {
  static const CpuLevel level = levelFromEnvironment(bestLevel());
  return level;
}

const Kernels& kernels() {
  static const Kernels& table = *kernelsOf(cpuLevel());
  return table;
}

void ippStaticInit() { kernels(); }
