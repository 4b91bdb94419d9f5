#include "check/report/findings.h"

#include <algorithm>
#include <iterator>
#include <tuple>

namespace velmor::check {

std::string_view severityName(Severity severity) {
  switch (severity) {
    case Severity::kError:
      return "error";
    case Severity::kWarning:
      return "warning";
    default:
      return "note";
  }
}

bool Findings::chosen(Reader reader) const {
  return m_chosen.empty() || std::find(m_chosen.begin(), m_chosen.end(), reader) != m_chosen.end();
}

void Findings::fillReaders(Finding& finding, const RuleCase& rule) const {
  const ReaderVerdict* verdict = readerVerdict(rule.key());
  if (!verdict) return;
  const auto is_chosen = [this](Reader r) {
    return chosen(r) && std::find(m_done.begin(), m_done.end(), r) == m_done.end();
  };
  std::copy_if(verdict->refused.begin(), verdict->refused.end(),
               std::back_inserter(finding.refused), is_chosen);
  std::copy_if(verdict->damaged.begin(), verdict->damaged.end(),
               std::back_inserter(finding.damaged), is_chosen);
  finding.damage = verdict->damage;
}

void Findings::sayNoMoreOf(const std::vector<Reader>& readers) {
  m_done.insert(m_done.end(), readers.begin(), readers.end());
}

void Findings::push(Finding finding) {
  if (++m_counts[finding.rule] <= kMostOfARule) m_all.push_back(std::move(finding));
}

void Findings::add(Severity severity, const RuleCase& rule, const Place& place, std::string what,
                   std::string action, std::string_view source) {
  Finding f{severity,          rule.rule, place.file, place.line, place.track, std::move(what),
            std::move(action), source,    {},         {},         {}};
  fillReaders(f, rule);
  if (!m_chosen.empty() && !f.refused.empty()) f.severity = Severity::kError;
  push(std::move(f));
}

void Findings::addForReaders(const RuleCase& rule, const Place& place, std::string what,
                             std::string action) {
  Finding f{Severity::kWarning, rule.rule, place.file, place.line, place.track, std::move(what),
            std::move(action),  {},        {},         {},         {}};
  fillReaders(f, rule);
  if (f.refused.empty() && f.damaged.empty()) return;
  if (!m_chosen.empty() && !f.refused.empty()) f.severity = Severity::kError;
  push(std::move(f));
}

void Findings::addHabit(const RuleCase& rule, const Place& place, std::string what,
                        std::string action) {
  if (m_chosen.empty()) return;
  Finding f{Severity::kNote,   rule.rule, place.file, place.line, place.track, std::move(what),
            std::move(action), {},        {},         {},         {}};
  fillReaders(f, rule);
  if (!f.refused.empty()) f.severity = Severity::kError;
  if (!f.refused.empty() || !f.damaged.empty()) push(std::move(f));
}

std::vector<Finding> Findings::sorted() && {
  for (const auto& [rule, count] : m_counts) {
    if (count <= kMostOfARule) continue;
    Finding more;
    const auto last = std::find_if(m_all.rbegin(), m_all.rend(),
                                   [rule = rule](const Finding& f) { return f.rule == rule; });
    more.severity = last->severity;
    more.rule = rule;
    more.file = last->file;
    more.line = last->line;
    more.what = std::to_string(count - kMostOfARule) + " more of this kind are left out";
    more.action = "Mend those above first.";
    m_all.push_back(std::move(more));
  }
  std::stable_sort(m_all.begin(), m_all.end(), [](const Finding& a, const Finding& b) {
    return std::tie(a.severity, a.line) < std::tie(b.severity, b.line);
  });
  return std::move(m_all);
}

}  // namespace velmor::check
