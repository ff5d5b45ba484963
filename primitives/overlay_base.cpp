// Portable overlay kernels: the reference for the other levels.
#include "primitives/overlay_loops.h"

namespace {

void splitC4(const Ipp32f* src, Ipp32f* const dst[4], std::size_t count) { splitPixels(src, dst, 0, count); }

void joinC4(const Ipp32f* const src[4], Ipp32f* dst, std::size_t count) { joinPixels(src, dst, 0, count); }

void matchRow(Ipp8u* pixels, const LocalMeans& means, unsigned channels, std::size_t count) {
  matchPixels(pixels, means, channels, 0, count);
}

}  // namespace

void fillOverlayKernelsBase(OverlayKernels& table) {
  table.gaussRow = gaussRowLoop;
  table.gaussColumns = gaussColumnsLoop;
  table.splitC4 = splitC4;
  table.joinC4 = joinC4;
  table.matchRow = matchRow;
}
