// The album as it reaches the module: every frame once and in order, however far the reading thread
// is ahead.
#include "host/render/module/album_blocks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <thread>

#include "tests/host/render/input/sound_files.h"
#include "tests/host/render/module/memory_file.h"

namespace velmor::render::test {
namespace {

/// Frames of an input, far more than are read ahead.
constexpr size_t kLongInput = 1000003;

/// Which frame it is, in two samples.
int16_t leftOf(size_t frame) {
  return static_cast<int16_t>(frame % 30011);
}
int16_t rightOf(size_t frame) {
  return static_cast<int16_t>(-static_cast<int>(frame / 30011));
}

class Blocks : public testing::Test {
 protected:
  /// An input of `frames` frames that begins with frame `first` of the album.
  void addInput(const char* name, int format, size_t first, size_t frames) {
    std::vector<int16_t> samples;
    for (size_t i = first; i < first + frames; ++i) {
      samples.push_back(leftOf(i));
      samples.push_back(rightOf(i));
    }
    writeShorts(m_folder.path(name), {format, 44100, 2}, samples);
    m_options.inputs.push_back(m_folder.path(name));
  }
  std::unique_ptr<ReadAhead> readAhead(const Album& album) {
    return std::make_unique<ReadAhead>(album, m_plan, Dither::kNone, m_image.path());
  }
  /// Takes all blocks and compares them with the album's frames from `first` on; their number.
  static size_t expectFrames(ReadAhead& audio, int block, size_t first) {
    AlbumBlocks blocks(audio, block);
    size_t at = first;
    int last = block;
    while (const int frames = blocks.next()) {
      EXPECT_EQ(last, block) << "only the last block is shorter";
      last = frames;
      for (int i = 0; i < frames; ++i, ++at) {
        if (discSample(blocks.channels()[0][i]) == leftOf(at) &&
            discSample(blocks.channels()[1][i]) == rightOf(at)) {
          continue;
        }
        ADD_FAILURE() << "frame " << at << " is another";
        return at - first;
      }
    }
    EXPECT_EQ(blocks.next(), 0) << "after the end";
    return at - first;
  }

  Folder m_folder;
  Options m_options;
  TrackPlan m_plan;
  MemoryFile m_image;
};

TEST_F(Blocks, HoldEveryFrameOfAllInputsInOrder) {
  addInput("a.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_24, 0, kLongInput);
  addInput("b.aiff", SF_FORMAT_AIFF | SF_FORMAT_PCM_16, kLongInput, 1);
  addInput("c.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_16, kLongInput + 1, 20000);
  addInput("d.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, kLongInput + 20001, 3);
  const Album album = layOutAlbum(m_options);
  for (const int block : {100, 1024, 65537}) {
    EXPECT_EQ(expectFrames(*readAhead(album), block, 0), kLongInput + 20004) << block;
  }
}

TEST_F(Blocks, BeginAndEndWithTheRangeAskedFor) {
  addInput("a.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 0, kLongInput);
  addInput("b.aiff", SF_FORMAT_AIFF | SF_FORMAT_PCM_16, kLongInput, 50000);
  m_options.start = 22.0;
  m_options.end = 23.5;
  const Album album = layOutAlbum(m_options);
  EXPECT_EQ(expectFrames(*readAhead(album), 1024, 22 * 44100), size_t{66150});
}

TEST_F(Blocks, CanBeLeftWithTheReadingThreadAtRest) {
  addInput("a.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 0, kLongInput);
  const Album album = layOutAlbum(m_options);
  readAhead(album);
  const auto audio = readAhead(album);
  AlbumBlocks blocks(*audio, 1024);
  EXPECT_EQ(blocks.next(), 1024);
}

TEST_F(Blocks, LeaveTheReadingThreadTimeToMakeRoomForTheImage) {
  addInput("a.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 0, kLongInput);
  const Album album = layOutAlbum(m_options);
  m_plan.image_frames = static_cast<int64_t>(kLongInput);
  const auto audio = readAhead(album);
  while (m_image.room() < m_plan.image_frames * disc::kBytesPerFrame / 2) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  EXPECT_EQ(expectFrames(*audio, 1024, 0), kLongInput);
  constexpr int64_t kPage = 4096;
  EXPECT_LT(m_image.room(), m_plan.image_frames * disc::kBytesPerFrame + kPage);
  EXPECT_EQ(m_image.bytes(), 0);
}

TEST_F(Blocks, EndWithTheSentenceOfAnInputThatBreaksOff) {
  addInput("a.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 0, kLongInput);
  addInput("b.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, kLongInput, 1000);
  const Album album = layOutAlbum(m_options);
  std::filesystem::resize_file(m_folder.path("b.wav"), 2000);
  const auto audio = readAhead(album);
  EXPECT_THAT(errorOf([&] { expectFrames(*audio, 1024, 0); }),
              testing::HasSubstr("b.wav\" breaks off before the end of its audio"));
}

TEST_F(Blocks, OfDecodedInputsAreLookedThroughForClipping) {
  std::vector<double> hot(2 * 44100, 0.5);
  hot[2 * 44099] = 1.5;  // the left channel's last sample
  writeDoubles(m_folder.path("hot.wav"), {SF_FORMAT_WAV | SF_FORMAT_FLOAT, 44100, 2}, hot);
  m_options.inputs.push_back(m_folder.path("hot.wav"));
  addInput("b.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 0, 100);
  const Album album = layOutAlbum(m_options);
  m_plan.written = {{0, album.frames()}};
  const auto audio = readAhead(album);
  AlbumBlocks blocks(*audio, 1024);
  while (blocks.next() > 0) {
  }
  ASSERT_EQ(audio->inputs().size(), 2U);
  const InputOutcome& hot_one = audio->inputs()[0];
  EXPECT_EQ(hot_one.input, 0U);
  EXPECT_EQ(hot_one.clipping.samples, 1);
  EXPECT_EQ(hot_one.clipping.first_frame, 44099);
  EXPECT_EQ(hot_one.clipping.worst_frame, 44099);
  EXPECT_EQ(hot_one.clipping.peak, 1.5);
  EXPECT_EQ(audio->inputs()[1].input, 1U);
  EXPECT_EQ(audio->inputs()[1].clipping.samples, 0);
}

}  // namespace
}  // namespace velmor::render::test
