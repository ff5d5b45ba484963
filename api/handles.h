// The table of image handles.
//
// mutex_images and the counter images_being_read form a lock for many readers or one writer. Readers (lookups)
// take the mutex only to count themselves in and out, so they never wait for each other. Writers (creation and
// freeing, which may move the array) wait until the counter is 0 and then hold the mutex. What is behind a
// record, the pixels, is guarded by nothing: the caller keeps a handle that is being worked on from being freed
// or filled.
#pragma once

#include <pthread.h>

#include <atomic>
#include <memory>
#include <utility>
#include <vector>

#include "api/vizl_api.h"
#include "image/TIppiImage.h"

struct ippiImgStruct {
  TIppiImage* Image = nullptr;                       // owned; stale while Freed
  std::atomic<TIppiImage*> DetectionCopy = nullptr;  // owned, gray, made by the first detection; stale while Freed
  bool Freed = false;
};

// Indexed by handle. Records are reused with their slot and deleted only by VIZL_Finalize.
extern std::vector<ippiImgStruct*>& Images;
extern pthread_mutex_t* mutex_images;

void IncImagesReads();
void DecImagesReads();
int GetImagesReads();

// The caller has a lookup open.
bool ValidImage(HImage handle);

// A lookup, open for the life of the object.
class TImagesLookup {
 public:
  TImagesLookup() { IncImagesReads(); }
  ~TImagesLookup() { DecImagesReads(); }
  TImagesLookup(const TImagesLookup&) = delete;
  TImagesLookup& operator=(const TImagesLookup&) = delete;

  // The record of a valid handle, or null.
  ippiImgStruct* Find(HImage handle) const { return ValidImage(handle) ? Images[handle] : nullptr; }
};

// One whole lookup: the record of a valid handle, or null.
ippiImgStruct* FindImage(HImage handle);

// A new empty image of mode imRGB24. Writes its handle and returns its record; null for a null `handle`.
ippiImgStruct* NewImage(HImage* handle);
// Frees the image; does nothing for a handle that is not valid.
void FreeImage(HImage handle);
// Frees every image and record and empties the table.
void FreeAllImages();
// Empties the table without releasing anything, for a repeated VIZL_Initialize.
void AbandonAllImages();

// The gray copy on which detections of this record run, made if there is none yet. Of two threads that make
// it at once both get the same one.
TIppiImage* DetectionCopyOf(ippiImgStruct& record);

// Lets `fill` make a new image and puts it in the place of the record's image. The source of `fill` may thus be
// that very image, and if `fill` throws, the record is as it was.
template <typename TFill>
void ReplaceImage(ippiImgStruct& record, TFill fill) {
  auto fresh = std::make_unique<TIppiImage>(imRGB24);
  fill(*fresh);
  delete std::exchange(record.Image, fresh.release());
}
