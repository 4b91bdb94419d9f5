#include "host/recording/burn/sense.h"

#include <array>
#include <cstdio>
#include <regex>

#include "disc/units/disc_time.h"

namespace velmor::recording {
namespace {

constexpr int kAny = -1;

struct Meaning {
  int key, code, qualifier;
  const char* words;
};

// The narrower meaning stands before the wider one (SPC and MMC, sense code tables).
constexpr std::array kMeanings{
    Meaning{kAny, 0x3A, kAny, "there is no disc in the drive"},
    Meaning{kAny, 0x30, kAny, "the disc is of a kind that the drive cannot write"},
    Meaning{0x2, 0x04, kAny, "the drive is not ready"},
    Meaning{kAny, 0x0C, kAny, "the disc has a flaw there: it could not be written"},
    Meaning{kAny, 0x11, kAny, "the disc cannot be read there"},
    Meaning{kAny, 0x73, kAny,
            "the laser could not be adjusted to the disc: clean it, or take another brand"},
    Meaning{kAny, 0x21, 0x02, "the audio did not come where the drive expected it"},
    Meaning{kAny, 0x21, kAny, "the disc has no such place: it is too small"},
    Meaning{kAny, 0x2C, kAny, "the drive was given its commands in an order it does not accept"},
    Meaning{kAny, 0x26, kAny, "the drive does not accept the layout of the disc"},
    Meaning{kAny, 0x24, kAny, "the drive does not know what it was asked for"},
    Meaning{kAny, 0x63, kAny, "the disc is full"},
    Meaning{kAny, 0x64, kAny, "the drive does not accept this kind of track here"},
    Meaning{kAny, 0x72, kAny, "the disc could not be closed"},
    Meaning{kAny, 0x27, kAny, "the disc is write-protected"},
    Meaning{kAny, 0x08, kAny, "the connection to the drive broke down"},
    Meaning{kAny, 0x09, kAny, "the laser lost its track: the disc is scratched, dirty or too fast"},
    Meaning{kAny, 0x28, kAny, "the disc was changed"},
    Meaning{kAny, 0x29, kAny, "the drive was switched off or reset"},
    Meaning{kAny, 0x53, kAny, "the tray could not be moved"},
    Meaning{0x3, kAny, kAny, "the disc has a flaw"},
    Meaning{0x4, kAny, kAny, "the drive has a defect"},
    Meaning{0x6, kAny, kAny, "the drive or its disc changed in between"},
    Meaning{0x7, kAny, kAny, "the disc is write-protected"},
    Meaning{0xB, kAny, kAny, "the drive broke the command off"},
};

bool fits(int wanted, int value) {
  return wanted == kAny || wanted == value;
}

}  // namespace

std::optional<Sense> findSense(const std::string& message) {
  static const std::regex kPattern(R"(\[([0-9A-Fa-f]) ([0-9A-Fa-f]{2}) ([0-9A-Fa-f]{2})\])");
  std::smatch match;
  if (!std::regex_search(message, match, kPattern)) return std::nullopt;
  const auto number = [&match](size_t i) { return std::stoi(match[i].str(), nullptr, 16); };
  return Sense{number(1), number(2), number(3)};
}

std::optional<int64_t> findFailedSector(const std::string& message) {
  static const std::regex kPattern(R"(write\((-?[0-9]{1,9}), *[0-9]+\))");
  std::smatch match;
  if (!std::regex_search(message, match, kPattern)) return std::nullopt;
  return std::stoll(match[1].str());
}

std::string senseInWords(const Sense& sense) {
  std::array<char, 32> numbers{};
  std::snprintf(numbers.data(), numbers.size(), " (sense %X %02X %02X)",
                static_cast<unsigned>(sense.key), static_cast<unsigned>(sense.code),
                static_cast<unsigned>(sense.qualifier));
  for (const Meaning& meaning : kMeanings)
    if (fits(meaning.key, sense.key) && fits(meaning.code, sense.code) &&
        fits(meaning.qualifier, sense.qualifier))
      return std::string(meaning.words) + numbers.data();
  return std::string("the drive reports a failure") + numbers.data();
}

std::string explainMessages(const std::vector<RecorderMessage>& messages, const SessionPlan& plan) {
  std::string otherwise;
  for (const RecorderMessage& message : messages) {
    if (!message.error) continue;
    if (const auto sense = findSense(message.text)) {
      const auto sector = findFailedSector(message.text);
      if (!sector) return "the drive stopped: " + senseInWords(*sense);
      if (*sector < 0)
        return "the drive stopped in the silence before track 1: " + senseInWords(*sense);
      return "the drive stopped at " + disc::msfText(*sector) + " (track " +
             std::to_string(plan.trackAt(*sector) + 1) + "): " + senseInWords(*sense);
    }
    if (otherwise.empty()) otherwise = "the recorder says: " + message.text;
  }
  return otherwise;
}

}  // namespace velmor::recording
