// Disks that fill up, reads that fail, names that name no file, and descriptors that are not to be had: the codes, what
// is left of the files, and no descriptor lost.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>

#include "stdio_hooks.h"
#include "world.h"

namespace {

namespace fs = std::filesystem;

class FileFaults : public testing::Test {
 protected:
  void SetUp() override { world.Prepare(); }
  // Whatever a test does, no picture changes and no descriptor stays open.
  void TearDown() override {
    StopEvents();
    world.Restore();
    EXPECT_EQ(openDescriptors(), descriptors);
    world.Prepare();
    EXPECT_TRUE(world.Pictures() == pictures);
  }

  int32_t Load(const std::string& name) { return VIZL_LoadImageFromFile(&world.out.handle, name.c_str()); }
  int32_t Save(const std::string& name) { return VIZL_SaveImageToFile(TWorld::kFace, name.c_str()); }
  // Neither a handle is made nor one told.
  void ExpectNotLoaded(const std::string& name, int32_t code) {
    EXPECT_EQ(Load(name), code) << name;
    EXPECT_EQ(world.out.handle, TOutputs().handle) << name;
  }
  std::string InFolder(const std::string& name) const { return world.folder / name; }

  TWorld world;
  const std::ptrdiff_t descriptors = openDescriptors();
  const std::vector<std::string> pictures = (world.Prepare(), world.Pictures());
};

// Files may grow to that many bytes while it lives: a disk with so much room.
class TRoom {
 public:
  explicit TRoom(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limited = {bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limited);
  }
  ~TRoom() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, signal_);
  }
  TRoom(const TRoom&) = delete;
  TRoom& operator=(const TRoom&) = delete;

 private:
  rlimit before_;
  void (*signal_)(int) = std::signal(SIGXFSZ, SIG_IGN);
};

TEST_F(FileFaults, AFullDiskLeavesAnEmptyFile) {
  for (const std::string& name : {world.jpegOutput, world.pngOutput, world.bmpOutput}) {
    ASSERT_EQ(Save(name), VIZLE_OK);
    const std::vector<unsigned char> whole = readFile(name);
    // A bitmap's writing reports nothing: that is told in the interface.
    const int32_t code = name == world.bmpOutput ? VIZLE_OK : VIZLE_IMAGE_IO_FAILED;
    for (std::size_t room = 0; room < whole.size(); room += room < 60 ? 9 : 3989) {
      {
        const TRoom limited(room);
        ASSERT_EQ(Save(name), code) << name << " " << room;
      }
      ASSERT_EQ(fs::file_size(name), 0U) << name << " " << room;
    }
    const TRoom limited(whole.size());
    EXPECT_EQ(Save(name), VIZLE_OK);
    EXPECT_TRUE(readFile(name) == whole);
  }
}

TEST_F(FileFaults, LinksAndPermissionsOutliveAFailedSave) {
  const std::string file = InFolder("kept.png"), link = InFolder("link.png"), hardLink = InFolder("hard.png");
  ASSERT_EQ(Save(file), VIZLE_OK);
  fs::create_symlink(file, link);
  fs::create_hard_link(file, hardLink);
  ASSERT_EQ(chmod(file.c_str(), 0600), 0);
  {
    const TRoom limited(500);
    EXPECT_EQ(Save(link), VIZLE_IMAGE_IO_FAILED);
  }
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(fs::file_size(hardLink), 0U);
  EXPECT_EQ(static_cast<int>(fs::status(file).permissions()), 0600);
  EXPECT_EQ(Save(link), VIZLE_OK);
  EXPECT_EQ(Load(hardLink), VIZLE_OK);
}

TEST_F(FileFaults, DevicesAndPipesAreWrittenButNeverEmptied) {
  fs::create_symlink("/dev/full", InFolder("full.png"));
  EXPECT_EQ(Save(InFolder("full.png")), VIZLE_IMAGE_IO_FAILED);
  EXPECT_EQ(Save("/dev/full"), VIZLE_IMAGE_IO_FAILED);
  EXPECT_TRUE(fs::is_character_file("/dev/full"));
  EXPECT_EQ(Save("/dev/null"), VIZLE_OK);

  const std::string pipe = InFolder("pipe.jpg");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  std::FILE* const reader = std::fopen(pipe.c_str(), "r+");  // a pipe holds 64 KiB
  ASSERT_EQ(Save(pipe), VIZLE_OK);
  ASSERT_EQ(Save(world.jpegOutput), VIZLE_OK);
  std::vector<unsigned char> piped(readFile(world.jpegOutput).size());
  EXPECT_EQ(std::fread(piped.data(), 1, piped.size(), reader), piped.size());
  EXPECT_TRUE(piped == readFile(world.jpegOutput));
  std::fclose(reader);
  unlink(pipe.c_str());
}

TEST_F(FileFaults, NamesThatNameNoFile) {
  const std::string regular = world.jpegFile;
  for (const std::string& name : {std::string(), std::string(5000, 'x') + ".png", std::string(300, 'x') + ".bmp",
                                  InFolder("no_folder/a.jpg"), regular + "/a.png"}) {
    ExpectNotLoaded(name, VIZLE_CANNOT_OPEN_FILE);
    EXPECT_EQ(Save(name), VIZLE_CANNOT_CREATE_FILE) << name;
  }
  EXPECT_EQ(VIZL_LoadImageFromFile(&world.out.handle, nullptr), VIZLE_INVALID_ARGUMENT);
  EXPECT_EQ(VIZL_SaveImageToFile(TWorld::kFace, nullptr), VIZLE_INVALID_ARGUMENT);
}

TEST_F(FileFaults, FoldersInThePlaceOfFiles) {
  for (const char* name : {"folder.jpg", "folder.png", "folder.bmp"}) {
    fs::create_directory(InFolder(name));
    EXPECT_EQ(Load(InFolder(name)), VIZLE_BAD_IMAGE_FILE) << name;
    EXPECT_EQ(VIZL_FreeImage(world.out.handle), VIZLE_OK);
    EXPECT_EQ(Save(InFolder(name)), VIZLE_CANNOT_CREATE_FILE) << name;
  }
}

TEST_F(FileFaults, WhatPermissionsForbid) {
  const bool root = geteuid() == 0;
  const std::string closed = InFolder("closed");
  fs::create_directory(closed);
  ASSERT_EQ(chmod(closed.c_str(), 0555), 0);
  ASSERT_EQ(chmod(world.pngFile.c_str(), 0000), 0);
  constexpr uid_t kNobody = 65534;
  ASSERT_EQ(seteuid(root ? kNobody : geteuid()), 0);
  ExpectNotLoaded(world.pngFile, VIZLE_CANNOT_OPEN_FILE);
  EXPECT_EQ(Save(closed + "/a.png"), VIZLE_CANNOT_CREATE_FILE);
  EXPECT_EQ(Save(world.pngFile), VIZLE_CANNOT_CREATE_FILE);
  ASSERT_EQ(seteuid(root ? 0 : geteuid()), 0);
  EXPECT_EQ(readFile(world.pngFile).empty(), !root);
  EXPECT_TRUE(fs::is_empty(closed));
  chmod(closed.c_str(), 0755);
}

TEST_F(FileFaults, NoDescriptorLeft) {
  rlimit before;
  getrlimit(RLIMIT_NOFILE, &before);
  const rlimit none = {0, before.rlim_max};
  // Meanwhile nothing but these calls: the sanitizer that looks at virtual tables takes descriptors itself.
  const char *const input = world.jpegFile.c_str(), *const output = world.jpegOutput.c_str();
  HImage* const handle = &world.out.handle;
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
  const int32_t loaded = VIZL_LoadImageFromFile(handle, input);
  const int32_t saved = VIZL_SaveImageToFile(TWorld::kFace, output);
  const int32_t cut = pcPortraitCut(input, output, 30, 40);
  setrlimit(RLIMIT_NOFILE, &before);
  EXPECT_EQ(loaded, VIZLE_CANNOT_OPEN_FILE);
  EXPECT_EQ(saved, VIZLE_CANNOT_CREATE_FILE);
  EXPECT_EQ(cut, VIZLE_CANNOT_OPEN_FILE);
  EXPECT_EQ(Load(world.jpegFile), VIZLE_OK);
}

// A program may close its standard streams: files then get the numbers 0 to 2.
TEST_F(FileFaults, WithoutStandardInput) {
  const int kept = dup(0);
  close(0);
  for (const std::string& name : {world.jpegFile, world.pngFile, world.bmpFile}) EXPECT_EQ(Load(name), VIZLE_OK);
  EXPECT_EQ(Save(world.pngOutput), VIZLE_OK);
  if (kept >= 0) {
    dup2(kept, 0);
    close(kept);
  }
  EXPECT_TRUE(readFile(world.pngOutput) == world.png);
}

TEST_F(FileFaults, ReadsThatFail) {
  for (const std::string& name : {world.jpegFile, world.pngFile, world.bmpFile}) {
    BeforeRead(0, nullptr);
    ASSERT_EQ(Load(name), VIZLE_OK);
    const int reads = StopEvents();
    for (int n = 1; n <= reads; ++n) {
      BeforeRead(n, BreakReads);
      // Rows of a bitmap that don't come stay white; its header has to.
      const int32_t code = name == world.bmpFile && n > 1 ? VIZLE_OK : VIZLE_BAD_IMAGE_FILE;
      // What the stream had read ahead may be all that the last read wants.
      const bool readAhead = name == world.pngFile && n == reads;
      const int32_t told = Load(name);
      EXPECT_TRUE(told == code || (readAhead && told == VIZLE_OK)) << name << ", read " << n << " of " << reads;
      EXPECT_EQ(VIZL_FreeImage(world.out.handle), VIZLE_OK);
    }
  }
}

TEST_F(FileFaults, FilesThatShrinkOrVanishOnTheWay) {
  for (const std::string& name : {world.jpegFile, world.pngFile, world.bmpFile}) {
    for (int n = 1; n < 40; n += 3) {
      const std::string copy = InFolder("copy" + fs::path(name).extension().string());
      fs::copy_file(name, copy, fs::copy_options::overwrite_existing);
      BeforeRead(n, [&](std::FILE*) { ASSERT_EQ(truncate(copy.c_str(), 100), 0); });
      const int32_t code = Load(copy);
      EXPECT_TRUE(code == VIZLE_OK || code == VIZLE_BAD_IMAGE_FILE) << name << " " << code;
      EXPECT_EQ(VIZL_FreeImage(world.out.handle), VIZLE_OK);
      StopEvents();
      fs::copy_file(name, copy, fs::copy_options::overwrite_existing);
      // Opened once to see whether it can be, and once to be read.
      BeforeOpen(2, [&] { unlink(copy.c_str()); });
      EXPECT_EQ(Load(copy), VIZLE_BAD_IMAGE_FILE);
      EXPECT_EQ(VIZL_FreeImage(world.out.handle), VIZLE_OK);
      StopEvents();
    }
  }
}

TEST_F(FileFaults, ATargetThatCantBeOpenedAgain) {
  BeforeOpen(2, [&] {
    unlink(world.pngOutput.c_str());
    fs::create_directory(world.pngOutput);
  });
  EXPECT_EQ(Save(world.pngOutput), VIZLE_IMAGE_IO_FAILED);
  StopEvents();
  fs::remove(world.pngOutput);
}

}  // namespace
