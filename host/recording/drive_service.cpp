#include "host/recording/drive_service.h"

#include <algorithm>
#include <utility>

#include "host/recording/burn/burn_run.h"
#include "host/recording/burn/medium_words.h"
#include "host/recording/libburn/device_access.h"

namespace velmor::recording {
namespace {

std::string nameOf(const DriveRecord& drive) {
  const std::string gap = drive.vendor.empty() || drive.product.empty() ? "" : " ";
  return drive.vendor + gap + drive.product + " (" + drive.address + ")";
}

const char* textOrNull(const std::string& text) {
  return text.empty() ? nullptr : text.c_str();
}

}  // namespace

DriveService::DriveService(std::unique_ptr<RecorderBus> bus, const Options& options)
    : bus_(std::move(bus)), options_(options) {}

void DriveService::configure(const Options& options) {
  options_ = options;
}

void DriveService::refresh() {
  stale_ = true;
  outcome_ = {};
}

const Outcome& DriveService::outcome() const {
  return outcome_;
}

void DriveService::close() {
  delete this;
}

void DriveService::fail(const std::string& sentence) {
  outcome_.failure = sentence;
  outcome_.disc_state = "Nothing was written.";
  if (options_.attendant != nullptr)
    options_.attendant->message(Severity::failure, sentence + " " + outcome_.disc_state);
}

void DriveService::scan() {
  stale_ = false;
  present_.clear();
  for (const DriveRecord& found : bus_->scan()) {
    const auto known = std::find_if(records_.begin(), records_.end(),
                                    [&found](const auto& record) { return *record == found; });
    if (known != records_.end()) {
      present_.push_back(known->get());
      continue;
    }
    records_.push_back(std::make_unique<DriveRecord>(found));
    present_.push_back(records_.back().get());
  }
}

const DriveRecord* DriveService::find(void* device) const {
  const auto found = std::find(present_.begin(), present_.end(), device);
  return found != present_.end() ? *found : nullptr;
}

int DriveService::DeviceCount() {
  // A drive under our own exclusive access cannot be found by looking.
  if (stale_ && recorder_ == nullptr) scan();
  return static_cast<int>(present_.size());
}

void* DriveService::DeviceAt(int index) {
  if (index < 0 || static_cast<size_t>(index) >= present_.size()) return nullptr;
  return present_[static_cast<size_t>(index)];
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
  outcome_ = {};
  const DriveRecord* drive = find(device);
  if (drive == nullptr) {
    fail("The drive is not there any more.");
    return false;
  }
  if (recorder_ != nullptr) {
    fail("The drive " + nameOf(*held_) + " is still in use.");
    return false;
  }
  std::string why;
  recorder_ = bus_->grab(drive->address, true, why);
  if (recorder_ == nullptr) {
    fail(why);
    return false;
  }
  held_ = drive;
  eject_ = false;
  return true;
}

void DriveService::ReleaseExclusiveAccess(void* device) {
  if (recorder_ == nullptr || device != held_) return;
  recorder_->release(eject_);
  recorder_.reset();
  held_ = nullptr;
}

void* DriveService::BurnForDevice(void* device) {
  if (recorder_ == nullptr || device != held_) return nullptr;
  burn_ = std::make_unique<Burn>(Burn{held_, {}});
  return burn_.get();
}

void DriveService::SetProperties(void* burn, const DiscBurnProperties* properties) {
  if (burn == burn_.get() && burn_ != nullptr && properties != nullptr)
    burn_->properties = *properties;
}

void DriveService::RunProgressPanel(void* burn, const DiscTrack* tracks, int count) {
  if (burn_ == nullptr || burn != burn_.get() || recorder_ == nullptr) return;
  const std::unique_ptr<Burn> done = std::move(burn_);
  BurnRun run(*recorder_, nameOf(*done->drive), done->properties, options_);
  outcome_ = run.run(tracks, count);
  const bool good = outcome_.failure.empty();
  const int action = good ? done->properties.completion_action : done->properties.failure_action;
  // To mount an audio disc means to leave it in the drive, where the desktop finds it.
  eject_ = action == kDiscActionEject;
}

std::vector<Drive> DriveService::drives() {
  if (recorder_ == nullptr) scan();
  std::vector<Drive> result;
  for (const DriveRecord* drive : present_)
    result.push_back({drive->address, drive->vendor, drive->product, drive->revision, true, ""});
  for (const std::string& path : opticalDeviceFiles()) {
    const auto listed = [&path](const Drive& drive) { return drive.address == path; };
    if (std::any_of(result.begin(), result.end(), listed)) continue;
    const std::string obstacle = accessObstacle(path);
    result.push_back(
        {path, "", "", "", false, obstacle.empty() ? path + " cannot write CDs." : obstacle});
  }
  return result;
}

std::string DriveService::describeDisc(const Drive& drive) {
  if (recorder_ != nullptr) return "in use for a burn";
  std::string why;
  const std::unique_ptr<Recorder> recorder = bus_->grab(drive.address, false, why);
  if (recorder == nullptr) return why;
  std::string words = describeMedium(recorder->medium());
  recorder->release(false);
  return words;
}

}  // namespace velmor::recording
