// A cue sheet of anybody's, from its bytes to the report on it and the second sheet.
#include <fcntl.h>
#include <unistd.h>

#include <sstream>

#include "fuzz/fuzz_target.h"
#include "fuzz/scratch_folder.h"
#include "tools/cdcheck/check.h"
#include "tools/cdcheck/portable/portable_disc.h"
#include "tools/cdcheck/report/report_text.h"

namespace {

namespace cdcheck = velmor::cdcheck;

void writeFile(const std::string& path, std::string_view bytes) {
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (file < 0 || write(file, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) {
    abort();
  }
  close(file);
}

/// A folder with an image of ten seconds that is silent but for one sample.
class Desk {
 public:
  Desk() {
    std::string image(size_t{750} * 2352, '\0');
    image[size_t{300} * 2352] = 1;
    writeFile((m_folder.path() / "image.bin").string(), image);
  }
  std::string path(const char* name) const { return (m_folder.path() / name).string(); }

 private:
  fuzz::ScratchFolder m_folder;
};

void requireOneLineEach(const cdcheck::Report& report) {
  for (const cdcheck::Finding& finding : report.findings) {
    fuzz::require(cdcheck::findingLine(finding).find('\n') == std::string::npos,
                  "a finding is one line");
    fuzz::require(!finding.rule.empty() && !finding.what.empty() && !finding.action.empty(),
                  "a finding says what is wrong and what to do");
  }
}

/// Of what the second sheet is to be there are findings about the audio at most.
void requireGoodSecondSheet(const cdcheck::Report& report, const Desk& desk) {
  std::string text;
  try {
    text = cdcheck::cueText(cdcheck::makePortable(report, desk.path("second.cue")));
  } catch (const cdcheck::CheckError&) {
    return;  // the sheet leaves open what the disc is
  }
  for (const char c : text) {
    fuzz::require(c == '\r' || c == '\n' || (c >= ' ' && c <= '~'), "the second sheet is ASCII");
  }
  writeFile(desk.path("second.cue"), text);
  const cdcheck::Report second = cdcheck::check(desk.path("second.cue"), {});
  fuzz::require(second.disc.places.size() == report.disc.places.size(),
                "the second sheet has the tracks of the first");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const Desk desk;
  writeFile(desk.path("image.cue"), fuzz::textOf(data, size));
  const cdcheck::Report report = cdcheck::check(desk.path("image.cue"), {});
  requireOneLineEach(report);
  std::ostringstream text;
  cdcheck::printReport(report, false, text);
  cdcheck::printJson(report, false, {}, text);
  requireGoodSecondSheet(report, desk);
  return 0;
}
