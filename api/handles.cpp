#include "api/handles.h"

#include <unistd.h>

#include <algorithm>

#include "api/exported.h"
#include "image/lock.h"
#include "image/never_destroyed.h"

static TNeverDestroyed<std::vector<ippiImgStruct*>> ImagesOfLibrary;
std::vector<ippiImgStruct*>& Images = ImagesOfLibrary.value();
pthread_mutex_t* mutex_images = nullptr;

namespace {

int images_being_read = 0;

void Sleep(unsigned int ms) { usleep(ms * 1000); }

// The right to change the table, held for the life of the object. Waits without limit for lookups to end.
class TImagesChange {
 public:
  TImagesChange() {
    for (;;) {
      while (GetImagesReads() != 0) Sleep(10);
      pthread_mutex_lock(mutex_images);
      if (images_being_read == 0) return;
      pthread_mutex_unlock(mutex_images);
    }
  }
  ~TImagesChange() { pthread_mutex_unlock(mutex_images); }
  TImagesChange(const TImagesChange&) = delete;
  TImagesChange& operator=(const TImagesChange&) = delete;
};

// The index of the first free slot, made at the end of the table if there is none.
std::size_t freeSlot() {
  const auto isFree = [](const ippiImgStruct* record) { return record->Freed; };
  const auto slot = std::find_if(Images.begin(), Images.end(), isFree);
  if (slot != Images.end()) return static_cast<std::size_t>(slot - Images.begin());
  auto record = std::make_unique<ippiImgStruct>();
  record->Freed = true;
  Images.push_back(record.get());
  record.release();
  return Images.size() - 1;
}

}  // namespace

void IncImagesReads() {
  TScopeLock lock(mutex_images);
  ++images_being_read;
}

void DecImagesReads() {
  TScopeLock lock(mutex_images);
  --images_being_read;
}

int GetImagesReads() {
  TScopeLock lock(mutex_images);
  return images_being_read;
}

bool ValidImage(HImage handle) { return handle < Images.size() && !Images[handle]->Freed; }

ippiImgStruct* FindImage(HImage handle) { return TImagesLookup().Find(handle); }

ippiImgStruct* NewImage(HImage* handle) {
  if (handle == nullptr) return nullptr;
  TImagesChange change;
  auto image = std::make_unique<TIppiImage>(imRGB24);
  const std::size_t slot = freeSlot();
  ippiImgStruct* record = Images[slot];
  *handle = static_cast<HImage>(slot);
  record->Image = image.release();
  record->DetectionCopy = nullptr;
  record->Freed = false;
  return record;
}

void FreeImage(HImage handle) {
  TImagesChange change;
  if (!ValidImage(handle)) return;
  ippiImgStruct* record = Images[handle];
  delete record->Image;
  delete record->DetectionCopy;
  record->Freed = true;
}

void FreeAllImages() {
  std::size_t slots;
  {
    TImagesLookup lookup;
    slots = Images.size();
  }
  for (std::size_t slot = 0; slot < slots; ++slot) FreeImage(static_cast<HImage>(slot));
  TImagesLookup lookup;
  for (ippiImgStruct* record : Images) delete record;
  std::vector<ippiImgStruct*>().swap(Images);
}

void AbandonAllImages() {
  TImagesLookup lookup;
  Images.clear();
}

TIppiImage* DetectionCopyOf(ippiImgStruct& record) {
  TIppiImage* copy = record.DetectionCopy.load(std::memory_order_acquire);
  if (copy != nullptr) return copy;
  auto made = std::make_unique<TIppiImage>(imGray8);
  made->CopyFrom(*record.Image);
  // The thread that comes second finds the other's copy in `copy` and drops its own.
  if (record.DetectionCopy.compare_exchange_strong(copy, made.get(), std::memory_order_acq_rel)) copy = made.release();
  return copy;
}

int32_t VIZL_CreateEmptyImage(HImage* handle) {
  return Exported([=] { return NewImage(handle) != nullptr ? VIZLE_OK : VIZLE_INVALID_ARGUMENT; });
}

int32_t VIZL_FreeImage(HImage handle) {
  return Exported([=] {
    FreeImage(handle);
    return VIZLE_OK;
  });
}
