#include "tests/check/reader_runs.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <future>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>
#include <system_error>

#include "disc/text/encoding.h"
#include "tests/check/reader_process.h"
#include "tests/check/test_images.h"

namespace velmor::check::test {

namespace {

namespace fs = std::filesystem;

/// Of a track that a reader has and that starts nowhere.
constexpr int64_t kNoStart = -1'000'000;
constexpr const char* kLibraryReader = VELMOR_BINARY_DIR "/tests/cdcheck_library_reader";

std::vector<std::vector<std::string>> allMatches(const std::string& text, const char* pattern) {
  std::vector<std::vector<std::string>> found;
  const std::regex regex(pattern);
  for (std::sregex_iterator m(text.begin(), text.end(), regex), end; m != end; ++m) {
    std::vector<std::string> groups;
    for (size_t g = 1; g < m->size(); ++g) groups.push_back((*m)[g].str());
    found.push_back(groups);
  }
  return found;
}

/// What a reader prints of a time that is none can be any number; one too long is no sector.
int64_t wholeNumber(const std::string& digits) {
  int64_t number = 0;
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  constexpr int64_t kFarAway = 1'000'000'000;
  return read.ec == std::errc{} ? std::clamp(number, -kFarAway, kFarAway) : -kFarAway;
}

int64_t sectorsOf(const std::string& msf) {
  const auto parts = allMatches(msf, "(\\d+)[:.](\\d+)[:.](\\d+)");
  if (parts.empty()) return -1;
  return (wholeNumber(parts[0][0]) * 60 + wholeNumber(parts[0][1])) * 75 + wholeNumber(parts[0][2]);
}

/// Column `group` of every match.
std::vector<std::string> column(const std::string& text, const char* pattern, size_t group = 0) {
  std::vector<std::string> values;
  for (const auto& m : allMatches(text, pattern)) values.push_back(m[group]);
  return values;
}

/// The first match; empty when there is none.
std::string onlyMatch(const std::string& text, const char* pattern) {
  const auto found = column(text, pattern);
  return found.empty() ? "" : found[0];
}

std::vector<int64_t> msfColumn(const std::string& text, const char* pattern) {
  std::vector<int64_t> values;
  for (const std::string& v : column(text, pattern)) values.push_back(sectorsOf(v));
  return values;
}

std::vector<int64_t> numberColumn(const std::string& text, const char* pattern) {
  std::vector<int64_t> values;
  for (const std::string& v : column(text, pattern)) values.push_back(wholeNumber(v));
  return values;
}

std::string fromLatin1(const std::string& text) {
  std::string utf8;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      utf8 += c;
    } else {
      utf8 += static_cast<char>(0xC0 | byte >> 6);
      utf8 += static_cast<char>(0x80 | (byte & 0x3F));
    }
  }
  return utf8;
}

LoadedDisc loadedWhere(bool accepted, const ProcessResult& run) {
  LoadedDisc disc;
  disc.accepted = accepted;
  disc.output = run.all;
  return disc;
}

/// Where the first sector of the file lies on the disc; `kNoStart`: the sheet on disk has no such.
int64_t fileStart(const SheetOnDisk& s, const std::string& name) {
  if (s.files.empty()) return 0;
  int64_t at = 0;
  for (const auto& [file, sectors] : s.files) {
    if (file == name) return at;
    at += sectors;
  }
  return kNoStart;
}

/// The starts of a TOC in cdrdao's language: ZERO and FILE are the pieces of a track, START is
/// where its INDEX 01 lies in them.
void placeByToc(const std::string& toc, const SheetOnDisk& s, LoadedDisc& disc) {
  disc.starts.emplace();
  disc.gap_starts.emplace();
  int64_t added = 0;
  for (const std::string& track : column(toc, "TRACK (\\S+[\\s\\S]*?)(?=\nTRACK|$)")) {
    const auto files = allMatches(track, "\nFILE \"(.*)\" (\\S+)");
    if (files.empty()) continue;
    int64_t before = 0, behind = 0;
    for (const auto& zero : allMatches(track, "\nZERO (\\d+:\\d+:\\d+)(?=([\\s\\S]*))"))
      (zero[1].find("\nFILE") == std::string::npos ? behind : before) += sectorsOf(zero[0]);
    const int64_t begin = fileStart(s, files[0][0]) + std::max<int64_t>(sectorsOf(files[0][1]), 0);
    const auto start = column(track, "\nSTART (\\d+:\\d+:\\d+)");
    disc.gap_starts->push_back(begin + added);
    disc.starts->push_back(begin + added + (start.empty() ? 0 : sectorsOf(start[0])));
    added += before + behind;
  }
}

LoadedDisc runCuetools(const SheetOnDisk& s) {
  const ProcessResult print = runProcess(
      {"cueprint", "-i", "cue", "-d", "D|%T|%P|\\n", "-t", "T|%t|%i|%p|\\n", s.sheet}, s.folder);
  const ProcessResult breaks = runProcess({"cuebreakpoints", "-i", "cue", s.sheet}, s.folder);
  const ProcessResult toc = runProcess({"cueconvert", "-i", "cue", "-o", "toc", s.sheet}, s.folder);
  LoadedDisc disc = loadedWhere(print.status == 0 && breaks.status == 0 && toc.status == 0, toc);
  disc.output = print.all + breaks.all + toc.all;
  constexpr const char* kTrackLine = "T\\|([^|]*)\\|([^|]*)\\|([^|]*)\\|";
  disc.titles = column(print.out, kTrackLine, 0);
  disc.isrcs = column(print.out, kTrackLine, 1);
  disc.performers = column(print.out, kTrackLine, 2);
  disc.disc_texts = {onlyMatch(print.out, "D\\|([^|]*)\\|[^|]*\\|"),
                     onlyMatch(print.out, "D\\|[^|]*\\|([^|]*)\\|")};
  const auto catalog = column(toc.out, "CATALOG \"([^\"\\n]*)\"");
  disc.catalog = catalog.empty() ? "" : catalog[0];
  placeByToc(toc.out, s, disc);
  // It prints the breaks between tracks: the start of the first is not among them.
  if (breaks.out.empty() && disc.starts->size() > 1) disc.accepted = false;
  return disc;
}

std::map<std::string, std::vector<std::string>> keyedLines(const std::string& text) {
  std::map<std::string, std::vector<std::string>> keyed;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::string key, number, rest;
    words >> key >> number;
    std::getline(words, rest);
    keyed[key].push_back(rest.empty() ? rest : rest.substr(1));
  }
  return keyed;
}

LoadedDisc runLibcue(const SheetOnDisk& s) {
  const ProcessResult run = runProcess({kLibraryReader, "libcue", s.sheet}, s.folder);
  LoadedDisc disc = loadedWhere(run.status == 0, run);
  auto keyed = keyedLines(run.out);
  disc.titles = keyed["title"];
  disc.isrcs = keyed["isrc"];
  disc.performers = keyed["performer"];
  disc.disc_texts = keyed["disc"];
  disc.starts.emplace();
  disc.gap_starts.emplace();
  int64_t added = 0;
  for (const auto& m :
       allMatches(run.out, "place \\d+ (-?\\d+) (-?\\d+) (-?\\d+) (-?\\d+) ([^\n]*)")) {
    const int64_t file = fileStart(s, m[4]), gap = wholeNumber(m[1]), start = wholeNumber(m[0]);
    disc.gap_starts->push_back(added + file + (gap >= 0 ? gap : start));
    // It counts a pause in the file among the silence before the track.
    const int64_t silence = wholeNumber(m[2]) - (gap >= 0 ? start - gap : 0);
    added += std::max<int64_t>(silence, 0);
    disc.starts->push_back(added + file + start);
    added += std::max<int64_t>(wholeNumber(m[3]), 0);
  }
  return disc;
}

LoadedDisc runLibburn(const SheetOnDisk& s) {
  const ProcessResult run = runProcess({kLibraryReader, "libburn", s.sheet}, s.folder);
  LoadedDisc disc = loadedWhere(run.status == 0, run);
  auto keyed = keyedLines(run.out);
  disc.titles.emplace();
  // The packs say that they are ISO 8859-1.
  for (const std::string& title : keyed["title"]) disc.titles->push_back(fromLatin1(title));
  disc.performers.emplace();
  for (const std::string& name : keyed["performer"]) disc.performers->push_back(fromLatin1(name));
  disc.disc_texts.emplace();
  for (const std::string& text : keyed["disc"]) disc.disc_texts->push_back(fromLatin1(text));
  disc.isrcs = keyed["isrc"];
  disc.catalog = keyed["catalog"].empty() ? "" : keyed["catalog"][0];
  // It does not tell of the silence that a sheet adds.
  if (s.silence_added) return disc;
  const auto lengths = numberColumn(run.out, "sectors \\d+ (\\d+)");
  disc.gap_starts.emplace();
  int64_t at = s.sectors;
  for (auto l = lengths.rbegin(); l != lengths.rend(); ++l)
    disc.gap_starts->insert(disc.gap_starts->begin(), at -= *l);
  return disc;
}

LoadedDisc runCdrdao(const SheetOnDisk& s) {
  const ProcessResult run = runProcess({"cdrdao", "show-toc", s.sheet}, s.folder);
  LoadedDisc disc = loadedWhere(run.status == 0, run);
  const auto catalog = column(run.out, "CATALOG NUMBER: (\\d+)");
  disc.catalog = catalog.empty() ? "" : catalog[0];
  disc.more_indices = msfColumn(run.out, "INDEX +\\d+ (\\d+:\\d+:\\d+)");
  disc.starts = msfColumn(run.out, "START\\s+(\\d+:\\d+:\\d+)");
  disc.isrcs.emplace();
  disc.gap_starts.emplace();
  for (const std::string& track : column(run.out, "TRACK +\\d+([\\s\\S]*?)END")) {
    const auto start = msfColumn(track, "START\\s+(\\d+:\\d+:\\d+)");
    const auto gap = msfColumn(track, "PREGAP\\s+(\\d+:\\d+:\\d+)");
    if (start.empty()) continue;
    disc.gap_starts->push_back(start[0] - (gap.empty() ? 0 : gap[0]));
    const auto code = allMatches(track, "ISRC (\\S+) (\\S+) (\\S+) (\\S+)");
    disc.isrcs->push_back(code.empty() ? "" : code[0][0] + code[0][1] + code[0][2] + code[0][3]);
  }
  return disc;
}

/// The texts of that name that cd-info shows, one for each track.
std::vector<std::string> textsOfTracks(const std::string& out, const std::string& name,
                                       size_t tracks) {
  std::vector<std::string> texts(tracks);
  const std::string pattern =
      "CD-TEXT for Track +(\\d+):(?:\n\t[^\n]*)*?\n\t" + name + ": ([^\n]*)";
  for (const auto& m : allMatches(out, pattern.c_str())) {
    const auto track = static_cast<size_t>(wholeNumber(m[0]));
    if (track >= 1 && track <= tracks) texts[track - 1] = m[1];
  }
  return texts;
}

LoadedDisc runLibcdio(const SheetOnDisk& s) {
  const ProcessResult run = runProcess({"cd-info", "--cue-file=" + s.sheet}, s.folder);
  LoadedDisc disc = loadedWhere(run.out.find("Track List") != std::string::npos, run);
  const auto catalog = column(run.out, "\\(MCN\\): (\\d+)");
  disc.catalog = catalog.empty() ? "" : catalog[0];
  disc.starts = numberColumn(run.out, "\n +\\d+: \\d+:\\d+:\\d+ +(\\d+) (?!leadout)");
  disc.titles = textsOfTracks(run.out, "TITLE", disc.starts->size());
  disc.performers = textsOfTracks(run.out, "PERFORMER", disc.starts->size());
  disc.disc_texts = {
      onlyMatch(run.out, "CD-TEXT for Disc:(?:\n\t[^\n]*)*?\n\tTITLE: ([^\n]*)"),
      onlyMatch(run.out, "CD-TEXT for Disc:(?:\n\t[^\n]*)*?\n\tPERFORMER: ([^\n]*)")};
  return disc;
}

LoadedDisc runChdman(const SheetOnDisk& s) {
  const ProcessResult made = runProcess(
      {"chdman", "createcd", "-c", "none", "-f", "-i", s.sheet, "-o", "made.chd"}, s.folder);
  if (made.status != 0) return loadedWhere(false, made);
  const ProcessResult info = runProcess({"chdman", "info", "-v", "-i", "made.chd"}, s.folder);
  LoadedDisc disc = loadedWhere(info.status == 0, info);
  disc.starts.emplace();
  int64_t at = 0;
  disc.gap_starts.emplace();
  int64_t added = 0;
  for (const auto& m :
       allMatches(info.out, "FRAMES:(\\d+) PREGAP:(\\d+) PGTYPE:(V?)\\S* \\S* POSTGAP:(\\d+)")) {
    disc.gap_starts->push_back(at + added);
    disc.starts->push_back(at + added + wholeNumber(m[1]));
    // V: the pause lies in the image.
    if (m[2].empty()) added += wholeNumber(m[1]);
    added += wholeNumber(m[3]);
    at += wholeNumber(m[0]);
  }
  fs::remove(s.folder + "/made.chd");
  // What is kept of the image shows in its length.
  if (at < s.sectors) disc.starts->push_back(at);
  return disc;
}

LoadedDisc runMetaflac(const SheetOnDisk& s) {
  const ProcessResult coded = runProcess(
      {"flac", "-0", "-s", "-f", "--force-raw-format", "--endian=little", "--sign=signed",
       "--channels=2", "--bps=16", "--sample-rate=44100", s.image, "-o", "twin.flac"},
      s.folder);
  const ProcessResult import =
      runProcess({"metaflac", "--import-cuesheet-from=" + s.sheet, "twin.flac"}, s.folder);
  if (coded.status != 0 || import.status != 0) return loadedWhere(false, import);
  const ProcessResult list =
      runProcess({"metaflac", "--list", "--block-type=CUESHEET", "twin.flac"}, s.folder);
  LoadedDisc disc = loadedWhere(true, list);
  const auto catalog = column(list.out, "media catalog number: (\\S*)");
  disc.catalog = catalog.empty() ? "" : catalog[0];
  disc.isrcs = column(list.out, "ISRC: ?([^\n]*)\n");
  disc.starts.emplace();
  disc.gap_starts.emplace();
  for (const auto& track :
       allMatches(list.out, "track\\[\\d+\\]\n +offset: (\\d+)\n([\\s\\S]*?)(?=track\\[|$)"))
    for (const auto& i : allMatches(track[1], "offset: (\\d+)\n +number: 1\n")) {
      disc.gap_starts->push_back(wholeNumber(track[0]) / 588);
      disc.starts->push_back((wholeNumber(track[0]) + wholeNumber(i[0])) / 588);
    }
  return disc;
}

/// Of a link, whose other names keep all.
void keepTwoSeconds(const fs::path& image) {
  std::string start(size_t{150} * 2352, '\0');
  std::ifstream in(image, std::ios::binary);
  in.read(start.data(), static_cast<std::streamsize>(start.size()));
  start.resize(static_cast<size_t>(in.gcount()));
  fs::remove(image);
  writeFile(image, start);
}

LoadedDisc runMpv(const SheetOnDisk& s) {
  std::ofstream(s.folder + "/chapters.lua")
      << "mp.register_event('file-loaded', function()\n"
         "  print('CHAPTERS ' .. require('mp.utils').format_json("
         "mp.get_property_native('chapter-list')))\n"
         "  mp.command('quit')\nend)\n";
  // Most of its time goes into guessing a format from megabytes of raw samples, in vain; the
  // chapters come from the sheet, so that two seconds of image do.
  keepTwoSeconds(fs::path(s.folder) / s.image);
  // Kept open, since at the image's end the chapters would go, before a slow script has seen them.
  const ProcessResult run =
      runProcess({"mpv", "--no-config", "--ao=null", "--vo=null", "--pause", "--keep-open=always",
                  "--ytdl=no", "--osc=no", "--load-stats-overlay=no", "--load-auto-profiles=no",
                  "--script=chapters.lua", s.sheet},
                 s.folder);
  const auto json = column(run.all, "CHAPTERS (\\[[^\n]*\\])");
  LoadedDisc disc = loadedWhere(!json.empty(), run);
  if (json.empty()) return disc;
  disc.titles.emplace();
  disc.starts.emplace();
  for (const auto& chapter : nlohmann::json::parse(json[0], nullptr, false)) {
    disc.titles->push_back(chapter.value("title", ""));
    disc.starts->push_back(std::llround(chapter.value("time", 0.0) * 75));
  }
  return disc;
}

LoadedDisc runMednafen(const SheetOnDisk& s) {
  const ProcessResult run = runProcess(
      {"mednafen", "-sound", "0", "-force_module", "cdplay", s.sheet}, s.folder, "Leadout:");
  LoadedDisc disc = loadedWhere(run.all.find("Leadout:") != std::string::npos, run);
  disc.starts = numberColumn(run.all, "Track +\\d+, MSF: \\S+ LBA: +(\\d+)");
  return disc;
}

LoadedDisc runBchunk(const SheetOnDisk& s) {
  const ProcessResult run = runProcess({"bchunk", "-r", s.image, s.sheet, "piece"}, s.folder);
  LoadedDisc disc = loadedWhere(run.status == 0, run);
  disc.starts.emplace();
  disc.gap_starts.emplace();
  for (const std::string& track : column(run.out, "\nTrack +\\d+: ([^\n]*)")) {
    const auto start = msfColumn(track, " 01 (\\d+:\\d+:\\d+)");
    const auto gap = msfColumn(track, " 0[01] (\\d+:\\d+:\\d+)");
    disc.starts->push_back(start.empty() ? kNoStart : start[0]);
    disc.gap_starts->push_back(gap.empty() ? kNoStart : gap[0]);
  }
  int64_t pieces = 0;
  for (const auto& entry : fs::directory_iterator(s.folder)) {
    if (entry.path().filename().string().rfind("piece", 0) != 0) continue;
    pieces += static_cast<int64_t>(entry.file_size());
    fs::remove(entry.path());
  }
  const auto whole = static_cast<int64_t>(fs::file_size(s.folder + '/' + s.image));
  // Gaps are thrown away by habit; part of a sector at the image's end is lost on top.
  if (whole % 2352 != 0 && pieces % 2352 != whole % 2352) disc.starts->push_back(-2);
  return disc;
}

void writeWave(const SheetOnDisk& s, const std::string& to) {
  const fs::path image = fs::path(s.folder) / s.image;
  std::ifstream in(image, std::ios::binary);
  std::ofstream(to, std::ios::binary) << wavHeader(fs::file_size(image)) << in.rdbuf();
}

LoadedDisc runShnsplit(const SheetOnDisk& s) {
  writeWave(s, s.folder + "/twin.wav");
  const ProcessResult run =
      runProcess({"shnsplit", "-O", "always", "-f", s.sheet, "twin.wav"}, s.folder);
  LoadedDisc disc = loadedWhere(run.status == 0, run);
  disc.starts.emplace();
  std::vector<fs::path> pieces;
  for (const auto& entry : fs::directory_iterator(s.folder))
    if (entry.path().filename().string().rfind("split-track", 0) == 0) pieces.push_back(entry);
  std::sort(pieces.begin(), pieces.end());
  int64_t at = 0;
  for (const fs::path& piece : pieces) {
    disc.starts->push_back(at);
    at += (static_cast<int64_t>(fs::file_size(piece)) - 44) / 2352;
    fs::remove(piece);
  }
  // The lead-in becomes track 00 by habit.
  if (!pieces.empty() && pieces[0].filename() == "split-track00.wav")
    disc.starts->erase(disc.starts->begin());
  fs::remove(s.folder + "/twin.wav");
  return disc;
}

/// A reader that hands on the bytes of the sheet shows them in the sheet's encoding, and line
/// breaks as they are.
std::vector<std::string> normal(std::vector<std::string> titles) {
  for (std::string& title : titles) {
    if (disc::encodingOf(title) == disc::Encoding::kLatin1) title = fromLatin1(title);
    std::erase(title, '\r');
    std::replace(title.begin(), title.end(), '\n', ' ');
  }
  return titles;
}

std::string shownList(const std::vector<std::string>& list) {
  std::string text;
  for (const std::string& entry : list) text += '[' + entry + ']';
  return text;
}

bool sameStarts(const std::vector<int64_t>& loaded, const std::vector<int64_t>& truth) {
  if (loaded.size() != truth.size()) return false;
  if (loaded.empty()) return true;
  // mpv counts from the first track's start.
  const int64_t shift = loaded[0] == 0 ? truth[0] : 0;
  for (size_t i = 0; i < loaded.size(); ++i)
    if (loaded[i] + shift != truth[i]) return false;
  return true;
}

std::string shownStarts(const std::vector<int64_t>& starts) {
  std::string text;
  for (const int64_t s : starts) text += std::to_string(s) + ' ';
  return text;
}

}  // namespace

bool ReaderRun::installed() const {
  return std::all_of(programs.begin(), programs.end(),
                     [](const std::string& p) { return !findProgram(p).empty(); });
}

const std::vector<ReaderRun>& readerRuns() {
  static const std::vector<ReaderRun> kRuns = {
      {Reader::kCuetools, {"cueprint", "cuebreakpoints", "cueconvert"}, runCuetools},
      {Reader::kLibcue, {kLibraryReader}, runLibcue},
      {Reader::kLibburn, {kLibraryReader}, runLibburn},
      {Reader::kCdrdao, {"cdrdao"}, runCdrdao},
      {Reader::kLibcdio, {"cd-info"}, runLibcdio},
      {Reader::kChdman, {"chdman"}, runChdman},
      {Reader::kMetaflac, {"flac", "metaflac"}, runMetaflac},
      {Reader::kMpv, {"mpv"}, runMpv},
      {Reader::kMednafen, {"mednafen"}, runMednafen},
      {Reader::kBchunk, {"bchunk"}, runBchunk},
      {Reader::kShnsplit, {"shnsplit"}, runShnsplit}};
  return kRuns;
}

std::vector<Asked> askReaders(const std::function<SheetOnDisk(const fs::path&)>& prepare,
                              const std::vector<Reader>& leave_out) {
  const TemporaryFolder prepared;
  const SheetOnDisk disk = prepare(prepared.path());
  std::vector<std::future<Asked>> running;
  for (const ReaderRun& run : readerRuns()) {
    if (!run.installed() ||
        std::find(leave_out.begin(), leave_out.end(), run.reader) != leave_out.end())
      continue;
    running.push_back(
        std::async(std::launch::async, [&run, &prepared, mine = SheetOnDisk(disk)]() mutable {
          const TemporaryFolder folder;
          for (const auto& entry : fs::directory_iterator(prepared.path()))
            fs::create_hard_link(entry, folder.path() / entry.path().filename());
          mine.folder = folder.path().string();
          return Asked{run.reader, run.load(mine)};
        }));
  }
  std::vector<Asked> asked;
  asked.reserve(running.size());
  for (std::future<Asked>& r : running) asked.push_back(r.get());
  return asked;
}

std::string missingReaders() {
  std::string missing;
  for (const ReaderRun& run : readerRuns())
    if (!run.installed()) missing += ' ' + std::string(readerName(run.reader));
  return missing;
}

std::string difference(const LoadedDisc& loaded, const LoadedDisc& truth) {
  std::string text;
  if (loaded.catalog && *loaded.catalog != *truth.catalog)
    text += "catalog '" + *loaded.catalog + "', truly '" + *truth.catalog + "'\n";
  if (loaded.titles && normal(*loaded.titles) != *truth.titles)
    text += "titles " + shownList(*loaded.titles) + ", truly " + shownList(*truth.titles) + '\n';
  if (loaded.performers && truth.performers && normal(*loaded.performers) != *truth.performers)
    text += "performers " + shownList(*loaded.performers) + ", truly " +
            shownList(*truth.performers) + '\n';
  if (loaded.disc_texts && truth.disc_texts && normal(*loaded.disc_texts) != *truth.disc_texts)
    text += "disc's texts " + shownList(*loaded.disc_texts) + ", truly " +
            shownList(*truth.disc_texts) + '\n';
  if (loaded.more_indices && truth.more_indices && *loaded.more_indices != *truth.more_indices)
    text += "more indices " + shownStarts(*loaded.more_indices) + ", truly " +
            shownStarts(*truth.more_indices) + '\n';
  if (loaded.isrcs && *loaded.isrcs != *truth.isrcs)
    text += "codes " + shownList(*loaded.isrcs) + ", truly " + shownList(*truth.isrcs) + '\n';
  if (loaded.starts && !sameStarts(*loaded.starts, *truth.starts))
    text +=
        "starts " + shownStarts(*loaded.starts) + ", truly " + shownStarts(*truth.starts) + '\n';
  if (loaded.gap_starts && *loaded.gap_starts != *truth.gap_starts)
    text += "gaps " + shownStarts(*loaded.gap_starts) + ", truly " +
            shownStarts(*truth.gap_starts) + '\n';
  return text;
}

}  // namespace velmor::check::test
