// What a drive means by its sense data, for people. The side that sends it in tests is
// tools/emulated_drive/drive/sense_data.h, which shares nothing with this one.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/recording/burn/recorder.h"

namespace velmor::recording {

/// Sense key, additional sense code and its qualifier (SPC). The drive's side of the wire, for
/// tests only, is `SenseData` in tools/emulated_drive/drive/sense_data.h.
struct Sense {
  int key = 0;
  int code = 0;
  int qualifier = 0;
};

/// Finds "[3 0C 00]" in a message of the recorder.
std::optional<Sense> findSense(const std::string& message);

/// A clause such as "the disc has a flaw there: it could not be written"; falls back on the
/// numbers.
std::string senseInWords(const Sense& sense);

/// The first sector of the failed write that a message names, as in "write(5000,13)".
std::optional<int64_t> findFailedSector(const std::string& message);

/// Why a burn failed, as a clause for a message, from all that the recorder said while it ran.
/// Empty when it said nothing of the kind.
std::string explainMessages(const std::vector<RecorderMessage>& messages, const SessionPlan& plan);

}  // namespace velmor::recording
