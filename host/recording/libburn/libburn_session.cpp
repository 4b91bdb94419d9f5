#include "host/recording/libburn/libburn_session.h"

#include <cstdlib>

#include "disc/cd_text/disc_texts.h"
#include "disc/cd_text/pack_writing.h"
#include "disc/failure.h"
#include "disc/units/disc_time.h"
#include "disc/units/disc_units.h"

namespace velmor::recording {
namespace {

struct TrackSource {
  SectorFeed* feed;
  burn::burn_drive* drive;
  size_t track;
  off_t bytes;
};

/// For libburn's worker thread: a copy, after which nothing of the source itself is read, so that
/// the feed can say on the main thread that all reading came before the source's end.
TrackSource sourceOf(burn::burn_source* source) {
  const TrackSource copy = *static_cast<TrackSource*>(source->data);
  copy.feed->sourceWasRead();
  return copy;
}

/// Called on libburn's worker thread. When the feed fails, the burn is cancelled here: the return
/// value alone would make libburn fill the track up with zeros and report success.
int readSector(burn::burn_source* source, unsigned char* buffer, int size) {
  const TrackSource track = sourceOf(source);
  if (size == disc::kBytesPerSector && track.feed->next(track.track, buffer)) return size;
  burn::burn_drive_cancel(track.drive);
  return -1;
}

off_t sizeOfSource(burn::burn_source* source) {
  return sourceOf(source).bytes;
}
int keepSize(burn::burn_source* /*source*/, off_t /*size*/) {
  return 1;
}
void freeSource(burn::burn_source* source) {
  delete static_cast<TrackSource*>(source->data);
}

/// A new source with one reference; libburn frees it, so it comes from calloc. Null: no memory.
burn::burn_source* makeSource(const TrackSource& track) {
  auto data = std::make_unique<TrackSource>(track);
  auto* source = static_cast<burn::burn_source*>(std::calloc(1, sizeof(burn::burn_source)));
  if (source == nullptr) return nullptr;
  source->refcount = 1;
  source->read = readSector;
  source->get_size = sizeOfSource;
  source->set_size = keepSize;
  source->free_data = freeSource;
  source->data = data.release();
  return source;
}

using BurnSession = std::unique_ptr<burn::burn_session, FreeWith<burn::burn_session_free>>;
using Track = std::unique_ptr<burn::burn_track, FreeWith<burn::burn_track_free>>;
using Source = std::unique_ptr<burn::burn_source, FreeWith<burn::burn_source_free>>;

unsigned char* payloadOf(const std::string& text) {
  return reinterpret_cast<unsigned char*>(mutableText(text.c_str()));
}

void require(bool done, const char* what) {
  if (!done) throw Failure(std::string("the burn could not be set up: ") + what);
}

void addCode(burn::burn_track* track, const std::string& code) {
  if (code.empty()) return;
  require(burn::burn_track_set_isrc_string(track, mutableText(code.c_str()), 0) > 0,
          "the ISRC of a track was not accepted");
}

/// The packs are ours, so that a burned disc and one that a plant presses hold the same.
void addTexts(burn::burn_write_opts* options, const disc::DiscTexts& texts) {
  const std::string packs = disc::packBytes(texts);
  if (packs.empty()) return;
  const auto count = static_cast<int>(packs.size()) / disc::kWholePackBytes;
  require(burn::burn_write_opts_set_leadin_text(options, payloadOf(packs), count, 0) > 0,
          "the CD-TEXT was not accepted");
}

void addIndices(burn::burn_track* track, int pregap) {
  if (pregap <= 0) return;
  require(burn::burn_track_set_index(track, 0, 0, 0) > 0 &&
              burn::burn_track_set_index(track, 1, static_cast<unsigned>(pregap), 0) > 0,
          "the pregap of a track was not accepted");
}

Track makeTrack(const Session& session, size_t index, SectorFeed& feed, burn::burn_drive* drive) {
  const SessionTrack& planned = session.plan->tracks[index];
  Track track(burn::burn_track_create());
  require(track != nullptr, "there is no memory");
  burn::burn_track_define_data(track.get(), 0, 0, 1, BURN_AUDIO);
  addIndices(track.get(), planned.pregap);
  const off_t bytes = (off_t{planned.pregap} + planned.sectors) * disc::kBytesPerSector;
  const Source source(makeSource({&feed, drive, index, bytes}));
  require(source != nullptr &&
              burn::burn_track_set_source(track.get(), source.get()) == burn::BURN_SOURCE_OK,
          "the audio of a track was not accepted");
  if (session.texts != nullptr) addCode(track.get(), session.texts->recording_codes[index]);
  return track;
}

}  // namespace

BurnDisc makeBurnDisc(const Session& session, SectorFeed& feed, burn::burn_drive* drive) {
  BurnDisc disc(burn::burn_disc_create());
  BurnSession burn_session(burn::burn_session_create());
  require(disc != nullptr && burn_session != nullptr, "there is no memory");
  require(burn::burn_disc_add_session(disc.get(), burn_session.get(), BURN_POS_END) != 0,
          "the session was not accepted");
  for (size_t i = 0; i < session.plan->tracks.size(); ++i) {
    const Track track = makeTrack(session, i, feed, drive);
    require(burn::burn_session_add_track(burn_session.get(), track.get(), BURN_POS_END) != 0,
            "a track was not accepted");
  }
  return disc;
}

WriteOptions makeWriteOptions(burn::burn_drive* drive, const Session& session) {
  WriteOptions options(burn::burn_write_opts_new(drive));
  require(options != nullptr, "there is no memory");
  burn::burn_write_opts* o = options.get();
  // The write type is set explicitly: left to choose, libburn may fall back to track-at-once, which
  // puts gaps between the tracks.
  require(burn::burn_write_opts_set_write_type(o, burn::BURN_WRITE_SAO, burn::BURN_BLOCK_SAO) != 0,
          "the drive does not write session-at-once");
  burn::burn_write_opts_set_multi(o, session.keep_open ? 1 : 0);
  burn::burn_write_opts_set_perform_opc(o, 0);
  burn::burn_write_opts_set_underrun_proof(o, 1);
  require(burn::burn_write_opts_set_simulate(o, session.simulate ? 1 : 0) != 0 || !session.simulate,
          "the drive cannot make a test write");
  if (session.texts != nullptr) addTexts(o, *session.texts);
  if (session.texts != nullptr && !session.texts->media_catalog.empty()) {
    burn::burn_write_opts_set_mediacatalog(o, payloadOf(session.texts->media_catalog));
    burn::burn_write_opts_set_has_mediacatalog(o, 1);
  }
  return options;
}

}  // namespace velmor::recording
