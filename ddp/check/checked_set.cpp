#include "ddp/check/checked_set.h"

#include <algorithm>

#include "ddp/check/rules.h"
#include "ddp/check/set_files.h"
#include "disc/text/phrases.h"
#include "disc/units/disc_time.h"
#include "disc/units/disc_units.h"

namespace velmor::ddp {

namespace {

using check::Findings;
using check::Severity;

class SetChecker {
 public:
  SetChecker(const std::filesystem::path& path, const SetCheckOptions& options)
      : m_folder(path), m_options(options) {
    m_set.folder = path;
  }

  CheckedSet run() {
    m_set.identifier = judgeIdentifier(needed(kIdentifierFile), m_findings);
    const StreamsOfSet streams = judgeMap(needed(kMapFile), m_findings);
    takePq(streams.pq);
    takeTexts(streams.texts);
    takeAudio(streams.audio);
    compareCatalogues();
    if (m_set.layout_sound) judgeDisc(m_set.layout, m_findings);
    judgeChecksums(checksumLists(), m_set.files, m_findings);
    m_set.findings = std::move(m_findings).sorted();
    return std::move(m_set);
  }

 private:
  void error(std::string_view rule, const std::string& file, std::string what,
             std::string action = kAskAnew) {
    m_findings.add(Severity::kError, rule, {0, 0, file}, std::move(what), std::move(action),
                   kLevel);
  }

  /// A file without which there is no set at all.
  std::string needed(const char* name) {
    const OpenedFile opened = m_folder.open(name);
    const auto bytes = opened.file ? wholeDescription(*opened.file) : std::nullopt;
    if (!bytes)
      throw Failure(disc::inQuotes(m_set.folder.string()) + " is no DDP 2.00 set: " + name + ' ' +
                    (opened.file ? "cannot be read" : opened.problem) +
                    "; name the folder that holds DDPID and DDPMS");
    summarise(name, *bytes);
    return *bytes;
  }

  void summarise(const std::string& name, const std::string& bytes) {
    Digests digests;
    digests.add(bytes.data(), bytes.size());
    m_set.files.push_back({name, static_cast<int64_t>(bytes.size()), digests.finish()});
  }

  /// The file of a stream; nothing, and a finding, where it cannot be read.
  std::optional<SetFile> fileOf(const StreamPacket& stream) {
    if (!isPlainName(stream.file)) return std::nullopt;  // the map's judge has said so
    OpenedFile opened = m_folder.open(stream.file);
    if (!opened.file)
      error("file-missing", stream.file, "it " + opened.problem,
            "Put it into the set's folder under the name that DDPMS gives.");
    return std::move(opened.file);
  }

  std::string description(const StreamPacket& stream) {
    const auto file = fileOf(stream);
    if (!file) return {};
    auto bytes = wholeDescription(*file);
    if (!bytes) {
      error("file-unreadable", stream.file,
            "it has " + std::to_string(file->bytes()) +
                " bytes, which are too many, or cannot be read to its end");
      return {};
    }
    summarise(stream.file, *bytes);
    return std::move(*bytes);
  }

  void takePq(const std::optional<StreamPacket>& stream) {
    if (!stream) return;
    const std::string bytes = description(*stream);
    if (bytes.empty()) {
      if (isPlainName(stream->file)) error("pq-length", stream->file, "there is nothing in it");
      return;
    }
    if (stream->length && *stream->length != static_cast<int64_t>(bytes.size()))
      wrongLength(*stream, static_cast<int64_t>(bytes.size()), "byte");
    JudgedPq judged = judgePq(bytes, stream->file, m_findings);
    m_set.layout = std::move(judged.layout);
    m_set.layout_sound = judged.sound;
  }

  void takeTexts(const std::optional<StreamPacket>& stream) {
    if (!stream) return;
    const std::string bytes = description(*stream);
    const auto file_bytes = static_cast<int64_t>(bytes.size());
    if (stream->length && *stream->length != file_bytes) wrongLength(*stream, file_bytes, "byte");
    m_set.texts = judgeTexts(bytes, stream->file,
                             m_set.layout_sound ? m_set.layout.tracks.size() : 0, m_findings);
    m_set.has_texts = true;
  }

  void takeAudio(const std::optional<StreamPacket>& stream) {
    if (!stream) return;
    comparePregap(*stream);
    const auto file = fileOf(*stream);
    if (!file) return;
    m_set.audio_file = stream->file;
    const int64_t bytes = file->bytes();
    if (bytes % disc::kBytesPerSector != 0)
      error("audio-length", stream->file,
            "it has " + std::to_string(bytes % disc::kBytesPerSector) +
                " bytes beyond its last whole sector of 2352");
    const int64_t sectors = bytes / disc::kBytesPerSector;
    if (stream->length && *stream->length != sectors) wrongLength(*stream, sectors, "sector");
    if (m_set.layout_sound && m_set.layout.sectors != sectors)
      error("audio-length", stream->file,
            "it has " + disc::counted(sectors, "sector") + ", and the lead-out lies at " +
                disc::msfText(m_set.layout.sectors) + " (" + std::to_string(m_set.layout.sectors) +
                ")");
    const auto digests =
        digestsOf(*file, [this, bytes](int64_t done) { m_options.progress(done, bytes); });
    if (!digests) error("file-unreadable", stream->file, "it cannot be read to its end");
    m_set.files.push_back({stream->file, bytes, digests});
  }

  void wrongLength(const StreamPacket& stream, int64_t there, std::string_view unit) {
    error("stream-length", stream.file,
          "it has " + disc::counted(there, unit) + ", and " + std::to_string(*stream.length) +
              " by DDPMS");
  }

  void comparePregap(const StreamPacket& stream) {
    if (!m_set.layout_sound || !stream.pregap) return;
    const int64_t pregap = m_set.layout.tracks.front().at(1);
    if (*stream.pregap != pregap)
      error("pregap-field", kMapFile,
            "track 1's pregap has " + std::to_string(*stream.pregap) + " sectors, and " +
                std::to_string(pregap) + " by its indices");
  }

  void compareCatalogues() {
    std::string& of_disc = m_set.layout.catalogue;
    const std::string& of_id = m_set.identifier.catalogue;
    if (of_disc == of_id) return;
    if (!of_disc.empty() && !of_id.empty())
      return error("catalogue-conflict", kIdentifierFile,
                   "the UPC/EAN is " + disc::inQuotes(of_id) + ", and " + disc::inQuotes(of_disc) +
                       " in the PQ descriptor",
                   "Ask which one is right.");
    m_findings.add(Severity::kWarning, "catalogue-once", {0, 0, kIdentifierFile},
                   "the UPC/EAN stands in only one of DDPID and the PQ descriptor",
                   "Ask whether the disc is to have it.", kLevel);
    if (of_disc.empty()) of_disc = of_id;
  }

  std::vector<ChecksumList> checksumLists() {
    std::vector<ChecksumList> lists;
    for (const char* name : {kMd5File, kCrcFile}) {
      const OpenedFile opened = m_folder.open(name);
      if (opened.missing) continue;
      const auto text = opened.file ? wholeDescription(*opened.file) : std::nullopt;
      if (text)
        lists.push_back({name, *text});
      else
        error("file-unreadable", name,
              "it " + (opened.file ? std::string("cannot be read") : opened.problem));
    }
    return lists;
  }

  SetFolder m_folder;
  const SetCheckOptions& m_options;
  CheckedSet m_set;
  Findings m_findings{{}};
};

}  // namespace

int CheckedSet::count(Severity severity) const {
  return static_cast<int>(
      std::count_if(findings.begin(), findings.end(),
                    [severity](const check::Finding& f) { return f.severity == severity; }));
}

CheckedSet checkSet(const std::filesystem::path& folder, const SetCheckOptions& options) {
  return SetChecker(folder, options).run();
}

}  // namespace velmor::ddp
