#include "tools/emulated_drive/drive/mode_pages.h"

#include <algorithm>

namespace velmor::emulated_drive {

namespace {

constexpr uint8_t kRecoveryPage = 0x01;
constexpr uint8_t kWritePage = 0x05;
constexpr uint8_t kCapabilitiesPage = 0x2A;
constexpr uint8_t kAllPages = 0x3F;
constexpr uint8_t kChangeable = 1;
constexpr uint8_t kDefault = 2;
constexpr uint8_t kSaved = 3;
constexpr uint16_t kBufferKilobytes = 2048;

ByteBuffer recoveryPage() {
  ByteBuffer page(12);
  page[0] = kRecoveryPage;
  page[1] = 10;
  page[3] = 5;  // read retries
  return page;
}

ByteBuffer recoveryMask() {
  ByteBuffer page = recoveryPage();
  page[2] = 0xFF;
  page[3] = 0xFF;
  page[8] = 0xFF;  // write retries
  return page;
}

ByteBuffer writePage() {
  ByteBuffer page(52);
  page[0] = kWritePage;
  page[1] = 50;
  page[2] = 0x40 | kSessionAtOnce;  // buffer underrun protection on
  page[4] = 8;                      // block type: mode 1, 2048 bytes
  page[15] = 150;                   // audio pause, sectors
  return page;
}

ByteBuffer writeMask() {
  ByteBuffer page(52, 0xFF);
  page[0] = kWritePage;
  page[1] = 50;
  page[2] = 0x7F;
  return page;
}

ByteBuffer capabilitiesPage() {
  constexpr std::size_t kFixed = 32;
  ByteBuffer page(kFixed + 4 * std::size(kSpeeds));
  page[0] = kCapabilitiesPage;
  page[1] = static_cast<uint8_t>(page.size() - 2);
  page[2] = 0x03;  // reads CD-R, CD-RW
  page[3] = 0x07;  // writes CD-R, CD-RW; test write
  page[4] = 0x80;  // buffer underrun protection
  page[5] = 0x67;  // CD-DA readable without jitter, R-W sub-channels, ISRC, MCN
  page[6] = 0x29;  // tray, ejects, can be locked
  page[7] = 0x20;  // R-W in the lead-in
  storeBig16(&page[8], kSpeeds[0]);
  storeBig16(&page[12], kBufferKilobytes);
  storeBig16(&page[14], kSpeeds[0]);
  storeBig16(&page[18], kSpeeds[0]);
  storeBig16(&page[20], kSpeeds[0]);
  storeBig16(&page[28], kSpeeds[0]);
  storeBig16(&page[30], static_cast<uint16_t>(std::size(kSpeeds)));
  for (std::size_t i = 0; i < std::size(kSpeeds); ++i) {
    storeBig16(&page[kFixed + 4 * i + 2], kSpeeds[i]);
  }
  return page;
}

bool validWritePage(ByteView page) {
  const uint8_t write_type = page[2] & 0x0F;
  const uint8_t block_type = page[4] & 0x0F;
  const bool testable = write_type == kSessionAtOnce;
  // Raw writing, track-at-once and packets are nothing that this drive does; block types 4 to 7 and
  // 11, 12, 14 are reserved or belong to others.
  constexpr uint16_t kBlockTypes = 1 << 0 | 1 << 1 | 1 << 2 | 1 << 3 | 1 << 8 | 1 << 10;
  return testable && ((kBlockTypes >> block_type) & 1) != 0;
}

void append(ByteBuffer& all, const ByteBuffer& page) {
  all.insert(all.end(), page.begin(), page.end());
}

}  // namespace

ModePages::ModePages() : m_recovery(recoveryPage()), m_write(writePage()) {}

std::variant<ByteBuffer, SenseData> ModePages::sense(uint8_t page, uint8_t control) const {
  if (control == kSaved) {
    return kSavingNotSupported;
  }
  const auto choose = [control](const ByteBuffer& current, const ByteBuffer& mask,
                                const ByteBuffer& initial) {
    return control == kChangeable ? mask : control == kDefault ? initial : current;
  };
  ByteBuffer found;
  if (page == kRecoveryPage || page == kAllPages) {
    append(found, choose(m_recovery, recoveryMask(), recoveryPage()));
  }
  if (page == kWritePage || page == kAllPages) {
    append(found, choose(m_write, writeMask(), writePage()));
  }
  if (page == kCapabilitiesPage || page == kAllPages) {
    ByteBuffer none(capabilitiesPage().size());
    none[0] = kCapabilitiesPage;
    none[1] = static_cast<uint8_t>(none.size() - 2);
    append(found, choose(capabilitiesPage(), none, capabilitiesPage()));
  }
  if (found.empty()) {
    return kInvalidFieldInCommand;
  }
  return found;
}

std::optional<SenseData> ModePages::select(ByteView pages) {
  ByteBuffer recovery = m_recovery;
  ByteBuffer write = m_write;
  while (!pages.empty()) {
    if (pages.size() < 2 || pages.size() < 2u + pages[1]) {
      return kParameterListLength;
    }
    const ByteView page = pages.first(2u + pages[1]);
    pages = pages.subspan(page.size());
    const uint8_t code = page[0] & 0x3F;
    ByteBuffer* target = code == kRecoveryPage ? &recovery : code == kWritePage ? &write : nullptr;
    if (target == nullptr || target->size() != page.size()) {
      return kInvalidFieldInParameters;
    }
    if (code == kWritePage && !validWritePage(page)) {
      return kInvalidFieldInParameters;
    }
    std::copy(page.begin(), page.end(), target->begin());
    target->front() = code;
  }
  m_recovery = recovery;
  m_write = write;
  return std::nullopt;
}

uint8_t ModePages::writeType() const {
  return m_write[2] & 0x0F;
}

bool ModePages::testWrite() const {
  return (m_write[2] & 0x10) != 0;
}

}  // namespace velmor::emulated_drive
