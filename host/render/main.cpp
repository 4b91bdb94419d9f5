// velmor-render: audio files to a CD image, through the module.
#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include "disc/failure.h"
#include "disc/terminal/interrupt.h"
#include "disc/text/phrases.h"
#include "host/render/album/album.h"
#include "host/render/burn/burn_session.h"
#include "host/render/burn/drive_list.h"
#include "host/render/burn/scoped_recording_service.h"
#include "host/render/module/module_library.h"
#include "host/render/module/renderer.h"
#include "host/render/options/options.h"
#include "host/render/options/usage_error.h"
#include "host/render/output/ddp_set.h"
#include "host/render/output/delivery.h"
#include "host/render/output/html_page.h"
#include "host/render/output/input_treatment.h"
#include "host/render/output/output_pair.h"
#include "host/render/output/portable_sheet.h"
#include "host/render/output/report.h"
#include "host/render/plan/mark_fates.h"
#include "host/render/plan/preflight.h"
#include "host/render/plan/preflight_texts.h"
#include "host/render/terminal/messages.h"
#include "host/render/terminal/program_files.h"

namespace velmor::render {

namespace {

constexpr const char* kNoMemory =
    "there is not enough memory; close other programs and start again";

void printWarnings(const Options& options, const std::vector<std::string>& warnings) {
  if (options.quiet) return;
  for (const std::string& warning : warnings) printWarning(warning);
}

SinkConfig sinkConfig(const Options& options, const Album& album) {
  return {static_cast<int32_t>(kIsoFormatCode),
          album.lead_ins.disc_ms,
          album.lead_ins.track_ms,
          options.burn.wanted,
          album.track_mode,
          options.hash_markers_only};
}

std::vector<std::string> inputFiles(const Options& options,
                                    const std::vector<AudioSource>& sources) {
  std::vector<std::string> files = options.inputs;
  for (const AudioSource& source : sources) files.push_back(source.path);
  if (!options.labels.empty()) files.push_back(options.labels);
  return files;
}

/// Everything to warn of before the render. Throws `Failure` for the first finding that forbids it.
std::vector<std::string> checked(const Options& options, const SinkConfig& config,
                                 const Album& album, const TrackPlan& plan,
                                 const std::vector<MarkFate>& marks, const OutputPair& output) {
  PreflightFindings findings =
      checkBeforeRender(config, album.project, plan, options.allow_overlong);
  warnOfLostMarks(marks, findings);
  if (options.burn.cd_text) checkCdTextLetters(album.project, plan, findings);
  if (!findings.errors.empty()) throw Failure(findings.errors.front());
  std::vector<std::string> warnings = output.warnings();
  warnings.insert(warnings.end(), album.warnings.begin(), album.warnings.end());
  warnings.insert(warnings.end(), findings.warnings.begin(), findings.warnings.end());
  if (const std::string older = output.olderPortableSheet(); !older.empty()) {
    warnings.push_back(disc::inQuotes(older) + " was made for an older " +
                       disc::inQuotes(std::filesystem::path(output.image()).filename().string()) +
                       " and need not fit the new one; delete it, or replace it with "
                       "--portable-cue");
  }
  return warnings;
}

void print(const Options& options, const RenderReport& report) {
  if (options.json) {
    printJsonReport(report);
  } else if (!options.quiet) {
    printReport(report);
  }
}

void tell(const Options& options, const RenderReport& report) {
  const std::string complete = "the disc is complete, but its report could not be printed: ";
  try {
    print(options, report);
  } catch (const std::bad_alloc&) {
    throw Failure(complete + kNoMemory);
  }
  // A line may have failed before the last one, and the error with which it did is gone then.
  const int error = fflush(stdout) != 0 ? errno : EIO;
  if (ferror(stdout) != 0) throw Failure(complete + strerror(error));
}

/// The exit status of a run with a burn, whose result has been reported.
int burnStatus(const BurnResult& burn, const std::string& image) {
  if (burn.interrupted && !burn.failure.empty()) {
    printMessage("interrupted; the image is complete: " + disc::inQuotes(image));
    return interruptedStatus();
  }
  if (!burn.has_begun) printMessage(burn.failure + "; use the module that came with this program");
  return burn.failure.empty() ? 0 : 1;
}

int run(const Options& options) {
  const std::vector<AudioSource> sources = sourcesOf(options.inputs);
  OutputPair output(options.output, options.force, inputFiles(options, sources),
                    options.portable_cue);
  std::optional<DdpOutput> ddp;
  if (!options.ddp.empty()) ddp.emplace(options, output);
  std::optional<PageOutput> page;
  if (!options.html.empty()) page.emplace(options, output);
  const ModuleLibrary module(options.module.empty() ? libraryOfProgram("velmor_cd.so")
                                                    : options.module);
  const Album album = layOutAlbum(options, sources);
  const SinkConfig config = sinkConfig(options, album);
  const TrackPlan plan = planTracks(config, album.project.marks, album.frames());
  const std::vector<MarkFate> marks = fatesOf(album, plan, options.hash_markers_only);
  std::vector<std::string> warnings = checked(options, config, album, plan, marks, output);
  if (ddp) warnings.insert(warnings.begin(), ddp->warnings().begin(), ddp->warnings().end());
  printWarnings(options, warnings);

  std::optional<PortableSheet> portable;
  Delivery delivery(
      output, album.project, plan,
      [&] {
        if (options.portable_cue) portable = makePortableSheet(output, album, plan, !options.quiet);
      },
      [&](const std::string& sheet) {
        if (ddp) ddp->make(sheet, plan, !options.quiet);
        if (page) page->make(sheet, output, plan, ddp ? &ddp->made() : nullptr, !options.quiet);
      });
  std::unique_ptr<BurnSession> burn;
  if (options.burn.wanted) {
    burn = std::make_unique<BurnSession>(options, output.workingSheet(), config, plan,
                                         [&delivery] { delivery.beforeBurn(); });
  }
  const BurnResult* const burned = burn ? &burn->result() : nullptr;
  const RenderOutcome outcome =
      renderAlbum(module.sink(), config, album, plan, options, output.workingSheet());
  // Said whatever was asked for: of all that can be wrong with a disc this is audible.
  for (const std::string& clips : clippingWarnings(album, outcome.inputs)) {
    printWarning(clips);
    warnings.push_back(clips);
  }
  if (!burn) stopIfInterrupted();
  delivery.afterRender(outcome, burned && burned->image_deleted);

  const FinishedFiles& files = delivery.files();
  tell(options,
       {album, plan, marks, files.sheet, outcome, output.sheet(), output.image(), files.sheet_bytes,
        files.image_bytes, warnings, burned, portable ? &*portable : nullptr,
        ddp ? &ddp->made() : nullptr, page ? &page->made() : nullptr});
  const int portable_status = portable ? portableStatus(*portable) : 0;
  const int ddp_status = ddp ? ddpStatus(ddp->made()) : 0;
  const int page_status = page ? statusOf(page->made()) : 0;
  int status = ddp_status != 0 ? ddp_status : portable_status;
  if (page_status != 0) status = page_status;
  const int burn_status = burned ? burnStatus(*burned, output.image()) : 0;
  return burn_status != 0 ? burn_status : status;
}

void printDrives(const Options& options) {
  const ScopedRecordingService recording({});
  listDrives(recording.service(), options.json);
}

/// `json` is set to whether results, and so failures too, are wanted as JSON.
int runCommandLine(int argc, char** argv, bool& json) {
  const std::optional<Options> options = parseCommandLine(argc, argv);
  if (!options) return 0;
  json = options->json;
  watchForInterrupts();
  if (!options->list_drives) return run(*options);
  printDrives(*options);
  return 0;
}

int fail(bool json, const char* sentence, int status) {
  printMessage(sentence);
  if (json) printJsonFailure(sentence);
  return status;
}

/// What the standard library could not do with a file.
std::string refusedByTheSystem(const std::filesystem::filesystem_error& refusal) {
  return "the system refuses access to " + disc::inQuotes(refusal.path1().string()) + ": " +
         refusal.code().message() + "; check its disk";
}

/// The exit status; a failure has been told.
int runAndTell(int argc, char** argv) {
  bool json = asksForJson(argc, argv);
  try {
    return runCommandLine(argc, argv, json);
  } catch (const Interrupted& interruption) {
    return fail(json, "interrupted; nothing was written", interruption.exitStatus());
  } catch (const UsageError& error) {
    return fail(json, error.what(), 2);
  } catch (const std::bad_alloc&) {
    return fail(json, kNoMemory, 1);
  } catch (const std::filesystem::filesystem_error& refusal) {
    return fail(json, refusedByTheSystem(refusal).c_str(), 1);
  } catch (const std::exception& error) {
    return fail(json, error.what(), 1);
  }
}

}  // namespace

}  // namespace velmor::render

int main(int argc, char** argv) {
  using namespace velmor::render;
  try {
    return runAndTell(argc, argv);
  } catch (const std::bad_alloc&) {  // even to say why
    printMessage(kNoMemory);
    return 1;
  }
}
