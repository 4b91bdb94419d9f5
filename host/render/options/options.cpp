#include "host/render/options/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <string_view>

#include "disc/codes/isrc.h"
#include "disc/failure.h"
#include "disc/text/line_of_text.h"
#include "disc/text/phrases.h"
#include "disc/units/disc_limits.h"
#include "disc/version.h"
#include "host/render/input/marks/mark_parsing.h"
#include "host/render/options/nearest_name.h"
#include "host/render/options/number_checks.h"
#include "host/render/options/settings_file.h"
#include "host/render/options/usage_error.h"
#include "host/render/terminal/messages.h"

namespace velmor::render {

namespace {

constexpr const char* kFlagAlone = "true";  // what CLI11 makes of a flag without a value
constexpr int kLargestBlock = 1 << 20;
constexpr const char* kAbout =
    "Renders audio files to an audio CD image (BIN) with a cue sheet, through the velmor_cd "
    "module.";
constexpr const char* kExamples = R"(Examples:
  velmor-render one.wav two.flac -o album.cue
  velmor-render mix.wav --labels mix.txt --track-leadin 2000 --title "Night Drive" -o album.cue
  velmor-render mix.wav -o album.cue --burn --drive 1 --cd-text --eject

TIME is seconds (12.5), MM:SS.mmm, H:MM:SS.mmm or MM:SS:FF with 75 frames a second.
Exit status: 0 done (with --burn: every disc is written), 1 failed, 2 wrong usage, 130 interrupted.
The module keeps its settings in )";

/// What CLI11 collects as text, before it becomes `Options`.
struct RawOptions {
  std::string track_mode;
  std::string dither = "tpdf";
  bool no_dither = false;
  std::vector<std::string> isrcs, markers, regions, metas, joins;
  std::string start, end;
  bool no_embedded_markers = false;
};

/// What every render needs, and a list of drives does not.
struct RequiredOptions {
  CLI::Option* inputs = nullptr;
  CLI::Option* output = nullptr;

  void require(bool required) const {
    inputs->required(required);
    output->required(required);
  }
};

RequiredOptions addInputsAndOutput(CLI::App& app, Options& options) {
  const RequiredOptions required{
      .inputs =
          app.add_option("INPUT", options.inputs, "audio files, laid end to end in this order")
              ->required()
              ->type_name(""),
      .output = app.add_option("-o,--output", options.output,
                               "the cue sheet to write; the image goes beside it")
                    ->required()
                    ->type_name("ALBUM.cue")};
  app.add_flag("--force", options.force, "replace an existing sheet and image");
  const auto list_instead = [required, &options] {
    options.list_drives = true;
    required.require(false);
  };
  app.add_flag_callback("--list-drives", list_instead,
                        "list the recorders and what is in them, and do nothing else")
      ->trigger_on_parse()
      ->group("Burn");
  app.add_flag("--portable-cue", options.portable_cue,
               "also write ALBUM.portable.cue, a sheet for other readers, and check both");
  app.add_option("--ddp", options.ddp,
                 "also make the DDP 2.00 set for a pressing plant in this new folder")
      ->type_name("DIR");
  app.add_option("--html", options.html,
                 "also write a page to look at: tracks, times, levels, findings")
      ->type_name("PAGE.html");
  return required;
}

/// An option that takes one value each time that it is given.
void addRepeatable(CLI::App& app, const std::string& name, std::vector<std::string>& values,
                   const std::string& about, const std::string& type, const std::string& group) {
  app.add_option(name, values, about + "; may be given again")
      ->type_name(type)
      ->allow_extra_args(false)
      ->group(group);
}

/// No lead-in is longer than the disc that it is to be on.
CLI::Validator leadIn() {
  constexpr int64_t kLongest = disc::kLongestDiscSectors * 1000 / disc::kSectorsPerSecond;
  return wholeNumber(0, kLongest, "number of milliseconds",
                     "give a silence that fits on a disc, such as 2000 for two seconds");
}

void addTrackOptions(CLI::App& app, Options& options, RawOptions& raw) {
  app.add_option("--track-mode", raw.track_mode,
                 "what makes a track: markers, regions or one (default: regions where all "
                 "marks are ranges, else markers)")
      ->check(CLI::IsMember({"markers", "regions", "one"}))
      ->type_name("MODE")
      ->group("Tracks");
  app.add_option("--track-leadin", options.track_leadin_ms,
                 "silence before every track but the first, milliseconds")
      ->check(leadIn())
      ->type_name("MS")
      ->group("Tracks");
  app.add_option("--disc-leadin", options.disc_leadin_ms,
                 "silence before the first track, milliseconds")
      ->check(leadIn())
      ->type_name("MS")
      ->group("Tracks");
  app.add_flag("--hash-markers-only", options.hash_markers_only,
               "only markers whose name starts with # make tracks")
      ->group("Tracks");
  addRepeatable(app, "--marker", raw.markers, "add a marker", "TIME=NAME", "Tracks");
  addRepeatable(app, "--region", raw.regions, "add a region", "START-END=NAME", "Tracks");
  app.add_option("--labels", options.labels, "add the marks of an Audacity label track")
      ->type_name("FILE")
      ->group("Tracks");
  app.add_flag("--join", raw.joins,
               "put all inputs into one track, or --join=2-4 those; may be given again")
      ->group("Tracks");
  app.add_flag("--allow-overlong", options.allow_overlong,
               "render beyond 79:59:74, for a blank that is known to hold it")
      ->group("Tracks");
  app.add_flag("--no-embedded-markers", raw.no_embedded_markers,
               "leave out the cue points and regions inside the inputs")
      ->group("Tracks");
}

void addTextOptions(CLI::App& app, Options& options, RawOptions& raw) {
  AlbumTexts& texts = options.texts;
  const auto text = [&app](const char* name, std::string& value, const char* about) {
    app.add_option(name, value, about)->type_name("TEXT")->group("Texts and codes");
  };
  text("--title", texts.title, "the disc's title (default: the inputs' album tag)");
  text("--performer", texts.performer, "the disc's performer (default: the inputs' artist tag)");
  text("--songwriter", texts.songwriter, "the disc's songwriter");
  text("--catalog", texts.catalogue, "the disc's catalogue number (MCN), 13 digits");
  text("--comment", texts.comment, "a remark for the sheet (REM)");
  addRepeatable(app, "--meta", raw.metas, "one more disc field", "KEY=VALUE", "Texts and codes");
  addRepeatable(app, "--isrc", raw.isrcs, "the ISRC of an input's track", "INPUT_NUMBER=CODE",
                "Texts and codes");
}

void addRenderOptions(CLI::App& app, Options& options, RawOptions& raw) {
  app.add_option("--start", raw.start, "render from here")->type_name("TIME")->group("Render");
  app.add_option("--end", raw.end, "render up to here")->type_name("TIME")->group("Render");
  CLI::Option* const dither =
      app.add_option("--dither", raw.dither,
                     "tpdf for sources of more than 16 bits or another rate (the default), or none")
          ->check(CLI::IsMember({"none", "tpdf"}))
          ->type_name("KIND")
          ->group("Render");
  app.add_flag("--no-dither", raw.no_dither, "round them to 16 bits: --dither none")
      ->excludes(dither)
      ->group("Render");
  app.add_option("--block", options.block, "frames handed to the module at a time")
      ->check(wholeNumber(1, kLargestBlock, "number of frames", "give one such as 1024"))
      ->type_name("FRAMES")
      ->group("Render");
  app.add_option("--module", options.module,
                 "the module (default: velmor_cd.so that came with the program)")
      ->type_name("PATH")
      ->group("Render");
  app.add_flag("--json", options.json, "print the result as JSON")->group("Render");
  app.add_flag("--quiet", options.quiet, "print errors, and which inputs clip, only")
      ->group("Render");
}

std::pair<std::string, std::string> splitAssignment(const std::string& text, const char* option,
                                                    const char* form) {
  const size_t at = text.find('=');
  if (at == std::string::npos || at == 0) {
    throw UsageError(std::string(option) + " " + disc::inQuotes(text) + " is not of the form " +
                     form);
  }
  return {text.substr(0, at), text.substr(at + 1)};
}

/// The number that `text` is, whole; 0 when it is none.
int numberIn(std::string_view text) {
  int number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && stop == end ? number : 0;
}

void readIsrcs(const RawOptions& raw, Options& options) {
  for (const std::string& text : raw.isrcs) {
    const auto [number_text, code_text] = splitAssignment(text, "--isrc", "INPUT_NUMBER=CODE");
    const int number = numberIn(number_text);
    if (number < 1 || number > static_cast<int>(options.inputs.size())) {
      throw UsageError("--isrc " + disc::inQuotes(text) + " names input " + number_text +
                       ", but the album has " +
                       disc::counted(static_cast<int64_t>(options.inputs.size()), "input") +
                       ", counted from 1");
    }
    const auto code = disc::normalisedIsrc(code_text);
    if (!code) {
      throw UsageError(
          "--isrc " + disc::inQuotes(text) +
          " is no ISRC: it needs two letters, three letters or digits and seven digits");
    }
    if (!options.isrcs.emplace(number, *code).second) {
      throw UsageError("--isrc is given twice for input " + number_text);
    }
  }
}

InputRange rangeIn(const std::string& text, int inputs) {
  if (text == kFlagAlone) return {1, inputs};
  const size_t dash = text.find('-');
  const int first = numberIn(std::string_view(text).substr(0, dash));
  const int last =
      dash == std::string::npos ? 0 : numberIn(std::string_view(text).substr(dash + 1));
  if (first >= 1 && first < last && last <= inputs) return {first, last};
  throw UsageError("--join=" + disc::printable(text) + " is no range of the " +
                   disc::counted(inputs, "input") +
                   "; give the first and the last one, such as --join=1-2");
}

void readRaw(const RawOptions& raw, Options& options) {
  const auto inputs = static_cast<int>(options.inputs.size());
  for (const std::string& text : raw.joins) options.joined.push_back(rangeIn(text, inputs));
  if (raw.track_mode == "markers") options.track_mode = kTracksFromMarkers;
  if (raw.track_mode == "regions") options.track_mode = kTracksFromRegions;
  if (raw.track_mode == "one") options.track_mode = kOneTrack;
  const bool dithers = raw.dither == "tpdf" && !raw.no_dither;
  options.dither = dithers ? Dither::kTpdf : Dither::kNone;
  options.embedded_markers = !raw.no_embedded_markers;
  readIsrcs(raw, options);
  for (const std::string& text : raw.metas) {
    options.texts.more.push_back(splitAssignment(text, "--meta", "KEY=VALUE"));
  }
  std::vector<TwoFacedTime>* const two_faced = &options.two_faced_times;
  for (const std::string& text : raw.markers) {
    options.marks.push_back(parseMarkerOption(text, two_faced));
  }
  for (const std::string& text : raw.regions) {
    options.marks.push_back(parseRegionOption(text, two_faced));
  }
  if (!raw.start.empty()) options.start = parseTime(raw.start, two_faced);
  if (!raw.end.empty()) options.end = parseTime(raw.end, two_faced);
  if (options.start && options.end && *options.end <= *options.start) {
    throw UsageError("--end " + disc::inQuotes(raw.end) + " does not lie after --start " +
                     disc::inQuotes(raw.start));
  }
}

/// The long names of all options, without dashes.
std::vector<std::string> longNames(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::Option* const option : app.get_options()) {
    const std::vector<std::string>& more = option->get_lnames();
    names.insert(names.end(), more.begin(), more.end());
  }
  return names;
}

/// What to say of the first option on the command line that is none. Nothing when there is no such:
/// then something else is wrong.
std::optional<std::string> misspeltOption(const CLI::App& app) {
  for (const std::string& word : app.remaining()) {
    const std::string option = word.substr(0, word.find('='));
    const size_t name_at = option.find_first_not_of('-');
    if (name_at == 0 || name_at == std::string::npos) continue;
    const std::string name = option.substr(name_at);
    const std::string fault = "there is no option " + disc::printable(option);
    const auto nearest = nearestName(name, longNames(app));
    return nearest ? fault + "; did you mean --" + *nearest + "?" : fault;
  }
  return std::nullopt;
}

}  // namespace

/// CLI11's description of the options, and the places that it fills.
struct CommandLineParser::Parts {
  Options options;
  RawOptions raw;
  CLI::App app{kAbout, kProgram};
  RequiredOptions required;
};

CommandLineParser::CommandLineParser() : m_parts(std::make_unique<Parts>()) {
  CLI::App& app = m_parts->app;
  Options& options = m_parts->options;
  app.footer(std::string(kExamples) + settingsFilePath());
  app.set_version_flag("--version", std::string(kProgram) + " " + disc::kVersion);
  app.get_formatter()->column_width(38);
  m_parts->required = addInputsAndOutput(app, options);
  addTrackOptions(app, options, m_parts->raw);
  addTextOptions(app, options, m_parts->raw);
  addRenderOptions(app, options, m_parts->raw);
  addBurnOptions(app, options.burn);
}

CommandLineParser::~CommandLineParser() = default;

std::optional<Options> CommandLineParser::parse(int argc, char** argv) {
  CLI::App& app = m_parts->app;
  Options& options = m_parts->options;
  options = {};
  m_parts->raw = {};
  m_parts->required.require(true);
  try {
    app.parse(argc, argv);
    readRaw(m_parts->raw, options);
    checkBurnOptions(app, options.burn);
  } catch (const CLI::CallForHelp&) {
    fputs(app.help().c_str(), stdout);
    return std::nullopt;
  } catch (const CLI::CallForVersion& version) {
    printf("%s\n", version.what());
    return std::nullopt;
  } catch (const CLI::ParseError& error) {
    // Before what is missing, too: an --ouput is no output.
    const auto misspelt = misspeltOption(app);
    throw UsageError(misspelt.value_or(disc::asClause(error.what())) +
                     (misspelt && misspelt->back() == '?' ? "" : "; --help lists the options"));
  } catch (const Failure& error) {  // a time, marker or region that is none
    throw UsageError(error.what());
  }
  return options;
}

std::optional<Options> parseCommandLine(int argc, char** argv) {
  return CommandLineParser().parse(argc, argv);
}

bool asksForJson(int argc, char** argv) {
  return std::count(argv, argv + argc, std::string_view("--json")) > 0;
}

}  // namespace velmor::render
