#include "check/rules/rules.h"
#include "disc/sheet/sheet.h"
#include "disc/text/words.h"
#include "disc/units/disc_units.h"

namespace velmor::check {

namespace {

constexpr std::string_view kFlac = "FLAC cue sheets";

/// The lines that metaflac writes of a disc that it keeps: what they say must be whole sectors.
class FlacRemarks {
 public:
  FlacRemarks(const Disc& disc, Findings& findings) : m_disc(disc), m_findings(findings) {}

  void check(const disc::Text& remark) {
    std::string_view rest = remark.bytes;
    const std::string_view kind = disc::takeWord(rest);
    m_place = {remark.line, 0};
    if (kind == "FLAC__lead-in") checkLeadIn(disc::takeWord(rest));
    if (kind == "FLAC__lead-out") checkLeadOut(rest);
  }

 private:
  void tell(const std::string& what) {
    m_findings.add(Severity::kWarning, {"flac-remark", "refused"}, m_place, what,
                   "Take the line out: the disc says the same without it.", kFlac);
  }

  static bool isOffset(std::string_view word) { return disc::allDigits(word) && word.size() < 16; }

  void checkLeadIn(std::string_view offset) {
    if (offset.empty())
      tell("REM FLAC__lead-in has no number of samples");
    else if (!isOffset(offset))
      tell("REM FLAC__lead-in has a number of samples that is none");
    else if (std::stoll(std::string(offset)) % disc::kFramesPerSector != 0)
      tell("REM FLAC__lead-in is no multiple of a sector's 588 samples");
  }

  void checkLeadOut(std::string_view rest) {
    const std::string_view track = disc::takeWord(rest), offset = disc::takeWord(rest);
    if (m_lead_out) tell("a second REM FLAC__lead-out");
    m_lead_out = true;
    if (track.empty())
      tell("REM FLAC__lead-out has no track number");
    else if (!isOffset(track))
      tell("REM FLAC__lead-out has a track number that is none");
    else if (track != "170")
      m_findings.add(Severity::kWarning, "flac-remark", m_place,
                     "REM FLAC__lead-out names track " + std::string(track) +
                         "; the lead-out of a disc is 170",
                     "Write 170, or take the line out.", kFlac);
    if (offset.empty() && !track.empty())
      tell("REM FLAC__lead-out has no number of samples");
    else if (!offset.empty() && !isOffset(offset))
      tell("REM FLAC__lead-out has a number of samples that is none");
    else if (!offset.empty())
      checkEnd(std::stoll(std::string(offset)));
  }

  void checkEnd(int64_t samples) {
    if (m_disc.images.size() != 1 || !m_disc.images[0].readable()) return;
    if (samples != m_disc.images[0].dataBytes() / disc::kBytesPerFrame)
      tell("REM FLAC__lead-out is not the end of the image");
  }

  const Disc& m_disc;
  Findings& m_findings;
  Place m_place;
  bool m_lead_out = false;
};

}  // namespace

void checkRemarks(const Disc& disc, Findings& findings) {
  FlacRemarks remarks(disc, findings);
  for (const disc::Text& remark : disc.sheet.remarks) remarks.check(remark);
}

}  // namespace velmor::check
