#include "host/render/options/number_checks.h"

#include <charconv>

#include "disc/text/line_of_text.h"
#include "disc/text/phrases.h"

namespace velmor::render {

namespace {

template <typename Number>
bool isNumber(const std::string& text, Number& value) {
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  return error == std::errc() && stop == end;
}

std::string refusal(const std::string& text, const std::string& what, const std::string& instead) {
  return disc::inQuotes(disc::printable(text)) + " is no " + what + "; " + instead;
}

}  // namespace

CLI::Validator wholeNumber(int64_t least, int64_t most, const std::string& what,
                           const std::string& instead) {
  return {[=](const std::string& text) {
            int64_t value = 0;
            if (!isNumber(text, value)) return refusal(text, what, instead);
            if (value >= least && value <= most) return std::string();
            return disc::inQuotes(text) + " is not from " + std::to_string(least) + " to " +
                   std::to_string(most) + "; " + instead;
          },
          ""};
}

CLI::Validator positiveNumber(const std::string& what, const std::string& instead) {
  return {[=](const std::string& text) {
            double value = 0.0;
            return isNumber(text, value) && value > 0.0 ? std::string()
                                                        : refusal(text, what, instead);
          },
          ""};
}

}  // namespace velmor::render
