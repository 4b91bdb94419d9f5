// A whole command line, one argument a line.
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "fuzz/kit/fuzz_target.h"
#include "fuzz/kit/script_line.h"
#include "host/render/options/options.h"
#include "host/render/options/usage_error.h"

namespace {

constexpr size_t kMostArguments = 64;

/// While it lives the program's own words about wrong usage go nowhere; a sanitizer's report does
/// not go this way.
class Silence {
 public:
  Silence() {
    static FILE* const kNowhere = fopen("/dev/null", "w");
    stdout = stderr = kNowhere;
  }
  ~Silence() {
    stdout = m_out;
    stderr = m_err;
  }
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;

 private:
  FILE* const m_out = stdout;
  FILE* const m_err = stderr;
};

void requireSound(const velmor::render::Options& options) {
  using fuzz::require;
  require(!options.inputs.empty(), "an input is named");
  require(options.block >= 1, "a block has frames");
  require(options.track_leadin_ms >= 0 && options.disc_leadin_ms >= 0, "a silence is not negative");
  require(!options.start || !options.end || *options.start < *options.end,
          "a render ends after its start");
  for (const auto& [number, code] : options.isrcs) {
    require(number >= 1 && static_cast<size_t>(number) <= options.inputs.size(),
            "an ISRC is that of an input");
    require(code.size() == 12, "an ISRC has 12 characters");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::vector<std::string> words{"velmor-render"};
  for (std::string_view text = fuzz::textOf(data, size);
       !text.empty() && words.size() < kMostArguments;) {
    words.emplace_back(fuzz::takeLine(text));
  }
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  std::optional<velmor::render::Options> options;
  try {
    // Making the parser takes longer than reading a line.
    static velmor::render::CommandLineParser parser;
    const Silence silence;
    options = parser.parse(static_cast<int>(words.size()), arguments.data());
  } catch (const velmor::render::UsageError&) {
    return 0;
  }
  if (options) requireSound(*options);
  return 0;
}
