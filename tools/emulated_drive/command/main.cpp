// velmor-emulated-drive: makes emulated drives, puts discs in, shows what was burned, and runs
// programs that see the drives.

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>

#include "tools/emulated_drive/command/disc_report.h"
#include "tools/emulated_drive/directory/file_surface.h"

namespace velmor::emulated_drive {

namespace fs = std::filesystem;

namespace {

constexpr int32_t kSectorsPerMinute = 75 * 60;
constexpr int kWrongUsage = 2;
constexpr const char* kProgram = "velmor-emulated-drive";
constexpr const char* kPreloadLibrary = "libvelmor_emulated_drive_preload.so";

/// What was asked for, in the words of the command line.
struct Request {
  std::string root, drive, medium = "cd-r", output;
  int drives = 2, first_device = 30, track = 0;
  double minutes = 0;
  int32_t capacity = 0;
  bool closed = false;
  std::vector<std::string> settings, program;
};

DriveDirectory driveOf(const Request& request) {
  std::string names;
  int number = 0;
  for (const DriveDirectory& directory : DriveDirectory::all(request.root)) {
    const std::string name = directory.path().filename();
    if (name == request.drive || std::to_string(number) == request.drive ||
        directory.settings().device == request.drive) {
      return directory;
    }
    names += (names.empty() ? "" : ", ") + name;
    ++number;
  }
  throw DirectoryError("there is no drive " + inQuotes(request.drive) + " in " +
                       inQuotes(request.root) +
                       (names.empty() ? "; \"create\" makes some" : "; it has " + names));
}

EmulatedDisc newDisc(const Request& request) {
  constexpr double kMostMinutes = 89.9;
  EmulatedDisc disc;
  disc.medium = request.medium == "cd-rw" ? MediumType::kCdRw : MediumType::kCdR;
  if (!(request.minutes >= 0 && request.minutes <= kMostMinutes)) {  // what is no number is not
    throw DirectoryError("--minutes is out of range: a disc holds 0 to 89.9 minutes");
  }
  if (request.minutes > 0) {
    disc.capacity = static_cast<int32_t>(request.minutes * kSectorsPerMinute);
  }
  if (request.capacity > 0) {
    disc.capacity = request.capacity;
  }
  if (request.closed) {
    disc.state = DiscStatus::kComplete;
    disc.lead_out = kShortestTrack;
    RecordedTrack silence;
    silence.pregap_start = -kFirstPregap;
    silence.indices = {0};
    disc.tracks.push_back(silence);
  }
  return disc;
}

void insert(const DriveDirectory& directory, const EmulatedDisc& disc) {
  directory.saveDisc(std::nullopt);  // the disc before and its audio
  directory.saveDisc(disc);
  directory.saveTray(false);
}

int create(const Request& request) {
  if (!DriveDirectory::all(request.root).empty()) {
    throw DirectoryError(inQuotes(request.root) + " holds drives already; take another folder");
  }
  for (int i = 0; i < request.drives; ++i) {
    char name[16];
    std::snprintf(name, sizeof name, "drive%02d", i);
    const fs::path path = fs::path(request.root) / name;
    std::error_code error;
    fs::create_directories(path, error);
    if (error) {
      throw DirectoryError(inQuotes(path) + " cannot be made: " + error.message());
    }
    const DriveDirectory directory(path);
    DriveSettings settings;
    settings.device = "/dev/sr" + std::to_string(request.first_device + i);
    settings.identity.product = "RECORDER " + std::to_string(i + 1);
    insert(directory, newDisc(request));
    directory.saveSettings(settings);
    std::cout << name << " " << settings.device << "\n";
  }
  return 0;
}

int show(const Request& request) {
  if (!request.drive.empty()) {
    report(driveOf(request), std::cout);
    return 0;
  }
  const std::vector<DriveDirectory> all = DriveDirectory::all(request.root);
  if (all.empty()) {
    throw DirectoryError("there are no drives in " + inQuotes(request.root) +
                         "; \"create\" makes some");
  }
  for (const DriveDirectory& directory : all) {
    report(directory, std::cout);
  }
  return 0;
}

int change(const Request& request) {
  const DriveDirectory directory = driveOf(request);
  DriveSettings settings = directory.settings();
  for (const std::string& setting : request.settings) {
    const std::size_t equals = setting.find('=');
    if (equals == std::string::npos) {
      throw DirectoryError("the setting " + inQuotes(setting) + " has no value; give key=value");
    }
    applySetting(setting.substr(0, equals), setting.substr(equals + 1), "the command line",
                 settings);
  }
  directory.saveSettings(settings);
  return 0;
}

int extract(const Request& request) {
  const DriveDirectory directory = driveOf(request);
  const std::optional<EmulatedDisc> disc = directory.disc();
  if (!disc || disc->state != DiscStatus::kComplete) {
    throw DirectoryError(inQuotes(directory.path()) +
                         " holds no closed disc to take audio from; burn one first");
  }
  int32_t from = 0;
  int32_t to = disc->lead_out;
  if (request.track != 0) {
    const int index = request.track - disc->tracks.front().number;
    if (index < 0 || index >= static_cast<int>(disc->tracks.size())) {
      throw DirectoryError("--track " + std::to_string(request.track) +
                           " is not there: the disc has tracks " +
                           std::to_string(disc->tracks.front().number) + " to " +
                           std::to_string(disc->tracks.back().number));
    }
    const RecordedTrack& track = disc->tracks[static_cast<std::size_t>(index)];
    from = track.start();
    to = disc->endOf(track);
  }
  std::ofstream out(request.output, std::ios::binary | std::ios::trunc);
  FileSurface surface(directory.audioFile());
  ByteBuffer sector(kSectorBytes);
  for (int32_t lba = from; lba < to && out; ++lba) {
    if (!surface.read(lba, sector)) {
      throw DirectoryError(inQuotes(directory.audioFile()) + " cannot be read");
    }
    out.write(reinterpret_cast<const char*>(sector.data()), kSectorBytes);
  }
  out.close();
  if (!out) {
    throw DirectoryError(inQuotes(request.output) + " cannot be written; choose another place");
  }
  std::cout << to - from << " sectors\n";
  return 0;
}

int run(const Request& request) {
  const fs::path library = fs::read_symlink("/proc/self/exe").parent_path() / kPreloadLibrary;
  if (!fs::exists(library)) {
    throw DirectoryError(inQuotes(library) +
                         " is missing; it is built beside velmor-emulated-drive");
  }
  const char* before = std::getenv("LD_PRELOAD");
  const bool others = before != nullptr && *before != '\0';
  const std::string preload = library.string() + (others ? ":" + std::string(before) : "");
  ::setenv("LD_PRELOAD", preload.c_str(), 1);
  ::setenv("VELMOR_EMULATED_DRIVE_DIR", fs::absolute(request.root).c_str(), 1);
  std::vector<char*> arguments;
  for (const std::string& word : request.program) {
    arguments.push_back(const_cast<char*>(word.c_str()));
  }
  arguments.push_back(nullptr);
  ::execvp(arguments.front(), arguments.data());
  throw DirectoryError(inQuotes(request.program.front()) +
                       " cannot be run: " + std::strerror(errno));
}

void addDiscOptions(CLI::App& command, Request& request) {
  command.add_option("--medium", request.medium, "cd-r or cd-rw")
      ->check(CLI::IsMember({"cd-r", "cd-rw"}))
      ->capture_default_str();
  command.add_option("--minutes", request.minutes, "room on the disc (default 79:57:70)");
  command.add_option("--capacity", request.capacity, "room on the disc in sectors, 75 a second")
      ->check(CLI::Range(1, 404000));
  command.add_flag("--closed", request.closed, "a disc that is recorded already");
}

/// A sentence of the command line's parser as our messages go on: it begins small.
std::string beginningSmall(std::string sentence) {
  if (!sentence.empty() && sentence[0] >= 'A' && sentence[0] <= 'Z') {
    sentence[0] = static_cast<char>(sentence[0] - 'A' + 'a');
  }
  return sentence;
}

}  // namespace

int runCommand(int count, char** words) {
  CLI::App app("Emulated CD drives in a folder, for programs that burn.", kProgram);
  app.set_version_flag("--version", std::string(kProgram) + " " VELMOR_VERSION);
  app.footer(
      "Example:\n  velmor-emulated-drive create /tmp/drives\n"
      "  velmor-emulated-drive run /tmp/drives -- cdrskin dev=/dev/sr30 -sao -audio album.wav\n"
      "  velmor-emulated-drive show /tmp/drives");
  app.require_subcommand(1);
  Request request;
  int (*action)(const Request&) = nullptr;
  const auto add = [&](const char* name, const char* about, int (*what)(const Request&)) {
    CLI::App* command = app.add_subcommand(name, about);
    command->add_option("directory", request.root, "the folder of drives")->required();
    command->callback([&action, what] { action = what; });
    return command;
  };
  const auto needs_drive = [&](CLI::App* command) {
    command->add_option("drive", request.drive, "its folder, number from 0, or device")->required();
    return command;
  };
  CLI::App* making = add("create", "make drives with blank discs in them", create);
  making->add_option("--drives", request.drives)->check(CLI::Range(1, 8))->capture_default_str();
  making->add_option("--first-device", request.first_device, "N of the first /dev/srN")
      ->check(CLI::Range(0, 31))
      ->capture_default_str();
  addDiscOptions(*making, request);
  CLI::App* inserting = needs_drive(add("insert", "put a new disc in", [](const Request& asked) {
    insert(driveOf(asked), newDisc(asked));
    return 0;
  }));
  addDiscOptions(*inserting, request);
  needs_drive(add("eject", "take the disc away", [](const Request& asked) {
    driveOf(asked).saveDisc(std::nullopt);
    driveOf(asked).saveTray(false);
    return 0;
  }));
  needs_drive(add("set", "change a drive or give it a fault", change))
      ->add_option("settings", request.settings,
                   "key=value: device, vendor, product, revision, write-error-at, read-error-at "
                   "(LBA or none), write-delay-ms, becoming-ready-polls, busy, deny (yes or no)")
      ->required();
  add("show", "drives, discs, table of contents, codes, texts", show)
      ->add_option("drive", request.drive, "only this one");
  CLI::App* extracting =
      needs_drive(add("extract", "the audio of a disc: 44100 Hz, 16 bit, stereo, raw", extract));
  extracting->add_option("output", request.output, "the file to write")->required();
  extracting->add_option("--track", request.track, "only this track")->check(CLI::Range(1, 99));
  add("run", "run a program that sees the drives", run)
      ->add_option("program", request.program, "after --")
      ->required();
  try {
    app.parse(count, words);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);
    std::cerr << kProgram << ": " << beginningSmall(error.what())
              << "; --help lists what there is\n";
    return kWrongUsage;
  }
  return action(request);
}

}  // namespace velmor::emulated_drive

int main(int count, char** words) {
  try {
    return velmor::emulated_drive::runCommand(count, words);
  } catch (const std::exception& error) {
    std::cerr << velmor::emulated_drive::kProgram << ": " << error.what() << "\n";
    return 1;
  }
}
