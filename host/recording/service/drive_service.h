// The recording service: the drives of a bus, and burns on them.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/recording/burn/recorder.h"
#include "host/recording/interface/recording_service.h"

namespace velmor::recording {

class DriveService final : public Service {
 public:
  DriveService(std::unique_ptr<RecorderBus> bus, const RecordingOptions& options);

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

  void configure(const RecordingOptions& options) override;
  void refresh() override;
  std::vector<ListedDrive> drives() override;
  void* deviceOf(const ListedDrive& drive) override;
  std::string describeDisc(const ListedDrive& drive) override;
  const Outcome& outcome() const override;
  void close() override;

 private:
  struct Burn {
    const DriveRecord* drive;
    DiscBurnProperties properties;
  };

  ~DriveService() = default;
  void scan();
  const DriveRecord* find(void* device) const;
  void fail(const std::string& clause);

  std::unique_ptr<RecorderBus> m_bus;
  RecordingOptions m_options;
  // The device handles given out are addresses of these records, and the burn engine compares
  // handles. So a record stays until the service ends, and a drive that is found again gets its old
  // one back; libburn's own handles end with every scan.
  std::vector<std::unique_ptr<DriveRecord>> m_records;
  std::vector<DriveRecord*> m_present;
  bool m_stale = true;
  const DriveRecord* m_held = nullptr;
  std::unique_ptr<Recorder> m_recorder;
  bool m_eject = false;
  std::unique_ptr<Burn> m_burn;
  Outcome m_outcome;
};

}  // namespace velmor::recording
