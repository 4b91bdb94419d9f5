// A recording service without a recorder: scripted, and remembering every call in order.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "abi/disc_recording.h"

namespace burn_test {

/// While it lives it is the recording service of the process: one at a time.
class ScriptedRecordingService final : public DiscRecordingService {
 public:
  struct Device {
    std::optional<std::string> vendor, product;  ///< nullopt: unknown
    bool valid = true;
    bool is_null = false;  ///< there, but without a handle
  };

  ScriptedRecordingService();
  ~ScriptedRecordingService();
  ScriptedRecordingService(const ScriptedRecordingService&) = delete;
  ScriptedRecordingService& operator=(const ScriptedRecordingService&) = delete;

  Device& add(std::optional<std::string> vendor, std::optional<std::string> product);
  void* handle(size_t device) { return &devices[device]; }

  // Script.
  bool is_there = true;  ///< false: the process has no service now
  std::deque<Device> devices;
  bool grants_access = true;
  bool gives_burn = true;
  /// What happens while the panel is shown.
  std::function<void(const DiscTrack*, int)> on_panel;

  // Record.
  int lookups = 0;                   ///< how often the module asked for the service
  std::vector<std::string> journal;  ///< "DeviceCount", "DeviceAt 0", "IsValid 0", …
  DiscBurnProperties properties{};
  std::vector<DiscTrack> tracks;  ///< of the last burn
  bool tracks_were_null = false;
  int panels = 0;

  int DeviceCount() override;
  void* DeviceAt(int index) override;
  const char* VendorName(void* device) override;
  const char* ProductName(void* device) override;
  bool IsValid(void* device) override;
  bool AcquireExclusiveAccess(void* device) override;
  void ReleaseExclusiveAccess(void* device) override;
  void* BurnForDevice(void* device) override;
  void SetProperties(void* burn, const DiscBurnProperties* properties) override;
  void RunProgressPanel(void* burn, const DiscTrack* tracks, int count) override;

 private:
  size_t numberOf(void* device) const;
  void note(const std::string& call, void* device);

  int m_burn = 0;  ///< its address is the burn handle
};

/// All that a track's producer gives, asked for in blocks of `step` bytes until it gives no more.
std::string produce(const DiscTrack& track, uint32_t step = 2352);

}  // namespace burn_test
