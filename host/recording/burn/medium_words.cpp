#include "host/recording/burn/medium_words.h"

#include "disc/failure.h"
#include "disc/units/disc_time.h"

namespace velmor::recording {
namespace {

std::string typeOf(const Medium& medium) {
  return medium.type.empty() ? "disc" : medium.type;
}

}  // namespace

std::string describeMedium(const Medium& medium) {
  const std::string type = typeOf(medium);
  switch (medium.state) {
    case DiscState::kNone:
      return "no disc";
    case DiscState::kBlank:
      return "a blank " + type +
             (medium.free_sectors > 0 ? ", " + disc::msfText(medium.free_sectors) + " free"
                                      : std::string());
    case DiscState::kAppendable:
      return "a " + type + " with a session on it, open for more";
    case DiscState::kClosed:
      return "a " + type + " that is written and closed";
    case DiscState::kUnsuitable:
      return medium.recordable_cd ? "a " + type + " with a recording that was broken off"
                                  : "a disc that the drive can neither read nor write";
    case DiscState::kUnknown:
      break;
  }
  return "a disc that the drive does not recognise";
}

MediumVerdict judgeMedium(const Medium& medium, bool may_overwrite) {
  if (medium.state == DiscState::kNone)
    throw Failure("there is no disc in the drive; put a blank CD-R or CD-RW into it");
  if (!medium.recordable_cd &&
      (medium.state == DiscState::kUnsuitable || medium.state == DiscState::kUnknown))
    throw Failure("the drive cannot use its disc; put a blank CD-R or CD-RW into it");
  if (medium.state == DiscState::kBlank && medium.recordable_cd) return MediumVerdict::kReady;
  if (medium.state == DiscState::kBlank)
    throw Failure("the drive holds " + describeMedium(medium) +
                  "; an audio CD needs a CD-R or CD-RW");
  const bool can_blank = medium.rewritable && medium.recordable_cd;
  if (can_blank && may_overwrite) return MediumVerdict::kNeedsBlanking;
  if (can_blank)
    throw Failure("the drive holds " + describeMedium(medium) +
                  ", which this burn may not overwrite; put a blank disc into it");
  throw Failure("the drive holds " + describeMedium(medium) +
                "; nothing can be recorded on it; put a blank CD-R or CD-RW into the drive");
}

void checkRoom(int64_t room, int64_t sectors) {
  if (room <= 0 || sectors <= room) return;
  throw Failure("the image is " + disc::msfText(sectors) +
                " long (minutes, seconds, frames) and the disc has room for " +
                disc::msfText(room) + ": " + disc::msfText(sectors - room) +
                " too much; take a longer disc, or shorten the programme");
}

std::string stateAfterFailure(const Medium& medium, bool simulated) {
  if (simulated) return "nothing was written, it was a test: the disc is as it was";
  if (medium.state == DiscState::kNone) return "there is no disc in the drive";
  if (medium.state == DiscState::kBlank) return "the disc is still blank and can be used";
  if (medium.rewritable)
    return "the disc is written in part and cannot be played; being rewritable it can be blanked "
           "and used again";
  return "the disc is written in part and cannot be used any more";
}

std::string stateAfterSuccess(const Medium& medium, bool simulated, bool keep_open) {
  if (simulated) return "nothing was written, it was a test: the disc is as it was";
  const std::string type = typeOf(medium);
  return keep_open ? "the " + type + " is written, and open for another session"
                   : "the " + type + " is written and closed";
}

}  // namespace velmor::recording
