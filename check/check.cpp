#include "check/check.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fstream>
#include <system_error>

#include "check/rules/rules.h"
#include "disc/failure.h"
#include "disc/sheet/sheet_parser.h"
#include "disc/text/phrases.h"

namespace velmor::check {

namespace {

std::string bytesOfSheet(const std::filesystem::path& path) {
  const std::string name = disc::inQuotes(path.string());
  std::error_code error;
  if (std::filesystem::is_directory(path, error))
    throw Failure(name + " is a folder; name the cue sheet in it");
  // Opening a pipe that nobody writes to would block for ever.
  const auto kind = std::filesystem::status(path, error).type();
  // Unknown: there may be something, in a folder that cannot be looked into.
  if (kind == std::filesystem::file_type::none || kind == std::filesystem::file_type::unknown)
    throw Failure("the sheet " + name + " cannot be opened: " + error.message() +
                  "; check its name and folder");
  if (kind != std::filesystem::file_type::regular && kind != std::filesystem::file_type::not_found)
    throw Failure(name + " is no regular file; name the cue sheet");
  std::ifstream in(path, std::ios::binary);
  if (!in)
    throw Failure("the sheet " + name + " cannot be opened: " +
                  std::generic_category().message(errno) + "; check its name and folder");
  // The sheet is read in pieces: to allocate and clear room for the longest one would take longer
  // than to check a short disc.
  std::string bytes;
  std::array<char, size_t{64} << 10> piece{};
  while (in && bytes.size() <= kLongestSheet) {
    in.read(piece.data(), static_cast<std::streamsize>(piece.size()));
    bytes.append(piece.data(), static_cast<size_t>(in.gcount()));
  }
  if (in.bad())
    throw Failure("the sheet " + name + " cannot be read to its end; copy it to another disk");
  if (bytes.size() > kLongestSheet)
    throw Failure(name + " is over 16 MiB and no cue sheet; name the .cue, not the image");
  return bytes;
}

void scanImages(Disc& disc, const CheckOptions& options) {
  int64_t all = 0, before = 0;
  for (const ImageFile& image : disc.images) all += AudioMap::bytesToScan(image);
  for (size_t i = 0; i < disc.images.size(); ++i) {
    const ImageFile& image = disc.images[i];
    if (!image.readable()) continue;
    disc.audio[i] = AudioMap::scan(image, [&](int64_t done) {
      if (options.progress) options.progress(std::min(before + done, all), all);
    });
    before += AudioMap::bytesToScan(image);
  }
}

/// A file that is no text and has no track is no cue sheet at all: of its findings only the errors
/// stay, since remarks on its lines would help nobody.
void keepErrorsOfNoSheet(std::vector<Finding>& findings) {
  const auto says = [&findings](std::string_view rule) {
    return std::any_of(findings.begin(), findings.end(),
                       [rule](const Finding& f) { return f.rule == rule; });
  };
  if (says("not-a-text") && says("no-tracks"))
    std::erase_if(findings, [](const Finding& f) { return f.severity != Severity::kError; });
}

}  // namespace

disc::Sheet readSheet(const std::filesystem::path& sheet) {
  return disc::parseSheet(bytesOfSheet(sheet));
}

Report check(const std::filesystem::path& sheet, const CheckOptions& options) {
  return check(readSheet(sheet), sheet, options);
}

Report check(disc::Sheet sheet, const std::filesystem::path& name, const CheckOptions& options) {
  Report report;
  report.sheet = name;
  report.disc = openDisc(std::move(sheet), name);
  if (options.samples) scanImages(report.disc, options);
  Findings findings(options.readers);
  for (const auto group :
       {checkSyntax, checkForm, checkTimes, checkRemarks, checkTexts, checkCodes, checkTracks,
        checkLayout, checkImages, checkFiles, checkAudio, checkSound})
    group(report.disc, findings);
  report.findings = std::move(findings).sorted();
  keepErrorsOfNoSheet(report.findings);
  return report;
}

}  // namespace velmor::check
