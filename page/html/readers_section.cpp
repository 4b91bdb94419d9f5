#include <algorithm>

#include "check/report/readers.h"
#include "page/html/pieces.h"
#include "page/html/sections.h"
#include "page/markup/markup.h"

namespace velmor::page {

namespace {

using check::Reader;

bool has(const std::vector<Reader>& readers, Reader reader) {
  return std::find(readers.begin(), readers.end(), reader) != readers.end();
}

/// The findings that hold for the reader, as links, and what becomes of the sheet for the damage.
std::string reasons(const PageView& view, Reader reader, bool refused) {
  std::string html;
  for (size_t f = 0; f < view.disc.findings.size(); ++f) {
    const check::Finding& finding = view.disc.findings[f];
    if (!has(refused ? finding.refused : finding.damaged, reader)) continue;
    html += (html.empty() ? "" : ", ") + ("<a href=\"#finding-" + std::to_string(f + 1) + "\">") +
            (refused ? escaped(finding.rule) : escaped(finding.damage)) + "</a>";
  }
  return html;
}

/// Does the sheet break a rule by which readers are not told apart? Nobody knows then what the
/// others do.
bool breaksOtherRules(const PageView& view) {
  return std::any_of(view.disc.findings.begin(), view.disc.findings.end(), [](const auto& finding) {
    return finding.severity == check::Severity::kError && finding.file.empty() &&
           finding.refused.empty() && finding.damaged.empty();
  });
}

std::string row(const PageView& view, Reader reader) {
  const std::string refused = reasons(view, reader, true);
  const std::string damaged = reasons(view, reader, false);
  const std::string name = escaped(check::readerName(reader));
  const auto cells = [&name](const std::string& kind, const std::string& verdict,
                             const std::string& why) {
    return "<tr class=\"" + kind + "\">" + cell("Reader", name, "text") +
           cell("Verdict", verdict, "text verdict") + cell("Why", why, "text") + "</tr>\n";
  };
  if (!refused.empty()) return cells("error", "\u2715 refuses it", refused);
  if (!damaged.empty()) return cells("warning", "! takes it with a loss", damaged);
  if (breaksOtherRules(view)) return cells("note", "\u2013 not known", "the errors come first");
  return cells("good", "\u2713 takes it", "");
}

}  // namespace

std::string readersSection(const PageView& view) {
  if (!view.disc.sheet_read) return {};
  std::string rows;
  for (int i = 0; i < check::kReaders; ++i) {
    const auto reader = static_cast<Reader>(i);
    if (view.readers.empty() || has(view.readers, reader)) rows += row(view, reader);
  }
  return section(
      "readers", "Programs that read the sheet",
      "<table class=\"readers\">\n<thead><tr><th class=\"text\">Program</th>"
      "<th class=\"text\">Verdict</th><th class=\"text\">Why</th></tr></thead>\n<tbody>\n" +
          rows + "</tbody></table>\n");
}

}  // namespace velmor::page
