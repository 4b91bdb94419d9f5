// What the checks find, in the order of its weight.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "check/report/readers.h"

namespace velmor::check {

enum class Severity { kError, kWarning, kNote };

std::string_view severityName(Severity severity);

struct Finding {
  Severity severity = Severity::kNote;
  std::string_view rule;    ///< its id, static
  std::string file;         ///< of a set of files; empty: the sheet
  int line = 0;             ///< of that file, or its packet; 0: of no line
  int track = 0;            ///< as counted, 1 and up; 0: of the disc
  std::string what;         ///< a sentence
  std::string action;       ///< a sentence: what to do
  std::string_view source;  ///< where the rule comes from; empty: from how readers behave
  std::vector<Reader> refused, damaged;
  std::string_view damage;
};

/// Where a finding lies.
struct Place {
  int line = 0;
  int track = 0;
  std::string file = {};  ///< of a set of files, which are counted in packets; empty: the sheet
};

/// A rule, and where readers tell its cases apart, which case it is.
struct RuleCase {
  std::string_view rule;  ///< static
  std::string which;      ///< empty: the rule has one case

  // A rule's name alone is the usual way to say one.
  RuleCase(const char* name) : rule(name) {}       // NOLINT(google-explicit-constructor)
  RuleCase(std::string_view name) : rule(name) {}  // NOLINT(google-explicit-constructor)
  RuleCase(const char* name, std::string of) : rule(name), which(std::move(of)) {}
  /// As `readerVerdict` knows it: "pregap:late".
  std::string key() const {
    return which.empty() ? std::string(rule) : std::string(rule) + ':' + which;
  }
};

/// Collects findings, to be asked for once; at most `kMostOfARule` of each rule, the rest as one
/// count.
class Findings {
 public:
  static constexpr int kMostOfARule = 50;

  /// `chosen`: the readers that matter; empty: all.
  explicit Findings(std::vector<Reader> chosen) : m_chosen(std::move(chosen)) {}

  /// Breaks a rule of the disc or of the sheet, whoever reads it. `source` may be empty. An
  /// error whatever `severity` is when a chosen reader refuses it.
  void add(Severity severity, const RuleCase& rule, const Place& place, std::string what,
           std::string action, std::string_view source = {});
  /// Matters to some readers only, by the rule's verdict: a warning; with chosen readers an error
  /// when one of them refuses it, and nothing when it is all the same to them, or to all readers.
  void addForReaders(const RuleCase& rule, const Place& place, std::string what,
                     std::string action);
  /// As above, but only when such a reader was chosen, and a note unless it refuses.
  void addHabit(const RuleCase& rule, const Place& place, std::string what, std::string action);

  /// From here on nothing is said of these readers: what they meet first hides the rest from them.
  void sayNoMoreOf(const std::vector<Reader>& readers);

  /// As somebody else has found it.
  void add(Finding finding) { push(std::move(finding)); }

  /// Most serious first, then by line; what was left out is counted at the end of its rule.
  std::vector<Finding> sorted() &&;

 private:
  bool chosen(Reader reader) const;
  void fillReaders(Finding& finding, const RuleCase& rule) const;
  void push(Finding finding);

  std::vector<Reader> m_chosen, m_done;
  std::vector<Finding> m_all;
  std::map<std::string_view, int> m_counts;
};

}  // namespace velmor::check
