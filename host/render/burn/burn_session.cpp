#include "host/render/burn/burn_session.h"

#include <algorithm>
#include <filesystem>
#include <utility>
#include <vector>

#include "host/render/album/host_project.h"
#include "host/render/burn/drive_list.h"
#include "host/render/terminal/interrupt.h"
#include "host/windowing/layer_functions.h"

namespace velmor::render {

namespace {

recording::Options recordingOptions(const BurnOptions& burn, const std::string& sheet,
                                    BurnAttendant& attendant) {
  recording::Options options;
  options.dry_run = burn.dry_run;
  options.speed = burn.speed;
  options.verify = burn.verify;
  if (burn.cd_text) options.text_sheet = sheet;
  options.attendant = &attendant;
  options.cancel = &interruption();
  return options;
}

/// The dialog opens with the boxes as they last were. One that has deleted an image must not be
/// checked for a moment over the next one. Where the settings cannot be kept there are none.
void prepareSettings() {
  const std::string file = iniFilePath();
  std::error_code ignored;
  std::filesystem::create_directories(std::filesystem::path(file).parent_path(), ignored);
  windowing::functions::WritePrivateProfileString("velmor_cd", "deletefiles", "0", file.c_str());
}

}  // namespace

BurnSession::BurnSession(const Options& options, const std::string& sheet,
                         std::function<void()> image_is_there)
    : m_attendant(options.quiet),
      m_room(recordingOptions(options.burn, sheet, m_attendant)),
      m_desk(options.burn, m_room.service(), m_attendant, std::move(image_is_there)),
      m_seat(m_desk) {
  lookAtTheDrives(options.burn);
  prepareSettings();
}

/// Before an hour of rendering, not after it.
void BurnSession::lookAtTheDrives(const BurnOptions& options) {
  const std::vector<recording::Drive> drives = m_room.service().drives();
  if (!options.drive.empty()) {
    const recording::Drive& drive = drives[chooseDrive(drives, options.drive)];
    if (!drive.usable) m_attendant.warn(drive.obstacle);
    return;
  }
  const auto usable = [](const recording::Drive& drive) { return drive.usable; };
  if (std::any_of(drives.begin(), drives.end(), usable)) return;
  m_attendant.warn("no recorder can be used now");
  for (const recording::Drive& drive : drives) m_attendant.warn(drive.obstacle);
}

void listDrives(const Options& options) {
  const RecordingRoom room({});
  listDrives(room.service(), options.json);
}

}  // namespace velmor::render
