// The check sums that travel with a set, made while its bytes pass by once.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "disc/failure.h"

namespace velmor::ddp {

struct DigestTexts {
  std::string md5;     ///< 32 small hexadecimal digits
  std::string crc;     ///< CRC-32 as in zip files, 8 hexadecimal digits, capitals
  std::string sha256;  ///< 64 small hexadecimal digits; empty where it was not asked for
};

/// MD5 and CRC-32 of a stream of bytes, and SHA-256 where it is wanted. One thread.
class Digests {
 public:
  /// Throws `Failure` when the system allows no MD5 (a FIPS mode).
  explicit Digests(bool with_sha256 = false);
  ~Digests();
  Digests(const Digests&) = delete;
  Digests& operator=(const Digests&) = delete;

  void add(const void* bytes, size_t count);
  /// Of all bytes so far; none may be added afterwards.
  DigestTexts finish();

 private:
  struct State;
  std::unique_ptr<State> m_state;
  const bool m_with_sha256;
};

}  // namespace velmor::ddp
