/** @file
 * The portrait-cut interface of libportraitcut: from a picture file to a portrait file in one call.
 *
 * A thin layer over vizl_api.h. Coordinates, codes, limits, ownership and threads are as told there; file formats
 * are those of VIZL_LoadImageFromFile and VIZL_SaveImageToFile. The layer adds three settings of its own: a face
 * scale, a face shift and a detection performance. They exist once for the process and once per context.
 *
 * A function with the ending _C takes a context from pcCreateContextID. Context 0 means the process-wide settings,
 * as does the function without the ending. A context on which none of the three has been set cuts with scale 1, no
 * shift and by the face alone, whatever the process-wide settings are. The three settings of a context are kept
 * in its user field, so an application must not call VIZL_SetContextUserField on a context that it uses here.
 *
 * @par Threads
 * As in vizl_api.h. Settings that change while other threads cut may reach them partly; threads that need
 * settings of their own use contexts. */
#ifndef PC_API_H
#define PC_API_H

#include "vizl_api.h"

#ifdef __cplusplus
extern "C" {
#endif

/** How thoroughly to look for the face. */
typedef int32_t PcDetectionPerformance;
enum {
  PcPerformanceFast = 0,     /**< upright faces, a picture of 100 pixels */
  PcPerformanceBalanced = 1, /**< tilted faces too, a picture of 256 pixels */
  PcPerformanceThorough = 2  /**< tilted faces with their angle, 384 pixels, framed by the eyes */
};

/** @defgroup pc_lifecycle Portrait calls: life cycle and contexts
 * @{ */

/** VIZL_Initialize without a path.
 * @return as VIZL_Initialize. */
VIZL_API int32_t pcInitialize(void);

/** VIZL_Finalize.
 * @return as VIZL_Finalize. */
VIZL_API int32_t pcFinalize(void);

/** VIZL_CreateContext_ID.
 * @param[out] id not null: the context, owned by the caller.
 * @return as VIZL_CreateContext_ID. */
VIZL_API int32_t pcCreateContextID(int32_t* id);

/** VIZL_FreeContext_ID; also releases the three settings of the context.
 * @param[in] id the context.
 * @return as VIZL_FreeContext_ID. */
VIZL_API int32_t pcFreeContextID(int32_t id);

/** @} */

/** @defgroup pc_settings Portrait calls: settings
 * @{ */

/** VIZL_SetFaceDetectionThreshold.
 * @param[in] threshold 1 or more.
 * @return as VIZL_SetFaceDetectionThreshold. */
VIZL_API int32_t pcSetDetectionThreshold(int32_t threshold);

/** VIZL_SetFaceDetectionThreshold_C.
 * @copydetails VIZL_SetFaceDetectionThreshold_C */
VIZL_API int32_t pcSetDetectionThreshold_C(int32_t threshold, int32_t context);

/** VIZL_SetJpegCompressionQuality.
 * @param[in] quality 0 to 100.
 * @return as VIZL_SetJpegCompressionQuality. */
VIZL_API int32_t pcSetJpegQuality(int32_t quality);

/** VIZL_SetJpegCompressionQuality_C.
 * @copydetails VIZL_SetJpegCompressionQuality_C */
VIZL_API int32_t pcSetJpegQuality_C(int32_t quality, int32_t context);

/** Sets the zoom: 2 shows half as much around the face as 1.
 * @param[in] scale above 0.00001, initially 1. One that isn't finite is stored and makes later cuts answer
 *   VIZLE_INVALID_ARGUMENT.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (scale too small). */
VIZL_API int32_t pcSetFaceScale(float scale);

/** Like pcSetFaceScale, but for a context.
 * @copydetails pcSetFaceScale
 * @param[in] context an unknown one is refused with VIZLE_INVALID_ARGUMENT. */
VIZL_API int32_t pcSetFaceScale_C(float scale, int32_t context);

/** Sets how far the portrait's centre lies from the face's.
 * @param[in] shiftX,shiftY in widths and heights of the natural frame, positive is right and down, initially 0.
 * @return VIZLE_OK, else a code of every function. */
VIZL_API int32_t pcSetFaceShift(float shiftX, float shiftY);

/** Like pcSetFaceShift, but for a context.
 * @copydetails pcSetFaceShift
 * @param[in] context an unknown one is refused with VIZLE_INVALID_ARGUMENT. */
VIZL_API int32_t pcSetFaceShift_C(float shiftX, float shiftY, int32_t context);

/** Sets the detection performance, and the detection parameters that belong to it. Initially the performance is
 * PcPerformanceBalanced while the parameters are those of PcPerformanceThorough, until the first call.
 * @param[in] value one of PcDetectionPerformance. Any other is stored and refused: it frames by the face, and the
 *   parameters stay.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (value unknown). */
VIZL_API int32_t pcSetDetectionPerformance(PcDetectionPerformance value);

/** Like pcSetDetectionPerformance, but for a context.
 * @copydetails pcSetDetectionPerformance
 * @param[in] context an unknown one is refused with VIZLE_INVALID_ARGUMENT. */
VIZL_API int32_t pcSetDetectionPerformance_C(PcDetectionPerformance value, int32_t context);

/** @} */

/** @defgroup pc_cutting Portrait calls: cutting
 * @{ */

/** Cuts a portrait of the largest face of a picture file and saves it.
 * @param[in] inputFile not null: a BMP, JPEG or PNG file.
 * @param[in] outputFile not null: the file to write, in the format that its name tells. Not touched before the
 *   portrait is ready.
 * @param[in] width,height pixels, 1 or more: the size of the portrait.
 * @return VIZLE_OK, else the codes of VIZL_LoadImageFromFile, VIZL_PortraitCut and VIZL_SaveImageToFile. After
 * VIZLE_UNKNOWN_EXTENSION and VIZLE_BAD_IMAGE_FILE one image handle stays allocated until pcFinalize. */
VIZL_API int32_t pcPortraitCut(const char* inputFile, const char* outputFile, int32_t width, int32_t height);

/** Like pcPortraitCut, but with the settings of a context.
 * @copydetails pcPortraitCut
 * @param[in] context an unknown one is refused with VIZLE_INVALID_ARGUMENT, after the file has been loaded. */
VIZL_API int32_t pcPortraitCut_C(const char* inputFile, const char* outputFile, int32_t width, int32_t height,
                                 int32_t context);

/** Like pcPortraitCut_C, but from one open handle into another; neither is freed.
 * @param[in] source the picture to read.
 * @param[in] destination the handle that receives the portrait; may be the same as `source`.
 * @param[in] width,height pixels, 1 or more: the size of the portrait.
 * @param[in] context an unknown one is refused with VIZLE_INVALID_ARGUMENT.
 * @return VIZLE_OK, else the codes of VIZL_PortraitCut. */
VIZL_API int32_t pcPortraitCut_HImageToHImage_C(HImage source, HImage destination, int32_t width, int32_t height,
                                                int32_t context);

/** Tells where pcPortraitCut would cut.
 * @param[in] inputFile not null.
 * @param[in] width,height pixels, 1 or more: the size of the portrait.
 * @param[out] x1,y1,x2,y2 not null: the rectangle, inclusive corners.
 * @return VIZLE_OK, else the codes of VIZL_LoadImageFromFile and VIZL_GetFacePosition; handles as for pcPortraitCut. */
VIZL_API int32_t pcGetFacePosition(const char* inputFile, int32_t width, int32_t height, int32_t* x1, int32_t* y1,
                                   int32_t* x2, int32_t* y2);

/** Like pcGetFacePosition, but with the settings of a context.
 * @copydetails pcGetFacePosition
 * @param[in] context an unknown one is refused with VIZLE_INVALID_ARGUMENT, after the file has been loaded. */
VIZL_API int32_t pcGetFacePosition_C(const char* inputFile, int32_t width, int32_t height, int32_t* x1, int32_t* y1,
                                     int32_t* x2, int32_t* y2, int32_t context);

/** Like pcGetFacePosition_C, but for an open handle, which is freed whatever the result, unless the context is
 * unknown.
 * @param[in] image the picture.
 * @param[in] width,height pixels, 1 or more: the size of the portrait.
 * @param[out] x1,y1,x2,y2 not null: the rectangle, inclusive corners.
 * @param[in] context an unknown one is refused with VIZLE_INVALID_ARGUMENT.
 * @return VIZLE_OK, else the codes of VIZL_GetFacePosition. */
VIZL_API int32_t pcGetFacePositionInHImageAndFree_C(HImage image, int32_t width, int32_t height, int32_t* x1,
                                                    int32_t* y1, int32_t* x2, int32_t* y2, int32_t context);

/** @} */

#ifdef __cplusplus
}
#endif

#endif
