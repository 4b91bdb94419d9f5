#include "page/html/pieces.h"
#include "page/html/sections.h"

namespace velmor::page {

namespace {

constexpr const char* kNotes = R"(<ul>
<li>Times are minutes, seconds and sectors, 75 a second. Start and sector count from the first sector behind the two
seconds that every disc has before track 1; on disc counts those seconds too, as a player and a plant do.</li>
<li>A length, and all that is measured, goes from index 01 to the pause of the next track.</li>
<li>Loudness is integrated (EBU R 128), the true peak is that of four times the samples (ITU-R BS.1770). Above 0 dBTP a
player may distort what the samples themselves do not show.</li>
<li>A clipped run is three or more samples of a channel in a row at full scale. Silence is digital: every sample is
0.</li>
</ul>
)";

}  // namespace

std::string notesSection(const PageView& view) {
  return view.disc.tracks.empty() ? "" : section("notes", "How to read this", kNotes);
}

}  // namespace velmor::page
