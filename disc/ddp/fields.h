// Fields of the fixed packets that a DDP 2.00 set is described by: ASCII, padded with blanks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velmor::ddp {

/// Where a field lies in its packet, in bytes.
struct Field {
  size_t at = 0, width = 0;
};

/// A packet that is being filled; what is not set stays blank.
class PacketForm {
 public:
  explicit PacketForm(size_t bytes) : m_bytes(bytes, ' ') {}

  /// Left-aligned. `text` fits the field.
  void putText(Field field, std::string_view text);
  /// Right-aligned behind blanks. `number` is not negative and fits the field.
  void putNumber(Field field, int64_t number);
  const std::string& bytes() const { return m_bytes; }

 private:
  std::string m_bytes;
};

/// A packet that is being read; it has at least the bytes of the fields that are asked for.
class PacketFields {
 public:
  explicit PacketFields(std::string_view bytes) : m_bytes(bytes) {}

  /// The bytes as they stand.
  std::string_view raw(Field field) const { return m_bytes.substr(field.at, field.width); }
  /// Without the blanks behind it.
  std::string text(Field field) const;
  /// Nothing but blanks?
  bool blank(Field field) const;
  /// A decimal number behind blanks or zeros; nothing when it is blank or anything else.
  std::optional<int64_t> number(Field field) const;

 private:
  std::string_view m_bytes;
};

}  // namespace velmor::ddp
