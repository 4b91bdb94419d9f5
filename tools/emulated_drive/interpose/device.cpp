#include "tools/emulated_drive/interpose/device.h"

#include <sys/stat.h>

#include <algorithm>
#include <thread>

#include "tools/emulated_drive/interpose/trace.h"

namespace velmor::recorder {

namespace {

unsigned trailingNumber(const std::string& name) {
  const std::size_t last = name.find_last_not_of("0123456789");
  const std::string digits = name.substr(last == std::string::npos ? 0 : last + 1);
  return digits.empty() || digits.size() > 5 ? 0 : static_cast<unsigned>(std::stoul(digits));
}

std::array<std::int64_t, 3> stampOf(const std::string& file) {
  struct stat info {};
  if (::stat(file.c_str(), &info) != 0) {
    return {};
  }
  return {static_cast<std::int64_t>(info.st_ino), info.st_mtim.tv_sec, info.st_mtim.tv_nsec};
}

}  // namespace

Device::Device(const DriveDirectory& directory, int number)
    : directory_(directory),
      path_(directory.settings().device),
      number_(number),
      minor_(trailingNumber(path_)),
      surface_(directory.audioFile()),
      drive_(directory.settings().identity, surface_) {
  seen_ = stamps();
  drive_.setFaults(directory_.settings().faults);
  drive_.load(directory_.disc(), directory_.trayOpen());
}

bool Device::hasDisc() const {
  std::error_code error;
  return std::filesystem::exists(directory_.discFile(), error);
}

Device::Stamps Device::stamps() const {
  return {stampOf(directory_.settingsFile()), stampOf(directory_.discFile()),
          stampOf(directory_.trayFile())};
}

void Device::takeIn(const Stamps& now) {
  if (now.settings != seen_.settings) {
    drive_.setFaults(directory_.settings().faults);
  }
  if (now.disc != seen_.disc || now.tray != seen_.tray) {
    surface_.forget();
    drive_.changeMedium(directory_.disc());
    drive_.openTray(directory_.trayOpen());
    written_ = drive_.generation();
  }
  seen_ = now;
}

void Device::writeBack() {
  if (drive_.generation() == written_) {
    return;
  }
  written_ = drive_.generation();
  directory_.saveDisc(drive_.disc());
  directory_.saveTray(drive_.trayOpen());
  seen_ = stamps();
}

Reply Device::execute(ByteView cdb, ByteView dataOut) {
  const std::lock_guard lock(mutex_);
  if (const Stamps now = stamps(); now != seen_) {
    takeIn(now);
  }
  Reply reply = drive_.execute(cdb, dataOut);
  writeBack();
  trace(path_, cdb, dataOut.size(), reply);
  if (reply.delay.count() > 0) {
    std::this_thread::sleep_for(reply.delay);
  }
  return reply;
}

}  // namespace velmor::recorder
