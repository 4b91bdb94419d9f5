#include "check/report/findings.h"

#include <algorithm>
#include <iterator>
#include <tuple>

namespace velmor::cdcheck {

std::string_view severityName(Severity severity) {
  switch (severity) {
    case Severity::error:
      return "error";
    case Severity::warning:
      return "warning";
    default:
      return "note";
  }
}

bool Findings::chosen(Reader reader) const {
  return chosen_.empty() || std::find(chosen_.begin(), chosen_.end(), reader) != chosen_.end();
}

void Findings::fillReaders(Finding& finding) const {
  const ReaderVerdict* verdict = readerVerdict(finding.rule);
  if (!verdict) return;
  const auto isChosen = [this](Reader r) { return chosen(r); };
  std::copy_if(verdict->refused.begin(), verdict->refused.end(),
               std::back_inserter(finding.refused), isChosen);
  std::copy_if(verdict->damaged.begin(), verdict->damaged.end(),
               std::back_inserter(finding.damaged), isChosen);
  finding.damage = verdict->damage;
}

void Findings::push(Finding finding) {
  if (++counts_[finding.rule] <= kMostOfARule) all_.push_back(std::move(finding));
}

void Findings::add(Severity severity, std::string_view rule, Place place, std::string what,
                   std::string action, std::string_view source) {
  Finding f{severity,          rule,   place.line, place.track, std::move(what),
            std::move(action), source, {},         {},          {}};
  fillReaders(f);
  push(std::move(f));
}

void Findings::addForReaders(std::string_view rule, Place place, std::string what,
                             std::string action) {
  Finding f{Severity::warning, rule, place.line, place.track, std::move(what),
            std::move(action), {},   {},         {},          {}};
  fillReaders(f);
  if (f.refused.empty() && f.damaged.empty()) return;
  if (!chosen_.empty() && !f.refused.empty()) f.severity = Severity::error;
  push(std::move(f));
}

void Findings::addHabit(std::string_view rule, Place place, std::string what, std::string action) {
  if (chosen_.empty()) return;
  Finding f{Severity::note,    rule, place.line, place.track, std::move(what),
            std::move(action), {},   {},         {},          {}};
  fillReaders(f);
  if (!f.damaged.empty()) push(std::move(f));
}

std::vector<Finding> Findings::sorted() && {
  for (const auto& [rule, count] : counts_) {
    if (count <= kMostOfARule) continue;
    Finding more;
    const auto last = std::find_if(all_.rbegin(), all_.rend(),
                                   [rule = rule](const Finding& f) { return f.rule == rule; });
    more.severity = last->severity;
    more.rule = rule;
    more.line = last->line;
    more.what = std::to_string(count - kMostOfARule) + " more of this kind are left out";
    more.action = "Mend those above first.";
    all_.push_back(std::move(more));
  }
  std::stable_sort(all_.begin(), all_.end(), [](const Finding& a, const Finding& b) {
    return std::tie(a.severity, a.line) < std::tie(b.severity, b.line);
  });
  return std::move(all_);
}

}  // namespace velmor::cdcheck
