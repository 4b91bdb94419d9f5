#include "host/recording/service/drive_service.h"

#include <algorithm>
#include <utility>

#include "disc/failure.h"
#include "disc/text/phrases.h"
#include "host/recording/burn/burn_run.h"
#include "host/recording/burn/medium_words.h"
#include "host/recording/libburn/device_access.h"

namespace velmor::recording {
namespace {

std::string nameOf(const DriveRecord& drive) {
  return driveName(drive.vendor, drive.product, drive.address);
}

/// "/dev/sr2" before "/dev/sr10": the shorter name has the smaller number.
bool comesFirst(const ListedDrive& a, const ListedDrive& b) {
  return std::pair(a.address.size(), a.address) < std::pair(b.address.size(), b.address);
}

const char* textOrNull(const std::string& text) {
  return text.empty() ? nullptr : text.c_str();
}

}  // namespace

DriveService::DriveService(std::unique_ptr<RecorderBus> bus, const RecordingOptions& options)
    : m_bus(std::move(bus)), m_options(options) {}

void DriveService::configure(const RecordingOptions& options) {
  m_options = options;
}

void DriveService::refresh() {
  m_stale = true;
  m_outcome = {};
}

const Outcome& DriveService::outcome() const {
  return m_outcome;
}

void DriveService::close() {
  delete this;
}

void DriveService::fail(const std::string& clause) {
  m_outcome.failure = clause;
  m_outcome.disc_state = "nothing was written";
  if (m_options.user_interface != nullptr)
    m_options.user_interface->message(MessageKind::kFailure, clause + "; " + m_outcome.disc_state);
}

void DriveService::scan() {
  m_stale = false;
  m_present.clear();
  for (const DriveRecord& found : m_bus->scan()) {
    const auto known = std::find_if(m_records.begin(), m_records.end(),
                                    [&found](const auto& record) { return *record == found; });
    if (known != m_records.end()) {
      m_present.push_back(known->get());
      continue;
    }
    m_records.push_back(std::make_unique<DriveRecord>(found));
    m_present.push_back(m_records.back().get());
  }
}

const DriveRecord* DriveService::find(void* device) const {
  const auto found = std::find(m_present.begin(), m_present.end(), device);
  return found != m_present.end() ? *found : nullptr;
}

int DriveService::DeviceCount() {
  // A drive that is held for a burn is not found by a scan, which needs it for itself.
  if (m_stale && m_recorder == nullptr) scan();
  return static_cast<int>(m_present.size());
}

void* DriveService::DeviceAt(int index) {
  if (index < 0 || static_cast<size_t>(index) >= m_present.size()) return nullptr;
  return m_present[static_cast<size_t>(index)];
}

const char* DriveService::VendorName(void* device) {
  const DriveRecord* drive = find(device);
  return drive != nullptr ? textOrNull(drive->vendor) : nullptr;
}

const char* DriveService::ProductName(void* device) {
  const DriveRecord* drive = find(device);
  return drive != nullptr ? textOrNull(drive->product) : nullptr;
}

bool DriveService::IsValid(void* device) {
  return find(device) != nullptr;
}

bool DriveService::AcquireExclusiveAccess(void* device) {
  m_outcome = {};
  const DriveRecord* drive = find(device);
  if (drive == nullptr) {
    fail("the drive is not there any more");
    return false;
  }
  if (m_recorder != nullptr) {
    fail("the drive " + disc::inQuotes(nameOf(*m_held)) + " is still in use");
    return false;
  }
  try {
    m_recorder = m_bus->grab(drive->address, true);
  } catch (const Failure& failure) {
    fail(failure.what());
    return false;
  }
  m_held = drive;
  m_eject = false;
  return true;
}

void DriveService::ReleaseExclusiveAccess(void* device) {
  if (m_recorder == nullptr || device != m_held) return;
  m_recorder->release(m_eject);
  m_recorder.reset();
  m_held = nullptr;
}

void* DriveService::BurnForDevice(void* device) {
  if (m_recorder == nullptr || device != m_held) return nullptr;
  m_burn = std::make_unique<Burn>(Burn{m_held, {}});
  return m_burn.get();
}

void DriveService::SetProperties(void* burn, const DiscBurnProperties* properties) {
  if (burn == m_burn.get() && m_burn != nullptr && properties != nullptr)
    m_burn->properties = *properties;
}

void DriveService::RunProgressPanel(void* burn, const DiscTrack* tracks, int count) {
  if (m_burn == nullptr || burn != m_burn.get() || m_recorder == nullptr) return;
  const std::unique_ptr<Burn> done = std::move(m_burn);
  BurnRun run(*m_recorder, nameOf(*done->drive), done->properties, m_options);
  m_outcome = run.run(tracks, count);
  const bool good = m_outcome.failure.empty();
  const int action = good ? done->properties.completion_action : done->properties.failure_action;
  // An audio disc has no file system to mount: it stays in the drive, where the desktop finds it.
  m_eject = action == kDiscActionEject;
}

std::vector<ListedDrive> DriveService::drives() {
  if (m_recorder == nullptr) scan();
  std::vector<ListedDrive> result;
  for (const DriveRecord* drive : m_present)
    result.push_back({drive->address, drive->vendor, drive->product, drive->revision, true, ""});
  for (const std::string& path : opticalDeviceFiles()) {
    const auto listed = [&path](const ListedDrive& drive) { return drive.address == path; };
    if (std::any_of(result.begin(), result.end(), listed)) continue;
    const std::string obstacle = accessObstacle(path);
    result.push_back({path, "", "", "", false,
                      obstacle.empty() ? disc::inQuotes(path) + " cannot write CDs" : obstacle});
  }
  std::sort(result.begin(), result.end(), comesFirst);
  return result;
}

void* DriveService::deviceOf(const ListedDrive& drive) {
  for (DriveRecord* present : m_present)
    if (present->address == drive.address) return present;
  return nullptr;
}

std::string DriveService::describeDisc(const ListedDrive& drive) {
  if (m_recorder != nullptr) return "in use for a burn";
  try {
    const std::unique_ptr<Recorder> recorder = m_bus->grab(drive.address, false);
    std::string words = describeMedium(recorder->medium());
    recorder->release(false);
    return words;
  } catch (const Failure& failure) {
    return failure.what();
  }
}

}  // namespace velmor::recording
