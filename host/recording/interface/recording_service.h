// What the recording library offers to the program that loads it: the disc recording service that
// the burn engine drives, with the options that the service works by and the messages it gives.
//
// The library is built and shipped together with the program (same compiler, same standard
// library), so C++ types cross this boundary. It is loaded only for a burn or a list of drives.
#pragma once

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "abi/disc_recording.h"

namespace velmor::recording {

enum class MessageKind { kNote, kWarning, kFailure };

enum class Phase { kPreparing, kBlanking, kLeadIn, kWriting, kClosing, kComparing };

/// How far a burn is. Sectors are those of the image (75 a second of music).
struct BurnProgress {
  Phase phase = Phase::kPreparing;
  int track = 0;   ///< counting from 1; 0 when no track is being written or compared
  int tracks = 0;  ///< of the disc
  int64_t sectors_done = 0;
  int64_t sectors_total = 0;
  double fraction = 0.0;    ///< of the phase, 0 to 1 (blanking has no sectors)
  int buffer_percent = -1;  ///< fill of the drive's buffer; -1 when the drive does not say
  double speed = 0.0;       ///< measured over the phase, in multiples of playing speed
};

/// Where a burn sends its messages and its progress, and asks its questions. Called on the thread
/// that runs the burn, never on another. What it throws ends the burn and arrives at the caller of
/// `RunProgressPanel`, once the drive has stopped.
class UserInterface {
 public:
  /// Whether the disc may be blanked; `question`, a sentence, names the drive and what is on the
  /// disc.
  virtual bool mayBlank(const std::string& question) = 0;
  virtual void progress(const BurnProgress& progress) = 0;
  /// `text` is a clause in lower case, without full stop or line end, with parts behind ": " and ";
  /// ".
  virtual void message(MessageKind kind, const std::string& text) = 0;

 protected:
  ~UserInterface() = default;
};

/// Where a track lies in the image: sectors from its first.
struct TrackPlace {
  std::optional<int64_t> pause;  ///< INDEX 00; nothing when the track has no pregap
  int64_t start = 0;             ///< INDEX 01
};

/// How the service is to burn. Copied; what the pointers show must outlive the service.
struct RecordingOptions {
  bool dry_run = false;    ///< a test write with the laser off, whatever the burn asks for
  double speed = 0.0;      ///< in multiples of playing speed; 0: as fast as the drive offers
  bool verify = false;     ///< read the disc back and compare it with the image
  std::string text_sheet;  ///< cue sheet that CD-TEXT, MCN and ISRCs are taken from; empty: none
  /// The tracks of the album whose image is burned, with their pauses, which the tracks that the
  /// burn engine hands over do not know; the disc is cut by them. Empty: by the burn engine's.
  std::vector<TrackPlace> layout;
  UserInterface* user_interface = nullptr;    ///< null: messages are lost, no disc is blanked
  const std::atomic<bool>* cancel = nullptr;  ///< set it (a signal handler may) to stop a burn
};

/// One recorder, or a device that would be one if it could be opened.
struct ListedDrive {
  std::string address;  ///< the device file
  std::string vendor;
  std::string product;
  std::string revision;
  bool usable = false;
  std::string obstacle;  ///< why it is not usable, and what to do about it
};

/// "ACME BURNER ONE (/dev/sr0)"; the device file alone where the drive says nothing of itself.
inline std::string driveName(const std::string& vendor, const std::string& product,
                             const std::string& address) {
  const std::string gap = vendor.empty() || product.empty() ? "" : " ";
  const std::string name = vendor + gap + product;
  return name.empty() ? address : name + " (" + address + ")";
}

/// How the last burn ended.
struct Outcome {
  bool begun = false;     ///< something may have been sent to the disc (also in a test write)
  bool written = false;   ///< a good disc lies in the drive; never true after a test write
  bool tested = false;    ///< a test write went well
  bool compared = false;  ///< the disc was read back and equals the image
  bool cancelled = false;
  std::string disc_state;  ///< in words, empty when no disc was looked at
  std::string failure;     ///< why there is no good disc; empty when there is one
};

/// The service. All calls come from one thread. In the order of the binary interface first the
/// operations of `DiscRecordingService`.
///
/// `DeviceCount` looks for drives once after `refresh` (or the first time), not on every round of a
/// walk; a device handle stays the same for as long as its drive is found again.
class Service : public DiscRecordingService {
 public:
  /// Takes effect with the next burn.
  virtual void configure(const RecordingOptions& options) = 0;
  /// To be called whenever the service is handed out: the next `DeviceCount` looks for drives anew,
  /// and the outcome of the last burn is forgotten.
  virtual void refresh() = 0;
  /// All drives in the order of their device files, usable or not, so that a drive keeps its place
  /// while another one is busy. Looks for drives anew.
  virtual std::vector<ListedDrive> drives() = 0;
  /// The device handle of a usable drive among the last `drives`, as `DeviceAt` gives it; null when
  /// it is not there any more.
  virtual void* deviceOf(const ListedDrive& drive) = 0;
  /// The disc in a usable drive, in words ("a blank CD-R, 79:57:00 free").
  virtual std::string describeDisc(const ListedDrive& drive) = 0;
  virtual const Outcome& outcome() const = 0;
  /// Gives the drives back and destroys the service.
  virtual void close() = 0;

 protected:
  ~Service() = default;
};

/// The library's one symbol. Returns null when libburn cannot be used; `why` then says so in the
/// form of a `Failure`. It throws nothing: the function is looked up by its plain C name in a
/// library that hides its symbols, and whether an exception that crosses such a boundary is
/// recognised on the other side is up to the system's loader. One service at a time.
using OpenRecordingFn = Service* (*)(const RecordingOptions& options, std::string& why);
inline constexpr const char* kOpenRecordingSymbol = "velmorOpenRecording";
inline constexpr const char* kRecordingLibrary = "velmor_recording.so";

}  // namespace velmor::recording
