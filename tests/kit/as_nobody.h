// What a test does as a user without rights.
#pragma once

#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

namespace test_kit {

/// The user nobody on Debian, who owns nothing.
inline constexpr uid_t kNobody = 65534;

inline bool isRoot() {
  return ::geteuid() == 0;
}

/// For a child before its program begins: permissions do not bind root. Who cannot be another user
/// ends with 77.
inline void becomeNobody() {
  if (::setuid(kNobody) != 0) ::_exit(77);
}

/// While it lives a process of root steps down to a user who owns nothing; another process stays
/// what it is. Throws when it may not.
class AsNobody {
 public:
  AsNobody() {
    if (m_before == 0 && ::seteuid(kNobody) != 0) throw std::runtime_error("cannot step down");
  }
  ~AsNobody() {
    if (m_before == 0 && ::seteuid(m_before) != 0) std::abort();
  }
  AsNobody(const AsNobody&) = delete;
  AsNobody& operator=(const AsNobody&) = delete;

 private:
  uid_t m_before = ::geteuid();
};

}  // namespace test_kit
