// Any bytes as the descriptors of a set: the first byte says which.
#include "check/report/findings.h"
#include "ddp/check/rules.h"
#include "fuzz/kit/fuzz_target.h"

namespace {

using fuzz::require;
using namespace velmor::ddp;

void tryPq(std::string_view bytes, velmor::check::Findings& findings) {
  const JudgedPq pq = judgePq(bytes, "SD", findings);
  if (!pq.sound) return;
  int64_t before = -1;
  require(!pq.layout.tracks.empty() && pq.layout.tracks.size() <= 99, "a disc has 1 to 99 tracks");
  for (const SetTrack& track : pq.layout.tracks) {
    require(track.at(1) >= 0, "a track starts");
    for (const IndexPoint& index : track.indices) {
      require(index.sector > before, "times ascend");
      before = index.sector;
    }
  }
  require(pq.layout.sectors > before, "the lead-out comes last");
  judgeDisc(pq.layout, findings);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return -1;
  const std::string_view bytes = fuzz::textOf(data + 1, size - 1);
  velmor::check::Findings findings({});
  switch (data[0]) {
    case 'I':
      judgeIdentifier(bytes, findings);
      break;
    case 'M':
      judgeMap(bytes, findings);
      break;
    case 'P':
      tryPq(bytes, findings);
      break;
    case 'S':
      judgeChecksums({{"CHECKSUM.MD5", std::string(bytes)}}, {{"SD", 1, std::nullopt}}, findings);
      break;
    default:
      return -1;
  }
  for (const velmor::check::Finding& finding : std::move(findings).sorted())
    require(!finding.what.empty() && !finding.rule.empty(), "a finding says something");
  return 0;
}
