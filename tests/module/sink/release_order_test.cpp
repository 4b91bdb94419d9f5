// In which order a sink that is deleted gives back what it holds.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <malloc.h>
#include <unistd.h>

#include <climits>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "abi/host_functions.h"
#include "module/sink/pcm_sink_iso.h"
#include "tests/fake_host/files.h"

namespace {

bool g_recording = false;
std::vector<std::string> g_released;

void recordClosed(int fd) {
  char path[PATH_MAX] = {};
  const std::string link = "/proc/self/fd/" + std::to_string(fd);
  if (readlink(link.c_str(), path, sizeof path - 1) < 0) return;
  g_released.push_back(std::string("file ") + (strrchr(path, '/') + 1));
}

// Only the texts of the test, in whose blocks nothing else stands.
void recordFreed(const void* block) {
  for (const char* text : {"First", "Second", "TITLE", "Night Drive"}) {
    const size_t size = strlen(text) + 1;
    if (malloc_usable_size(const_cast<void*>(block)) >= size && memcmp(block, text, size) == 0) {
      g_released.push_back(std::string("text ") + text);
    }
  }
}

}  // namespace

extern "C" {
int __real_close(int fd);
int __wrap_close(int fd);
int __wrap_close(int fd) {
  if (g_recording) recordClosed(fd);
  return __real_close(fd);
}
void __real_free(void* block);
void __wrap_free(void* block);
void __wrap_free(void* block) {
  if (g_recording && block) {
    g_recording = false;  // recording frees blocks of its own
    recordFreed(block);
    g_recording = true;
  }
  __real_free(block);
}
}

namespace {

int enumMarkers(int idx, bool* isrgn, double* pos, double* rgnend, const char** name, int*) {
  if (idx > 1) return 0;
  *isrgn = false;
  *pos = idx == 0 ? 0.0 : 5.0;
  if (rgnend) *rgnend = 0.0;
  *name = idx == 0 ? "First" : "Second";
  return idx + 1;
}

const char* enumMetadata(int idx, const char** key) {
  if (idx > 0) return nullptr;
  *key = "CUE:DISC_TITLE";
  return "Night Drive";
}

TEST(ReleaseOrder, FilesThenTitlesFromTheLastOnThenMetadata) {
  const fake_host::TempFolder folder;
  EnumProjectMarkers = enumMarkers;
  EnumCurrentSinkMetadata = enumMetadata;
  auto* const sink = new PCM_sink_iso(folder.file("disc.cue").c_str(), nullptr, 0, 2, 44100, false);
  ASSERT_TRUE(sink->isUsable());
  std::vector<double> silence(6 * 44100);
  double* channels[] = {silence.data(), silence.data()};
  sink->WriteDoubles(channels, static_cast<int>(silence.size()), 2, 0, 1);
  g_recording = true;
  delete sink;
  g_recording = false;
  EXPECT_THAT(g_released, testing::ElementsAre("file disc.cue", "file disc.bin", "text Second",
                                               "text First", "text TITLE", "text Night Drive"));
}

TEST(ReleaseOrder, ASinkThatGetsNoImageGivesItsSheetBackAtOnce) {
  const fake_host::TempFolder folder;
  std::filesystem::create_directory(folder.file("disc.bin"));
  const std::string sheet = folder.file("disc.cue");
  const PCM_sink_iso sink(sheet.c_str(), nullptr, 0, 2, 44100, false);
  EXPECT_FALSE(sink.isUsable());
  const YDK_FileWrite other(sheet.c_str(), 0, 0, 0, 0, false, false);
  EXPECT_GE(other.fd, 0) << "the sheet is held";
}

}  // namespace
