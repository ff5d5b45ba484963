#include <cstddef>

#include "primitives/ippi.h"
#include "primitives/kernels.h"

namespace {

IppStatus checkArguments(const Ipp32f* sum, int sumStep, const Ipp64f* sqr, int sqrStep, const Ipp32f* dst, int dstStep,
                         IppiSize roi, const IppiRect& rect) {
  if (sum == nullptr || sqr == nullptr || dst == nullptr) return ippStsNullPtrErr;
  if (roi.width < 1 || roi.height < 1) return ippStsSizeErr;
  const long long columns = static_cast<long long>(roi.width) + rect.x + rect.width;
  if (sumStep < 4 * columns || dstStep < 4LL * roi.width || sqrStep < 8 * columns) return ippStsStepErr;
  if (sumStep % 4 != 0 || dstStep % 4 != 0 || sqrStep % 8 != 0) return ippStsNotEvenStepErr;
  if (rect.x < 0 || rect.y < 0 || rect.width < 1 || rect.height < 1) return ippStsSizeErr;
  return ippStsNoErr;
}

}  // namespace

IppStatus ippiRectStdDev_32f_C1R(const Ipp32f* sum, int sumStep, const Ipp64f* sqr, int sqrStep, Ipp32f* dst,
                                 int dstStep, IppiSize roi, IppiRect rect) {
  const IppStatus status = checkArguments(sum, sumStep, sqr, sqrStep, dst, dstStep, roi, rect);
  if (status != ippStsNoErr) return status;
  const std::ptrdiff_t sumPitch = sumStep / 4;
  const std::ptrdiff_t sqrPitch = sqrStep / 8;
  const float area = static_cast<float>(static_cast<long long>(rect.width) * rect.height);
  sum += rect.y * sumPitch + rect.x;
  sqr += rect.y * sqrPitch + rect.x;
  for (int y = 0; y < roi.height; y++) {
    const DeviationRows rows = {sum, sum + rect.height * sumPitch, sqr, sqr + rect.height * sqrPitch, rect.width, area};
    kernels().haar.stdDevRow(rows, dst, roi.width);
    sum += sumPitch;
    sqr += sqrPitch;
    dst += dstStep / 4;
  }
  return ippStsNoErr;
}
