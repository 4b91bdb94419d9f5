#include "host/render/plan/preflight_texts.h"

#include <algorithm>
#include <string>
#include <vector>

#include "disc/text/latin1.h"
#include "disc/text/phrases.h"
#include "host/render/album/mark_names.h"

namespace velmor::render {

namespace {

/// Every text of the sheet that goes onto the disc.
std::vector<std::string> textsOnDisc(const HostProject& project, const TrackPlan& plan) {
  std::vector<std::string> texts;
  for (const auto& [key, text] : project.metadata) texts.push_back(text);
  for (const PlannedTrack& track : plan.tracks) texts.push_back(track.title);
  for (const Mark& mark : project.marks)
    if (isTag(mark.name)) texts.push_back(mark.name.substr(kTagLength));
  return texts;
}

}  // namespace

void checkCdTextLetters(const HostProject& project, const TrackPlan& plan,
                        PreflightFindings& findings) {
  std::vector<std::string> letters;
  for (const std::string& text : textsOnDisc(project, plan)) {
    for (const std::string& letter : disc::toLatin1(text).replaced) {
      const std::string quoted = disc::inQuotes(letter);
      if (std::find(letters.begin(), letters.end(), quoted) == letters.end())
        letters.push_back(quoted);
    }
  }
  if (letters.empty()) return;
  findings.warnings.push_back(
      "CD-TEXT has no letter " + disc::listed(letters) + "; on the disc plain ones stand in for " +
      (letters.size() == 1 ? "it" : "them") + ", the sheet keeps the text as it is");
}

}  // namespace velmor::render
