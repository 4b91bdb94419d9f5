// The burn dialog's settings in the host's ini file.
#pragma once

/// The number stored under `key`, or `fallback` when there is none.
int readBurnSetting(const char* key, int fallback);
void writeBurnSetting(const char* key, int value);
