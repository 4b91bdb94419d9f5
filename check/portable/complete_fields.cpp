#include "check/portable/complete_fields.h"

#include <algorithm>
#include <functional>
#include <string>

#include "disc/text/phrases.h"

namespace velmor::check {

namespace {

using PlainFieldOf = std::string disc::PlainFields::*;
using OwnText = std::function<std::string(const disc::PlainTrack&)>;

bool hasText(const disc::PlainFields& f) {
  return !f.title.empty() || !f.performer.empty() || !f.songwriter.empty();
}

/// Texts are ASCII by now, so that they can stand in the list of changes as they are.
class Completion {
 public:
  explicit Completion(disc::PortableDisc& made) : m_made(made) {}

  void run() {
    const bool texts = anywhere([](const disc::PlainFields& f) { return hasText(f); });
    if (texts && !anywhere([](const disc::PlainFields& f) { return !f.performer.empty(); })) {
      say("PERFORMER \"Unknown\" is added: cdrdao writes no CD-TEXT without performers.");
      m_made.fields.performer = "Unknown";
      for (disc::PlainTrack& t : m_made.tracks) t.fields.performer = m_made.fields.performer;
    }
    complete(
        &disc::PlainFields::title, "TITLE",
        [](const disc::PlainTrack& t) { return "Track " + std::to_string(t.number); }, "Untitled",
        texts);
    complete(&disc::PlainFields::performer, "PERFORMER", {}, "Various", false);
    complete(&disc::PlainFields::songwriter, "SONGWRITER", {}, "Various", false);
  }

 private:
  void say(const std::string& change) { m_made.changes.push_back(change); }

  /// Is it so of the disc's fields or of a track's?
  bool anywhere(const std::function<bool(const disc::PlainFields&)>& so) const {
    return so(m_made.fields) ||
           std::any_of(m_made.tracks.begin(), m_made.tracks.end(),
                       [&so](const disc::PlainTrack& t) { return so(t.fields); });
  }

  /// `own`: what a track gets that lacks it; empty: what the disc has. `wanted`: by cdrdao, even
  /// where nothing has it.
  void complete(PlainFieldOf field, const std::string& name, const OwnText& own,
                const std::string& for_disc, bool wanted) {
    const auto has = [&](const disc::PlainTrack& t) { return !(t.fields.*field).empty(); };
    const bool any = std::any_of(m_made.tracks.begin(), m_made.tracks.end(), has);
    if (!any && (m_made.fields.*field).empty() && !wanted) return;
    if ((m_made.fields.*field).empty()) {
      m_made.fields.*field = for_disc;
      say("Disc: " + name + ' ' + disc::inQuotes(for_disc) +
          " is added: " + (any ? "tracks have one." : "cdrdao writes no CD-TEXT without titles."));
    }
    for (disc::PlainTrack& t : m_made.tracks) {
      if (has(t)) continue;
      t.fields.*field = own ? own(t) : m_made.fields.*field;
      say("Track " + std::to_string(t.number) + ": " + name + ' ' +
          disc::inQuotes(t.fields.*field) + " is added: a field is given for all or for none.");
    }
  }

  disc::PortableDisc& m_made;
};

}  // namespace

void completeFields(disc::PortableDisc& made) {
  Completion(made).run();
}

}  // namespace velmor::check
