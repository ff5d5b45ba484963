/** @file
 * The image-handle interface of libportraitcut: load a picture, find the faces in it, cut a portrait.
 *
 * @par Coordinates
 * Positions are in pixels of the picture that a handle holds. (0, 0) is the top left pixel, x
 * grows to the right and y downwards. Rectangles are two inclusive corners: x1 to x2 is x2 - x1 + 1 columns.
 * Angles are in degrees; a positive angle turns a picture clockwise as the viewer sees it. The one place with
 * another order of rows is VIZL_GetImageData.
 *
 * @par Codes
 * Every function with an int32_t result returns VIZLE_OK or one of the negative VIZLE_ codes. Each
 * function lists its own. Two reasons for VIZLE_INVALID_ARGUMENT hold everywhere
 * and are not repeated: the library is not initialised, and a size is beyond the limits or memory is short
 * (functions that decode or encode report these by VIZLE_BAD_IMAGE_FILE or VIZLE_IMAGE_IO_FAILED).
 *
 * @par Failures
 * Unless a function says otherwise, one that fails writes none of its outputs and leaves every
 * image as it was.
 *
 * @par Limits
 * A side has at most 65,535 pixels and the pixels of one image fill less than 2 GiB. Rows are padded:
 * see VIZL_GetImageData.
 *
 * @par Ownership
 * The library owns the images behind handles; the caller frees each handle with VIZL_FreeImage.
 * Buffers, names and arrays that are passed in stay the caller's and are not kept after the call. Up to 128 MiB of
 * the memory of large pictures that were freed is kept for the next ones, until VIZL_Finalize.
 *
 * @par Threads
 * Any number of threads may call the library at once, with three exceptions. VIZL_Initialize and
 * VIZL_Finalize must not run at the same time as any other call. A handle must not be freed, filled or used
 * as the destination of an operation while another call works on it. A context must not be set or freed while
 * another call uses it. Detections on one handle may run at once. "Threads" below says more where there is more.
 *
 * @par Contexts
 * A function with the ending _C takes a context, a set of settings of its own (see VIZL_CreateContext_ID);
 * the function without the ending is the same with context 0, the process-wide settings. */
#ifndef VIZL_API_H
#define VIZL_API_H

#include <stdbool.h>
#include <stdint.h>

#if defined(__GNUC__)
/** Marks what the library shows. */
#define VIZL_API __attribute__((visibility("default")))
#else
#define VIZL_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** @defgroup codes Codes
 * @{ */

#define VIZLE_OK 0                     /**< done */
#define VIZLE_INVALID_ARGUMENT (-4)    /**< bad handle, null pointer, number out of range, unknown context */
#define VIZLE_IMAGE_IO_FAILED (-5)     /**< a JPEG or PNG buffer can't be decoded; a file can't be encoded */
#define VIZLE_IMAGE_TOO_SMALL (-6)     /**< detection needs at least 20 by 20 pixels */
#define VIZLE_NO_FACE (-7)             /**< detection ran and found no face */
#define VIZLE_BUFFER_TOO_SMALL (-8)    /**< no room for one TFacePosition */
#define VIZLE_UNKNOWN_EXTENSION (-9)   /**< the name of a file to load ends in no known extension */
#define VIZLE_CANNOT_OPEN_FILE (-10)   /**< a file to load can't be opened for reading */
#define VIZLE_CANNOT_CREATE_FILE (-11) /**< a file to save can't be opened for writing */
#define VIZLE_BAD_IMAGE_FILE (-12)     /**< the file is there and its extension known, but decoding failed */

/** @} */

/** @defgroup types Types
 * @{ */

/** Names an image. 0 is a valid handle; no value stands for "no image". The number of a freed handle is given
 * out again, lowest first. */
typedef uint32_t HImage;

/** Names a context, 1 or more; 0 stands for the process-wide settings. */
typedef int32_t ContextID;

/** Layout of a caller's pixel buffer, top row first, channels in the caller's order (red, green, blue if the
 * picture is to be saved to a file). Values other than 0 and 2 count as VIZL_IMAGE_COLOR24. */
typedef int32_t VIZL_IMAGEMODE;
enum {
  VIZL_IMAGE_GRAY8 = 0,   /**< one byte a pixel */
  VIZL_IMAGE_COLOR24 = 1, /**< three bytes a pixel */
  VIZL_IMAGE_COLOR32 = 2  /**< four bytes a pixel, the fourth is alpha, 255 opaque */
};

/** A face. 24 bytes. */
typedef struct TFacePosition {
  int32_t xc;       /**< column of the face's centre */
  int32_t yc;       /**< row of the face's centre */
  int32_t w;        /**< side of the square around the face, in pixels; 0 means no face */
  int32_t Reserved; /**< never written by the library */
  double angle;     /**< in-plane angle in degrees: VIZL_RotateImage by it turns the face upright */
} TFacePosition;

/** A point of a face. Arrays of points have forty entries in a fixed order. Of a pair the first has the smaller x while
 * the face is upright.
 *    0, 1 centres of the eyes            2 tip of the nose                   3, 4 corners of the mouth
 *    5 top of the forehead               6, 7 upper forehead                 8, 9 temples
 *   10, 11 sides of the face, eye height 12, 13 jaw                          14, 15 sides of the chin
 *   16, 19 outer ends of the brows       17, 18 inner ends of the brows      20, 21 middle of the upper, lower lip
 *   22 bridge of the nose                23, 26 outer corners of the eyes    24, 25 inner corners of the eyes
 *   27, 28 nostrils                      29 chin                             30, 31 lower cheeks
 *   32, 33 sides of the face, nose height  34, 35 middle of the brows
 *   36, 37 upper lip and 38, 39 lower lip, on both sides of the middle
 * Points 5 to 9 lie around the head rather than on it: nothing in a picture shows them. */
typedef struct TPoint {
  int32_t x; /**< column, pixels */
  int32_t y; /**< row, pixels, downwards */
} TPoint;

/** @} */

/** @defgroup data Data
 * @{ */

/** The application may set this to a value other than 0, from any thread, to make running and later feature
 * searches end early. The library only reads it and never clears it. */
extern VIZL_API volatile unsigned char NeedInterrupt;
/** Neither read nor written by the library; kept for applications that link to them. */
extern VIZL_API unsigned char NeedBreak;
extern VIZL_API char* DataFilesPath; /**< like NeedBreak */

/** The named resources, read-only, little-endian. */
extern VIZL_API const unsigned char VIZL_resu1[160];    /**< "CDATA": how far each point of a face strays, 40 floats */
extern VIZL_API const unsigned char VIZL_resu2[178716]; /**< "EYESVM": the model of the eye search */
extern VIZL_API const unsigned char VIZL_resu3[178596]; /**< "EYESVM2": a second one, which no search uses */
extern VIZL_API const unsigned char VIZL_resu4[4096];   /**< "MW": how often eyes stand where, 32 by 32 integers */

/** @} */

/** @defgroup lifecycle Life cycle
 * @{ */

/** Makes the library ready. A second call without VIZL_Finalize starts anew with an empty table of handles:
 * every earlier handle stops being valid, and what it held is never released.
 * @param[in] dataPath ignored; may be null. All data is inside the library.
 * The process-wide settings and the contexts are not touched.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT if memory is short; the library is then as it was. */
VIZL_API int32_t VIZL_Initialize(const char* dataPath);

/** Frees every image, all that VIZL_Initialize made, and the memory kept for further pictures. Settings and contexts
 * stay.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT if the library is not initialised. */
VIZL_API int32_t VIZL_Finalize(void);

/** Tells the version. Works at any time.
 * @return "major.minor.patch", a constant text owned by the library. */
VIZL_API const char* VIZL_GetVersion(void);

/** Fills the table of named resources; VIZL_Initialize does so too, VIZL_Finalize empties it. */
VIZL_API void VIZL_resInit(void);

/** Gives a named resource.
 * @param[in] name exact spelling ("CDATA", "EYESVM", "EYESVM2", "MW"); null gives null.
 * @return its first byte, owned by the library, or null for an unknown name or an empty table. */
VIZL_API const unsigned char* VIZL_resData(const char* name);

/** Like VIZL_resData, but gives the type of the resource.
 * @param[in] name as for VIZL_resData.
 * @return "unknown " and the size in bytes, owned by the library, or null as for VIZL_resData. */
VIZL_API const char* VIZL_resType(const char* name);

/** @} */

/** @defgroup handles Handles
 * @{ */

/** Makes an empty image, 0 by 0 pixels, that other functions can fill.
 * @param[out] handle not null: the handle, owned by the caller.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (null handle). */
VIZL_API int32_t VIZL_CreateEmptyImage(HImage* handle);

/** Frees an image. A handle that was never given out or is already free does nothing and is no error.
 * @param[in] handle the image.
 * @return VIZLE_OK, else a code of every function. */
VIZL_API int32_t VIZL_FreeImage(HImage handle);

/** @} */

/** @defgroup loading Loading
 * @{ */

/** Loads a BMP, JPEG or PNG file as a colour picture without alpha into a new handle. The end of the name alone
 * decides the format, in any case of letters: bmp; jpg, jpe, jfif, jpeg; png.
 * @param[out] handle not null: the handle, owned by the caller.
 * @param[in] fileName not null.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (null argument; no memory for the handle itself),
 * VIZLE_CANNOT_OPEN_FILE, VIZLE_UNKNOWN_EXTENSION, VIZLE_BAD_IMAGE_FILE. After the last two *handle names an image that
 * the caller has to free: empty after the former, of no defined content after the latter. After the others *handle is
 * as it was. */
VIZL_API int32_t VIZL_LoadImageFromFile(HImage* handle, const char* fileName);

/** Like VIZL_LoadImageFromFile, but the picture has alpha: that of a PNG file with alpha, else 255.
 * @copydetails VIZL_LoadImageFromFile */
VIZL_API int32_t VIZL_LoadImageFromFileWithAlpha(HImage* handle, const char* fileName);

/** Decodes a JPEG file that lies in memory, as a colour picture without alpha, into a new handle.
 * @param[out] handle not null: the handle, owned by the caller.
 * @param[in] data not null: the file.
 * @param[in] size bytes.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (null argument; no memory for the handle itself),
 * VIZLE_IMAGE_IO_FAILED. After the latter *handle names an image of no defined content that the caller has to free. */
VIZL_API int32_t VIZL_LoadImageFromJpegBuffer(HImage* handle, const unsigned char* data, unsigned int size);

/** Like VIZL_LoadImageFromJpegBuffer, but for a PNG file; alpha is dropped.
 * @copydetails VIZL_LoadImageFromJpegBuffer */
VIZL_API int32_t VIZL_LoadImageFromPngBuffer(HImage* handle, const unsigned char* data, unsigned int size);

/** Like VIZL_LoadImageFromPngBuffer, but the picture has alpha: that of the file, else 255.
 * @copydetails VIZL_LoadImageFromPngBuffer */
VIZL_API int32_t VIZL_LoadImageFromPngBufferWithAlpha(HImage* handle, const unsigned char* data, unsigned int size);

/** Copies raw pixels into a new handle. Gray pixels become a colour picture with three equal channels.
 * @param[out] handle not null: the handle, owned by the caller.
 * @param[in] buffer not null: `height` rows, top row first.
 * @param[in] width pixels; 0 or less gives an empty picture.
 * @param[in] height pixels; 0 or less gives an empty picture.
 * @param[in] scanLine bytes from the start of a row to the start of the next; may be negative.
 * @param[in] mode layout of the buffer.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (null argument; a side too long or no memory for the pixels, and then
 * *handle names an empty image that the caller has to free; no memory for the handle itself, and then *handle is as it
 * was). */
VIZL_API int32_t VIZL_LoadImageFromBuffer(HImage* handle, const unsigned char* buffer, int32_t width, int32_t height,
                                          int32_t scanLine, VIZL_IMAGEMODE mode);

/** Like VIZL_LoadImageFromBuffer, but replaces the picture of an existing handle. Detection on a handle sees the
 * picture of the first detection on it: to detect in the new picture, use a fresh handle.
 * @param[in] image the handle to fill.
 * @param[in] buffer,width,height,scanLine,mode as for VIZL_LoadImageFromBuffer.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (null buffer, bad handle, a side too long). */
VIZL_API int32_t VIZL_AssignImageFromBuffer(HImage image, const unsigned char* buffer, int32_t width, int32_t height,
                                            int32_t scanLine, VIZL_IMAGEMODE mode);

/** @} */

/** @defgroup saving Reading out and saving
 * @{ */

/** The width of a picture.
 * @param[in] image the picture.
 * @param[out] width not null: pixels, 0 for an empty image.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (bad handle, null pointer). */
VIZL_API int32_t VIZL_GetImageWidth(HImage image, int32_t* width);

/** Like VIZL_GetImageWidth, but gives the height.
 * @param[in] image the picture.
 * @param[out] height not null: pixels, 0 for an empty image.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (bad handle, null pointer). */
VIZL_API int32_t VIZL_GetImageHeight(HImage image, int32_t* height);

/** A view of the pixels inside the library. Unlike everywhere else the BOTTOM row comes first. The view holds
 * until the image is next filled or freed.
 * @param[in] image the picture.
 * @param[out] data not null: the first byte of the bottom row, owned by the library; null if there are no pixels.
 * @param[out] width not null: pixels.
 * @param[out] height not null: pixels.
 * @param[out] scanLine not null: bytes from a row to the next one up. It has room for 28 to 31 pixels more than
 *   the width.
 * @param[out] mode not null: the layout; red, green, blue and then alpha, if any.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (bad handle, null pointer). */
VIZL_API int32_t VIZL_GetImageData(HImage image, unsigned char** data, int32_t* width, int32_t* height,
                                   int32_t* scanLine, VIZL_IMAGEMODE* mode);

/** The size of the buffer that VIZL_SaveImageToBuffer fills.
 * @param[in] image the picture.
 * @param[out] size not null: bytes.
 * @param[in] mode the wanted layout.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (bad handle, null size, a size above 2^31 - 1). */
VIZL_API int32_t VIZL_GetImageBufferSize(HImage image, int32_t* size, VIZL_IMAGEMODE mode);

/** Writes the pixels into a caller's buffer, top row first and without padding. Gray is 0.299 red + 0.587 green
 * + 0.114 blue; a picture without alpha gets alpha 255.
 * @param[in] image the picture.
 * @param[out] buffer not null, of the size that VIZL_GetImageBufferSize tells for `mode`; untouched if the image has
 *   no pixels.
 * @param[in] mode the wanted layout.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (bad handle, null buffer, a size above 2^31 - 1). */
VIZL_API int32_t VIZL_SaveImageToBuffer(HImage image, unsigned char* buffer, VIZL_IMAGEMODE mode);

/** Saves a picture. The end of the name decides the format, in any case of letters: bmp (24 bits, no alpha), png,
 * anything else JPEG.
 * @param[in] image the picture.
 * @param[in] fileName not null. An existing file is emptied before the handle is looked at.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (null name; a bad handle, and then an empty file stays),
 * VIZLE_CANNOT_CREATE_FILE, VIZLE_IMAGE_IO_FAILED (an empty file stays; a pipe or a device has got a part). A disk
 * that has no room for a bitmap is not reported: an empty file stays then too. */
VIZL_API int32_t VIZL_SaveImageToFile(HImage image, const char* fileName);

/** Like VIZL_SaveImageToFile, but a JPEG file takes the quality of a context.
 * @copydetails VIZL_SaveImageToFile
 * @param[in] context an unknown one means quality 90. */
VIZL_API int32_t VIZL_SaveImageToFile_C(HImage image, const char* fileName, ContextID context);

/** @} */

/** @defgroup images Image to image
 * These replace the picture of `dest`, layout included. `dest` has to exist and may be the same as `source`.
 * The picture that detection on `dest` sees, if one has run, stays as it was.
 * @{ */

/** Copies a picture.
 * @param[in] source the picture to read.
 * @param[in] dest the handle that receives the copy.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (bad handle). */
VIZL_API int32_t VIZL_CopyImage(HImage source, HImage dest);

/** Scales a picture: by area mean below 1, by a six-tap filter from 1 upward.
 * @param[in] source the picture to read.
 * @param[in] ratio finite, destination size by source size. A side comes to floor(side * (ratio - 2e-16)), so a
 *   product that is whole loses a pixel while the ratio is below about 2: 100 by 0.5 gives 49. To get
 *   n pixels ask for (n + 0.4) / side. A ratio that leaves no pixel gives an empty picture.
 * @param[in] dest the handle that receives the result.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (bad handle, ratio not finite, result too large). */
VIZL_API int32_t VIZL_ResizeImage(HImage source, double ratio, HImage dest);

/** Turns a picture about its middle. The size stays; what turns out of it is lost, and what no pixel reaches is
 * black (opaque if there is alpha).
 * @param[in] source the picture to read.
 * @param[in] angle finite, degrees, positive clockwise.
 * @param[in] dest the handle that receives the result.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (bad handle, angle not finite). */
VIZL_API int32_t VIZL_RotateImage(HImage source, double angle, HImage dest);

/** Like VIZL_RotateImage, but about the point (xCenter, yCenter).
 * @copydetails VIZL_RotateImage
 * @param[in] xCenter finite, pixels.
 * @param[in] yCenter finite, pixels. */
VIZL_API int32_t VIZL_RotateImageCenter(HImage source, double angle, double xCenter, double yCenter, HImage dest);

/** Cuts out a rectangle. It may reach beyond the picture; what lies there is black, with alpha 0 if there is
 * alpha (255 where the rectangle misses the picture wholly).
 * @param[in] source the picture to read.
 * @param[in] x1,y1,x2,y2 pixels, inclusive. x2 below x1 or y2 below y1 gives an empty picture.
 * @param[in] dest the handle that receives the result.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (bad handle, rectangle too large). */
VIZL_API int32_t VIZL_CopyRect(HImage source, int32_t x1, int32_t y1, int32_t x2, int32_t y2, HImage dest);

/** Puts a picture onto a background after matching its colours to what it covers: each colour is divided by the ratio
 * of the brightness around it to that of the background there. Opaque pixels follow the broad illumination (about
 * a third of the overlay's width around), transparent ones the fine. Then alpha is raised 3.375 times, so 76 and more
 * become opaque, and the overlay is composited; its last column and its top row are left out. What hangs over the
 * background's edge is cut off, and counts as black in the matching.
 * @param[in] image the overlay, with alpha.
 * @param[in] x,y pixels of the background: where the overlay's top left pixel falls. Any place is allowed.
 * @param[in] back the background, with alpha.
 * @param[in] result the handle that receives the composition, with alpha and of the background's size. It may be
 *   `image` or `back`.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (bad handle; a picture without alpha, that is not of
 * VIZL_IMAGE_COLOR32; too little memory: about 100 bytes are needed for each pixel of the overlay). */
VIZL_API int32_t VIZL_PutImageAdjustColors(HImage image, int32_t x, int32_t y, HImage back, HImage result);

/** @} */

/** @defgroup settings Settings and contexts
 * @{ */

/** Makes a context with the default settings: any rotation and angles on, internal width 384, threshold 3, JPEG
 * quality 90, no user field; whatever the process-wide settings are.
 * @param[out] id not null: the context, owned by the caller, 1 or more, lowest free number first.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (null id). */
VIZL_API int32_t VIZL_CreateContext_ID(ContextID* id);

/** Frees a context, and its user field with free().
 * @param[in] id the context.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (0 or an id that names no context). */
VIZL_API int32_t VIZL_FreeContext_ID(ContextID id);

/** Stores a pointer in a context. A pointer stored before is overwritten, not freed. Contexts that are used with
 * the pc functions hold a record of theirs there; an application must not store its own in those.
 * @param[in] id the context.
 * @param[in] value not null, from malloc(): the library takes ownership.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (null value, 0 or an id that names no context; ownership then stays).
 */
VIZL_API int32_t VIZL_SetContextUserField(ContextID id, void* value);

/** Reads the pointer of a context.
 * @param[in] id the context.
 * @param[out] value not null: the pointer, still owned by the library; null if none was stored.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (null value, 0 or an id that names no context). */
VIZL_API int32_t VIZL_GetContextUserField(ContextID id, void** value);

/** Sets how detection searches.
 * @param[in] handleArbitraryRotations true also looks for faces tilted by about 15 degrees to either side (default),
 *   false only for upright ones, in a third of the scans.
 * @param[in] determineFaceRotationAngle true works out each face's angle in steps of 1.5 degrees (default); false
 *   leaves it at -15, 0 or 15.
 * @param[in] internalResizeWidth 20 or more, default 384: detection scales the picture so that its longer side
 *   fits this and its shorter two thirds of this. Faces below about 20 pixels at that
 *   scale are not seen; more is slower.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (width below 20).
 * @par Threads
 * The three values are stored one after the other; a detection that starts meanwhile may see a mix. */
VIZL_API int32_t VIZL_SetFaceDetectionParameters(bool handleArbitraryRotations, bool determineFaceRotationAngle,
                                                 int32_t internalResizeWidth);

/** Like VIZL_SetFaceDetectionParameters, but for a context.
 * @copydetails VIZL_SetFaceDetectionParameters
 * @param[in] context an unknown one is refused with VIZLE_INVALID_ARGUMENT. */
VIZL_API int32_t VIZL_SetFaceDetectionParameters_C(bool handleArbitraryRotations, bool determineFaceRotationAngle,
                                                   int32_t internalResizeWidth, ContextID context);

/** Sets how many like hits make a face. More gives fewer false faces and loses more true ones.
 * @param[in] threshold 1 or more, default 3.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (threshold below 1). */
VIZL_API int32_t VIZL_SetFaceDetectionThreshold(int32_t threshold);

/** Like VIZL_SetFaceDetectionThreshold, but for a context.
 * @copydetails VIZL_SetFaceDetectionThreshold
 * @param[in] context an unknown one is refused with VIZLE_INVALID_ARGUMENT. */
VIZL_API int32_t VIZL_SetFaceDetectionThreshold_C(int32_t threshold, ContextID context);

/** Sets the quality of JPEG files.
 * @param[in] quality 0 to 100, default 90.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (quality out of range). */
VIZL_API int32_t VIZL_SetJpegCompressionQuality(int32_t quality);

/** Like VIZL_SetJpegCompressionQuality, but for a context.
 * @copydetails VIZL_SetJpegCompressionQuality
 * @param[in] context an unknown one is refused with VIZLE_INVALID_ARGUMENT. */
VIZL_API int32_t VIZL_SetJpegCompressionQuality_C(int32_t quality, ContextID context);

/** How sure the last VIZL_DetectFace was: the number of like hits at the face, 0 if it found none. Not a
 * probability.
 * @param[out] confidence not null.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (null pointer).
 * @par Threads
 * One value for the process, that of the last call of any thread. */
VIZL_API int32_t VIZL_GetDetectedFaceConfidence(int32_t* confidence);

/** @} */

/** @defgroup faces Faces
 * The first detection on a handle makes a gray copy of the picture inside, which later detections on it use:
 * they see the picture as it was then, also after the handle was filled anew. For a _C function an unknown
 * context is no error: it means the default settings with threshold 5.
 * @{ */

/** Finds the strongest face.
 * @param[in] image the picture.
 * @param[out] position not null: the face. After VIZLE_NO_FACE its w is 0 and the other fields have no meaning.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (bad handle, null position), VIZLE_IMAGE_TOO_SMALL, VIZLE_NO_FACE.
 * VIZL_GetDetectedFaceConfidence then tells the face's confidence; a bad argument leaves that value alone. */
VIZL_API int32_t VIZL_DetectFace(HImage image, TFacePosition* position);

/** Like VIZL_DetectFace, but with the settings of a context.
 * @copydetails VIZL_DetectFace
 * @param[in] context an unknown one means the default settings with threshold 5. */
VIZL_API int32_t VIZL_DetectFace_C(HImage image, TFacePosition* position, ContextID context);

/** Finds all faces.
 * @param[in] image the picture.
 * @param[out] count not null: the number of faces written; 0 after VIZLE_NO_FACE.
 * @param[out] faces not null: the faces. Those that find no room are dropped without an error.
 * @param[in] maxSizeInBytes bytes of `faces`, at least 24.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (bad handle, null pointer), VIZLE_BUFFER_TOO_SMALL,
 * VIZLE_IMAGE_TOO_SMALL, VIZLE_NO_FACE. */
VIZL_API int32_t VIZL_DetectMultipleFaces(HImage image, int32_t* count, TFacePosition* faces, int32_t maxSizeInBytes);

/** Like VIZL_DetectMultipleFaces, but with the settings of a context.
 * @copydetails VIZL_DetectMultipleFaces
 * @param[in] context an unknown one means the default settings with threshold 5. */
VIZL_API int32_t VIZL_DetectMultipleFaces_C(HImage image, int32_t* count, TFacePosition* faces, int32_t maxSizeInBytes,
                                            ContextID context);

/** @} */

/** @defgroup points Points of a face
 * The search always runs in a picture of 256 by 256 pixels that is cut out around the face, so its time does not
 * depend on the size of the image. It draws from rand() after a call of srand() with a fixed number: the
 * application's own sequence starts anew with each search. Results repeat as long as no other thread draws from
 * rand() meanwhile; parallel searches are safe but may differ from run to run by a pixel or more. A weak fit is
 * returned like a strong one: see the confidences. Faces that lie more than 10000 pixels right of or below the
 * image's top left corner are out of the search's reach and give points without meaning or a refusal.
 * @{ */

/** Finds the strongest face and its forty points.
 * @param[in] image the picture.
 * @param[out] points not null: the points; all 0 after VIZLE_NO_FACE.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (bad handle, null points), VIZLE_IMAGE_TOO_SMALL, VIZLE_NO_FACE. */
VIZL_API int32_t VIZL_DetectFacialFeatures(HImage image, TPoint (*points)[40]);

/** Like VIZL_DetectFacialFeatures, but with the settings of a context.
 * @copydetails VIZL_DetectFacialFeatures
 * @param[in] context an unknown one means the default settings with threshold 5. */
VIZL_API int32_t VIZL_DetectFacialFeatures_C(HImage image, TPoint (*points)[40], ContextID context);

/** Like VIZL_DetectFacialFeatures, but tells how sure each point is.
 * @copydetails VIZL_DetectFacialFeatures
 * @param[out] confidences may be null: one value a point, higher is better, at most 1.5, no lower bound. On portraits
 * half of the points of eyes, brows, nose and mouth are above 1.07; those above 1.2 are off by 2 % of the eyes'
 * distance on average, those below 0.8 by 7 %. As they were if no face was found. */
VIZL_API int32_t VIZL_DetectFacialFeaturesEx(HImage image, TPoint (*points)[40], float (*confidences)[40]);

/** Like VIZL_DetectFacialFeaturesEx, but with the settings of a context.
 * @copydetails VIZL_DetectFacialFeaturesEx
 * @param[in] context an unknown one means the default settings with threshold 5. */
VIZL_API int32_t VIZL_DetectFacialFeaturesEx_C(HImage image, TPoint (*points)[40], float (*confidences)[40],
                                               ContextID context);

/** Finds the forty points of a face whose position is known.
 * @param[in] image the picture.
 * @param[in] face not null: the face, as a detection tells it. What of it lies outside the image counts as black.
 * @param[out] points not null: the points, all inside the image.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (bad handle, null pointer, a face of negative width, an angle that is
 * not finite, a face so large or so far out that its surroundings don't fit into an image). */
VIZL_API int32_t VIZL_DetectFacialFeaturesInRegion(HImage image, const TFacePosition* face, TPoint (*points)[40]);

/** Like VIZL_DetectFacialFeaturesInRegion; the context has no effect.
 * @copydetails VIZL_DetectFacialFeaturesInRegion
 * @param[in] context ignored; need not exist. */
VIZL_API int32_t VIZL_DetectFacialFeaturesInRegion_C(HImage image, const TFacePosition* face, TPoint (*points)[40],
                                                     ContextID context);

/** Like VIZL_DetectFacialFeaturesInRegion, but tells how sure each point is.
 * @copydetails VIZL_DetectFacialFeaturesInRegion
 * @param[out] confidences may be null: one value a point, higher is better, no fixed lower bound. */
VIZL_API int32_t VIZL_DetectFacialFeaturesInRegionEx(HImage image, const TFacePosition* face, TPoint (*points)[40],
                                                     float (*confidences)[40]);

/** Like VIZL_DetectFacialFeaturesInRegionEx; the context has no effect.
 * @copydetails VIZL_DetectFacialFeaturesInRegionEx
 * @param[in] context ignored; need not exist. */
VIZL_API int32_t VIZL_DetectFacialFeaturesInRegionEx_C(HImage image, const TFacePosition* face, TPoint (*points)[40],
                                                       float (*confidences)[40], ContextID context);

/** Finds the eyes of a face whose position is known. The face is taken as upright: its angle has no effect, and beyond
 * about 10 degrees the result gets worse. There is always a result, also where there is no eye.
 * @param[in] image the picture.
 * @param[in] face not null: the face, as detection gives it. It may reach beyond the picture, which counts as black
 *   there.
 * @param[out] points not null: entries 0 and 1 are the centres of the eyes, entry 0 the one at the smaller x, in pixels
 * of the picture and inside it; the other 38 stay as they were. After a failure all 40 do.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (bad handle, null pointer, empty image, negative width, a face larger
 * than an image may be).
 * @par Threads
 * Any number of calls at once, on one image too. */
VIZL_API int32_t VIZL_DetectEyesInRegion(HImage image, const TFacePosition* face, TPoint (*points)[40]);

/** Like VIZL_DetectEyesInRegion; the context has no effect.
 * @copydetails VIZL_DetectEyesInRegion
 * @param[in] context ignored; need not exist. */
VIZL_API int32_t VIZL_DetectEyesInRegion_C(HImage image, const TFacePosition* face, TPoint (*points)[40],
                                           ContextID context);

/** @} */

/** @defgroup portraits Portraits
 * @{ */

/** Tells which rectangle of a picture makes a good portrait of its largest face. The rectangle is upright, has
 * the aspect ratio of width by height up to rounding, and lies inside the picture. Its natural size is 1.2 faces
 * along its shorter side; where the picture has less room it is smaller.
 * @param[in] image the picture.
 * @param[in] width,height pixels, 1 or more: the wanted output size, of which only the ratio counts here.
 * @param[in] faceScale finite, above 0: zoom. The natural size is divided by it: 2 shows half as much.
 * @param[in] shiftX,shiftY finite: how far the rectangle's centre lies from the face's, in natural widths and
 *   heights; positive is right and down.
 * @param[in] useFeatures true searches the points of the face and frames by its eyes: centred between them, 2.4 of
 *   their distances counting as the face's width; false frames by the face as detected.
 * @param[out] x1,y1,x2,y2 not null: the rectangle, inclusive corners.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (bad handle, null pointer, a number out of range or so large that the
 * rectangle can't be computed), VIZLE_IMAGE_TOO_SMALL, VIZLE_NO_FACE. */
VIZL_API int32_t VIZL_GetFacePosition(HImage image, int32_t width, int32_t height, double faceScale, double shiftX,
                                      double shiftY, bool useFeatures, int32_t* x1, int32_t* y1, int32_t* x2,
                                      int32_t* y2);

/** Like VIZL_GetFacePosition, but detects with the settings of a context.
 * @copydetails VIZL_GetFacePosition
 * @param[in] context an unknown one means the default settings with threshold 5. */
VIZL_API int32_t VIZL_GetFacePosition_C(HImage image, int32_t width, int32_t height, double faceScale, double shiftX,
                                        double shiftY, bool useFeatures, int32_t* x1, int32_t* y1, int32_t* x2,
                                        int32_t* y2, ContextID context);

/** Cuts the rectangle of VIZL_GetFacePosition out of a picture and scales it to exactly width by height.
 * @param[in] image,width,height,faceScale,shiftX,shiftY,useFeatures as for VIZL_GetFacePosition.
 * @param[in] destination the handle that receives the portrait; may be the same as `image`.
 * @return VIZLE_OK, else the codes of VIZL_GetFacePosition. */
VIZL_API int32_t VIZL_PortraitCut(HImage image, int32_t width, int32_t height, double faceScale, double shiftX,
                                  double shiftY, bool useFeatures, HImage destination);

/** Like VIZL_PortraitCut, but detects with the settings of a context.
 * @copydetails VIZL_PortraitCut
 * @param[in] context an unknown one means the default settings with threshold 5. */
VIZL_API int32_t VIZL_PortraitCut_C(HImage image, int32_t width, int32_t height, double faceScale, double shiftX,
                                    double shiftY, bool useFeatures, HImage destination, ContextID context);

/** Cuts the square around forty known points of a face out of a picture, scales it to `width` and tells where the
 * points lie in the result.
 * @param[in] image the picture.
 * @param[in] points not null; in pixels from 0 to 10000. The square may reach beyond the picture, where it is
 *   black.
 * @param[in] width pixels, 1 or more: the result's side, up to about a pixel.
 * @param[in] height pixels; only settles a rounding.
 * @param[out] destination not null: a new handle, owned by the caller.
 * @param[out] destinationPoints not null: the points in pixels of the result; may be the same as `points`.
 * @return VIZLE_OK, else VIZLE_INVALID_ARGUMENT (bad handle, null pointer, width below 1, points all in one place, a
 * square or result too large). */
VIZL_API int32_t VIZL_ExtractFaceImage(HImage image, TPoint (*points)[40], int32_t width, int32_t height,
                                       HImage* destination, TPoint (*destinationPoints)[40]);

/** @} */

#ifdef __cplusplus
}
#endif

#endif
