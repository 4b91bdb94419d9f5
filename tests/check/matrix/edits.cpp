#include "tests/check/matrix/edits.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "disc/units/disc_time.h"

namespace velmor::check::test {

namespace {

using Lines = std::vector<std::string>;

const Lines kEveryKind = {"catalog",    "title0", "performer0", "file",     "track2",  "title2",
                          "performer2", "flags2", "isrc2",      "index2.0", "index2.1"};

/// Sectors of silence, 00:01:25, that PREGAP and POSTGAP add here. No pause in the image is as
/// long.
constexpr int64_t kAdded = 100;

class Edits {
 public:
  std::vector<Edit> run() {
    spellings();
    doublings();
    values();
    moves();
    numbers();
    strangers();
    characters();
    flags();
    indices();
    gaps();
    tracks();
    files();
    codes();
    wholeSheets();
    return std::move(m_edits);
  }

 private:
  void edit(const std::string& name, const std::string& line,
            const std::function<bool(Draft&)>& apply) {
    m_edits.push_back({name + (line.empty() ? "" : ":" + line), line, apply});
  }

  /// The text of one line changes, and the disc stays what it is, or becomes what `means` says.
  void rewrite(const std::string& name, const std::string& line,
               const std::function<std::string(std::string)>& how,
               const std::function<void(LoadedDisc&)>& means = {}) {
    edit(name, line, [line, how, means](Draft& d) {
      DraftLine* found = d.line(line);
      if (!found) return false;
      found->text = how(found->text);
      if (means) means(d.truth);
      return true;
    });
  }

  void replace(const std::string& name, const std::string& line, const std::string& text,
               const std::function<void(LoadedDisc&)>& means = {}) {
    rewrite(
        name, line, [text](const std::string& old) { return indentOf(old) + text; }, means);
  }

  void insert(const std::string& name, const std::string& behind, const std::string& text,
              const std::function<void(LoadedDisc&)>& means = {}) {
    edit(name + ":behind-" + (behind.empty() ? "nothing" : behind), "",
         [behind, text, means](Draft& d) {
           if (!d.add(behind, {"added", text})) return false;
           if (means) means(d.truth);
           return true;
         });
  }

  static std::string indentOf(const std::string& line) {
    return line.substr(0, line.find_first_not_of(' '));
  }
  static std::string commandOf(const std::string& line) {
    const size_t start = line.find_first_not_of(' ');
    return line.substr(start, line.find(' ', start) - start);
  }
  /// With the word that begins at `at` in small letters.
  static std::string lowered(std::string line, size_t at) {
    for (; at < line.size() && line[at] != ' '; ++at)
      line[at] = static_cast<char>(std::tolower(static_cast<unsigned char>(line[at])));
    return line;
  }
  /// Puts `with` for the blanks between command and values.
  static std::string spaced(const std::string& line, const std::string& with) {
    std::string made = indentOf(line);
    bool quoted = false;
    for (size_t i = made.size(); i < line.size(); ++i) {
      if (line[i] == '"') quoted = !quoted;
      made += line[i] == ' ' && !quoted ? with : std::string(1, line[i]);
    }
    return made;
  }
  static std::string without(std::string text, char gone) {
    std::erase(text, gone);
    return text;
  }

  /// What a line's value becomes when it is gone.
  static std::function<void(LoadedDisc&)> emptied(const std::string& line) {
    return [line](LoadedDisc& disc) {
      if (line == "catalog") disc.catalog = "";
      const size_t track =
          line.back() >= '1' && line.back() <= '3' ? static_cast<size_t>(line.back() - '1') : 3;
      if (line == "title0") disc.disc_texts->front() = "";
      if (line == "performer0") disc.disc_texts->back() = "";
      if (track >= disc.titles->size()) return;
      if (line.starts_with("title")) (*disc.titles)[track] = "";
      if (line.starts_with("performer")) (*disc.performers)[track] = "";
      if (line.starts_with("isrc")) (*disc.isrcs)[track] = "";
    };
  }

  void spellings() {
    for (const std::string& id : kEveryKind) {
      rewrite("lower", id,
              [](const std::string& line) { return lowered(line, indentOf(line).size()); });
      rewrite("tabs", id, [](const std::string& line) { return spaced(line, "\t"); });
      rewrite("two-blanks", id, [](const std::string& line) { return spaced(line, "  "); });
      rewrite("blank-at-end", id, [](const std::string& line) { return line + " "; });
      rewrite("tab-at-end", id, [](const std::string& line) { return line + "\t"; });
      rewrite("tab-indent", id,
              [](const std::string& line) { return "\t" + line.substr(indentOf(line).size()); });
      if (id.back() == '2' || id.starts_with("index"))
        rewrite("no-indent", id,
                [](const std::string& line) { return line.substr(indentOf(line).size()); });
      rewrite("glued-comment", id, [](const std::string& line) { return line + " ;comment"; });
    }
    edit("no-indent-at-all", "", [](Draft& d) {
      for (DraftLine& l : d.lines) l.text = l.text.substr(indentOf(l.text).size());
      return true;
    });
    edit("tab-indents", "", [](Draft& d) {
      for (DraftLine& l : d.lines)
        l.text =
            std::string(indentOf(l.text).size() / 2, '\t') + l.text.substr(indentOf(l.text).size());
      return true;
    });
    edit("lower-type", "file", [](Draft& d) {
      DraftLine* file = d.line("file");
      file->text = lowered(file->text, file->text.rfind(' ') + 1);
      return true;
    });
    replace("lower-mode", "track2", "TRACK 02 audio");
  }

  void doublings() {
    for (const std::string& id : kEveryKind)
      edit("twice", id, [id](Draft& d) {
        const DraftLine* line = d.line(id);
        return line && d.add(id, {"second", line->text});
      });
    const std::pair<const char*, const char*> kOther[] = {
        {"catalog", "CATALOG 4006381333931"},      {"title0", "TITLE \"Day Drive\""},
        {"performer0", "PERFORMER \"Others\""},    {"title2", "    TITLE \"Other Road\""},
        {"performer2", "    PERFORMER \"Other\""}, {"flags2", "    FLAGS PRE"},
        {"isrc2", "    ISRC USABC0500009"}};
    for (const auto& [id, text] : kOther)
      edit("second", id, [id = std::string(id), text = std::string(text)](Draft& d) {
        return d.add(id, {"second", text});
      });
  }

  void values() {
    for (const std::string& id : kEveryKind) {
      rewrite(
          "bare", id, [](const std::string& line) { return indentOf(line) + commandOf(line); },
          emptied(id));
      if (!id.starts_with("index") && !id.starts_with("track"))
        rewrite(
            "empty-quotes", id,
            [](const std::string& line) {
              return indentOf(line) + commandOf(line) +
                     (commandOf(line) == "FILE" ? " \"\" BINARY" : " \"\"");
            },
            emptied(id));
      edit("left-out", id, [id](Draft& d) {
        const size_t place = d.at(id);
        if (place == d.lines.size()) return false;
        d.lines.erase(d.lines.begin() + static_cast<std::ptrdiff_t>(place));
        emptied(id)(d.truth);
        if (id == "index2.0") (*d.truth.gap_starts)[1] = (*d.truth.starts)[1];
        return true;
      });
    }
    for (const char* id : {"title0", "performer0", "file", "title2", "performer2"}) {
      rewrite("unquoted", id, [](const std::string& line) { return without(line, '"'); });
      rewrite("apostrophes", id, [](std::string line) {
        std::replace(line.begin(), line.end(), '"', '\'');
        return line;
      });
    }
    replace("unquoted-word", "title2", "TITLE Road",
            [](LoadedDisc& d) { (*d.titles)[1] = "Road"; });
    replace("unquoted-word", "performer2", "PERFORMER Bell",
            [](LoadedDisc& d) { (*d.performers)[1] = "Bell"; });
    replace("unquoted-word", "performer0", "PERFORMER Lanterns",
            [](LoadedDisc& d) { d.disc_texts->back() = "Lanterns"; });
    for (const char* id : {"catalog", "flags2", "isrc2"})
      rewrite("quoted", id, [](const std::string& line) {
        const size_t value = line.rfind(' ') + 1;
        return line.substr(0, value) + '"' + line.substr(value) + '"';
      });
    edit("no-texts-of-the-disc", "", [](Draft& d) {
      std::erase_if(d.lines,
                    [](const DraftLine& l) { return l.id == "title0" || l.id == "performer0"; });
      d.truth.disc_texts = {"", ""};
      return true;
    });
    for (const char* kind : {"title", "performer", "isrc"})
      edit("none-at-all", kind, [kind = std::string(kind)](Draft& d) {
        std::erase_if(d.lines, [&](const DraftLine& l) { return l.id.starts_with(kind); });
        for (const char* track : {"0", "1", "2", "3"}) emptied(kind + track)(d.truth);
        return true;
      });
  }

  void move(const std::string& id, const std::string& behind) {
    edit("to-behind-" + (behind.empty() ? "nothing" : behind), id, [id, behind](Draft& d) {
      const size_t place = d.at(id);
      if (place == d.lines.size()) return false;
      const DraftLine line = d.lines[place];
      d.lines.erase(d.lines.begin() + static_cast<std::ptrdiff_t>(place));
      return d.add(behind, line);
    });
  }

  void moves() {
    for (const char* to :
         {"title0", "performer0", "file", "track1", "index1.1", "title2", "index2.1", "index3.1"})
      move("catalog", to);
    move("title0", "performer0");
    move("title0", "file");
    move("performer0", "");
    move("performer0", "file");
    for (const char* to : {"performer2", "flags2", "isrc2", "index2.0", "index2.1"})
      move("title2", to);
    for (const char* to : {"track2", "flags2", "isrc2", "index2.0", "index2.1"})
      move("performer2", to);
    for (const char* to : {"track2", "title2", "isrc2", "index2.0", "index2.1", "index1.1"})
      move("flags2", to);
    for (const char* to : {"track2", "title2", "performer2", "index2.0", "index2.1", "performer0"})
      move("isrc2", to);
    for (const char* to : {"", "catalog", "title0", "track1", "index1.1", "index3.1"})
      move("file", to);
    for (const char* to : {"track2", "title2", "index2.1", "index1.1", "track3"})
      move("index2.0", to);
    for (const char* to : {"track2", "title2", "track3"}) move("index2.1", to);
    for (const char* to : {"title2", "index2.1", "performer0"}) move("track2", to);
  }

  void numbers() {
    for (const char* text :
         {"INDEX 1 00:07:25", "INDEX 001 00:07:25", "INDEX 01 0:07:25", "INDEX 01 00:7:25",
          "INDEX 01 000:07:25", "INDEX 01 00:007:25", "INDEX 01 00:07:025", "INDEX 01 00:07.25",
          "INDEX 01 00:07", "INDEX 01 550", "INDEX 01 -00:07:25", "INDEX 01 00:07:75",
          "INDEX 01 00:60:25", "INDEX 01 xx:07:25", "INDEX xx 00:07:25", "INDEX 01 00: 07:25",
          "INDEX 01"})
      replace(std::string("as ") + text, "index2.1", text);
    replace("as INDEX 0 00:05:25", "index2.0", "INDEX 0 00:05:25");
    replace("as INDEX 00 0:05:25", "index2.0", "INDEX 00 0:05:25");
    replace("as INDEX 01 0:00:00", "index1.1", "INDEX 01 0:00:00");
    replace("as INDEX 01 0:0:0", "index1.1", "INDEX 01 0:0:0");
    replace("as INDEX 01 00:14:0", "index3.1", "INDEX 01 00:14:0");
    for (const char* text : {"TRACK 2 AUDIO", "TRACK 002 AUDIO", "TRACK 02", "TRACK xx AUDIO",
                             "TRACK AUDIO", "TRACK 04 AUDIO", "TRACK 01 AUDIO", "TRACK 100 AUDIO",
                             "TRACK 00 AUDIO", "TRACK 02 AUDIO more", "TRACK 02 SOUND"})
      replace(std::string("as ") + text, "track2", text);
  }

  void strangers() {
    const char* const kPlaces[] = {"",      "performer0", "file",    "track2",
                                   "isrc2", "index2.1",   "index3.1"};
    for (const char* place : kPlaces) {
      insert("REM-comment", place, "REM a comment of some words");
      insert("empty-line", place, "");
      insert("blank-line", place, "    ");
    }
    for (const char* place : {"", "performer0", "isrc2", "index2.1"}) {
      insert("unknown-command", place, "NONSENSE 12");
      insert("slashes", place, "// a comment");
    }
    for (const char* place : {"performer0", "isrc2"}) {
      insert("semicolon", place, "; a comment");
      insert("hash", place, "# a comment");
      insert("unknown-word", place, "NONSENSE");
      insert("unknown-quoted", place, "NONSENSE \"a b\"");
      for (const char* remark :
           {"REM", "REM ", "REM \"quoted\"", "REM GENRE Rock", "REM GENRE \"Hard Rock\"",
            "REM DATE 1999", "REM DISCID 860B640B", "REM COMMENT \"ExactAudioCopy v0.95b4\"",
            "REM COMMENT \"half", "REM REPLAYGAIN_ALBUM_GAIN -6.46 dB", "REM COMPOSER \"Bach\"",
            "REM INDEX 01 00:00:00", "REM FILE \"x.bin\" BINARY", "REM DATE", "rem small",
            "REM SESSION 01", "REM it's \\ odd", "REM COMMENT"})
        insert(remark, place, remark);
      for (const char* text : {"SONGWRITER \"Kim\"", "COMPOSER \"Kim\"", "ARRANGER \"Kim\"",
                               "MESSAGE \"Hello\"", "SONGWRITER Kim", "SONGWRITER Kim Lee",
                               "GENRE \"Rock\"", "DISC_ID \"1\"", "UPC_EAN \"0731452345622\"",
                               "TOC_INFO1 \"1\"", "SIZE_INFO \"1\"", "CDTEXTFILE \"image.cdt\""})
        insert(text, place, text);
    }
    for (const char* remark :
         {"REM FLAC__lead-in 88200", "REM FLAC__lead-in", "REM FLAC__lead-in x",
          "REM FLAC__lead-in 88201", "REM FLAC__lead-out 170 882000", "REM FLAC__lead-out",
          "REM FLAC__lead-out 170", "REM FLAC__lead-out 169 882000", "REM FLAC__lead-out 170 x",
          "REM FLAC__lead-out 170 881000", "REM FLAC__lead-out x 882000"}) {
      insert(remark, "index3.1", remark);
      insert(remark, "performer0", remark);
    }
    edit("two FLAC__lead-outs", "", [](Draft& d) {
      return d.add("index3.1", {"added", "REM FLAC__lead-out 170 882000"}) &&
             d.add("index3.1", {"added", "REM FLAC__lead-out 170 882000"});
    });
    insert("flags before a track", "performer0", "FLAGS DCP");
    insert("isrc before a track", "performer0", "ISRC USABC0500009");
    insert("index before a track", "file", "INDEX 01 00:00:00");
    insert("pregap before a track", "file", "PREGAP 00:02:00");
    insert("end", "index3.1", "END");
    insert("ctrl-z", "index3.1", "\x1A");
  }

  /// What the bytes of a text say, in UTF-8.
  static std::string meant(const std::string& text) {
    return text == "Caf\xE9" ? "Caf\xC3\xA9" : text;
  }

  void characters() {
    const std::pair<const char*, std::string> kInside[] = {{"control-1", "To\x01ll"},
                                                           {"tab", "Toll\tRoad"},
                                                           {"escape", "To\x1Bll"},
                                                           {"delete", "To\x7Fll"},
                                                           {"vertical-tab", "To\vll"},
                                                           {"utf-8", "Caf\xC3\xA9"},
                                                           {"latin-1", "Caf\xE9"},
                                                           {"quote", "Say \"Go\" now"},
                                                           {"backslash-at-end", "Toll\\"},
                                                           {"backslash", "To\\ll"},
                                                           {"backslash-n", "To\\nll"},
                                                           {"backslash-digits", "To\\101ll"},
                                                           {"apostrophe", "Toll's"},
                                                           {"blank-first", " Toll"},
                                                           {"blank-last", "Toll "},
                                                           {"blanks-inside", "Toll  Road"},
                                                           {"blank-alone", " "},
                                                           {"percent", "100%s"},
                                                           {"braces", "{a}"},
                                                           {"slash", "a/b"},
                                                           {"semicolon", "a;b"},
                                                           {"hash", "a#b"},
                                                           {"command-inside", "TRACK 05 AUDIO"},
                                                           {"quote-at-end", "Say \"Go\""},
                                                           {"80", std::string(80, 'x')},
                                                           {"81", std::string(81, 'x')},
                                                           {"127", std::string(127, 'x')},
                                                           {"128", std::string(128, 'x')},
                                                           {"159", std::string(159, 'x')},
                                                           {"160", std::string(160, 'x')},
                                                           {"250", std::string(250, 'x')},
                                                           {"256", std::string(256, 'x')},
                                                           {"300", std::string(300, 'x')},
                                                           {"500", std::string(500, 'x')},
                                                           {"1000", std::string(1000, 'x')},
                                                           {"2000", std::string(2000, 'x')},
                                                           {"3000", std::string(3000, 'x')}};
    for (const auto& [name, text] : kInside)
      replace(std::string("text ") + name, "title2", "TITLE \"" + text + '"',
              [text = meant(text)](LoadedDisc& d) { (*d.titles)[1] = text; });
    for (const char* name :
         {"utf-8", "latin-1", "quote", "backslash-at-end", "81", "control-1", "blank-alone"})
      for (const auto& [other, text] : kInside)
        if (std::string(other) == name) {
          replace(std::string("text ") + name, "performer0", "PERFORMER \"" + text + '"',
                  [text = meant(text)](LoadedDisc& d) { d.disc_texts->back() = text; });
          replace(std::string("text ") + name, "performer2", "PERFORMER \"" + text + '"',
                  [text = meant(text)](LoadedDisc& d) { (*d.performers)[1] = text; });
          insert(std::string("REM text ") + name, "title0", "REM COMMENT \"" + text + '"');
          insert(std::string("REM bare ") + name, "title0", "REM " + text);
        }
    replace("title not closed", "title2", "TITLE \"Toll Road");
    replace("title closed alone", "title2", "TITLE Toll Road\"");
    replace("text behind title", "title2", "TITLE \"Toll Road\" more");
    replace("file not closed", "file", "FILE \"image.bin BINARY");
    replace("two lines", "title2", "TITLE \"Toll\r\nRoad\"",
            [](LoadedDisc& d) { (*d.titles)[1] = "Toll Road"; });
  }

  void flags() {
    for (const char* text : {"FLAGS 4CH", "FLAGS PRE", "FLAGS SCMS", "FLAGS DCP PRE",
                             "FLAGS DCP 4CH PRE SCMS", "FLAGS DCP DCP", "FLAGS DATA", "FLAGS dcp",
                             "FLAGS LOUD", "FLAGS DCP LOUD", "FLAGS DCP,PRE", "FLAGS NONE"})
      replace(std::string("as ") + text, "flags2", text);
  }

  void indices() {
    insert("INDEX 02", "index1.1", "    INDEX 02 00:02:00",
           [](LoadedDisc& d) { d.more_indices = {150}; });
    insert("INDEX 02", "index2.1", "    INDEX 02 00:09:00",
           [](LoadedDisc& d) { d.more_indices = {675}; });
    insert("INDEX 02", "index3.1", "    INDEX 02 00:16:00",
           [](LoadedDisc& d) { d.more_indices = {1200}; });
    insert("INDEX 02, 03", "index3.1", "    INDEX 02 00:16:00\r\n    INDEX 03 00:17:00",
           [](LoadedDisc& d) {
             d.more_indices = {1200, 1275};
           });
    edit("INDEX 02 in a long track", "", [](Draft& d) {
      DraftLine* third = d.line("index3.1");
      // Where silence was added, the places below are no longer those of the image.
      if (!third || !d.line("index2.0") || !d.line("index2.1") || d.silence_added) return false;
      third->text = "    INDEX 01 00:16:00";
      d.line("index2.0")->text = "    INDEX 00 00:04:00";
      d.line("index2.1")->text = "    INDEX 01 00:04:25";
      d.truth.starts = {0, 325, 1200};
      d.truth.gap_starts = {0, 300, 1200};
      d.truth.more_indices = {375};
      return d.add("index2.1", {"added", "    INDEX 02 00:05:00"});
    });
    insert("INDEX 03", "index2.1", "    INDEX 03 00:09:00");
    insert("INDEX 99", "index3.1", "    INDEX 99 00:16:00");
    insert("INDEX 100", "index3.1", "    INDEX 100 00:16:00");
    insert("INDEX 02 before", "index2.1", "    INDEX 02 00:07:00");
    insert("INDEX 02 same", "index2.1", "    INDEX 02 00:07:25");
    insert("INDEX 02 in the next track", "index2.1", "    INDEX 02 00:15:00");
    replace("as INDEX 02", "index2.1", "INDEX 02 00:07:25");
    const auto late = [](LoadedDisc& d) { d.starts->front() = d.gap_starts->front() = 75; };
    replace("first index late", "index1.1", "INDEX 01 00:01:00", late);
    replace("first pause late", "index1.1", "INDEX 00 00:01:00\r\n    INDEX 01 00:02:00",
            [](LoadedDisc& d) {
              d.starts->front() = 150;
              d.gap_starts->front() = 75;
            });
    replace("pause in track 1", "index1.1", "INDEX 00 00:00:00\r\n    INDEX 01 00:01:00",
            [](LoadedDisc& d) { d.starts->front() = 75; });
    replace("pause of nothing", "index2.0", "INDEX 00 00:07:25",
            [](LoadedDisc& d) { (*d.gap_starts)[1] = 550; });
    replace("pause behind its track", "index2.0", "INDEX 00 00:07:26");
    replace("descends", "index2.1", "INDEX 01 00:05:00");
    replace("same start", "index3.1", "INDEX 01 00:07:25");
    replace("past the end", "index3.1", "INDEX 01 00:20:10",
            [](LoadedDisc& d) { d.starts->back() = d.gap_starts->back() = 1510; });
    replace("short track", "index3.1", "INDEX 01 00:18:00",
            [](LoadedDisc& d) { d.starts->back() = d.gap_starts->back() = 1350; });
    replace("100 minutes", "index3.1", "INDEX 01 100:00:00");
  }

  /// Silence that no file holds, in front of track `track` or behind the one before it.
  void gap(const std::string& name, const std::string& behind, const std::string& text,
           size_t track, bool before) {
    edit(name + ":behind-" + behind, "", [behind, text, track, before](Draft& d) {
      if (!d.add(behind, {"added", text})) return false;
      d.silence_added = true;
      for (size_t t = track - 1; t < d.truth.starts->size(); ++t) {
        (*d.truth.starts)[t] += kAdded;
        if (t > track - 1 || !before) (*d.truth.gap_starts)[t] += kAdded;
      }
      return true;
    });
  }

  void gaps() {
    gap("PREGAP", "isrc1", "    PREGAP 00:01:25", 1, true);
    gap("PREGAP and INDEX 00", "isrc2", "    PREGAP 00:01:25", 2, true);
    gap("PREGAP", "isrc3", "    PREGAP 00:01:25", 3, true);
    gap("PREGAP", "track3", "    PREGAP 00:01:25", 3, true);
    gap("PREGAP late", "index3.1", "    PREGAP 00:01:25", 3, true);
    gap("PREGAP one digit", "isrc3", "    PREGAP 0:01:25", 3, true);
    gap("PREGAP small letters", "isrc3", "    pregap 00:01:25", 3, true);
    gap("POSTGAP", "index1.1", "    POSTGAP 00:01:25", 2, false);
    gap("POSTGAP", "index2.1", "    POSTGAP 00:01:25", 3, false);
    gap("POSTGAP early", "isrc2", "    POSTGAP 00:01:25", 3, false);
    edit("POSTGAP of the last", "", [](Draft& d) {
      d.silence_added = true;
      return d.add("index3.1", {"added", "    POSTGAP 00:01:25"});
    });
    insert("PREGAP of nothing", "isrc3", "    PREGAP 00:00:00");
    insert("PREGAP bare", "isrc3", "    PREGAP");
    insert("PREGAP no time", "isrc3", "    PREGAP 2");
    edit("two PREGAPs", "", [](Draft& d) {
      d.silence_added = true;
      (*d.truth.starts)[2] += kAdded;
      return d.add("isrc3", {"added", "    PREGAP 00:01:25\r\n    PREGAP 00:01:25"});
    });
  }

  void tracks() {
    for (const char* mode : {"MODE1/2352", "MODE2/2352", "MODE1/2048", "MODE2/2336", "CDG",
                             "CDI/2352", "CDI/2336", "MODE2/2048", "MODE2/2324"}) {
      replace(std::string("as ") + mode, "track1", std::string("TRACK 01 ") + mode);
      replace(std::string("as ") + mode, "track3", std::string("TRACK 03 ") + mode);
    }
    // A data track seldom has a code.
    for (const char* mode : {"MODE1/2352", "MODE2/2352", "MODE1/2048", "MODE2/2336"})
      edit(std::string("without ISRC, as ") + mode, "track3", [mode = std::string(mode)](Draft& d) {
        if (!d.line("track3") || !d.line("isrc3")) return false;
        d.line("track3")->text = "  TRACK 03 " + mode;
        d.lines.erase(d.lines.begin() + static_cast<std::ptrdiff_t>(d.at("isrc3")));
        emptied("isrc3")(d.truth);
        return true;
      });
    for (const int first : {2, 97})
      edit("tracks from " + std::to_string(first), "", [first](Draft& d) {
        for (int t = 1; t <= 3; ++t) {
          DraftLine* line = d.line("track" + std::to_string(t));
          if (!line) return false;
          line->text = "  TRACK " + disc::twoDigits(first + t - 1) + " AUDIO";
        }
        return true;
      });
    edit("no tracks", "", [](Draft& d) {
      d.lines.resize(d.at("track1"));
      return true;
    });
    edit("one track", "", [](Draft& d) {
      d.lines.resize(d.at("track2"));
      d.truth.titles->resize(1);
      d.truth.performers->resize(1);
      d.truth.isrcs->resize(1);
      d.truth.starts->resize(1);
      d.truth.gap_starts->resize(1);
      return true;
    });
  }

  /// A file for each track, of that type; `gaps_behind`: each pause ends the file before.
  static bool cutIntoFiles(Draft& d, const std::string& type, bool gaps_behind) {
    if (d.files.size() != 1 || d.at("index2.0") == d.lines.size()) return false;
    const bool wave = type == "WAVE";
    const std::string ending = wave ? ".wav" : ".bin";
    const int64_t second = gaps_behind ? 550 : 400;
    d.files = {{"one" + ending, 0, second, wave},
               {"two" + ending, second, 1050 - second, wave},
               {"three" + ending, 1050, 450, wave}};
    d.line("file")->text = "FILE \"one" + ending + "\" " + type;
    d.add(gaps_behind ? "index2.0" : "index1.1", {"file2", "FILE \"two" + ending + "\" " + type});
    d.add("index2.1", {"file3", "FILE \"three" + ending + "\" " + type});
    if (!gaps_behind) {
      d.line("index2.0")->text = "    INDEX 00 00:00:00";
      d.line("index2.1")->text = "    INDEX 01 00:02:00";
    } else {
      d.line("index2.1")->text = "    INDEX 01 00:00:00";
    }
    d.line("index3.1")->text = "    INDEX 01 00:00:00";
    return true;
  }

  void files() {
    for (const char* type : {"BINARY", "WAVE"})
      for (const bool behind : {false, true})
        edit(std::string("a ") + type + " file for each track" +
                 (behind ? ", the pause behind the file" : ""),
             "file", [type = std::string(type), behind](Draft& d) {
               return cutIntoFiles(d, type, behind);
             });
    edit("one file named three times", "file", [](Draft& d) {
      return d.add("index1.1", {"file2", "FILE \"image.bin\" BINARY"}) &&
             d.add("index2.1", {"file3", "FILE \"image.bin\" BINARY"});
    });
    for (const char* kind : {"WAVE", "MOTOROLA", "WAVE, pause in track 1"})
      edit(kind, "file", [kind = std::string(kind)](Draft& d) {
        if (d.files.size() != 1) return false;
        const bool wave = kind != "MOTOROLA";
        d.files = {{wave ? "image.wav" : "image.bin", 0, kDraftSectors, wave, !wave}};
        d.line("file")->text = wave ? "FILE \"image.wav\" WAVE" : "FILE \"image.bin\" MOTOROLA";
        if (kind != "WAVE, pause in track 1") return true;
        d.line("index1.1")->text = "    INDEX 00 00:00:00\r\n    INDEX 01 00:01:00";
        d.truth.starts->front() = 75;
        return true;
      });
    edit("WAVE without pauses", "file", [](Draft& d) {
      if (d.files.size() != 1 || !d.line("index2.0")) return false;
      d.files = {{"image.wav", 0, kDraftSectors, true}};
      d.line("file")->text = "FILE \"image.wav\" WAVE";
      std::erase_if(d.lines, [](const DraftLine& l) { return l.id == "index2.0"; });
      (*d.truth.gap_starts)[1] = 550;
      return true;
    });
    for (const char* text :
         {"FILE \"image.bin\"", "FILE \"image.bin\" RAW", "FILE \"image.bin\" binary",
          "FILE \"./image.bin\" BINARY", "FILE \"IMAGE.BIN\" BINARY", "FILE \"none.bin\" BINARY",
          "FILE image.bin BINARY", "FILE \"image.bin\" BINARY more",
          "FILE \"C:\\music\\image.bin\" BINARY"})
      replace(std::string("as ") + text, "file", text);
    for (const char* name :
         {"my image.bin", "im'age.bin", "im\xC3\xA9ge.bin", "image.img", "image.BIN", "sub.cue.bin",
          "image", "im;age.bin", "im\"age.bin", "im\\age.bin", "TRACK.bin", "other.bin"})
      edit(std::string("named ") + name, "file", [name = std::string(name)](Draft& d) {
        if (d.files.size() != 1) return false;
        d.files.front().name = name;
        d.line("file")->text = "FILE \"" + name + "\" BINARY";
        return true;
      });
    edit("named with a blank, unquoted", "file", [](Draft& d) {
      if (d.files.size() != 1) return false;
      d.files.front().name = "my image.bin";
      d.line("file")->text = "FILE my image.bin BINARY";
      return true;
    });
  }

  void codes() {
    for (const char* code : {"US-ABC-05-00002", "usabc0500002", "USABC050000", "USABC05000022",
                             "US ABC 05 00002", "12ABC0500002", "USABC05O0002", "USABCX500002"})
      replace(std::string("as ISRC ") + code, "isrc2", std::string("ISRC ") + code);
    replace("as the first ISRC", "isrc2", "ISRC USABC0500001",
            [](LoadedDisc& d) { (*d.isrcs)[1] = "USABC0500001"; });
    for (const char* code : {"731452345622", "07314523456220", "0731452345628", "073145234562X",
                             "0-731452-345622", "0 731452 345622"})
      replace(std::string("as CATALOG ") + code, "catalog", std::string("CATALOG ") + code,
              [code = std::string(code)](LoadedDisc& d) {
                if (code == "0731452345628") d.catalog = code;
              });
  }

  void wholeSheets() {
    edit("LF", "", [](Draft& d) { return d.line_end = "\n", true; });
    edit("CR", "", [](Draft& d) { return d.line_end = "\r", true; });
    edit("CRCRLF", "", [](Draft& d) { return d.line_end = "\r\r\n", true; });
    edit("no last line end", "", [](Draft& d) { return d.last_line_ends = false, true; });
    edit("LF, no last line end", "", [](Draft& d) {
      d.line_end = "\n";
      d.last_line_ends = false;
      return true;
    });
    edit("byte-order mark", "", [](Draft& d) { return d.before = "\xEF\xBB\xBF", true; });
    edit("empty line first, mark", "",
         [](Draft& d) { return d.before = "\xEF\xBB\xBF\r\n", true; });
    edit("all small letters", "", [](Draft& d) {
      for (DraftLine& l : d.lines) l.text = lowered(l.text, indentOf(l.text).size());
      return true;
    });
    edit("as shntool writes", "", [](Draft& d) {
      for (DraftLine& l : d.lines) {
        const size_t minutes = l.text.find("00:");
        if (l.id.starts_with("index") && minutes != std::string::npos)
          l.text.replace(minutes, 2, "0");
      }
      return true;
    });
  }

  std::vector<Edit> m_edits;
};

}  // namespace

const std::vector<Edit>& allEdits() {
  static const std::vector<Edit> kEdits = Edits().run();
  return kEdits;
}

}  // namespace velmor::check::test
