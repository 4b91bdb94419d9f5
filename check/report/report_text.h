// A report for people, and for programs.
#pragma once

#include <iosfwd>
#include <string>

#include "check/report/report.h"

namespace velmor::check {

/// The version of the JSON object's shape; a change that breaks its readers raises it.
inline constexpr int kJsonSchema = 1;

/// "a, b and c"
std::string readerList(const std::vector<Reader>& readers);
/// One line: severity, line, track, rule, what, who, what to do. Control characters and bytes that
/// are no UTF-8 are shown as '?'.
std::string findingLine(const Finding& finding);
/// The same as a part of `printJson`; the place in a set's file is its "file" and "packet".
std::string findingJsonText(const Finding& finding);
/// One line per error only, then the verdict.
void printErrors(const Report& report, std::ostream& out);
/// One line per finding, then the verdict.
void printReport(const Report& report, bool strict, std::ostream& out);
/// What `--json` prints: one object, and a line end. `changes` are those of a second sheet,
/// `written` the files that it went to.
void printJson(const Report& report, bool strict, const std::vector<std::string>& changes,
               std::ostream& out, const std::vector<std::string>& written = {});

}  // namespace velmor::check
