// The disc recorder as a burn uses it: an interface that libburn_recorder implements, and a double
// in tests.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "disc/cd_text/disc_texts.h"
#include "disc/failure.h"
#include "host/recording/session/sector_feed.h"
#include "host/recording/session/session_plan.h"

namespace velmor::recording {

enum class DiscCondition {
  kNone,  ///< the tray is empty
  kBlank,
  kAppendable,  ///< has a session and is open for another one
  kClosed,
  kUnsuitable,  ///< neither readable nor writable as it is, e.g. after a recording that broke off
  kUnknown
};

struct DiscInDrive {
  DiscCondition state = DiscCondition::kUnknown;
  std::string type;            ///< "CD-R", "CD-RW", "DVD-R", …; empty when unknown
  bool recordable_cd = false;  ///< a CD-R or CD-RW
  bool rewritable = false;
  int64_t free_sectors = 0;      ///< for audio, from LBA 0; 0 when the drive does not say
  int64_t capacity_sectors = 0;  ///< of the disc when it is blank; 0 when unknown
};

/// What the recorder is doing.
enum class Activity { kIdle, kWaiting, kBlanking, kLeadIn, kWriting, kClosing };

struct RecorderStatus {
  Activity activity = Activity::kIdle;
  double fraction = 0.0;  ///< of blanking
  int buffer_percent = -1;
};

/// What the drive or its library said.
struct RecorderMessage {
  bool error = false;
  std::string text;
};

/// One session, closed unless `keep_open`.
struct Session {
  const SessionPlan* plan = nullptr;
  const disc::DiscTexts* texts = nullptr;  ///< null: none
  bool simulate = false;
  bool keep_open = false;
};

/// One drive under exclusive access; destroying it gives the drive back. Used by one thread; while
/// it writes, a thread of the recorder's own reads the feed, until the activity is idle again.
class Recorder {
 public:
  virtual ~Recorder() = default;

  virtual DiscInDrive medium() = 0;  ///< looks at the disc anew
  virtual bool canTestWrite() = 0;
  /// Multiples of playing speed; 0 is the fastest. Returns the speed that the drive will take, 0
  /// when it does not say.
  virtual double setSpeed(double speed) = 0;

  /// Begins to blank the disc; the caller then calls `wait` until the activity is idle.
  virtual void startBlanking() = 0;
  /// Begins to write session-at-once; the caller then calls `wait` until the activity is idle. All
  /// arguments, and what `session` points to, must live until then. Throws `Failure` when the drive
  /// or the disc would not take it.
  virtual void startWriting(const Session& session, SectorFeed& feed) = 0;
  /// Waits for a fraction of a second at most and tells what is going on.
  virtual RecorderStatus wait() = 0;
  virtual void cancel() = 0;
  /// Whether the last blanking or writing went well, as far as the recorder knows.
  virtual bool succeeded() = 0;

  /// Reads `sectors` sectors (above 0) of the disc from `lba` on into `audio`, 2352 bytes each;
  /// `lba` may be a little below 0. False when they cannot be read.
  virtual bool readAudio(int64_t lba, int sectors, unsigned char* audio) = 0;

  /// What the drive and its library have said since the last call.
  virtual std::vector<RecorderMessage> takeMessages() = 0;
  /// Gives the drive back. Nothing else may be called after it.
  virtual void release(bool eject) = 0;
};

/// A drive that the machine has.
struct DriveRecord {
  std::string address, vendor, product, revision;
  bool operator==(const DriveRecord&) const = default;
};

/// The machine's recorders.
class RecorderBus {
 public:
  virtual ~RecorderBus() = default;
  /// The drives that can be opened and can write CDs.
  virtual std::vector<DriveRecord> scan() = 0;
  /// Takes the drive with this device file, with its tray pulled in if `close_tray`. Never null;
  /// throws `Failure` when the drive cannot be taken, e.g. because another program has it.
  virtual std::unique_ptr<Recorder> grab(const std::string& address, bool close_tray) = 0;
};

}  // namespace velmor::recording
