#include "disc/text/phrases.h"

#include <algorithm>

namespace velmor::disc {

std::string inQuotes(std::string_view name) {
  return '"' + std::string(name) + '"';
}

std::string listed(const std::vector<std::string>& names) {
  constexpr size_t kShown = 5;
  const size_t shown = std::min(names.size(), kShown);
  const bool more = names.size() > shown;
  std::string text;
  for (size_t i = 0; i < shown; ++i) {
    const bool last = i + 1 == shown && !more;
    text += (i == 0 ? "" : last ? " and " : ", ") + names[i];
  }
  return more ? text + " and " + std::to_string(names.size() - shown) + " more" : text;
}

std::string asClause(std::string sentence) {
  const auto is_capital = [&sentence](size_t at) {
    return at < sentence.size() && sentence[at] >= 'A' && sentence[at] <= 'Z';
  };
  if (is_capital(0) && !is_capital(1)) sentence[0] = static_cast<char>(sentence[0] - 'A' + 'a');
  if (sentence.ends_with('.')) sentence.pop_back();
  return sentence;
}

std::string counted(int64_t count, std::string_view noun) {
  return std::to_string(count) + ' ' + std::string(noun) + (count == 1 ? "" : "s");
}

}  // namespace velmor::disc
