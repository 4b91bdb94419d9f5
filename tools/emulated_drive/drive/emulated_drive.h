// The drive itself: it understands the MMC command set as far as audio needs it, session-at-once.
// It makes no system calls; its owner hands in command blocks and takes the data they ask for. One
// thread at a time.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <variant>

#include "tools/emulated_drive/disc/cd_text_lead_in.h"
#include "tools/emulated_drive/disc/emulated_disc.h"
#include "tools/emulated_drive/drive/mode_pages.h"
#include "tools/emulated_drive/drive/sense_data.h"
#include "tools/emulated_drive/drive/session_cue_sheet.h"

namespace velmor::emulated_drive {

/// What INQUIRY tells; longer texts are cut.
struct DriveIdentity {
  std::string vendor = "VELMOR";           ///< 8 characters
  std::string product = "EMULATED CD-RW";  ///< 16 characters
  std::string revision = "1.0";            ///< 4 characters
};

/// What goes wrong on purpose.
struct Faults {
  std::optional<int32_t> write_error_at;  ///< LBA that cannot be written
  std::optional<int32_t> read_error_at;   ///< LBA that cannot be read
  int becoming_ready_polls = 0;           ///< commands refused with 2/04/01 after a medium change
  std::chrono::milliseconds write_delay{0};  ///< every WRITE takes this long
};

/// A command's end. `sense` absent: GOOD status. `delay` is for the caller to sleep.
struct Reply {
  std::optional<SenseData> sense;
  ByteBuffer data;  ///< to the host, already cut to the allocation length
  std::chrono::milliseconds delay{0};

  // Not explicit, so that a command function can return its data or its refusal as it is.
  Reply() = default;
  Reply(ByteBuffer answer) : data(std::move(answer)) {}  // NOLINT(google-explicit-constructor)
  Reply(const SenseData& refusal) : sense(refusal) {}    // NOLINT(google-explicit-constructor)
};

class EmulatedDrive {
 public:
  /// `surface` outlives the drive and holds the audio of whatever disc is in the tray.
  EmulatedDrive(DriveIdentity identity, AudioSurface& surface);

  /// Does one command. `data_out` is what the host sends along. CDBs shorter than their command are
  /// refused.
  Reply execute(ByteView cdb, ByteView data_out = {});

  /// Puts a disc in (or takes it out with nothing); the next command gets a unit attention.
  void changeMedium(std::optional<EmulatedDisc> disc);
  /// As `changeMedium`, without the unit attention: the state the drive had when it was switched
  /// on.
  void load(std::optional<EmulatedDisc> disc, bool tray_open);
  void setFaults(const Faults& faults) { m_faults = faults; }
  void openTray(bool open) { m_tray_open = open; }

  [[nodiscard]] const std::optional<EmulatedDisc>& disc() const { return m_disc; }
  [[nodiscard]] bool trayOpen() const { return m_tray_open; }
  /// Grows with every change of the disc's description or of the tray.
  [[nodiscard]] unsigned generation() const { return m_generation; }

 private:
  struct Recording {
    SessionCueSheet sheet;
    CdTextLeadIn cd_text;
    int32_t next = 0;  ///< next writable address
    bool test = false;
    bool begun = false;   ///< something is on the disc, which is no longer blank
    bool flushed = true;  ///< no sector waits in the buffer, so the recording can be given up
  };
  using CommandMethod = Reply (EmulatedDrive::*)(ByteView cdb, ByteView data_out);
  struct CommandDescription {
    uint8_t code;
    std::size_t bytes;       ///< of the command block
    bool needs_medium;       ///< refused while the tray is empty or open
    bool despite_attention;  ///< answered although a unit attention waits
    CommandMethod command;
  };
  static const CommandDescription* find(uint8_t code);

  // drive.cpp: state of the unit
  std::optional<SenseData> notReady();
  Reply testUnitReady(ByteView, ByteView);
  Reply requestSense(ByteView cdb, ByteView);
  Reply accept(ByteView, ByteView);
  Reply preventRemoval(ByteView cdb, ByteView);
  Reply startStop(ByteView cdb, ByteView);

  // drive_description.cpp: what the drive is and can do
  Reply inquiry(ByteView cdb, ByteView);
  Reply getConfiguration(ByteView cdb, ByteView);
  Reply getEventStatus(ByteView cdb, ByteView);
  Reply getPerformance(ByteView cdb, ByteView);
  Reply mechanismStatus(ByteView cdb, ByteView);
  Reply modeSense6(ByteView cdb, ByteView);
  Reply modeSense10(ByteView cdb, ByteView);
  Reply modeSelect6(ByteView cdb, ByteView data_out);
  Reply modeSelect10(ByteView cdb, ByteView data_out);
  [[nodiscard]] uint16_t currentProfile() const;
  Reply senseModes(ByteView cdb, std::size_t header, std::size_t room);
  Reply selectModes(ByteView cdb, std::size_t header, std::size_t length, ByteView data_out);

  // drive_reading.cpp: what is on the disc
  Reply readDiscInformation(ByteView cdb, ByteView);
  Reply readTrackInformation(ByteView cdb, ByteView);
  Reply readToc(ByteView cdb, ByteView);
  Reply readSubChannel(ByteView cdb, ByteView);
  Reply readCapacity(ByteView cdb, ByteView);
  Reply readData10(ByteView cdb, ByteView);
  Reply readData12(ByteView cdb, ByteView);
  Reply readCd(ByteView cdb, ByteView);
  Reply readCdMsf(ByteView cdb, ByteView);
  Reply readSectors(int32_t lba, uint32_t count, ByteView cdb);
  Reply refuseData(uint32_t lba, uint32_t count);

  // drive_recording.cpp: putting something on it
  Reply sendCueSheet(ByteView cdb, ByteView data_out);
  Reply write10(ByteView cdb, ByteView data_out);
  Reply write12(ByteView cdb, ByteView data_out);
  Reply write(int32_t lba, uint32_t count, ByteView data_out);
  Reply writeMainData(int32_t lba, uint32_t count, const CueRegion& region, ByteView data_out);
  Reply synchronizeCache(ByteView, ByteView);
  Reply closeTrackSession(ByteView cdb, ByteView);
  Reply reserveTrack(ByteView cdb, ByteView);
  Reply readBufferCapacity(ByteView cdb, ByteView);
  Reply blank(ByteView cdb, ByteView);
  /// False while sectors wait to be written; otherwise an unfinished recording is over.
  bool giveUpRecording();
  void skipGeneratedRegions();
  void markBegun();
  void closeSession();

  DriveIdentity m_identity;
  AudioSurface& m_surface;
  Faults m_faults;
  ModePages m_modes;
  std::optional<EmulatedDisc> m_disc;
  std::optional<Recording> m_recording;
  std::optional<SenseData> m_attention;  ///< told once to the next command
  bool m_tray_open = false;
  bool m_removal_prevented = false;
  int m_becoming_ready = 0;  ///< polls until the medium is ready
  int m_blanking_polls = 0;  ///< polls until an immediate BLANK has ended
  /// For GET EVENT STATUS NOTIFICATION: 0 none, 1 eject request, 2 new medium, 3 medium removed.
  uint8_t m_media_event = 0;
  unsigned m_generation = 0;
};

/// `data` cut to what the host has room for.
ByteBuffer cut(ByteBuffer data, std::size_t allocation);

}  // namespace velmor::emulated_drive
