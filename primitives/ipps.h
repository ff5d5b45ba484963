// The vector primitives: flat functions over a pointer and a count of elements. As in ippi.h, a null pointer answers
// ippStsNullPtrErr, a count below 1 ippStsSizeErr, nothing is written then, and all levels give the same bits.
#pragma once

#include "primitives/ippdefs.h"

IppStatus ippsConvert_8u32f(const Ipp8u* src, Ipp32f* dst, int length);
IppStatus ippsMulC_32f_I(Ipp32f value, Ipp32f* srcDst, int length);
IppStatus ippsAddC_32f_I(Ipp32f value, Ipp32f* srcDst, int length);
// Elements below `levelLT` become `valueLT`, elements above `levelGT` become `valueGT`.
IppStatus ippsThreshold_LTValGTVal_32f_I(Ipp32f* srcDst, int length, Ipp32f levelLT, Ipp32f valueLT, Ipp32f levelGT,
                                         Ipp32f valueGT);
// Element i goes to partial sum i mod 16; the upper half of the sums is added to the lower one until one is left.
IppStatus ippsDotProd_32f(const Ipp32f* src1, const Ipp32f* src2, int length, Ipp32f* product);
IppStatus ippsAbs_32f(const Ipp32f* src, Ipp32f* dst, int length);
IppStatus ippsAbs_32f_I(Ipp32f* srcDst, int length);
// srcDst[i] becomes the larger of srcDst[i] and src[i].
IppStatus ippsMaxEvery_32f_I(const Ipp32f* src, Ipp32f* srcDst, int length);
