// The burn dialog's settings in the host's ini file.
#pragma once

/// `fallback` when the key is absent.
int readBurnSetting(const char* key, int fallback);
void writeBurnSetting(const char* key, int value);
