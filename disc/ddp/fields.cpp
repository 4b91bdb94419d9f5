#include "disc/ddp/fields.h"

#include <algorithm>
#include <cassert>

#include "disc/units/disc_time.h"

namespace velmor::ddp {

void PacketForm::putText(Field field, std::string_view text) {
  assert(text.size() <= field.width && field.at + field.width <= m_bytes.size());
  m_bytes.replace(field.at, text.size(), text);
}

void PacketForm::putNumber(Field field, int64_t number) {
  assert(number >= 0);
  const std::string digits = std::to_string(number);
  assert(digits.size() <= field.width);
  putText({field.at + field.width - digits.size(), digits.size()}, digits);
}

std::string PacketFields::text(Field field) const {
  const std::string_view bytes = raw(field);
  return std::string(bytes.substr(0, bytes.find_last_not_of(' ') + 1));
}

bool PacketFields::blank(Field field) const {
  return raw(field).find_first_not_of(' ') == std::string_view::npos;
}

std::optional<int64_t> PacketFields::number(Field field) const {
  std::string_view digits = raw(field);
  assert(digits.size() <= 9);
  digits.remove_prefix(std::min(digits.find_first_not_of(' '), digits.size()));
  if (digits.empty()) return std::nullopt;
  const int number = disc::parseNumber(digits, digits.size());
  if (number < 0) return std::nullopt;
  return number;
}

}  // namespace velmor::ddp
