#include "host/render/plan/preflight_codes.h"

#include <strings.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "disc/codes/catalogue_number.h"
#include "disc/codes/isrc.h"
#include "disc/text/phrases.h"
#include "host/render/plan/tag_places.h"

namespace velmor::render {

namespace {

using disc::inQuotes;
using disc::listed;

void checkCatalogue(const HostProject& project, PreflightFindings& findings) {
  for (const auto& [key, value] : project.metadata) {
    if (strcasecmp(key.c_str(), "CUE:DISC_CATALOG") != 0) continue;
    if (const auto fault = disc::catalogueFault(value)) {
      findings.errors.push_back("the catalogue number " + disc::inQuotes(value) + " " + *fault +
                                "; look at the number, or leave it out");
    }
  }
}

void checkIsrcForms(const std::vector<IsrcPlace>& isrcs, PreflightFindings& findings) {
  std::set<std::string> seen;
  for (const IsrcPlace& isrc : isrcs) {
    const auto code = disc::normalisedIsrc(isrc.code);
    if (!code || *code != isrc.code) {
      findings.warnings.push_back(
          "the ISRC " + disc::inQuotes(isrc.code) +
          " has not the form of two capitals, three capitals or digits and seven digits");
    }
    if (!seen.insert(code.value_or(isrc.code)).second) {
      findings.warnings.push_back("the ISRC " + disc::inQuotes(isrc.code) +
                                  " is used twice; every recording has its own");
    }
  }
}

/// Adds one warning about all of `isrcs`, or none when there are none.
void warnOfIsrcs(const std::vector<std::string>& isrcs, const char* of_one, const char* of_several,
                 const char* advice, PreflightFindings& findings) {
  if (isrcs.empty()) return;
  const bool one = isrcs.size() == 1;
  findings.warnings.push_back((one ? "the ISRC " : "the ISRCs ") + disc::listed(isrcs) +
                              (one ? of_one : of_several) + advice);
}

/// Warns of ISRCs that do not get into the sheet.
void checkLostIsrcs(const std::vector<IsrcPlace>& isrcs, PreflightFindings& findings) {
  std::vector<std::string> second;
  std::vector<std::string> outside;
  for (const IsrcPlace& isrc : isrcs) {
    if (!isrc.given_to.empty()) continue;
    if (isrc.second_in) {
      second.push_back(disc::inQuotes(isrc.code) + " (track " +
                       std::to_string(*isrc.second_in + 1) + ")");
    } else {
      outside.push_back(disc::inQuotes(isrc.code));
    }
  }
  warnOfIsrcs(second, " is", " are",
              " left out, since another stands before it in the same track and a track has only "
              "one; let a track begin between them",
              findings);
  warnOfIsrcs(outside, " lies in no track and is", " lie in no track and are",
              " left out; put it inside a region", findings);
}

/// Warns of the ISRCs of inputs at whose start no track begins: the track before takes the code.
void checkStrayIsrcs(const std::vector<IsrcPlace>& isrcs, const TrackPlan& plan,
                     PreflightFindings& findings) {
  constexpr double kAllowance = 0.001;  // seconds
  std::vector<std::string> stray;
  for (const IsrcPlace& isrc : isrcs) {
    if (isrc.input == 0 || isrc.given_to.empty()) continue;
    const size_t track = isrc.given_to.front();
    if (plan.tracks[track].source_start >= isrc.position - kAllowance) continue;
    stray.push_back(disc::inQuotes(isrc.code) + " of input " + std::to_string(isrc.input) +
                    " goes to track " + std::to_string(track + 1));
  }
  warnOfIsrcs(stray, ", which begins before that input", ", which begin before those inputs",
              "; let a track begin with the input, or take the code away", findings);
}

}  // namespace

void checkCodes(const HostProject& project, const TrackPlan& plan, PreflightFindings& findings) {
  checkCatalogue(project, findings);
  const std::vector<IsrcPlace> isrcs = placesOfIsrcs(plan, project.marks);
  checkIsrcForms(isrcs, findings);
  checkLostIsrcs(isrcs, findings);
  checkStrayIsrcs(isrcs, plan, findings);
}

}  // namespace velmor::render
