#include <algorithm>

#include "ddp/check/rules.h"
#include "disc/text/phrases.h"

namespace velmor::ddp {

namespace {

using check::Findings;
using check::Severity;

void judgeSum(const ListedSum& sum, const std::string& list, const SetFileSummary& file,
              Findings& findings) {
  if (!file.digests) return;
  const bool same = sum.md5.empty() ? sum.crc == file.digests->crc : sum.md5 == file.digests->md5;
  if (same) return;
  findings.add(Severity::kError, "check-sum", {0, 0, file.name},
               "it has the check sum " + (sum.md5.empty() ? file.digests->crc : file.digests->md5) +
                   ", and " + (sum.md5.empty() ? sum.crc : sum.md5) + " by " + list,
               "Ask for the set anew; the file was changed on its way.");
}

}  // namespace

void judgeChecksums(const std::vector<ChecksumList>& lists,
                    const std::vector<SetFileSummary>& files, Findings& findings) {
  if (lists.empty())
    findings.add(Severity::kWarning, "no-check-sums", {},
                 "there is neither CHECKSUM.MD5 nor CHECKSUM.TXT",
                 "Without check sums nothing tells whether the set is as it was made: ask for "
                 "them.");
  for (const ChecksumList& list : lists) {
    const ReadList read = readChecksums(list.text);
    for (const int line : read.strange_lines)
      findings.add(Severity::kWarning, "check-sum-line", {0, 0, list.file},
                   "line " + std::to_string(line) + " is no check sum of a file",
                   "Ask for the list anew.");
    for (const SetFileSummary& file : files) {
      bool listed = false;
      for (const ListedSum& sum : read.sums) {
        if (sum.name != file.name) continue;
        listed = true;
        judgeSum(sum, list.file, file, findings);
      }
      if (!listed)
        findings.add(Severity::kWarning, "not-in-check-sums", {0, 0, list.file},
                     "it has no check sum of " + file.name, "Ask for a whole list.");
    }
  }
}

}  // namespace velmor::ddp
