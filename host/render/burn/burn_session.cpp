#include "host/render/burn/burn_session.h"

#include <algorithm>
#include <filesystem>
#include <utility>
#include <vector>

#include "disc/terminal/interrupt.h"
#include "host/render/burn/drive_list.h"
#include "host/render/options/settings_file.h"
#include "host/render/plan/sheet_times.h"
#include "host/windowing/functions/layer_functions.h"

namespace velmor::render {

namespace {

std::vector<recording::TrackPlace> layoutOf(const SinkConfig& config, const TrackPlan& plan) {
  std::vector<recording::TrackPlace> layout;
  for (size_t i = 0; i < plan.tracks.size(); ++i)
    layout.push_back({exactGapSector(config, plan, i), exactStartSector(plan, i)});
  return layout;
}

recording::RecordingOptions recordingOptions(const BurnOptions& burn, const std::string& sheet,
                                             std::vector<recording::TrackPlace> layout,
                                             BurnConsole& console) {
  recording::RecordingOptions options;
  options.dry_run = burn.dry_run;
  options.speed = burn.speed;
  options.verify = burn.verify;
  if (burn.cd_text) options.text_sheet = sheet;
  options.layout = std::move(layout);
  options.user_interface = &console;
  options.cancel = &interruption();
  return options;
}

/// The module's burn dialog opens with its check boxes as they were left the last time. Unchecks
/// "delete files" in the settings beforehand: an earlier burn may have left it checked, and this
/// image must not be deleted if the dialog ends before the driver has set the box. Where the
/// settings cannot be written, they cannot have been kept either.
void prepareSettings() {
  const std::string file = settingsFilePath();
  std::error_code ignored;
  std::filesystem::create_directories(std::filesystem::path(file).parent_path(), ignored);
  windowing::functions::WritePrivateProfileString("velmor_cd", "deletefiles", "0", file.c_str());
}

}  // namespace

BurnSession::BurnSession(const Options& options, const std::string& sheet, const SinkConfig& config,
                         const TrackPlan& plan, std::function<void()> image_is_there)
    : m_console(options.quiet),
      m_recording(recordingOptions(options.burn, sheet, layoutOf(config, plan), m_console)),
      m_driver(options.burn, m_recording.service(), m_console, std::move(image_is_there)),
      m_dialog_user(m_driver) {
  lookAtTheDrives(options.burn);
  prepareSettings();
}

/// Tells of drives that cannot be used before the render, which may take an hour, and not after it.
void BurnSession::lookAtTheDrives(const BurnOptions& options) {
  const std::vector<recording::ListedDrive> drives = m_recording.service().drives();
  if (!options.drive.empty()) {
    const recording::ListedDrive& drive = drives[chooseDrive(drives, options.drive)];
    if (!drive.usable) m_console.warn(drive.obstacle);
    return;
  }
  const auto usable = [](const recording::ListedDrive& drive) { return drive.usable; };
  if (std::any_of(drives.begin(), drives.end(), usable)) return;
  m_console.warn("no recorder can be used at the moment");
  for (const recording::ListedDrive& drive : drives) m_console.warn(drive.obstacle);
}

}  // namespace velmor::render
