#include "host/render/burn/burn_dialog_driver.h"

#include <utility>
#include <vector>

#include "disc/failure.h"
#include "disc/terminal/interrupt.h"
#include "disc/text/phrases.h"
#include "host/render/burn/drive_list.h"
#include "host/render/terminal/questions.h"
#include "host/windowing/win32/win32_numbers.h"

namespace velmor::render {

namespace {

// The burn dialog and its controls.
constexpr intptr_t kBurnDialog = 102;
constexpr int kMethod = 1014;
constexpr int kDrive = 1015;
constexpr int kEject = 1016;
constexpr int kDelete = 1017;

}  // namespace

BurnDialogDriver::BurnDialogDriver(const BurnOptions& options, recording::Service& service,
                                   BurnConsole& console, std::function<void()> image_is_there)
    : m_options(options),
      m_service(service),
      m_console(console),
      m_image_is_there(std::move(image_is_there)) {
  m_result.failure = "the module did not open its burn dialog";
}

void BurnDialogDriver::dialogOpened(windowing::OpenDialog& dialog) {
  if (dialog.resourceId() != kBurnDialog) return;
  // The box comes first: the module deletes the image if it is checked when the dialog ends, and
  // from here on an exception may end the dialog.
  dialog.setChecked(kDelete, false);
  dialog.setChecked(kEject, m_options.eject);
  m_image_is_there();
  m_result.has_begun = true;
}

bool BurnDialogDriver::useDialog(windowing::OpenDialog& dialog) {
  if (dialog.resourceId() != kBurnDialog) return false;
  const bool done = burnAll(dialog);
  // The module looks at the box when the dialog closes. It is checked only now, and only if all
  // copies of the image have been written.
  m_result.image_deleted = done && m_options.delete_image && !m_options.dry_run;
  dialog.setChecked(kDelete, m_result.image_deleted);
  dialog.close();
  return true;
}

int BurnDialogDriver::readMessage(const windowing::ShownMessage& message) {
  m_console.fail("the module says " + disc::inQuotes(message.caption) + ": " + message.text);
  m_result.failure = message.text;
  m_told = true;
  return windowing::messageBoxButtons(message.type).back();
}

bool BurnDialogDriver::burnAll(windowing::OpenDialog& dialog) {
  for (int copy = 1; copy <= m_options.copies; ++copy) {
    // Between two copies the disc has to be changed, so it is ejected whatever the options say.
    dialog.setChecked(kEject, m_options.eject || copy < m_options.copies);
    if ((copy > 1 && !nextDiscIsIn(copy)) || !burnOne(dialog, copy)) return false;
  }
  return true;
}

/// Burns one copy, again after each failure for as long as the user answers that it is to be tried
/// again. False when there is no good disc in the end.
bool BurnDialogDriver::burnOne(windowing::OpenDialog& dialog, int copy) {
  for (;;) {
    burnOnce(dialog, copy);
    m_result.interrupted = interruption().load();
    if (m_result.failure.empty()) return true;
    if (m_result.interrupted || !canAskQuestions() || !askYesOrNo("Try again?")) return false;
    // Choosing a method makes the module list the drives anew: one may have been plugged in.
    dialog.pick(kMethod, 0);
  }
}

void BurnDialogDriver::burnOnce(windowing::OpenDialog& dialog, int copy) {
  m_result.failure.clear();
  m_result.disc_state.clear();
  m_told = false;
  try {
    pickDrive(dialog);
    m_result.drive = dialog.text(kDrive);
    if (!m_result.drive.empty()) {
      m_console.say(
          (m_options.dry_run ? "test write to " : "burning to ") + disc::inQuotes(m_result.drive) +
          (m_options.copies > 1
               ? ", copy " + std::to_string(copy) + " of " + std::to_string(m_options.copies)
               : ""));
    }
    pressBurn(dialog);
  } catch (const std::exception& error) {
    fail(error.what());
  }
}

/// Selects the drive of --drive in the dialog. Without that option the dialog's own choice stays,
/// the drive used last.
void BurnDialogDriver::pickDrive(windowing::OpenDialog& dialog) const {
  if (m_options.drive.empty()) return;
  const std::vector<recording::ListedDrive> drives = m_service.drives();
  const recording::ListedDrive& drive = drives[chooseDrive(drives, m_options.drive)];
  if (!drive.usable) throw Failure(drive.obstacle);
  const auto device = reinterpret_cast<LPARAM>(m_service.deviceOf(drive));
  const auto rows = static_cast<int>(dialog.rows(kDrive).size());
  for (int row = 0; row < rows; ++row) {
    if (dialog.rowData(kDrive, row) == device) return dialog.pick(kDrive, row);
  }
  throw Failure("the drive " +
                disc::inQuotes(recording::driveName(drive.vendor, drive.product, drive.address)) +
                " came too late to be in the dialog's list; try again");
}

void BurnDialogDriver::pressBurn(windowing::OpenDialog& dialog) {
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
    m_console.say(outcome.disc_state);
  } else if (!outcome.failure.empty()) {
    m_result.failure = outcome.failure;  // the recording service has printed it
  } else {
    fail("the drive " + disc::inQuotes(m_result.drive) +
         " is not there any more; nothing was written");
  }
}

void BurnDialogDriver::fail(const std::string& sentence) {
  m_console.fail(sentence);
  m_result.failure = sentence;
}

bool BurnDialogDriver::nextDiscIsIn(int copy) {
  const auto answer =
      ask("Put a blank disc into " + m_result.drive + " for copy " + std::to_string(copy) + " of " +
          std::to_string(m_options.copies) + ", then press Enter (q and Enter to stop).");
  m_result.interrupted = interruption().load();
  if (answer && *answer != "q" && !m_result.interrupted) return true;
  fail("copy " + std::to_string(copy) + " of " + std::to_string(m_options.copies) +
       " was not begun: no other disc was put in");
  return false;
}

/// Says why there was no recorder to select.
void BurnDialogDriver::tellObstacles() {
  const std::vector<recording::ListedDrive> drives = m_service.drives();
  if (drives.empty()) m_console.say("no recorder was found; is it plugged in?");
  bool usable = false;
  for (const recording::ListedDrive& drive : drives) {
    usable = usable || drive.usable;
    if (!drive.usable) m_console.fail(drive.obstacle);
  }
  if (usable) m_console.say("choose one with --drive; velmor-render --list-drives shows them");
}

}  // namespace velmor::render
