#include "disc/ddp/digests.h"

#include <gcrypt.h>

#include <string_view>

namespace velmor::ddp {

struct Digests::State {
  gcry_md_hd_t handle = nullptr;
};

namespace {

std::string hexadecimal(const unsigned char* bytes, size_t count, std::string_view digits) {
  std::string text;
  for (size_t i = 0; i < count; ++i) {
    text += digits[bytes[i] >> 4];
    text += digits[bytes[i] & 15U];
  }
  return text;
}

/// The library wants to be told once that nothing secret needs guarded memory.
bool startLibrary() {
  if (gcry_control(GCRYCTL_INITIALIZATION_FINISHED_P) != 0) return true;
  if (gcry_check_version(GCRYPT_VERSION) == nullptr) return false;
  gcry_control(GCRYCTL_DISABLE_SECMEM, 0);
  gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);
  return true;
}

}  // namespace

Digests::Digests(bool with_sha256)
    : m_state(std::make_unique<State>()), m_with_sha256(with_sha256) {
  static const bool kStarted = startLibrary();
  if (!kStarted || gcry_md_open(&m_state->handle, GCRY_MD_MD5, 0) != 0 ||
      gcry_md_enable(m_state->handle, GCRY_MD_CRC32) != 0 ||
      (with_sha256 && gcry_md_enable(m_state->handle, GCRY_MD_SHA256) != 0)) {
    gcry_md_close(m_state->handle);
    throw Failure(
        "this system's libgcrypt makes no MD5 check sums; leave its FIPS mode, or use another "
        "computer");
  }
}

Digests::~Digests() {
  gcry_md_close(m_state->handle);
}

void Digests::add(const void* bytes, size_t count) {
  gcry_md_write(m_state->handle, bytes, count);
}

DigestTexts Digests::finish() {
  const auto digest = [this](int kind, std::string_view digits) {
    return hexadecimal(gcry_md_read(m_state->handle, kind), gcry_md_get_algo_dlen(kind), digits);
  };
  constexpr std::string_view kSmall = "0123456789abcdef";
  return {digest(GCRY_MD_MD5, kSmall), digest(GCRY_MD_CRC32, "0123456789ABCDEF"),
          m_with_sha256 ? digest(GCRY_MD_SHA256, kSmall) : std::string()};
}

}  // namespace velmor::ddp
