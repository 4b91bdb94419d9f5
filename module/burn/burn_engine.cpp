#include "module/burn/burn_engine.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>

#include "abi/quelm_functions.h"
#include "abi/track_source.h"
#include "module/platform/disc_recording.h"
#include "module/support/cd_units.h"
#include "module/support/typed_buf.h"
#include "module/support/wrapping.h"
#include "module/support/ydk_string.h"

namespace {

constexpr int kLongestName = 496;  ///< bytes of a vendor or product name that an entry shows

/// Bytes of `text` that fit without cutting a UTF-8 character in two.
int fittingLength(const char* text) {
  const size_t length = strnlen(text, kLongestName + 1);
  if (length <= kLongestName) return static_cast<int>(length);
  int fits = kLongestName;
  while (fits > 0 && (static_cast<unsigned char>(text[fits]) & 0xC0) == 0x80) --fits;
  return fits;
}

void appendName(YDK_String& entry, const char* name) {
  if (const int length = fittingLength(name)) entry.Append(name, length);
}

YDK_String& describe(DiscRecordingService& service, void* device, YDK_String& entry) {
  const char* const vendor = service.VendorName(device);
  const char* const product = service.ProductName(device);
  if (vendor) appendName(entry, vendor);
  if (product) {
    if (entry.GetLength() > 0) entry.Append(" ");
    appendName(entry, product);
  }
  return entry;
}

bool isThere(DiscRecordingService& service, void* device) {
  for (int i = 0; i < service.DeviceCount(); ++i) {
    if (service.DeviceAt(i) == device && service.IsValid(device)) return true;
  }
  return false;
}

/// A recorder held for one burn, and given back also when an exception of the host's passes.
class ExclusiveAccess {
 public:
  ExclusiveAccess(DiscRecordingService& service, void* device)
      : m_service(service), m_device(device), m_held(service.AcquireExclusiveAccess(device)) {}
  ~ExclusiveAccess() {
    if (m_held) m_service.ReleaseExclusiveAccess(m_device);
  }
  ExclusiveAccess(const ExclusiveAccess&) = delete;
  ExclusiveAccess& operator=(const ExclusiveAccess&) = delete;

  bool isHeld() const { return m_held; }

 private:
  DiscRecordingService& m_service;
  void* const m_device;
  const bool m_held;
};

DiscBurnProperties burnProperties(bool eject, bool test_burn) {
  DiscBurnProperties properties{};
  properties.testing = test_burn;
  properties.appendable = false;
  properties.overwrite = true;
  properties.verify = false;
  properties.completion_action = eject ? kDiscActionEject : kDiscActionMount;
  // A failed burn ejects like a successful one on purpose: who asked for the disc wants it back
  // either way.
  properties.failure_action = eject ? kDiscActionEject : kDiscActionNone;
  return properties;
}

/// The tracks of one burn.
class TrackLayout {
 public:
  /// Returns false when memory ran out.
  bool cut(int count, const int* offsets, YDK_FileRead& image) {
    if (count <= 0) return true;
    m_sources.reset(new (std::nothrow) CDBurnTrackSource[static_cast<size_t>(count)]);
    m_tracks.Resize(count);
    if (!m_sources || m_tracks.GetSize() != count) return false;
    int start_block = 0;
    for (int i = 0; i < count; ++i) {
      const int end_block = i + 1 < count ? offsets[i + 1] / kSectorBytes : lastBlock(image);
      setTrack(i, image, start_block, end_block);
      start_block = end_block;
    }
    return true;
  }

  const DiscTrack* tracks() const { return m_tracks.Get(); }
  int count() const { return m_tracks.GetSize(); }

 private:
  static int lastBlock(YDK_FileRead& image) {
    return static_cast<int>((image.GetSize() + kSectorBytes - 1) / kSectorBytes);
  }

  void setTrack(int i, YDK_FileRead& image, int start_block, int end_block) {
    const int blocks = wrappingSubtract(end_block, start_block);
    CDBurnTrackSource& source = m_sources[static_cast<size_t>(i)];
    source.file = &image;
    source.posbytes = wrappingMultiply(start_block, kSectorBytes);
    source.lenbytes = wrappingMultiply(blocks, kSectorBytes);
    DiscTrack& track = m_tracks.Get()[i];
    track = DiscTrack{};  // zeros: two-channel audio without a pregap
    track.producer = &source;
    track.block_size = kSectorBytes;
    track.track_length = blocks;
  }

  std::unique_ptr<CDBurnTrackSource[]> m_sources;
  YDK_TypedBuf<DiscTrack> m_tracks;
};

}  // namespace

void CDBurn_PopulateComboBoxWithBurners(HWND combo) {
  DiscRecordingService* const service = platformFindDiscRecording();
  if (!service) return;
  for (int i = 0; i < service->DeviceCount(); ++i) {
    void* const device = service->DeviceAt(i);
    if (!device) continue;
    YDK_String entry;
    if (describe(*service, device, entry).GetLength() == 0) continue;
    const LRESULT row = SendMessage(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry.Get()));
    SendMessage(combo, CB_SETITEMDATA, row, reinterpret_cast<LPARAM>(device));
  }
}

void CDBurn_Run(long device, int track_count, const int* track_byte_offsets, YDK_FileRead* image,
                bool eject, bool test_burn) {
  DiscRecordingService* const service = platformFindDiscRecording();
  auto* const recorder = reinterpret_cast<void*>(device);
  if (!service || !recorder || !isThere(*service, recorder)) return;
  const ExclusiveAccess access(*service, recorder);
  if (!access.isHeld()) return;
  // The tracks are cut before the burn is made: only the panel makes the service dispose of a burn,
  // so nothing may fail between the two.
  TrackLayout layout;
  if (!layout.cut(track_count, track_byte_offsets, *image)) return;
  void* const burn = service->BurnForDevice(recorder);
  if (!burn) return;
  const DiscBurnProperties properties = burnProperties(eject, test_burn);
  service->SetProperties(burn, &properties);
  service->RunProgressPanel(burn, layout.tracks(), layout.count());
}
