#include "host/render/module/renderer.h"

#include <cmath>
#include <filesystem>
#include <memory>
#include <optional>

#include "disc/failure.h"
#include "disc/terminal/interrupt.h"
#include "disc/text/phrases.h"
#include "disc/units/disc_units.h"
#include "host/render/album/host_project.h"
#include "host/render/module/album_blocks.h"
#include "host/render/module/host_callbacks.h"
#include "host/render/module/read_ahead.h"
#include "host/render/module/write_failure.h"
#include "host/render/terminal/progress.h"

namespace velmor::render {

namespace {

std::unique_ptr<PCM_sink> makeSink(const SinkRegistration& module, SinkConfig config,
                                   const std::string& sheet_path) {
  const char* const extension = module.GetExtension(&config, sizeof(config));
  if (!extension || std::string(extension) != "cue") {
    throw Failure(
        "the module does not take this program's settings; use the module that came with it");
  }
  std::unique_ptr<PCM_sink> sink(
      module.CreateSink(sheet_path.c_str(), &config, sizeof(config), 2, disc::kSampleRate, false));
  if (!sink) {
    throw Failure("the module cannot create " + disc::inQuotes(sheet_path) +
                  " and the image beside it; look at the folder's permissions and free space");
  }
  return sink;
}

/// The sink says what it wants; this program delivers what CDs take.
void checkFormat(PCM_sink& sink) {
  int rate = 0;
  int channels = 0;
  int bits = 0;
  const bool told = sink.Extended(kSinkQueryFormat, &rate, &channels, nullptr) &&
                    sink.Extended(kSinkQueryBitDepth, &bits, nullptr, nullptr);
  if (told && rate == disc::kSampleRate && channels == 2 && bits == 16) return;
  throw Failure(
      "the module wants " + std::to_string(rate) + " Hz, " + disc::counted(channels, "channel") +
      " and " + disc::counted(bits, "bit") +
      ", but this program delivers 44100 Hz, 2 channels and 16 bits; use the module that came with "
      "it");
}

void stream(PCM_sink& sink, ReadAhead& audio, const Options& options, const std::string& image_path,
            Progress& progress) {
  AlbumBlocks blocks(audio, options.block);
  int64_t rendered = 0;
  while (const int frames = blocks.next()) {
    sink.WriteDoubles(blocks.channels(), frames, 2, 0, 1);
    stopIfInterrupted();  // comes first, since an interruption makes writes fail too
    stopOnWriteFailure(image_path);
    rendered += frames;
    progress.show(rendered);
  }
}

}  // namespace

RenderOutcome renderAlbum(const SinkRegistration& module, const SinkConfig& config,
                          const Album& album, const TrackPlan& plan, const Options& options,
                          const std::string& sheet_path) {
  const std::string image_path =
      std::filesystem::path(sheet_path).replace_extension(".bin").string();
  std::optional<InterruptedWritesFail> interruptible(std::in_place);
  openProject(album.project);
  const std::unique_ptr<PCM_sink> sink = makeSink(module, config, sheet_path);
  stopIfInterrupted();
  checkFormat(*sink);
  ReadAhead audio(album, plan, options.dither, image_path);
  {
    Progress progress("Rendering", album.frames(), !options.quiet);
    stream(*sink, audio, options, image_path, progress);
  }
  interruptible.reset();
  sink->Extended(kSinkRenderFinished, nullptr, nullptr, nullptr);
  stopOnWriteFailure(image_path);
  return {audio.inputs(), std::llround(sink->GetLength() * disc::kSampleRate)};
}

}  // namespace velmor::render
