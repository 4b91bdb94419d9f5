#include "tests/module/burn/scripted_recording_service.h"

#include <gtest/gtest.h>

#include <utility>

namespace burn_test {

namespace {

ScriptedRecordingService* g_current = nullptr;

const char* textOrNull(const std::optional<std::string>& text) {
  return text ? text->c_str() : nullptr;
}

}  // namespace

ScriptedRecordingService::ScriptedRecordingService() {
  if (g_current != nullptr) ADD_FAILURE() << "two recording services in one process";
  g_current = this;
}

ScriptedRecordingService::~ScriptedRecordingService() {
  g_current = nullptr;
}

ScriptedRecordingService::Device& ScriptedRecordingService::add(
    std::optional<std::string> vendor, std::optional<std::string> product) {
  devices.push_back({std::move(vendor), std::move(product)});
  return devices.back();
}

size_t ScriptedRecordingService::numberOf(void* device) const {
  for (size_t i = 0; i < devices.size(); ++i) {
    if (&devices[i] == device) return i;
  }
  ADD_FAILURE() << "a device handle that was never given out";
  return 0;
}

void ScriptedRecordingService::note(const std::string& call, void* device) {
  journal.push_back(call + " " + std::to_string(numberOf(device)));
}

int ScriptedRecordingService::DeviceCount() {
  journal.emplace_back("DeviceCount");
  return static_cast<int>(devices.size());
}

void* ScriptedRecordingService::DeviceAt(int index) {
  journal.push_back("DeviceAt " + std::to_string(index));
  const auto i = static_cast<size_t>(index);
  if (index < 0 || i >= devices.size()) {
    ADD_FAILURE() << "device " << index << " of " << devices.size() << " was asked for";
    return nullptr;
  }
  return devices[i].is_null ? nullptr : &devices[i];
}

const char* ScriptedRecordingService::VendorName(void* device) {
  note("VendorName", device);
  return textOrNull(devices[numberOf(device)].vendor);
}

const char* ScriptedRecordingService::ProductName(void* device) {
  note("ProductName", device);
  return textOrNull(devices[numberOf(device)].product);
}

bool ScriptedRecordingService::IsValid(void* device) {
  note("IsValid", device);
  return devices[numberOf(device)].valid;
}

bool ScriptedRecordingService::AcquireExclusiveAccess(void* device) {
  note("AcquireExclusiveAccess", device);
  return grants_access;
}

void ScriptedRecordingService::ReleaseExclusiveAccess(void* device) {
  note("ReleaseExclusiveAccess", device);
}

void* ScriptedRecordingService::BurnForDevice(void* device) {
  note("BurnForDevice", device);
  return gives_burn ? &m_burn : nullptr;
}

void ScriptedRecordingService::SetProperties(void* burn, const DiscBurnProperties* set) {
  journal.emplace_back("SetProperties");
  EXPECT_EQ(burn, &m_burn);
  properties = *set;
}

void ScriptedRecordingService::RunProgressPanel(void* burn, const DiscTrack* given, int count) {
  journal.emplace_back("RunProgressPanel");
  EXPECT_EQ(burn, &m_burn);
  ++panels;
  tracks_were_null = given == nullptr;
  tracks.assign(given, given + (given == nullptr ? 0 : count));
  if (on_panel) on_panel(given, count);
}

std::string produce(const DiscTrack& track, uint32_t step) {
  std::string audio;
  std::string block(step, '\0');
  for (;;) {
    const uint32_t got = track.producer->ProduceData(block.data(), step);
    if (got > step) ADD_FAILURE() << "a failed read";
    if (got == 0 || got > step) return audio;
    audio.append(block, 0, got);
  }
}

}  // namespace burn_test

/// What the module asks for whenever it lists or burns.
extern "C" DiscRecordingService* velmorGetDiscRecording();
extern "C" DiscRecordingService* velmorGetDiscRecording() {
  if (burn_test::g_current == nullptr) return nullptr;
  ++burn_test::g_current->lookups;
  return burn_test::g_current->is_there ? burn_test::g_current : nullptr;
}
