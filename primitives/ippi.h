// The imaging primitives: flat functions over a pointer to the first pixel of a region, a step (signed
// distance in bytes between the starts of two rows) and a size in pixels. Every function checks for null
// pointers (ippStsNullPtrErr) and sizes below 1 (ippStsSizeErr) and then writes nothing; beyond that the
// caller answers for steps and buffer sizes. All levels of the dispatch give the same bits.
#pragma once

#include "primitives/ippdefs.h"

// Chooses the kernels for this processor. May be called any number of times; the primitives work without
// it too (the first use chooses).
void ippStaticInit();

// --- Copies and changes of layout -------------------------------------------------------------------
IppStatus ippiCopy_8u_C1R(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi);
IppStatus ippiCopy_8u_C3R(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi);
IppStatus ippiCopy_8u_C4R(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi);
// The AC4 forms leave the destination's fourth byte as it was.
IppStatus ippiCopy_8u_AC4R(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi);
IppStatus ippiCopy_8u_AC4C3R(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi);
IppStatus ippiCopy_8u_C3AC4R(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi);
// `dst` points at the channel to be written of the first pixel; the other three channels stay.
IppStatus ippiCopy_8u_C1C4R(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi);
IppStatus ippiCopy_8u_P3C3R(const Ipp8u* const src[3], int srcStep, Ipp8u* dst, int dstStep, IppiSize roi);
IppStatus ippiCopy_8u_P4C4R(const Ipp8u* const src[4], int srcStep, Ipp8u* dst, int dstStep, IppiSize roi);
// Four channels into planes that share one step, and back.
IppStatus ippiCopy_32f_C4P4R(const Ipp32f* src, int srcStep, Ipp32f* const dst[4], int dstStep, IppiSize roi);
IppStatus ippiCopy_32f_P4C4R(const Ipp32f* const src[4], int srcStep, Ipp32f* dst, int dstStep, IppiSize roi);

// --- Conversions of depth: each value to the float of the same value --------------------------------
IppStatus ippiConvert_8u32f_C1R(const Ipp8u* src, int srcStep, Ipp32f* dst, int dstStep, IppiSize roi);
IppStatus ippiConvert_8u32f_C3R(const Ipp8u* src, int srcStep, Ipp32f* dst, int dstStep, IppiSize roi);
IppStatus ippiConvert_8u32f_C4R(const Ipp8u* src, int srcStep, Ipp32f* dst, int dstStep, IppiSize roi);

// --- Fills ------------------------------------------------------------------------------------------
IppStatus ippiSet_8u_C1R(Ipp8u value, Ipp8u* dst, int dstStep, IppiSize roi);
// `dst` points at the channel to be written of the first pixel.
IppStatus ippiSet_8u_C4CR(Ipp8u value, Ipp8u* dst, int dstStep, IppiSize roi);

// --- Order of channels: destination channel k takes source channel order[k] --------------------------
IppStatus ippiSwapChannels_8u_C3R(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi,
                                  const int order[3]);
IppStatus ippiSwapChannels_8u_C4IR(Ipp8u* srcDst, int step, IppiSize roi, const int order[4]);

// --- Mirrors ----------------------------------------------------------------------------------------
IppStatus ippiMirror_8u_C1IR(Ipp8u* srcDst, int step, IppiSize roi, int flip);
IppStatus ippiMirror_8u_C3IR(Ipp8u* srcDst, int step, IppiSize roi, int flip);
IppStatus ippiMirror_8u_C4IR(Ipp8u* srcDst, int step, IppiSize roi, int flip);
// Moves the three colour channels; alpha stays where it is.
IppStatus ippiMirror_8u_AC4IR(Ipp8u* srcDst, int step, IppiSize roi, int flip);
IppStatus ippiMirror_8u_C1R(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi, int flip);

// --- Transposes: `roi` is the size of the source, the destination has width and height exchanged -----
IppStatus ippiTranspose_8u_C1R(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi);
IppStatus ippiTranspose_8u_C3R(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi);
IppStatus ippiTranspose_8u_C4R(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi);

// --- Copies with a border ----------------------------------------------------------------------------
// The source lands at column `left`, row `top`. A destination smaller than source plus border, or a
// negative border, answers ippStsSizeErr.
IppStatus ippiCopyConstBorder_8u_C1R(const Ipp8u* src, int srcStep, IppiSize srcRoi, Ipp8u* dst, int dstStep,
                                     IppiSize dstRoi, int top, int left, Ipp8u value);
IppStatus ippiCopyConstBorder_8u_C3R(const Ipp8u* src, int srcStep, IppiSize srcRoi, Ipp8u* dst, int dstStep,
                                     IppiSize dstRoi, int top, int left, const Ipp8u value[3]);
IppStatus ippiCopyConstBorder_8u_C4R(const Ipp8u* src, int srcStep, IppiSize srcRoi, Ipp8u* dst, int dstStep,
                                     IppiSize dstRoi, int top, int left, const Ipp8u value[4]);
IppStatus ippiCopyReplicateBorder_8u_C1R(const Ipp8u* src, int srcStep, IppiSize srcRoi, Ipp8u* dst, int dstStep,
                                         IppiSize dstRoi, int top, int left);
IppStatus ippiCopyReplicateBorder_8u_C3R(const Ipp8u* src, int srcStep, IppiSize srcRoi, Ipp8u* dst, int dstStep,
                                         IppiSize dstRoi, int top, int left);
IppStatus ippiCopyReplicateBorder_8u_C4R(const Ipp8u* src, int srcStep, IppiSize srcRoi, Ipp8u* dst, int dstStep,
                                         IppiSize dstRoi, int top, int left);

// On words of 4 bytes, floats among them.
IppStatus ippiCopyConstBorder_32s_C1R(const Ipp32s* src, int srcStep, IppiSize srcRoi, Ipp32s* dst, int dstStep,
                                      IppiSize dstRoi, int top, int left, Ipp32s value);

// --- Colour to gray: (w0 b0 + w1 b1 + w2 b2) >> 12 in memory order ------------------------------------
// Fixed weights 1225, 2404, 467 of 4096.
IppStatus ippiRGBToGray_8u_C3C1R(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi);
IppStatus ippiRGBToGray_8u_AC4C1R(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi);
// Weights trunc(coeffs[k] * 4096 + 0.5).
IppStatus ippiColorToGray_8u_C3C1R(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi,
                                   const Ipp32f coeffs[3]);
IppStatus ippiColorToGray_8u_AC4C1R(const Ipp8u* src, int srcStep, Ipp8u* dst, int dstStep, IppiSize roi,
                                    const Ipp32f coeffs[3]);

// --- Resampling --------------------------------------------------------------------------------------
// Destination pixel (i, j) looks at source point (i / xFactor, j / yFactor). Interpolation is
// IPPI_INTER_SUPER (area mean; made for factors up to 1, above which footprints are parts of pixels) or
// IPPI_INTER_LANCZOS (six taps an axis). A destination side that comes to less than half a pixel answers
// ippStsResizeNoOperationErr, a side above 65,535 ippStsSizeErr, a factor that is not finite or another
// interpolation ippStsBadArgErr.
IppStatus ippiResize_8u_C1R(const Ipp8u* src, IppiSize srcSize, int srcStep, IppiRect srcRoi, Ipp8u* dst, int dstStep,
                            IppiSize dstRoi, double xFactor, double yFactor, int interpolation);
IppStatus ippiResize_8u_C3R(const Ipp8u* src, IppiSize srcSize, int srcStep, IppiRect srcRoi, Ipp8u* dst, int dstStep,
                            IppiSize dstRoi, double xFactor, double yFactor, int interpolation);
IppStatus ippiResize_8u_C4R(const Ipp8u* src, IppiSize srcSize, int srcStep, IppiRect srcRoi, Ipp8u* dst, int dstStep,
                            IppiSize dstRoi, double xFactor, double yFactor, int interpolation);
IppStatus ippiResize_32f_C1R(const Ipp32f* src, IppiSize srcSize, int srcStep, IppiRect srcRoi, Ipp32f* dst,
                             int dstStep, IppiSize dstRoi, double xFactor, double yFactor, int interpolation);
IppStatus ippiResize_32f_C3R(const Ipp32f* src, IppiSize srcSize, int srcStep, IppiRect srcRoi, Ipp32f* dst,
                             int dstStep, IppiSize dstRoi, double xFactor, double yFactor, int interpolation);
IppStatus ippiResize_32f_C4R(const Ipp32f* src, IppiSize srcSize, int srcStep, IppiRect srcRoi, Ipp32f* dst,
                             int dstStep, IppiSize dstRoi, double xFactor, double yFactor, int interpolation);

// Turns the image by `angle` degrees about (xCenter, yCenter), in coordinates of the buffer; rows of the
// buffer growing downward, the turn is counter-clockwise. Bilinear, whatever the interpolation code's low
// bits; with IPPI_SMOOTH_EDGE the pixels mapped up to one pixel outside the source are blended with the
// destination's content. Pixels that the source does not reach keep what they held. Sides and places above
// 65,535 answer ippStsSizeErr, an angle or centre that is not finite ippStsBadArgErr.
IppStatus ippiRotateCenter_8u_C1R(const Ipp8u* src, IppiSize srcSize, int srcStep, IppiRect srcRoi, Ipp8u* dst,
                                  int dstStep, IppiRect dstRoi, double angle, double xCenter, double yCenter,
                                  unsigned interpolation);
IppStatus ippiRotateCenter_8u_C3R(const Ipp8u* src, IppiSize srcSize, int srcStep, IppiRect srcRoi, Ipp8u* dst,
                                  int dstStep, IppiRect dstRoi, double angle, double xCenter, double yCenter,
                                  unsigned interpolation);
IppStatus ippiRotateCenter_8u_C4R(const Ipp8u* src, IppiSize srcSize, int srcStep, IppiRect srcRoi, Ipp8u* dst,
                                  int dstStep, IppiRect dstRoi, double angle, double xCenter, double yCenter,
                                  unsigned interpolation);

// --- Integrals and boosted Haar stages ----------------------------------------------------------------
// `sum` and `sqr` receive (width + 1) by (height + 1) values; row 0 and column 0 hold `val` and `valSqr`.
IppStatus ippiSqrIntegral_8u32f64f_C1R(const Ipp8u* src, int srcStep, Ipp32f* sum, int sumStep, Ipp64f* sqr,
                                       int sqrStep, IppiSize roi, Ipp32f val, Ipp64f valSqr);
// Standard deviation of the pixels of `rect` moved to each position of `roi`, from the two integrals.
IppStatus ippiRectStdDev_32f_C1R(const Ipp32f* sum, int sumStep, const Ipp64f* sqr, int sqrStep, Ipp32f* dst,
                                 int dstStep, IppiSize roi, IppiRect rect);

// One boosted stage, built once and only read afterwards; any number of threads may apply it.
struct IppiHaarClassifier_32f;

IppStatus ippiHaarClassifierInitAlloc_32f(IppiHaarClassifier_32f** state, const IppiRect* feature, const Ipp32f* weight,
                                          const Ipp32f* threshold, const Ipp32f* val1, const Ipp32f* val2,
                                          const int* num, int length);
IppStatus ippiHaarClassifierFree_32f(IppiHaarClassifier_32f* state);
IppStatus ippiGetHaarClassifierSize_32f(IppiHaarClassifier_32f* state, IppiSize* size);
// Clears the mask at positions whose stage sum is below `threshold` and counts the survivors.
IppStatus ippiApplyHaarClassifier_32f_C1R(const Ipp32f* sum, int sumStep, const Ipp32f* norm, int normStep, Ipp8u* mask,
                                          int maskStep, IppiSize roi, int* positive, Ipp32f threshold,
                                          IppiHaarClassifier_32f* state);

// --- Gaussian filter ----------------------------------------------------------------------------------
// A kernel size that is even or below 3, or a sigma that is not finite or not above 0 (in single precision its square
// too), answers ippStsBadArgErr; sizes for which the work buffer would pass 2 GiB ippStsSizeErr.
IppStatus ippiFilterGaussGetBufferSize_32f_C1R(IppiSize roi, int kernelSize, int* bufferSize);
// Gaussian mean over rows, then over columns; beyond the region its nearest pixel counts, whatever the border type
// and value. The weights are normalised. `buffer` has the size told by the function above, `dst` is not `src`, and
// steps below the bytes of a row answer ippStsStepErr.
IppStatus ippiFilterGaussBorder_32f_C1R(const Ipp32f* src, int srcStep, Ipp32f* dst, int dstStep, IppiSize roi,
                                        int kernelSize, Ipp32f sigma, int borderType, Ipp32f borderValue,
                                        Ipp8u* buffer);

// --- Composition and statistics -----------------------------------------------------------------------
// A over B, premultiplied result, all four channels written.
IppStatus ippiAlphaComp_8u_AC4R(const Ipp8u* a, int aStep, const Ipp8u* b, int bStep, Ipp8u* dst, int dstStep,
                                IppiSize roi, int type);
// Counts per half-open bin of `levelCount` - 1 even bins from `lower` to `upper`.
IppStatus ippiHistogramEven_8u_C1R(const Ipp8u* src, int srcStep, IppiSize roi, Ipp32s* histogram, Ipp32s* levels,
                                   int levelCount, Ipp32s lower, Ipp32s upper);

// --- Real transform -----------------------------------------------------------------------------------
// For images of 2^orderX by 2^orderY floats, orders 1 to 12. Only read by the transforms: any number of threads may
// share one.
struct IppiFFTSpec_R_32f;

// `flag` is IPP_FFT_DIV_INV_BY_N, anything else answers ippStsBadArgErr, as do orders out of range; `hint` has no
// effect.
IppStatus ippiFFTInitAlloc_R_32f(IppiFFTSpec_R_32f** spec, int orderX, int orderY, int flag, int hint);
IppStatus ippiFFTFree_R_32f(IppiFFTSpec_R_32f* spec);
// Real image to packed spectrum and back, in place. Spectra are only good for each other: their order is private.
// `buffer` is memory for twice the image's floats, or null: then the call takes its own.
IppStatus ippiFFTFwd_RToPack_32f_C1IR(Ipp32f* srcDst, int step, const IppiFFTSpec_R_32f* spec, Ipp8u* buffer);
IppStatus ippiFFTInv_PackToR_32f_C1IR(Ipp32f* srcDst, int step, const IppiFFTSpec_R_32f* spec, Ipp8u* buffer);
// Product of two packed spectra, which makes the circular convolution of their images. `roi` is the whole image;
// sides that are no power of two from 2 on answer ippStsSizeErr.
IppStatus ippiMulPack_32f_C1IR(const Ipp32f* src, int srcStep, Ipp32f* srcDst, int srcDstStep, IppiSize roi);

// --- Largest value in a window ------------------------------------------------------------------------
// The window's pixel `anchor` stands on the destination's pixel; the source is read as far as the windows reach.
IppStatus ippiFilterMax_32f_C1R(const Ipp32f* src, int srcStep, Ipp32f* dst, int dstStep, IppiSize roi, IppiSize mask,
                                IppiPoint anchor);
