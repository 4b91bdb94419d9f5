#include "check/portable/make_portable.h"

#include <algorithm>
#include <set>

#include "check/portable/complete_fields.h"
#include "check/portable/image_names.h"
#include "check/portable/start_times.h"
#include "disc/codes/catalogue_number.h"
#include "disc/codes/isrc.h"
#include "disc/portable/portable_disc.h"
#include "disc/sheet/sheet.h"
#include "disc/sheet/track_words.h"
#include "disc/text/line_of_text.h"
#include "disc/text/phrases.h"
#include "disc/text/plain_text.h"
#include "disc/text/words.h"

namespace velmor::check {

namespace {

/// Errors that leave nothing to write a sheet from.
constexpr std::string_view kHopeless[] = {
    "no-tracks",          "no-file",           "image-missing",
    "image-empty",        "too-many-tracks",   "no-index-01",
    "index-order",        "indices-descend",   "index-past-end",
    "bad-number",         "time-out-of-range", "minutes-over-99",
    "file-type",          "misplaced-command", "track-number",
    "not-a-text",         "more-problems",     "too-many-files",
    "file-starts-late",   "image-unreadable",  "not-of-its-type",
    "unknown-track-mode", "audio-format",      "audio-unreadable",
    "audio-breaks-off",   "header-in-image"};

void refuseHopeless(const Report& report) {
  for (const Finding& f : report.findings) {
    if (f.severity != Severity::kError ||
        std::find(std::begin(kHopeless), std::end(kHopeless), f.rule) == std::end(kHopeless))
      continue;
    const std::string where = f.line > 0 ? " (line " + std::to_string(f.line) + ")" : "";
    throw Failure("no second sheet can be made from " + disc::inQuotes(report.sheet.string()) +
                  ": " + disc::printable(f.what) + where + "; " + disc::asClause(f.action));
  }
}

class Maker {
 public:
  Maker(const Report& report, const std::filesystem::path& target)
      : m_sheet(report.disc.sheet),
        m_report(report),
        m_target(target),
        m_folder(target.parent_path()) {}

  disc::PortableDisc run(const ExactStarts& exact) {
    takeCatalog();
    takeFields(m_sheet.fields, m_made.fields, "Disc");
    takeFiles();
    for (const disc::Track& t : m_sheet.tracks) takeTrack(t);
    placeStarts(m_report.disc, exact, m_made.tracks, m_made.changes);
    dropEmptyGaps();
    dropMoreIndices();
    beginAtTheImage();
    countFromOne();
    completeFields(m_made);
    if (!m_sheet.remarks.empty())
      say(std::to_string(m_sheet.remarks.size()) + " REM lines are left out: no disc holds them.");
    if (m_sheet.cd_text_file) say("CDTEXTFILE is left out: most readers do not know it.");
    return std::move(m_made);
  }

 private:
  void say(const std::string& change) { m_made.changes.push_back(disc::printable(change)); }

  void takeCatalog() {
    if (!m_sheet.catalog) return;
    const std::string& given = m_sheet.catalog->bytes;
    const std::string code = disc::bareCatalogueNumber(given);
    if (m_sheet.catalog->quoted) say("CATALOG is written without quotes.");
    if (code.size() != 13 || !disc::allDigits(code)) {
      say("CATALOG " + disc::inQuotes(given.substr(0, 40)) + " is left out: it is not 13 digits.");
      return;
    }
    if (code == '0' + given) {
      say("CATALOG " + given + " is written as " + code + ": a UPC takes a leading 0.");
    } else if (code != given) {
      say("CATALOG " + given + " is written as " + code + '.');
    }
    m_made.catalog = code;
    if (!disc::isCatalogueNumber(code))
      say("CATALOG " + code + " is kept with its wrong check digit: look it up.");
  }

  void takeText(const std::optional<disc::Text>& from, std::string& to, const std::string& what) {
    if (!from) return;
    const disc::PlainText plain = disc::plainText(from->bytes);
    to = plain.text;
    if (to.empty())
      say(what + " is left out: it is empty.");
    else if (to != from->bytes)
      say(what + " is written as " + disc::inQuotes(to) +
          (plain.letters_lost ? "; \"?\" stands for letters that ASCII has not: spell it by hand."
                              : "."));
  }

  void takeFields(const disc::Fields& from, disc::PlainFields& to, const std::string& whose) {
    takeText(from.title, to.title, whose + ": TITLE");
    takeText(from.performer, to.performer, whose + ": PERFORMER");
    takeText(from.songwriter, to.songwriter, whose + ": SONGWRITER");
    takeComposer(from, to, whose);
    leaveOut(from.arranger, whose + ": ARRANGER");
    leaveOut(from.message, whose + ": MESSAGE");
  }

  void takeComposer(const disc::Fields& from, disc::PlainFields& to, const std::string& whose) {
    if (from.songwriter) return leaveOut(from.composer, whose + ": COMPOSER");
    takeText(from.composer, to.songwriter, whose + ": SONGWRITER, from COMPOSER,");
  }

  void leaveOut(const std::optional<disc::Text>& text, const std::string& what) {
    if (text) say(what + " is left out: not every reader knows it.");
  }

  void takeFiles() {
    for (size_t f = 0; f < m_sheet.files.size(); ++f) {
      const ImageFile& image = m_report.disc.images[f];
      if (image.container() == disc::Container::kFlac)
        throw Failure("no second sheet can be made: " +
                      disc::inQuotes(disc::printable(nameFromFolder(image.path(), m_folder))) +
                      " is a FLAC file, which not every reader decodes; decode it with flac -d and "
                      "name the WAVE file");
      disc::PlainFile file{nameFromFolder(image.path(), m_folder), m_sheet.files[f].type,
                           image.sectors()};
      if (file.name.find_first_of("\"\r\n") != std::string::npos)
        throw Failure("the image's name " + disc::inQuotes(disc::printable(file.name)) +
                      " has a quote or a line break, which no sheet can hold; rename it");
      if (!std::all_of(file.name.begin(), file.name.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 128; }))
        say("FILE " + disc::inQuotes(file.name) +
            " keeps its letters, since it must name the file; rename the "
            "image in ASCII for readers on other systems.");
      m_made.files.push_back(std::move(file));
    }
    if (const auto advice = nameForLibcdio(m_target, m_made.files[0].name)) say(*advice);
  }

  void takeTrack(const disc::Track& from) {
    disc::PlainTrack to;
    to.number = from.number;
    to.mode = from.mode;
    const std::string whose = "Track " + std::to_string(from.number);
    takeFields(from.fields, to.fields, whose);
    takeIsrc(from, to, whose);
    takeFlags(from, to, whose);
    if (from.pregap) to.pregap = from.pregap->sectors();
    if (from.postgap) to.postgap = from.postgap->sectors();
    for (const disc::Index& i : from.indices)
      to.indices.push_back({i.number, i.time.sectors(), i.file});
    m_made.tracks.push_back(std::move(to));
  }

  void takeFlags(const disc::Track& from, disc::PlainTrack& to, const std::string& whose) {
    if (!from.flags) return;
    const std::string words = disc::upperCase(from.flags->bytes);
    for (std::string_view rest = words; !rest.empty();) {
      const std::string_view word = disc::takeWord(rest);
      if (disc::isFlag(word))
        (to.flags += to.flags.empty() ? "" : " ") += word;
      else
        say(whose + ": FLAGS " + disc::inQuotes(word.substr(0, 40)) + " is left out: it is none.");
    }
    if (from.flags->quoted) say(whose + ": FLAGS is written without quotes.");
  }

  void takeIsrc(const disc::Track& from, disc::PlainTrack& to, const std::string& whose) {
    if (!from.isrc) return;
    const std::string& code = from.isrc->bytes;
    const std::string bare = disc::bareIsrc(code);
    if (!disc::isIsrc(bare)) {
      say(whose + ": ISRC " + disc::inQuotes(code.substr(0, 40)) + " is left out: it is none.");
    } else if (!m_isrcs.insert(bare).second) {
      say(whose + ": ISRC " + bare +
          " is left out: an earlier track has it. Find out whose it is.");
    } else {
      to.isrc = bare;
      if (bare != code) say(whose + ": ISRC " + code + " is written as " + bare + '.');
      if (from.isrc->quoted) say(whose + ": ISRC is written without quotes.");
    }
  }

  void dropEmptyGaps() {
    for (disc::PlainTrack& t : m_made.tracks) {
      if (t.indices.size() < 2 || t.indices[0].number != 0 ||
          t.indices[0].file != t.indices[1].file || t.indices[0].sector < t.indices[1].sector)
        continue;
      t.indices.erase(t.indices.begin());
      say("Track " + std::to_string(t.number) +
          ": INDEX 00 is left out: it is the same sector as INDEX 01.");
    }
  }

  /// cdrdao counts them from the start of their track, other readers from that of the file.
  void dropMoreIndices() {
    for (disc::PlainTrack& t : m_made.tracks)
      if (std::erase_if(t.indices, [](const disc::PlainIndex& i) { return i.number > 1; }) > 0)
        say("Track " + std::to_string(t.number) + ": indices above 01 are left out.");
  }

  /// What lies before the first index is a pause to some readers, and refused by others.
  void beginAtTheImage() {
    disc::PlainTrack& first = m_made.tracks.front();
    const disc::PlainIndex start = first.indices.front();
    if (start.number != 1 || start.sector == 0) return;
    first.indices.insert(first.indices.begin(), {0, 0, start.file});
    say("Track " + std::to_string(first.number) +
        ": INDEX 00 00:00:00 is added: the image begins before INDEX 01.");
  }

  void countFromOne() {
    const int shift = m_made.tracks.front().number - 1;
    if (shift == 0) return;
    for (disc::PlainTrack& t : m_made.tracks) t.number -= shift;
    say("The tracks are counted from 1, not from " + std::to_string(shift + 1) + ".");
  }

  const disc::Sheet& m_sheet;
  const Report& m_report;
  const std::filesystem::path& m_target;
  const std::filesystem::path m_folder;
  std::set<std::string> m_isrcs;
  disc::PortableDisc m_made;
};

}  // namespace

disc::PortableDisc makePortable(const Report& report, const std::filesystem::path& target,
                                const ExactStarts& exact) {
  refuseHopeless(report);
  return Maker(report, target).run(exact);
}

}  // namespace velmor::check
