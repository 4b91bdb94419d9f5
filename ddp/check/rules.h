// What makes a set good, one group each. Each takes the bytes of a file or what was read of them
// and adds what it finds.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "check/report/findings.h"
#include "ddp/check/checked_set.h"
#include "disc/cd_text/disc_texts.h"
#include "disc/ddp/identifier.h"
#include "disc/ddp/set_layout.h"
#include "disc/ddp/stream_map.h"

namespace velmor::ddp {

/// What to do about bytes that nobody meant.
inline constexpr const char* kAskAnew = "Ask for the set anew; it was cut or changed on its way.";

/// DDPID. Any bytes.
Identifier judgeIdentifier(std::string_view bytes, check::Findings& findings);

/// The streams that a map names. At most one of each kind: of more, the first.
struct StreamsOfSet {
  std::optional<StreamPacket> texts, pq, audio;
};
/// DDPMS. Any bytes.
StreamsOfSet judgeMap(std::string_view bytes, check::Findings& findings);

struct JudgedPq {
  SetLayout layout;
  bool sound = false;  ///< the packets are whole and in an order that makes a disc
};
/// The PQ descriptor; `file` is its name. Any bytes.
JudgedPq judgePq(std::string_view bytes, const std::string& file, check::Findings& findings);

/// CD-TEXT of a disc of `tracks` tracks (0: not known); `file` is its name. Any bytes.
disc::DiscTexts judgeTexts(std::string_view bytes, const std::string& file, size_t tracks,
                           check::Findings& findings);

/// The lists of check sums against what the set's files have.
struct ChecksumList {
  std::string file;  ///< its name
  std::string text;
};
void judgeChecksums(const std::vector<ChecksumList>& lists,
                    const std::vector<SetFileSummary>& files, check::Findings& findings);

/// What holds of every disc (the checker's rules): codes, lengths, room. The layout is sound.
void judgeDisc(const SetLayout& layout, check::Findings& findings);

}  // namespace velmor::ddp
