// Portable resampling kernels: the reference for the other levels.
#include "primitives/resample_kernels.h"
#include "primitives/resample_loops.h"

namespace {

template <int kChannels>
void areaNarrow(const std::uint16_t* columns, const std::int32_t* first, const std::int16_t* weights, int taps,
                Ipp8u* out, int pixels) {
  for (int i = 0; i < pixels; ++i, weights += taps, out += kChannels) {
    areaNarrowPixel<kChannels>(columns + static_cast<std::ptrdiff_t>(first[i]) * kChannels, weights, taps, out);
  }
}

template <int kChannels>
void areaWide(const std::uint16_t* columns, const AreaSpan* spans, Ipp8u* out, int pixels) {
  for (int i = 0; i < pixels; ++i, out += kChannels) areaWidePixel<kChannels>(columns, spans[i], out);
}

template <int kChannels>
void lanczosRow(const float* row, const std::int32_t* first, const float* weights, float* out, int pixels) {
  for (int i = 0; i < pixels; ++i, weights += kLanczosTaps, out += kChannels) {
    lanczosPixel<kChannels>(row + static_cast<std::ptrdiff_t>(first[i]) * kChannels, weights, out);
  }
}

template <int kChannels>
void fillChannels(ResampleKernels& table) {
  constexpr int kIndex = resampleChannelIndex(kChannels);
  table.areaNarrow[kIndex] = areaNarrow<kChannels>;
  table.areaWide[kIndex] = areaWide<kChannels>;
  table.lanczosRow[kIndex] = lanczosRow<kChannels>;
  table.rotateSpan[kIndex] = rotatePixels<kChannels>;
}

}  // namespace

void fillResampleKernelsBase(ResampleKernels& table) {
  fillResampleLoops(table);
  fillChannels<1>(table);
  fillChannels<3>(table);
  fillChannels<4>(table);
}
