// The product's home for the same rules is disc/ddp.
#include "tests/ddp/model/reference_set.h"

#include "tests/ddp/model/text_packs.h"

namespace ddp_model {
namespace {

constexpr int64_t kSectorBytes = 2352;
constexpr int64_t kFirstPause = 150;
constexpr size_t kPqBytes = 64;
constexpr const char* kNoFlags = "01";

std::string twoDigits(int64_t value) {
  return {static_cast<char>('0' + value / 10), static_cast<char>('0' + value % 10)};
}

std::string timeOf(int64_t sector) {
  return twoDigits(sector / (60 * 75)) + twoDigits(sector / 75 % 60) + twoDigits(sector % 75);
}

/// A record of blanks that fields are put into.
class Record {
 public:
  explicit Record(size_t length) : m_bytes(length, ' ') {}

  Record& left(size_t at, const std::string& text) {
    m_bytes.replace(at, text.size(), text);
    return *this;
  }
  Record& right(size_t at, size_t width, const std::string& text) {
    return left(at + width - text.size(), text);
  }
  const std::string& bytes() const { return m_bytes; }

 private:
  std::string m_bytes;
};

/// The disc's times as the set counts them: from the first sector of IMAGE.DAT.
struct Timeline {
  int64_t shift = 0;    ///< how far the sheet's image lies behind that sector
  int64_t sectors = 0;  ///< of IMAGE.DAT, and where the lead-out begins

  explicit Timeline(const ModelDisc& disc)
      : shift(disc.tracks.front().indices.front().number == 0 ? 0 : kFirstPause),
        sectors(shift + (disc.image_bytes + kSectorBytes - 1) / kSectorBytes) {}
};

std::string identifierOf(const ModelDisc& disc) {
  Record record(128);
  record.left(0, "DDP 2.00").left(8, disc.catalogue).left(38, disc.master_id).left(87, "CD");
  return record.bytes();
}

Record streamRecord(const char* type, size_t length, const char* name) {
  Record record(128);
  record.left(0, "VVVM").left(4, type).right(14, 8, std::to_string(length));
  record.right(71, 3, "17").left(74, name);
  return record;
}

/// The first track's index 01, before which lies nothing but its pregap.
int64_t firstPregap(const ModelDisc& disc, const Timeline& timeline) {
  for (const ModelIndex& index : disc.tracks.front().indices)
    if (index.number == 1) return timeline.shift + index.sector;
  return 0;
}

std::string mapOf(const ModelDisc& disc, const Timeline& timeline, size_t text_bytes,
                  size_t pq_bytes) {
  std::string map;
  if (text_bytes != 0)
    map += streamRecord("S0", text_bytes, "CDTEXT.BIN").left(30, "CDTEXT").left(55, "00").bytes();
  map += streamRecord("S0", pq_bytes, "SD").left(30, "PQ DESCR").bytes();
  map += streamRecord("D0", static_cast<size_t>(timeline.sectors), "IMAGE.DAT")
             .left(38, "DA")
             .left(40, "7")
             .left(41, "1")
             .right(46, 4, std::to_string(firstPregap(disc, timeline)))
             .bytes();
  return map;
}

std::string flagsOf(const ModelTrack& track) {
  const int control = (track.pre_emphasis ? 1 : 0) + (track.copies_permitted ? 2 : 0) +
                      (track.four_channels ? 8 : 0);
  return std::string(1, "0123456789ABCDEF"[control]) + (track.serial_copies ? 'S' : '1');
}

Record pqRecord(const std::string& track, int index, int64_t sector, const std::string& flags) {
  Record record(kPqBytes);
  record.left(0, "VVVS").left(4, track).left(6, twoDigits(index));
  record.right(8, 8, timeOf(sector)).left(16, flags);
  return record;
}

std::string pqOfTrack(const ModelTrack& track, size_t number, int64_t shift) {
  std::vector<ModelIndex> indices = track.indices;
  for (ModelIndex& index : indices) index.sector += shift;
  if (number == 1 && indices.front().number != 0) indices.insert(indices.begin(), {0, 0});
  const std::string name = twoDigits(static_cast<int64_t>(number));
  std::string packets;
  for (const ModelIndex& index : indices) {
    Record record = pqRecord(name, index.number, index.sector, flagsOf(track));
    if (packets.empty()) record.left(20, track.isrc);
    packets += record.bytes();
  }
  return packets;
}

std::string pqOf(const ModelDisc& disc, const Timeline& timeline) {
  std::string packets = pqRecord("00", 0, 0, kNoFlags).left(32, disc.catalogue).bytes();
  for (size_t t = 0; t < disc.tracks.size(); ++t)
    packets += pqOfTrack(disc.tracks[t], t + 1, timeline.shift);
  const std::string lead_out = pqRecord("AA", 1, timeline.sectors, kNoFlags).bytes();
  return packets + lead_out + lead_out;
}

}  // namespace

ModelSet makeSet(const ModelDisc& disc, CdText cd_text) {
  const Timeline timeline(disc);
  ModelSet set;
  if (cd_text == CdText::kWritten) set.texts = textPacks(disc);
  set.pq = pqOf(disc, timeline);
  set.identifier = identifierOf(disc);
  set.map = mapOf(disc, timeline, set.texts.size(), set.pq.size());
  set.silent_sectors = timeline.shift;
  set.sectors = timeline.sectors;
  return set;
}

}  // namespace ddp_model
