#include "host/render/burn/burn_desk.h"

#include <utility>
#include <vector>

#include "disc/failure.h"
#include "host/render/burn/drive_list.h"
#include "host/render/terminal/interrupt.h"
#include "host/render/terminal/terminal.h"
#include "host/windowing/win32_numbers.h"

namespace velmor::render {

namespace {

// The burn dialog and its controls.
constexpr intptr_t kBurnDialog = 102;
constexpr int kMethod = 1014;
constexpr int kDrive = 1015;
constexpr int kEject = 1016;
constexpr int kDelete = 1017;

}  // namespace

BurnDesk::BurnDesk(const BurnOptions& options, recording::Service& service,
                   BurnAttendant& attendant, std::function<void()> image_is_there)
    : m_options(options),
      m_service(service),
      m_attendant(attendant),
      m_image_is_there(std::move(image_is_there)) {
  m_result.failure = "the module did not open its burn dialog";
}

void BurnDesk::dialogOpened(windowing::OpenDialog& dialog) {
  if (dialog.resourceId() != kBurnDialog) return;
  // First of all: whatever ends the dialog from here on must leave the image where it is.
  dialog.setChecked(kDelete, false);
  dialog.setChecked(kEject, m_options.eject);
  m_image_is_there();
  m_result.has_begun = true;
}

bool BurnDesk::useDialog(windowing::OpenDialog& dialog) {
  if (dialog.resourceId() != kBurnDialog) return false;
  const bool done = burnAll(dialog);
  // The box is for the last moment, and for images whose discs have all been written.
  m_result.image_deleted = done && m_options.delete_image && !m_options.dry_run;
  dialog.setChecked(kDelete, m_result.image_deleted);
  dialog.close();
  return true;
}

int BurnDesk::readMessage(const windowing::ShownMessage& message) {
  m_attendant.fail(message.caption + ": " + message.text);
  m_result.failure = message.text;
  m_told = true;
  return windowing::messageBoxButtons(message.type).back();
}

bool BurnDesk::burnAll(windowing::OpenDialog& dialog) {
  for (int copy = 1; copy <= m_options.copies; ++copy) {
    // The disc of a copy that is followed by another one has to come out anyway.
    dialog.setChecked(kEject, m_options.eject || copy < m_options.copies);
    if ((copy > 1 && !nextDiscIsIn(copy)) || !burnOne(dialog, copy)) return false;
  }
  return true;
}

/// Until it is done, or the person has enough of it.
bool BurnDesk::burnOne(windowing::OpenDialog& dialog, int copy) {
  for (;;) {
    burnOnce(dialog, copy);
    m_result.interrupted = interruption().load();
    if (m_result.failure.empty()) return true;
    if (m_result.interrupted || !somebodyIsThere() || !askYesOrNo("Try again?")) return false;
    // As a person would who has plugged in a drive: choosing the method lists the drives anew.
    dialog.pick(kMethod, 0);
  }
}

void BurnDesk::burnOnce(windowing::OpenDialog& dialog, int copy) {
  m_result.failure.clear();
  m_result.disc_state.clear();
  m_told = false;
  try {
    pickDrive(dialog);
    m_result.drive = dialog.text(kDrive);
    if (!m_result.drive.empty()) {
      m_attendant.say((m_options.dry_run ? "Test write to " : "Burning to ") + m_result.drive +
                      (m_options.copies > 1 ? ", copy " + std::to_string(copy) + " of " +
                                                  std::to_string(m_options.copies)
                                            : ""));
    }
    pressBurn(dialog);
  } catch (const std::exception& error) {
    fail(error.what());
  }
}

/// Leaves the dialog's own choice where the person has none.
void BurnDesk::pickDrive(windowing::OpenDialog& dialog) const {
  if (m_options.drive.empty()) return;
  const std::vector<recording::Drive> drives = m_service.drives();
  const size_t number = chooseDrive(drives, m_options.drive);
  if (!drives[number].usable) throw Failure(drives[number].obstacle);
  const auto device = reinterpret_cast<LPARAM>(m_service.DeviceAt(static_cast<int>(number)));
  const auto rows = static_cast<int>(dialog.rows(kDrive).size());
  for (int row = 0; row < rows; ++row) {
    if (dialog.rowData(kDrive, row) == device) return dialog.pick(kDrive, row);
  }
  throw Failure("the drive " + driveName(drives[number]) +
                " came too late to be in the dialog's list; try again");
}

void BurnDesk::pressBurn(windowing::OpenDialog& dialog) {
  const bool has_drive = dialog.selectedRow(kDrive) >= 0;
  dialog.press(IDOK);
  const recording::Outcome& outcome = m_service.outcome();
  if (m_told) {
    if (!has_drive) tellObstacles();
    return;
  }
  m_result.disc_state = outcome.disc_state;
  m_result.compared = outcome.compared;
  m_result.tested = outcome.tested;
  if (outcome.written) ++m_result.written;
  if (outcome.written || outcome.tested) {
    m_attendant.say(outcome.disc_state);
  } else if (!outcome.failure.empty()) {
    m_result.failure = outcome.failure;  // the recording service has told it
  } else {
    fail("the drive " + m_result.drive + " is not there any more; nothing was written");
  }
}

void BurnDesk::fail(const std::string& sentence) {
  m_attendant.fail(sentence);
  m_result.failure = sentence;
}

bool BurnDesk::nextDiscIsIn(int copy) {
  const auto answer =
      ask("Put a blank disc into " + m_result.drive + " for copy " + std::to_string(copy) + " of " +
          std::to_string(m_options.copies) + ", then press Enter (q and Enter to stop).");
  m_result.interrupted = interruption().load();
  if (answer && *answer != "q" && !m_result.interrupted) return true;
  fail("copy " + std::to_string(copy) + " of " + std::to_string(m_options.copies) +
       " was not begun: no other disc was put in");
  return false;
}

/// Why there was no recorder to select.
void BurnDesk::tellObstacles() {
  const std::vector<recording::Drive> drives = m_service.drives();
  if (drives.empty()) m_attendant.say("no recorder was found; is it plugged in?");
  bool usable = false;
  for (const recording::Drive& drive : drives) {
    usable = usable || drive.usable;
    if (!drive.usable) m_attendant.fail(drive.obstacle);
  }
  if (usable) m_attendant.say("choose one with --drive; velmor-render --list-drives shows them");
}

}  // namespace velmor::render
