// One table of row kernels, filled once for the processor. A portable level (base) and two x86 levels;
// every level gives the same bits.
#pragma once

#include "primitives/haar_kernels.h"
#include "primitives/overlay_kernels.h"
#include "primitives/patch_kernels.h"
#include "primitives/pixel_kernels.h"
#include "primitives/resample_kernels.h"
#include "primitives/vector_kernels.h"

enum class CpuLevel { base = 0, sse41 = 1, avx2 = 2 };

struct Kernels {
  PixelKernels pixel;
  ResampleKernels resample;
  HaarKernels haar;
  OverlayKernels overlay;
  VectorKernels vector;
  PatchKernels patch;
};

// The table in use. The environment variable PORTRAITCUT_CPU (base, sse41 or avx2) can lower the level
// below what the processor offers, never raise it; it is read once, for tests and benchmarks.
const Kernels& kernels();

// The table of one level, or null if this processor or build lacks it.
const Kernels* kernelsOf(CpuLevel level);
CpuLevel cpuLevel();
const char* cpuLevelName(CpuLevel level);
