// The record a module registers under "pcmsink", and the configuration record its callbacks
// exchange.
#pragma once

#include <cstddef>
#include <cstdint>

#include "abi/pcm_sink.h"
#include "abi/quelm_types.h"

/// 'i','s','o',' ' packed most significant first: the format of the CD image sink.
inline constexpr uint32_t kIsoFormatCode = 0x69736F20;

/// Sample width of the image.
inline constexpr int kImageBits = 16;

/// How a render is cut into tracks.
enum TrackMode : int32_t { kTracksFromMarkers = 0, kTracksFromRegions = 1, kOneTrack = 2 };

/// The configuration blob: six little-endian 32-bit integers, kept by the host with the render's
/// settings.
struct SinkConfig {
  int32_t format_code;
  int32_t disc_leadin_ms;
  int32_t track_leadin_ms;
  int32_t burn_after_render;  ///< 0 or 1
  int32_t track_mode;         ///< a `TrackMode`; other values render one track
  int32_t hash_markers_only;  ///< 0 or 1
};
static_assert(sizeof(SinkConfig) == 24 && offsetof(SinkConfig, hash_markers_only) == 20);

// Messages the host sends to the configuration dialog.
inline constexpr UINT kConfigGetBlob =
    WM_USER + 1024;  ///< wParam: int* size or 0, lParam: blob or 0
inline constexpr UINT kConfigSampleWidth = WM_USER + 1025;  ///< wParam: int* bits, lParam: 0

/// The host keeps the record's address for the module's life.
struct SinkRegistration {
  unsigned int (*GetFmt)(const char** desc);  ///< `desc` may be null
  const char* (*GetExtension)(const void* cfg, int cfg_len);
  HWND (*ShowConfig)(const void* cfg, int cfg_len, HWND parent);
  PCM_sink* (*CreateSink)(const char* filename, void* cfg, int cfg_len, int nch, int srate,
                          bool build_peaks);
  void* reserved[2];  ///< null
};
static_assert(sizeof(SinkRegistration) == 48 && offsetof(SinkRegistration, CreateSink) == 24);
