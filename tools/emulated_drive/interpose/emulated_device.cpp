#include "tools/emulated_drive/interpose/emulated_device.h"

#include <sys/stat.h>

#include <algorithm>
#include <thread>

#include "tools/emulated_drive/interpose/trace.h"

namespace velmor::emulated_drive {

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

EmulatedDevice::EmulatedDevice(const DriveDirectory& directory, int number)
    : m_directory(directory),
      m_path(directory.settings().device),
      m_number(number),
      m_minor(trailingNumber(m_path)),
      m_surface(directory.audioFile()),
      m_drive(directory.settings().identity, m_surface) {
  m_seen = stamps();
  m_drive.setFaults(m_directory.settings().faults);
  m_drive.load(m_directory.disc(), m_directory.trayOpen());
}

bool EmulatedDevice::hasDisc() const {
  std::error_code error;
  return std::filesystem::exists(m_directory.discFile(), error);
}

EmulatedDevice::Stamps EmulatedDevice::stamps() const {
  return {stampOf(m_directory.settingsFile()), stampOf(m_directory.discFile()),
          stampOf(m_directory.trayFile())};
}

void EmulatedDevice::takeIn(const Stamps& now) {
  if (now.settings != m_seen.settings) {
    m_drive.setFaults(m_directory.settings().faults);
  }
  if (now.disc != m_seen.disc || now.tray != m_seen.tray) {
    m_surface.forget();
    m_drive.changeMedium(m_directory.disc());
    m_drive.openTray(m_directory.trayOpen());
    m_written = m_drive.generation();
  }
  m_seen = now;
}

void EmulatedDevice::writeBack() {
  if (m_drive.generation() == m_written) {
    return;
  }
  m_written = m_drive.generation();
  m_directory.saveDisc(m_drive.disc());
  m_directory.saveTray(m_drive.trayOpen());
  m_seen = stamps();
}

Reply EmulatedDevice::execute(ByteView cdb, ByteView data_out) {
  const std::lock_guard lock(m_mutex);
  if (const Stamps now = stamps(); now != m_seen) {
    takeIn(now);
  }
  Reply reply = m_drive.execute(cdb, data_out);
  writeBack();
  trace(m_path, cdb, data_out.size(), reply);
  if (reply.delay.count() > 0) {
    std::this_thread::sleep_for(reply.delay);
  }
  return reply;
}

}  // namespace velmor::emulated_drive
