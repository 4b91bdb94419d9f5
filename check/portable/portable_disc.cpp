#include "check/portable/portable_disc.h"

#include <algorithm>
#include <functional>
#include <set>
#include <system_error>

#include "check/portable/plain_text.h"
#include "check/portable/start_times.h"
#include "check/rules/codes.h"
#include "check/rules/encoding.h"
#include "check/rules/track_words.h"
#include "check/sheet/command_line.h"

namespace velmor::cdcheck {

namespace {

/// Errors that leave nothing to write a sheet from.
constexpr std::string_view kHopeless[] = {
    "no-tracks",       "no-file",           "image-missing",     "image-empty",
    "too-many-tracks", "no-index-01",       "index-order",       "indices-descend",
    "index-past-end",  "bad-number",        "time-out-of-range", "minutes-over-99",
    "file-type",       "misplaced-command", "track-number",      "not-a-text",
    "more-problems",   "too-many-files",    "file-starts-late",  "image-unreadable",
    "not-of-its-type", "unknown-track-mode"};

void refuseHopeless(const Report& report) {
  for (const Finding& f : report.findings) {
    if (f.severity != Severity::error ||
        std::find(std::begin(kHopeless), std::end(kHopeless), f.rule) == std::end(kHopeless))
      continue;
    const std::string where = f.line > 0 ? " (line " + std::to_string(f.line) + ")" : "";
    throw CheckError("No second sheet can be made from '" + report.sheet.string() +
                     "': " + printable(f.what) + where + ". " + f.action);
  }
}

class Maker {
 public:
  Maker(const Report& report, const std::filesystem::path& target)
      : sheet_(report.disc.sheet), report_(report), folder_(target.parent_path()) {
    if (target.extension() == ".cue") name_ = target.filename();
  }

  PortableDisc run(const ExactStarts& exact) {
    takeCatalog();
    takeFields(sheet_.fields, made_.fields, "Disc");
    takeFiles();
    for (const Track& t : sheet_.tracks) takeTrack(t);
    placeStarts(report_.disc, exact, made_.tracks, made_.changes);
    dropEmptyGaps();
    completeFields();
    if (!sheet_.remarks.empty())
      say(std::to_string(sheet_.remarks.size()) + " REM lines are left out: no disc holds them.");
    if (sheet_.cdTextFile) say("CDTEXTFILE is left out: most readers do not know it.");
    return std::move(made_);
  }

 private:
  void say(const std::string& change) { made_.changes.push_back(printable(change)); }

  void takeCatalog() {
    if (!sheet_.catalog) return;
    std::string code = sheet_.catalog->bytes;
    if (sheet_.catalog->quoted) say("CATALOG is written without quotes.");
    if (code.size() == 12 && allDigits(code)) {
      say("CATALOG " + code + " is written as 0" + code + ": a UPC takes a leading 0.");
      code.insert(code.begin(), '0');
    }
    if (code.size() != 13 || !allDigits(code)) {
      say("CATALOG '" + code.substr(0, 40) + "' is left out: it is not 13 digits.");
      return;
    }
    made_.catalog = code;
    if (!isMcn(code)) say("CATALOG " + code + " is kept with its wrong check digit: look it up.");
  }

  void takeText(const std::optional<Text>& from, std::string& to, const std::string& what) {
    if (!from) return;
    const PlainText plain = plainText(from->bytes);
    to = plain.text;
    if (to.empty())
      say(what + " is left out: it is empty.");
    else if (to != from->bytes)
      say(what + " is written as '" + to + "'" +
          (plain.lettersLost ? "; '?' stands for letters that ASCII has not: spell it by hand."
                             : "."));
  }

  void takeFields(const Fields& from, PlainFields& to, const std::string& whose) {
    takeText(from.title, to.title, whose + ": TITLE");
    takeText(from.performer, to.performer, whose + ": PERFORMER");
    takeText(from.songwriter, to.songwriter, whose + ": SONGWRITER");
  }

  void takeFiles() {
    for (size_t f = 0; f < sheet_.files.size(); ++f) {
      const ImageFile& image = report_.disc.images[f];
      PlainFile file{fileName(image.path()), sheet_.files[f].type};
      if (file.name.find_first_of("\"\r\n") != std::string::npos)
        throw CheckError("The image's name '" + printable(file.name) +
                         "' has a quote or a line break, which no sheet can hold: rename it.");
      if (!std::all_of(file.name.begin(), file.name.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 128; }))
        say("FILE '" + file.name +
            "' keeps its letters, since it must name the file; rename the "
            "image in ASCII for readers on other systems.");
      made_.files.push_back(std::move(file));
    }
    checkStems(made_.files[0].name);
    if (made_.files.size() > 1)
      say("The sheet keeps its " + std::to_string(made_.files.size()) +
          " files; readers that want one image will not take it.");
  }

  /// The one thing that a sheet cannot say: libcdio looks for the sheet's name with ".bin".
  void checkStems(const std::string& file) {
    if (name_.empty() || file == name_.stem().string() + ".bin") return;
    say("For libcdio (cd-info) rename this sheet or the image: it looks for '" +
        name_.stem().string() + ".bin' beside the sheet, whatever FILE says.");
  }

  std::string fileName(const std::filesystem::path& image) const {
    std::error_code error;
    const auto there = std::filesystem::weakly_canonical(image, error);
    const auto here = std::filesystem::weakly_canonical(
        folder_.empty() ? std::filesystem::path(".") : folder_, error);
    const auto relative = there.lexically_relative(std::filesystem::absolute(here, error));
    // A link to an image elsewhere keeps the name it has beside the sheet.
    const bool beside = std::filesystem::equivalent(
        image.parent_path().empty() ? std::filesystem::path(".") : image.parent_path(), here,
        error);
    return beside || relative.empty() ? image.filename().string() : relative.string();
  }

  void takeTrack(const Track& from) {
    PlainTrack to;
    to.number = from.number;
    to.mode = from.mode;
    const std::string whose = "Track " + std::to_string(from.number);
    takeFields(from.fields, to.fields, whose);
    takeIsrc(from, to, whose);
    takeFlags(from, to, whose);
    if (from.pregap) to.pregap = from.pregap->sectors();
    if (from.postgap) to.postgap = from.postgap->sectors();
    for (const Index& i : from.indices) to.indices.push_back({i.number, i.time.sectors(), i.file});
    made_.tracks.push_back(std::move(to));
  }

  void takeFlags(const Track& from, PlainTrack& to, const std::string& whose) {
    if (!from.flags) return;
    const std::string words = upperCase(from.flags->bytes);
    for (std::string_view rest = words; !rest.empty();) {
      const std::string_view word = takeWord(rest);
      if (isFlag(word))
        (to.flags += to.flags.empty() ? "" : " ") += word;
      else
        say(whose + ": FLAGS '" + std::string(word.substr(0, 40)) + "' is left out: it is none.");
    }
    if (from.flags->quoted) say(whose + ": FLAGS is written without quotes.");
  }

  void takeIsrc(const Track& from, PlainTrack& to, const std::string& whose) {
    if (!from.isrc) return;
    const std::string& code = from.isrc->bytes;
    const std::string bare = bareIsrc(code);
    if (!isIsrc(bare)) {
      say(whose + ": ISRC '" + code.substr(0, 40) + "' is left out: it is none.");
    } else if (!isrcs_.insert(bare).second) {
      say(whose + ": ISRC " + bare +
          " is left out: an earlier track has it. Find out whose it is.");
    } else {
      to.isrc = bare;
      if (bare != code) say(whose + ": ISRC " + code + " is written as " + bare + '.');
      if (from.isrc->quoted) say(whose + ": ISRC is written without quotes.");
    }
  }

  void dropEmptyGaps() {
    for (PlainTrack& t : made_.tracks) {
      if (t.indices.size() < 2 || t.indices[0].number != 0 ||
          t.indices[0].file != t.indices[1].file || t.indices[0].sector < t.indices[1].sector)
        continue;
      t.indices.erase(t.indices.begin());
      say("Track " + std::to_string(t.number) +
          ": INDEX 00 is left out: it is the same sector as INDEX 01.");
    }
  }

  /// The packs of a CD-TEXT field come for every track or for none.
  void completeFields() {
    complete(
        &PlainFields::title, "TITLE",
        [](const PlainTrack& t) { return "Track " + std::to_string(t.number); }, "Untitled");
    complete(&PlainFields::performer, "PERFORMER", {}, "Various");
    complete(&PlainFields::songwriter, "SONGWRITER", {}, "Various");
  }

  void complete(std::string PlainFields::*field, const std::string& name,
                const std::function<std::string(const PlainTrack&)>& own,
                const std::string& forDisc) {
    const auto has = [&](const PlainTrack& t) { return !(t.fields.*field).empty(); };
    const bool any = std::any_of(made_.tracks.begin(), made_.tracks.end(), has);
    if (!any && (made_.fields.*field).empty()) return;
    if ((made_.fields.*field).empty()) {
      made_.fields.*field = forDisc;
      say("Disc: " + name + " '" + forDisc + "' is added: tracks have one.");
    }
    for (PlainTrack& t : made_.tracks) {
      if (has(t)) continue;
      t.fields.*field = own ? own(t) : made_.fields.*field;
      say("Track " + std::to_string(t.number) + ": " + name + " '" + t.fields.*field +
          "' is added: a field is given for all or for none.");
    }
  }

  const Sheet& sheet_;
  const Report& report_;
  std::filesystem::path folder_, name_;  ///< of a new cue sheet; no name for a TOC
  std::set<std::string> isrcs_;
  PortableDisc made_;
};

}  // namespace

PortableDisc makePortable(const Report& report, const std::filesystem::path& target,
                          const ExactStarts& exact) {
  refuseHopeless(report);
  return Maker(report, target).run(exact);
}

}  // namespace velmor::cdcheck
