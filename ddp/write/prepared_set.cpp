#include "ddp/write/prepared_set.h"

#include <optional>

#include "check/check.h"
#include "check/portable/exact_starts.h"
#include "ddp/write/set_rules.h"
#include "disc/cd_text/disc_texts.h"
#include "disc/cd_text/pack_writing.h"
#include "disc/cd_text/text_packs.h"
#include "disc/ddp/identifier.h"
#include "disc/sheet/sheet_line.h"
#include "disc/sheet/sheet_texts.h"
#include "disc/text/line_of_text.h"
#include "disc/units/disc_time.h"
#include "disc/units/disc_units.h"

namespace velmor::ddp {

namespace {

using check::Findings;
using check::Severity;

class Preparation {
 public:
  Preparation(PreparedSet& made, const SetOptions& options)
      : m_made(made), m_options(options), m_disc(made.report.disc) {}

  void run() {
    for (check::Finding& finding : m_made.report.findings) m_findings.add(std::move(finding));
    checkForSet(m_disc, m_findings);
    takeMasterId();
    if (m_options.cd_text) takeTexts();
    m_made.report.findings = std::move(m_findings).sorted();
    if (!m_made.refused()) takeLayout();
  }

 private:
  void takeMasterId() {
    m_master_id = m_options.master_id;
    if (!m_master_id.empty()) return;
    for (const disc::Text& remark : m_disc.sheet.remarks) {
      if (!remark.bytes.starts_with(kMasterIdRemark)) continue;
      m_master_id =
          disc::wholeValue(remark.bytes.substr(kMasterIdRemark.size()), remark.line).bytes;
      if (isMasterId(m_master_id)) return;
      m_findings.add(Severity::kError, "master-id", {remark.line},
                     "the master identifier is not up to 48 printable ASCII characters",
                     "Shorten it, or give another with --master-id.", kLevel);
      return;
    }
  }

  void takeTexts() {
    const disc::DiscTexts texts = disc::textsAsGiven(disc::textsOf(m_disc.sheet), m_made.changes);
    const int packs = disc::textPacks(texts);
    if (packs > disc::kMostTextPacks) {
      m_findings.add(Severity::kError, "cd-text-over", {},
                     "the texts take " + std::to_string(packs) + " packs of CD-TEXT, and " +
                         std::to_string(disc::kMostTextPacks) + " fit",
                     "Shorten them by about " +
                         std::to_string((packs - disc::kMostTextPacks) * disc::kTextPackBytes) +
                         " characters in all, or leave them out with --no-cd-text.",
                     kLevel);
    } else if (m_disc.sheet.tracks.size() <= disc::kMostTracks) {
      m_made.text_packs = disc::packBytes(texts);
    }
  }

  void takeLayout() {
    m_made.layout = layOutSheet(m_disc);
    m_made.layout.set.master_id = m_master_id;
    Findings findings({});
    for (check::Finding& finding : m_made.report.findings) findings.add(std::move(finding));
    checkFirstPregap(findings);
    checkEnd(findings);
    m_made.report.findings = std::move(findings).sorted();
    tellCutFrame();
  }

  void checkFirstPregap(Findings& findings) const {
    const check::Place place{m_disc.sheet.tracks.front().indices.front().line, 1};
    const int64_t pregap = m_made.layout.set.tracks.front().at(1);
    if (pregap < kShortestFirstPregap)
      findings.add(
          Severity::kError, "first-pregap", place,
          "track 1 starts " + std::to_string(pregap) +
              " sectors after its INDEX 00, and 150 (2 s) is the least",
          "Remove its INDEX 00, which puts the 2 s of every disc before the image, or make "
          "the lead-in 2 s long.",
          kLevel);
    else if (pregap > kLongestFirstPregap)
      findings.add(Severity::kError, "first-pregap", place,
                   "track 1 starts " + std::to_string(pregap) +
                       " sectors after the begin, and its field has four digits",
                   "Make what lies before track 1 a track of its own.", kLevel);
  }

  void checkEnd(Findings& findings) const {
    if (m_made.layout.set.sectors <= kLastTime) return;
    findings.add(Severity::kError, "lead-out", {},
                 "the lead-out would lie at " + disc::msfText(m_made.layout.set.sectors) +
                     ", and the last time that a set can name is 99:59:74",
                 "Make two discs.", kLevel);
  }

  /// An image may end anywhere, but not inside a sample: half of one is no sound.
  void tellCutFrame() {
    const AudioPiece& last = m_made.layout.pieces.back();
    if (last.file == AudioPiece::kSilence) return;
    const int64_t cut =
        m_disc.images[static_cast<size_t>(last.file)].dataBytes() % disc::kBytesPerFrame;
    if (cut != 0)
      m_made.changes.push_back("the image's last " + std::to_string(cut) +
                               " bytes are no whole sample of two channels and become zeros");
  }

  PreparedSet& m_made;
  const SetOptions& m_options;
  const check::Disc& m_disc;
  Findings m_findings{{}};
  std::string m_master_id;
};

}  // namespace

PreparedSet prepareSet(const std::filesystem::path& sheet, const SetOptions& options) {
  disc::Sheet parsed = check::readSheet(sheet);
  check::moveStarts(parsed, options.exact_starts);
  check::CheckOptions checks;
  checks.samples = false;
  PreparedSet made;
  made.report = check::check(std::move(parsed), sheet, checks);
  Preparation(made, options).run();
  for (std::string& change : made.changes) change = disc::printable(change);
  return made;
}

}  // namespace velmor::ddp
