// Shows what libcue or libburn makes of a cue sheet, in lines that the tests read. A process of its
// own: a library that crashes on a sheet is one of the things to be seen.
//   usage: cdcheck_library_reader libcue|libburn SHEET
#include <libburn/libburn.h>
#include <libcue.h>
#include <sys/types.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

using namespace burn;  // libburn puts itself there in C++

void show(const char* key, int track, std::string value) {
  // One line for each value: a break inside it is shown as a blank.
  for (char& c : value)
    if (c == '\n') c = ' ';
  std::printf("%s %d %s\n", key, track, value.c_str());
}

int readWithLibcue(const char* path) {
  FILE* file = std::fopen(path, "rb");
  if (!file) return 2;
  Cd* cd = cue_parse_file(file);
  std::fclose(file);
  if (!cd) return 1;
  const auto text = [](const char* t) { return std::string(t ? t : ""); };
  for (const Pti kind : {PTI_TITLE, PTI_PERFORMER})
    show("disc", 0, text(cdtext_get(kind, cd_get_cdtext(cd))));
  for (int t = 1; t <= cd_get_ntrack(cd); ++t) {
    const Track* track = cd_get_track(cd, t);
    show("title", t, text(cdtext_get(PTI_TITLE, track_get_cdtext(track))));
    show("isrc", t, text(track_get_isrc(track)));
    show("performer", t, text(cdtext_get(PTI_PERFORMER, track_get_cdtext(track))));
    std::string place = std::to_string(track_get_start(track));
    for (const long number :
         {track_get_index(track, 0), track_get_zero_pre(track), track_get_zero_post(track)})
      place += ' ' + std::to_string(number);
    show("place", t, place + ' ' + text(track_get_filename(track)));
  }
  cd_delete(cd);
  return 0;
}

/// The texts of one kind of pack: 12 bytes each from byte 4 on, each text ended by a zero.
std::vector<std::string> packTexts(const unsigned char* packs, int count, unsigned char kind) {
  std::vector<std::string> texts;
  std::string text;
  for (int p = 0; p < count; ++p) {
    const unsigned char* pack = packs + 18 * p;
    if (pack[0] != kind) continue;
    for (int i = 4; i < 16; ++i) {
      if (pack[i] != 0) {
        text += static_cast<char>(pack[i]);
        continue;
      }
      // A tab alone stands for the text of the track before (MMC-3 annex J).
      if (text == "\t" && !texts.empty()) text = texts.back();
      texts.push_back(text);
      text.clear();
    }
  }
  return texts;
}

void showSession(burn_session* session) {
  int tracks = 0;
  burn_track** list = burn_session_get_tracks(session, &tracks);
  unsigned char* packs = nullptr;
  int count = 0;
  burn_cdtext_from_session(session, &packs, &count, 0);
  const auto titles = packTexts(packs, count, 0x80);
  const auto performers = packTexts(packs, count, 0x81);
  const auto codes = packTexts(packs, count, 0x8e);
  const auto at = [](const std::vector<std::string>& texts, int i) {
    return static_cast<size_t>(i) < texts.size() ? texts[static_cast<size_t>(i)] : "";
  };
  show("catalog", 0, at(codes, 0));
  show("disc", 0, at(titles, 0));
  show("disc", 0, at(performers, 0));
  for (int t = 1; t <= tracks; ++t) {
    show("title", t, at(titles, t));
    show("performer", t, at(performers, t));
    show("isrc", t, at(codes, t));
    show("sectors", t, std::to_string(burn_track_get_sectors(list[t - 1])));
  }
  std::free(packs);
}

int readWithLibburn(char* path) {
  if (!burn_initialize()) return 2;
  burn_msgs_set_severities(const_cast<char*>("NEVER"), const_cast<char*>("HINT"),
                           const_cast<char*>(""));
  burn_disc* disc = burn_disc_create();
  burn_session* session = burn_session_create();
  burn_disc_add_session(disc, session, BURN_POS_END);
  unsigned char* packs = nullptr;
  int count = 0;
  const int result = burn_session_by_cue_file(session, path, 0, nullptr, &packs, &count, 0);
  if (result > 0) showSession(session);
  std::free(packs);
  burn_session_free(session);
  burn_disc_free(disc);
  burn_finish();
  return result > 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  const bool cue = std::strcmp(argv[1], "libcue") == 0;
  const int status = cue ? readWithLibcue(argv[2]) : readWithLibburn(argv[2]);
  std::fflush(nullptr);
  // Without the leak check of a sanitizer build: what the libraries leave behind is not ours.
  std::_Exit(status);
}
