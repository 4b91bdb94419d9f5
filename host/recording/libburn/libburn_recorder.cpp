#include "host/recording/libburn/libburn_recorder.h"

#include <signal.h>
#include <unistd.h>

#include <array>
#include <cmath>

#include "disc/failure.h"
#include "disc/text/phrases.h"
#include "disc/units/disc_time.h"
#include "disc/units/disc_units.h"
#include "host/recording/libburn/device_access.h"
#include "host/recording/libburn/libburn_session.h"

namespace velmor::recording {
namespace {

constexpr int kProfileCdR = 0x09;
constexpr int kProfileCdRw = 0x0A;
/// At playing speed; libburn counts speeds in thousands of bytes a second.
constexpr double kKilobytesPerSecond = disc::kSampleRate * disc::kBytesPerFrame / 1000.0;
constexpr useconds_t kPollMicroseconds = 20'000;
constexpr useconds_t kReadyMicroseconds = 200'000;
constexpr int kReadyTries = 50;
constexpr int kReportedBlockBytes = 2048;  // libburn tells the free space of every disc in these
constexpr int kWholeOfBlanking = 0x10000;

/// While an object lives, all signals are blocked in the thread, and so in every thread that
/// libburn begins meanwhile: Ctrl-C has to arrive in the program's own thread, not in one that
/// waits for the drive.
class SignalsBlocked {
 public:
  SignalsBlocked() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &m_before);
  }
  ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;

 private:
  sigset_t m_before{};
};

Activity activityOf(burn::burn_drive_status status) {
  switch (status) {
    case burn::BURN_DRIVE_IDLE:
      return Activity::kIdle;
    case burn::BURN_DRIVE_WRITING:
    case burn::BURN_DRIVE_WRITING_SYNC:
    case burn::BURN_DRIVE_WRITING_PREGAP:
      return Activity::kWriting;
    case burn::BURN_DRIVE_WRITING_LEADIN:
      return Activity::kLeadIn;
    case burn::BURN_DRIVE_WRITING_LEADOUT:
    case burn::BURN_DRIVE_CLOSING_TRACK:
    case burn::BURN_DRIVE_CLOSING_SESSION:
      return Activity::kClosing;
    case burn::BURN_DRIVE_ERASING:
    case burn::BURN_DRIVE_FORMATTING:
      return Activity::kBlanking;
    default:
      return Activity::kWaiting;
  }
}

DiscCondition stateOf(burn::burn_disc_status status) {
  switch (status) {
    case burn::BURN_DISC_BLANK:
      return DiscCondition::kBlank;
    case burn::BURN_DISC_EMPTY:
      return DiscCondition::kNone;
    case burn::BURN_DISC_APPENDABLE:
      return DiscCondition::kAppendable;
    case burn::BURN_DISC_FULL:
      return DiscCondition::kClosed;
    case burn::BURN_DISC_UNSUITABLE:
      return DiscCondition::kUnsuitable;
    default:
      return DiscCondition::kUnknown;
  }
}

std::vector<RecorderMessage> drainMessages() {
  std::vector<RecorderMessage> messages;
  std::array<char, BURN_MSGS_MESSAGE_LEN> text{};
  std::array<char, 80> severity{};
  int code = 0;
  int error = 0;
  int limit = 0;
  burn::burn_text_to_sev(mutableText("SORRY"), &limit, 0);
  while (burn::burn_msgs_obtain(mutableText("WARNING"), &code, text.data(), &error,
                                severity.data()) > 0) {
    int rank = 0;
    burn::burn_text_to_sev(severity.data(), &rank, 0);
    messages.push_back({rank >= limit, text.data()});
  }
  return messages;
}

/// What libburn tells of drives. It keeps every drive that it has found open, which would lock
/// other programs out, until this is freed.
using DriveInfos = std::unique_ptr<burn::burn_drive_info, FreeWith<burn::burn_drive_info_free>>;

/// All drives of the machine, and how many they are.
DriveInfos scanned(unsigned int& count) {
  burn::burn_drive_info* infos = nullptr;
  const SignalsBlocked quiet;
  int done = 0;
  while ((done = burn::burn_drive_scan(&infos, &count)) == 0) usleep(kPollMicroseconds);
  if (done < 0) count = 0;
  return DriveInfos(infos);
}

class LibburnRecorder final : public Recorder {
 public:
  LibburnRecorder() = default;
  ~LibburnRecorder() override { LibburnRecorder::release(false); }
  LibburnRecorder(const LibburnRecorder&) = delete;
  LibburnRecorder& operator=(const LibburnRecorder&) = delete;

  /// Takes the drive into use, to be called once; whether it could be.
  bool grab(const std::string& address, bool close_tray);

  DiscInDrive medium() override;
  bool canTestWrite() override;
  double setSpeed(double speed) override;
  void startBlanking() override;
  void startWriting(const Session& session, SectorFeed& feed) override;
  RecorderStatus wait() override;
  void cancel() override { burn::burn_drive_cancel(m_drive); }
  bool succeeded() override { return burn::burn_drive_wrote_well(m_drive) == 1; }
  bool readAudio(int64_t lba, int sectors, unsigned char* audio) override;
  std::vector<RecorderMessage> takeMessages() override { return drainMessages(); }
  void release(bool eject) override;

 private:
  burn::burn_disc_status discStatus();
  int64_t freeSectors();
  int64_t capacity();

  burn::burn_drive_info* m_info = nullptr;  // null: no drive is in use
  burn::burn_drive* m_drive = nullptr;
  BurnDisc m_disc;         // what is being written
  bool m_changed = false;  // the disc was written or blanked since libburn last looked at it
};

bool LibburnRecorder::grab(const std::string& address, bool close_tray) {
  burn::burn_drive_info* info = nullptr;
  const int grabbed =
      burn::burn_drive_scan_and_grab(&info, mutableText(address.c_str()), close_tray ? 1 : 0);
  DriveInfos owned(info);
  if (grabbed <= 0 || info == nullptr) return false;
  m_info = owned.release();
  m_drive = m_info[0].drive;
  return true;
}

burn::burn_disc_status LibburnRecorder::discStatus() {
  burn::burn_disc_status status = burn::burn_disc_get_status(m_drive);
  for (int i = 0; i < kReadyTries && status == burn::BURN_DISC_UNREADY; ++i) {
    usleep(kReadyMicroseconds);  // the drive may have closed its tray only just now
    status = burn::burn_disc_get_status(m_drive);
  }
  return status;
}

int64_t LibburnRecorder::freeSectors() {
  const WriteOptions options(burn::burn_write_opts_new(m_drive));
  if (options == nullptr) return 0;
  burn::burn_write_opts_set_write_type(options.get(), burn::BURN_WRITE_SAO, burn::BURN_BLOCK_SAO);
  return burn::burn_disc_available_space(m_drive, options.get()) / kReportedBlockBytes;
}

/// What the disc holds in all, in sectors: the last address at which its lead-out may begin, as its
/// own lead-in states it. 0 when it does not.
int64_t LibburnRecorder::capacity() {
  int start = 0;
  int end = 0;
  if (burn::burn_disc_read_atip(m_drive) <= 0) return 0;
  if (burn::burn_drive_get_start_end_lba(m_drive, &start, &end, 0) <= 0) return 0;
  return end > 0 ? end : 0;
}

DiscInDrive LibburnRecorder::medium() {
  m_disc.reset();
  if (m_changed) burn::burn_drive_re_assess(m_drive, 0);
  m_changed = false;
  DiscInDrive medium;
  medium.state = stateOf(discStatus());
  int profile = 0;
  std::array<char, 80> name{};
  if (medium.state == DiscCondition::kNone ||
      burn::burn_disc_get_profile(m_drive, &profile, name.data()) <= 0)
    return medium;
  medium.type = name.data();
  medium.recordable_cd = profile == kProfileCdR || profile == kProfileCdRw;
  medium.rewritable = burn::burn_disc_erasable(m_drive) != 0;
  if (!medium.recordable_cd) return medium;
  if (medium.state == DiscCondition::kBlank) medium.free_sectors = freeSectors();
  medium.capacity_sectors = capacity();
  return medium;
}

bool LibburnRecorder::canTestWrite() {
  burn::burn_multi_caps* caps = nullptr;
  const bool writable = burn::burn_disc_get_multi_caps(m_drive, burn::BURN_WRITE_SAO, &caps, 0) > 0;
  const bool possible =
      writable && caps != nullptr && caps->might_simulate != 0 && m_info->write_simulate != 0;
  if (caps != nullptr) burn::burn_disc_free_multi_caps(&caps);
  return possible;
}

double LibburnRecorder::setSpeed(double speed) {
  const int kilobytes = speed > 0.0 ? static_cast<int>(std::ceil(speed * kKilobytesPerSecond)) : 0;
  burn::burn_drive_set_speed(m_drive, 0, kilobytes);
  burn::burn_speed_descriptor* best = nullptr;
  // A drive that has no speed as slow as that takes its slowest one.
  if (burn::burn_drive_get_best_speed(m_drive, kilobytes, &best, 2) <= 0 || best == nullptr)
    if (burn::burn_drive_get_best_speed(m_drive, -1, &best, 2) <= 0 || best == nullptr) return 0.0;
  return best->write_speed / kKilobytesPerSecond;
}

void LibburnRecorder::startBlanking() {
  m_changed = true;
  // libburn takes a disc whose recording broke off for neither blank nor full, and refuses to blank
  // it although that is possible.
  burn::burn_disc_pretend_full(m_drive);
  const SignalsBlocked quiet;
  burn::burn_disc_erase(m_drive, 1);
}

void LibburnRecorder::startWriting(const Session& session, SectorFeed& feed) {
  m_disc = makeBurnDisc(session, feed, m_drive);
  const WriteOptions options = makeWriteOptions(m_drive, session);
  std::array<char, BURN_REASONS_LEN> reasons{};
  if (burn::burn_precheck_write(options.get(), m_disc.get(), reasons.data(), 1) <= 0)
    throw Failure(std::string("the drive does not take this burn: ") + reasons.data());
  m_changed = true;
  const SignalsBlocked quiet;
  burn::burn_disc_write(options.get(), m_disc.get());
}

RecorderStatus LibburnRecorder::wait() {
  burn::burn_progress progress{};
  RecorderStatus result;
  burn::burn_drive_status status = burn::burn_drive_get_status(m_drive, &progress);
  if (status != burn::BURN_DRIVE_IDLE) {
    usleep(kPollMicroseconds);
    status = burn::burn_drive_get_status(m_drive, &progress);
  }
  result.activity = activityOf(status);
  if (result.activity == Activity::kBlanking)
    result.fraction = static_cast<double>(progress.sector) / kWholeOfBlanking;
  if (result.activity == Activity::kWriting && progress.buffer_capacity > 0 &&
      progress.buffer_available <= progress.buffer_capacity)
    result.buffer_percent = static_cast<int>(
        100.0 * (progress.buffer_capacity - progress.buffer_available) / progress.buffer_capacity);
  return result;
}

bool LibburnRecorder::readAudio(int64_t lba, int sectors, unsigned char* audio) {
  const off_t wanted = off_t{sectors} * disc::kBytesPerSector;
  off_t got = 0;
  return burn::burn_read_audio(m_drive, static_cast<int>(lba), reinterpret_cast<char*>(audio),
                               wanted, &got, 2) > 0 &&
         got == wanted;
}

void LibburnRecorder::release(bool eject) {
  if (m_info == nullptr) return;
  m_disc.reset();
  burn::burn_drive_release(m_drive, eject ? 1 : 0);
  burn::burn_drive_info_free(m_info);
  m_info = nullptr;
}

class LibburnBus final : public RecorderBus {
 public:
  LibburnBus() = default;
  ~LibburnBus() override { burn::burn_finish(); }
  LibburnBus(const LibburnBus&) = delete;
  LibburnBus& operator=(const LibburnBus&) = delete;

  std::vector<DriveRecord> scan() override;
  std::unique_ptr<Recorder> grab(const std::string& address, bool close_tray) override;
};

std::vector<DriveRecord> LibburnBus::scan() {
  std::vector<DriveRecord> drives;
  unsigned int count = 0;
  DriveInfos infos = scanned(count);
  for (unsigned int i = 0; i < count; ++i) {
    const burn::burn_drive_info& info = infos.get()[i];
    std::array<char, BURN_DRIVE_ADR_LEN> address{};
    if (burn::burn_drive_d_get_adr(info.drive, address.data()) <= 0) continue;
    if (info.write_cdr == 0 && info.write_cdrw == 0) continue;
    drives.push_back({address.data(), info.vendor, info.product, info.revision});
  }
  infos.reset();
  drainMessages();
  return drives;
}

std::unique_ptr<Recorder> LibburnBus::grab(const std::string& address, bool close_tray) {
  if (const std::string obstacle = accessObstacle(address); !obstacle.empty()) {
    throw Failure(obstacle);
  }
  auto recorder = std::make_unique<LibburnRecorder>();
  if (recorder->grab(address, close_tray)) {
    drainMessages();
    return recorder;
  }
  std::string failure = "the drive " + disc::inQuotes(address) + " could not be taken into use";
  for (const RecorderMessage& message : drainMessages())
    if (message.error) failure += "; it says: " + message.text;
  throw Failure(failure);
}

bool libraryFits() {
  int major = 0;
  int minor = 0;
  int micro = 0;
  burn::burn_version(&major, &minor, &micro);
  const std::array<int, 3> found{major, minor, micro};
  const std::array<int, 3> wanted{burn_header_version_major, burn_header_version_minor,
                                  burn_header_version_micro};
  return found >= wanted;
}

}  // namespace

std::unique_ptr<RecorderBus> openLibburn() {
  if (!libraryFits()) {
    throw Failure(
        "the libburn of this machine is older than the one this program was made with; update it");
  }
  if (burn::burn_initialize() == 0) throw Failure("libburn could not be started");
  // libburn is to print nothing: its messages are fetched and told in our own words. Its handler of
  // signals stays off as well, since the program has one.
  burn::burn_msgs_set_severities(mutableText("WARNING"), mutableText("NEVER"), mutableText(""));
  burn::burn_preset_device_open(1, 0, 0);
  return std::make_unique<LibburnBus>();
}

}  // namespace velmor::recording
