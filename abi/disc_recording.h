// The disc recording service of the process, as the burn engine meets it, and what it is handed.
//
// The order of the virtual operations is the binary interface; no class has a virtual destructor,
// and nobody deletes through these types. All service calls come from the thread that opened the
// burn dialog.
#pragma once

#include <cstddef>
#include <cstdint>

/// Feeds one track. Implemented by the module; alive until `RunProgressPanel` returns. Lengths are
/// bytes.
class DiscTrackProducer {
 public:
  virtual uint64_t EstimateLengthOfTrack() = 0;  ///< in blocks
  virtual bool PrepareTrack() = 0;
  virtual void CleanupTrackAfterBurn() = 0;
  virtual uint32_t ProducePreGap(void* buffer, uint32_t length) = 0;
  /// Bytes produced. Above `length` (a failed read is -1): a failure; below: a short read.
  virtual uint32_t ProduceData(void* buffer, uint32_t length) = 0;
  virtual bool PrepareTrackForVerification() = 0;
  virtual bool VerifyPreGap(const void* buffer, uint32_t length) = 0;
  virtual bool VerifyData(const void* buffer, uint32_t length) = 0;
  virtual bool CleanupTrackAfterVerification() = 0;

 protected:
  ~DiscTrackProducer() = default;
};

/// One track of the layout; lengths in blocks of `block_size` bytes.
struct DiscTrack {
  DiscTrackProducer* producer;
  int pregap_length;
  int data_form;
  int track_mode;
  int block_type;
  int session_format;
  int block_size;
  int track_length;
};
static_assert(sizeof(DiscTrack) == 40 && offsetof(DiscTrack, pregap_length) == 8 &&
              offsetof(DiscTrack, track_length) == 32);

enum DiscBurnAction : int { kDiscActionNone = 0, kDiscActionEject = 1, kDiscActionMount = 2 };

struct DiscBurnProperties {
  bool testing;
  bool appendable;
  bool overwrite;
  bool verify;
  int completion_action;  ///< a `DiscBurnAction`
  int failure_action;     ///< a `DiscBurnAction`
};
static_assert(sizeof(DiscBurnProperties) == 12 &&
              offsetof(DiscBurnProperties, completion_action) == 4);

/// Implemented by the process (or by the platform's adapter). Device and burn handles are opaque.
class DiscRecordingService {
 public:
  virtual int DeviceCount() = 0;          ///< asked on every round of a walk
  virtual void* DeviceAt(int index) = 0;  ///< null: skip
  /// Null when unknown; both names stay valid together until the next `DeviceCount`.
  virtual const char* VendorName(void* device) = 0;
  virtual const char* ProductName(void* device) = 0;
  virtual bool IsValid(void* device) = 0;
  virtual bool AcquireExclusiveAccess(void* device) = 0;
  virtual void ReleaseExclusiveAccess(void* device) = 0;
  virtual void* BurnForDevice(void* device) = 0;  ///< a burn handle, or null
  virtual void SetProperties(void* burn, const DiscBurnProperties* properties) = 0;
  /// Shows the panel, burns, returns when the panel is done; the service then disposes of the burn.
  /// `tracks` is null when `count` is 0.
  virtual void RunProgressPanel(void* burn, const DiscTrack* tracks, int count) = 0;

 protected:
  ~DiscRecordingService() = default;
};

/// The symbol a process offers where the platform has no service of its own; may return null.
using VelmorGetDiscRecordingFn = DiscRecordingService* (*)();
