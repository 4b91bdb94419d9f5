#include "ddp/extract/album_of_set.h"

#include <algorithm>
#include <iterator>

#include "ddp/write/prepared_set.h"
#include "disc/ddp/identifier.h"
#include "disc/ddp/sheet_flags.h"
#include "disc/text/latin1.h"
#include "disc/text/line_of_text.h"
#include "disc/text/phrases.h"
#include "disc/text/words.h"

namespace velmor::ddp {

namespace {

/// In the order of `kWrittenKinds`.
constexpr std::string disc::PlainFields::*kFields[] = {
    &disc::PlainFields::title,    &disc::PlainFields::performer, &disc::PlainFields::songwriter,
    &disc::PlainFields::composer, &disc::PlainFields::arranger,  &disc::PlainFields::message};
static_assert(std::size(kFields) == disc::kWrittenKinds.size());

class Maker {
 public:
  explicit Maker(const CheckedSet& set) : m_set(set) {}

  disc::PortableDisc run(const std::string& image, int64_t left_out) {
    takeMasterId(m_set.identifier.master_id);
    m_made.catalog = m_set.layout.catalogue;
    m_made.files.push_back({image, "BINARY"});
    m_made.fields = fieldsOf(0);
    for (size_t t = 0; t < m_set.layout.tracks.size(); ++t) addTrack(t, left_out);
    if (m_set.texts.block(disc::TextKind::kCode).present())
      m_made.changes.emplace_back(
          "the codes in the CD-TEXT are left out; those of the Q channel stay");
    return std::move(m_made);
  }

 private:
  /// A line break in it would begin a line of the sheet.
  void takeMasterId(const std::string& id) {
    if (id.empty()) return;
    if (isMasterId(id))
      m_made.remarks.push_back(std::string(kMasterIdRemark) + disc::inQuotes(id));
    else
      m_made.changes.emplace_back("the master identifier is left out: it is not printable ASCII");
  }

  void addTrack(size_t track, int64_t left_out) {
    const SetTrack& from = m_set.layout.tracks[track];
    disc::PlainTrack to;
    to.number = static_cast<int>(track) + 1;
    to.mode = "AUDIO";
    to.fields = fieldsOf(track + 1);
    to.isrc = from.isrc;
    to.flags = flagWords(from.flags);
    for (const IndexPoint& index : from.indices)
      if (index.sector >= left_out)
        to.indices.push_back({index.number, index.sector - left_out, 0});
    m_made.tracks.push_back(std::move(to));
  }

  /// Of track `track`, from 1 on, or of the disc (0).
  disc::PlainFields fieldsOf(size_t track) {
    disc::PlainFields fields;
    for (size_t k = 0; k < std::size(kFields); ++k) {
      const disc::TextKind kind = disc::kWrittenKinds[k];
      fields.*kFields[k] =
          lineOf(disc::fromLatin1(m_set.texts.text(kind, track)),
                 disc::upperCase(disc::nameOf(kind)) +
                     (track == 0 ? " of the disc" : " of track " + std::to_string(track)));
    }
    return fields;
  }

  /// A sheet has room for one line.
  std::string lineOf(std::string text, const std::string& what) {
    if (!disc::hasControlCharacters(text)) return text;
    std::replace_if(
        text.begin(), text.end(),
        [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, ' ');
    m_made.changes.push_back("control characters in the " + what + " become blanks");
    return text;
  }

  const CheckedSet& m_set;
  disc::PortableDisc m_made;
};

}  // namespace

disc::PortableDisc albumOfSet(const CheckedSet& set, const std::string& image, int64_t left_out) {
  return Maker(set).run(image, left_out);
}

}  // namespace velmor::ddp
