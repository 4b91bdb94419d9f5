#include "tools/emulated_drive/directory/drive_directory.h"

#include <algorithm>
#include <sstream>

#include "tools/emulated_drive/directory/disc_text.h"
#include "tools/emulated_drive/directory/key_value_text.h"

namespace velmor::emulated_drive {

namespace fs = std::filesystem;

namespace {

constexpr int kMostMilliseconds = 60000;

void apply(const KeyValue& item, DriveSettings& settings) {
  const auto bounded = [&](int32_t most) {
    const int32_t value = numberOf(item);
    if (value < 0 || value > most) {
      refuse(item, "0 to " + std::to_string(most));
    }
    return value;
  };
  const auto sector = [&] {
    return item.value == "none" ? std::nullopt : std::optional<int32_t>(numberOf(item));
  };
  if (item.key == "device") {
    if (item.value.rfind("/dev/", 0) != 0 || item.value.size() == 5) {
      refuse(item, "a path below /dev");
    }
    settings.device = item.value;
  } else if (item.key == "vendor") {
    settings.identity.vendor = item.value;
  } else if (item.key == "product") {
    settings.identity.product = item.value;
  } else if (item.key == "revision") {
    settings.identity.revision = item.value;
  } else if (item.key == "write-error-at") {
    settings.faults.write_error_at = sector();
  } else if (item.key == "read-error-at") {
    settings.faults.read_error_at = sector();
  } else if (item.key == "write-delay-ms") {
    settings.faults.write_delay = std::chrono::milliseconds(bounded(kMostMilliseconds));
  } else if (item.key == "becoming-ready-polls") {
    settings.faults.becoming_ready_polls = bounded(1000);
  } else if (item.key == "busy") {
    settings.busy = switchOf(item);
  } else if (item.key == "deny") {
    settings.deny = switchOf(item);
  } else {
    refuse(item,
           "device, vendor, product, revision, write-error-at, read-error-at, write-delay-ms, "
           "becoming-ready-polls, busy or deny as the key");
  }
}

}  // namespace

std::string inQuotes(const std::filesystem::path& name) {
  return '"' + name.string() + '"';
}

void applySetting(const std::string& key, const std::string& value, const std::string& where,
                  DriveSettings& settings) {
  apply({key, value, where}, settings);
}

std::vector<DriveDirectory> DriveDirectory::all(const fs::path& root) {
  std::vector<DriveDirectory> drives;
  std::error_code error;
  for (const fs::directory_entry& entry : fs::directory_iterator(root, error)) {
    if (fs::exists(entry.path() / "drive.conf", error)) {
      drives.emplace_back(entry.path());
    }
  }
  std::sort(drives.begin(), drives.end(),
            [](const DriveDirectory& a, const DriveDirectory& b) { return a.path() < b.path(); });
  return drives;
}

DriveSettings DriveDirectory::settings() const {
  DriveSettings settings;
  for (const KeyValue& item : readKeyValues(settingsFile())) {
    apply(item, settings);
  }
  return settings;
}

void DriveDirectory::saveSettings(const DriveSettings& settings) const {
  std::ostringstream out;
  out << "device = " << settings.device << "\n"
      << "vendor = " << settings.identity.vendor << "\n"
      << "product = " << settings.identity.product << "\n"
      << "revision = " << settings.identity.revision << "\n"
      << "busy = " << (settings.busy ? "yes" : "no") << "\n"
      << "deny = " << (settings.deny ? "yes" : "no") << "\n"
      << "write-delay-ms = " << settings.faults.write_delay.count() << "\n"
      << "becoming-ready-polls = " << settings.faults.becoming_ready_polls << "\n";
  if (settings.faults.write_error_at) {
    out << "write-error-at = " << *settings.faults.write_error_at << "\n";
  }
  if (settings.faults.read_error_at) {
    out << "read-error-at = " << *settings.faults.read_error_at << "\n";
  }
  replaceFile(settingsFile(), out.str());
}

std::optional<EmulatedDisc> DriveDirectory::disc() const {
  std::error_code error;
  if (!fs::exists(discFile(), error)) {
    return std::nullopt;
  }
  return readDisc(discFile());
}

void DriveDirectory::saveDisc(const std::optional<EmulatedDisc>& disc) const {
  if (disc) {
    replaceFile(discFile(), discText(*disc));
    return;
  }
  removeFile(discFile());
  removeFile(audioFile());
}

bool DriveDirectory::trayOpen() const {
  std::error_code error;
  return fs::exists(trayFile(), error);
}

void DriveDirectory::saveTray(bool open) const {
  if (!open) {
    removeFile(trayFile());
  } else if (!trayOpen()) {
    replaceFile(trayFile(), "");
  }
}

}  // namespace velmor::emulated_drive
