#include <cstddef>

#include "primitives/ippi.h"
#include "primitives/kernels.h"

namespace {

IppStatus checkArguments(const Ipp8u* src, int srcStep, const Ipp32f* sum, int sumStep, const Ipp64f* sqr, int sqrStep,
                         IppiSize roi) {
  if (src == nullptr || sum == nullptr || sqr == nullptr) return ippStsNullPtrErr;
  if (roi.width < 1 || roi.height < 1) return ippStsSizeErr;
  const long long columns = static_cast<long long>(roi.width) + 1;
  if (srcStep < roi.width || sumStep < 4 * columns || sqrStep < 8 * columns) return ippStsStepErr;
  if (sumStep % 4 != 0 || sqrStep % 8 != 0) return ippStsNotEvenStepErr;
  return ippStsNoErr;
}

}  // namespace

IppStatus ippiSqrIntegral_8u32f64f_C1R(const Ipp8u* src, int srcStep, Ipp32f* sum, int sumStep, Ipp64f* sqr,
                                       int sqrStep, IppiSize roi, Ipp32f val, Ipp64f valSqr) {
  const IppStatus status = checkArguments(src, srcStep, sum, sumStep, sqr, sqrStep, roi);
  if (status != ippStsNoErr) return status;
  for (int c = 0; c <= roi.width; c++) sum[c] = val;
  for (int c = 0; c <= roi.width; c++) sqr[c] = valSqr;
  const std::ptrdiff_t sumPitch = sumStep / 4;
  const std::ptrdiff_t sqrPitch = sqrStep / 8;
  const HaarKernels& haar = kernels().haar;
  for (int r = 0; r < roi.height; r++, src += srcStep, sum += sumPitch, sqr += sqrPitch) {
    haar.integralRow({src, sum, sum + sumPitch, sqr, sqr + sqrPitch}, roi.width);
  }
  return ippStsNoErr;
}
