#include "module/burn/burn_settings.h"

#include <cstdio>

#include "abi/host_functions.h"
#include "abi/quelm_functions.h"

namespace {

constexpr const char* kSection = "velmor_cd";

}  // namespace

int readBurnSetting(const char* key, int fallback) {
  return GetPrivateProfileInt(kSection, key, fallback, get_ini_file());
}

void writeBurnSetting(const char* key, int value) {
  char text[16];
  snprintf(text, sizeof(text), "%d", value);
  WritePrivateProfileString(kSection, key, text, get_ini_file());
}
