/* Loads the library, uses it and unloads it again, over and over, as a host of plug-ins does:
 *
 *   unload_loop LIBRARY PICTURES FOLDER ROUNDS quick|whole [finalize|abandon] [main|thread|lingering]
 *
 * PICTURES has the sample pictures; files are written into FOLDER. "quick" detects a face, and searches points and eyes
 * in every tenth round; "whole" calls nearly everything. "abandon" unloads without VIZL_Finalize. "thread" does the
 * work in a thread that ends before the library is unloaded, "lingering" in one that ends after.
 *
 * To tell the heap exactly, glibc's caches of a thread, which count as in use, are to be off:
 * GLIBC_TUNABLES=glibc.malloc.tcache_count=0.
 *
 * Fails if a call answers another code than expected, the library stays in memory, or, with VIZL_Finalize and more
 * than a dozen rounds, memory or descriptors grow between the first fifth of the rounds and the last. Prints both. */
#include <dirent.h>
#include <dlfcn.h>
#include <malloc.h>
#include <pthread.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "api/pc_api.h"
#include "api/vizl_api.h"

#define FUNCTIONS(X)                   \
  X(VIZL_Initialize)                   \
  X(VIZL_Finalize)                     \
  X(VIZL_LoadImageFromFile)            \
  X(VIZL_LoadImageFromFileWithAlpha)   \
  X(VIZL_CreateEmptyImage)             \
  X(VIZL_FreeImage)                    \
  X(VIZL_CreateContext_ID)             \
  X(VIZL_FreeContext_ID)               \
  X(VIZL_SetFaceDetectionParameters_C) \
  X(VIZL_DetectFace_C)                 \
  X(VIZL_DetectMultipleFaces)          \
  X(VIZL_DetectFacialFeaturesInRegion) \
  X(VIZL_DetectEyesInRegion)           \
  X(VIZL_PortraitCut_C)                \
  X(VIZL_ExtractFaceImage)             \
  X(VIZL_ResizeImage)                  \
  X(VIZL_RotateImage)                  \
  X(VIZL_CopyRect)                     \
  X(VIZL_PutImageAdjustColors)         \
  X(VIZL_SaveImageToFile)              \
  X(pcSetFaceScale_C)                  \
  X(pcPortraitCut_C)

#define MEMBER(name) __typeof__(name)* name##_;
static struct { FUNCTIONS(MEMBER) } api;

static const char* pictures;
static const char* folder;

static void check(int good, const char* what) {
  if (good) return;
  fprintf(stderr, "failed: %s\n", what);
  exit(1);
}

#define OK(call) check((call) == VIZLE_OK, #call)

static void* openLibrary(const char* name) {
  void* library = dlopen(name, RTLD_NOW | RTLD_LOCAL);
  check(library != NULL, name);
#define FIND(name)                                  \
  {                                                 \
    void* address = dlsym(library, #name);          \
    check(address != NULL, #name);                  \
    memcpy(&api.name##_, &address, sizeof address); \
  }
  FUNCTIONS(FIND)
  return library;
}

static const char* path(const char* in, const char* name) {
  static char text[4][4096];
  static int next;
  char* made = text[next++ % 4];
  snprintf(made, sizeof text[0], "%s/%s", in, name);
  return made;
}

static void searchPoints(HImage image, const TFacePosition* face) {
  TPoint points[40];
  HImage cut;
  OK(api.VIZL_DetectFacialFeaturesInRegion_(image, face, &points));
  OK(api.VIZL_DetectEyesInRegion_(image, face, &points));
  OK(api.VIZL_ExtractFaceImage_(image, &points, 64, 64, &cut, &points));
}

static void cutFace(ContextID context, int withPoints) {
  HImage image, portrait;
  TFacePosition face;
  OK(api.VIZL_LoadImageFromFile_(&image, path(pictures, "average_face_1.jpg")));
  OK(api.VIZL_ResizeImage_(image, 0.5004, image));
  OK(api.VIZL_DetectFace_C_(image, &face, context));
  OK(api.VIZL_CreateEmptyImage_(&portrait));
  OK(api.VIZL_PortraitCut_C_(image, 30, 40, 1, 0, 0, false, portrait, context));
  OK(api.VIZL_SaveImageToFile_(portrait, path(folder, "unload.jpg")));
  if (withPoints) searchPoints(image, &face);
  OK(api.VIZL_FreeImage_(image)); /* the others are left to VIZL_Finalize */
}

static void theRest(ContextID context) {
  static const char* const names[] = {"unload.png", "unload.bmp", "unload.jpg"};
  TFacePosition faces[16];
  int32_t count;
  HImage several, overlay, ground;
  OK(api.VIZL_LoadImageFromFile_(&several, path(pictures, "average_faces.png")));
  OK(api.VIZL_DetectMultipleFaces_(several, &count, faces, sizeof faces));
  check(count > 1, "several faces");
  OK(api.VIZL_LoadImageFromFileWithAlpha_(&ground, path(pictures, "average_faces.png")));
  OK(api.VIZL_CreateEmptyImage_(&overlay));
  OK(api.VIZL_CopyRect_(ground, -5, 20, 80, 90, overlay));
  OK(api.VIZL_PutImageAdjustColors_(overlay, 60, 50, ground, ground));
  OK(api.VIZL_RotateImage_(ground, 7, ground));
  for (int i = 0; i < 3; ++i) {
    OK(api.VIZL_SaveImageToFile_(ground, path(folder, names[i])));
    OK(api.VIZL_LoadImageFromFile_(&several, path(folder, names[i])));
  }
  OK(api.pcSetFaceScale_C_(0.8F, context));
  OK(api.pcPortraitCut_C_(path(pictures, "average_face_2.jpg"), path(folder, names[0]), 60, 80, context));
}

struct Round {
  int withPoints, whole, finalize;
  pthread_barrier_t unloaded;
  int lingers;
};

static void work(const struct Round* round) {
  ContextID context;
  OK(api.VIZL_Initialize_(NULL));
  OK(api.VIZL_CreateContext_ID_(&context));
  OK(api.VIZL_SetFaceDetectionParameters_C_(false, false, 100, context));
  cutFace(context, round->withPoints);
  if (round->whole) theRest(context);
  OK(api.VIZL_FreeContext_ID_(context));
  if (round->finalize) OK(api.VIZL_Finalize_());
}

static void* workAside(void* argument) {
  struct Round* round = argument;
  work(round);
  if (round->lingers) {
    pthread_barrier_wait(&round->unloaded); /* the work is done */
    pthread_barrier_wait(&round->unloaded); /* the library is gone */
  }
  return NULL;
}

static void runRound(const char* name, struct Round* round, const char* where) {
  pthread_t thread;
  void* library = openLibrary(name);
  round->lingers = strcmp(where, "lingering") == 0;
  if (strcmp(where, "main") == 0) {
    work(round);
  } else {
    check(pthread_create(&thread, NULL, workAside, round) == 0, "thread");
    if (round->lingers) {
      pthread_barrier_wait(&round->unloaded);
    } else {
      pthread_join(thread, NULL);
    }
  }
  check(dlclose(library) == 0, "dlclose");
  check(dlopen(name, RTLD_NOW | RTLD_NOLOAD) == NULL, "unloading");
  if (round->lingers) {
    pthread_barrier_wait(&round->unloaded);
    pthread_join(thread, NULL);
  }
}

static long residentKiB(void) {
  long pages = 0;
  FILE* file = fopen("/proc/self/statm", "r");
  check(file != NULL && fscanf(file, "%*s %ld", &pages) == 1, "statm");
  fclose(file);
  return pages * (sysconf(_SC_PAGESIZE) / 1024);
}

static int descriptors(void) {
  int count = 0;
  DIR* directory = opendir("/proc/self/fd");
  while (readdir(directory) != NULL) ++count;
  closedir(directory);
  return count;
}

struct Use {
  size_t heap;
  long resident;
  int descriptors;
};

static struct Use used(void) {
  const struct mallinfo2 info = mallinfo2();
  struct Use use = {info.uordblks + info.hblkhd, residentKiB(), descriptors()};
  return use;
}

static int compare(struct Use early, struct Use late, int rounds, int finalize) {
  /* Of the resident memory some is how the heap happens to lie; what is in use is exact. */
  const long slackKiB = 4096;
  const long heap = (long)late.heap - (long)early.heap, resident = late.resident - early.resident;
  printf("over %d rounds: %+ld bytes of heap in use, %+ld KiB resident (of %ld), %+d descriptors\n", rounds, heap,
         resident, late.resident, late.descriptors - early.descriptors);
  if (late.descriptors != early.descriptors) return 1;
  /* Few rounds tell nothing of memory: they are run under a tool that tells more. */
  const int enough = finalize && rounds >= 10;
  return enough && (heap > 0 || resident > slackKiB);
}

int main(int count, char** arguments) {
  struct Round round = {0};
  struct Use early = {0};
  check(count >= 6, "arguments");
  pictures = arguments[2];
  folder = arguments[3];
  const int rounds = atoi(arguments[4]), first = rounds / 5;
  round.whole = strcmp(arguments[5], "whole") == 0;
  round.finalize = count < 7 || strcmp(arguments[6], "abandon") != 0;
  setvbuf(stdout, NULL, _IONBF, 0);
  pthread_barrier_init(&round.unloaded, NULL, 2);
  for (int i = 0; i < rounds; ++i) {
    round.withPoints = round.whole || i % 10 == 0;
    runRound(arguments[1], &round, count < 8 ? "main" : arguments[7]);
    const struct Use now = used(); /* in every round, as it takes memory itself */
    if (i == first) early = now;
  }
  pthread_barrier_destroy(&round.unloaded);
  return compare(early, used(), rounds - first - 1, round.finalize);
}
