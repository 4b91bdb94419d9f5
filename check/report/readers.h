// The programs that people open cue sheets with, and what each does with what it does not like.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmor::check {

enum class Reader {
  kCuetools,
  kLibcue,
  kLibburn,
  kCdrdao,
  kLibcdio,
  kLibmirage,
  k3b,
  kChdman,
  kMetaflac,
  kMpv,
  kMednafen,
  kBchunk,
  kShnsplit,
};

inline constexpr int kReaders = 13;

std::string_view readerName(Reader reader);
/// By name, or by the name of a program that is that reader (cdrskin is libburn); any case.
std::optional<Reader> readerByName(std::string_view name);
/// All names, "a, b, c".
std::string readerNames();

/// Which readers refuse the sheet, and which load it with something lost or changed.
struct ReaderVerdict {
  std::vector<Reader> refused, damaged;
  std::string_view damage;  ///< what becomes of it in the latter
};

/// The verdict for a rule by its id; null when readers do not differ over it.
const ReaderVerdict* readerVerdict(std::string_view rule);

}  // namespace velmor::check
