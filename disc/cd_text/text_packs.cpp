#include "disc/cd_text/text_packs.h"

namespace velmor::disc {

uint16_t packCheckSum(std::string_view header_and_payload) {
  constexpr unsigned kPolynomial = 0x1021;
  unsigned sum = 0;
  for (const char c : header_and_payload) {
    sum ^= unsigned{static_cast<unsigned char>(c)} << 8;
    for (int bit = 0; bit < 8; ++bit)
      sum = ((sum & 0x8000U) != 0 ? sum << 1 ^ kPolynomial : sum << 1) & 0xFFFFU;
  }
  return static_cast<uint16_t>(~sum);
}

}  // namespace velmor::disc
