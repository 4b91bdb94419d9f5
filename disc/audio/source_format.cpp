#include "disc/audio/source_format.h"

#include <sndfile.h>

namespace velmor::disc {
namespace {

std::string containerName(int format) {
  switch (format & SF_FORMAT_TYPEMASK) {
    case SF_FORMAT_WAV:
    case SF_FORMAT_WAVEX:
      return "WAV";
    case SF_FORMAT_AIFF:
      return "AIFF";
    case SF_FORMAT_AU:
      return "AU";
    case SF_FORMAT_W64:
      return "W64";
    case SF_FORMAT_RF64:
      return "RF64";
    case SF_FORMAT_CAF:
      return "CAF";
    case SF_FORMAT_FLAC:
      return "FLAC";
    case SF_FORMAT_OGG:
      return "Ogg";
    case SF_FORMAT_MPEG:
      return "MPEG";
    case SF_FORMAT_RAW:
      return "CD image";
    default:
      break;
  }
  SF_FORMAT_INFO info{};
  info.format = format & SF_FORMAT_TYPEMASK;
  if (sf_command(nullptr, SFC_GET_FORMAT_INFO, &info, sizeof info) == 0 && info.name) {
    return info.name;
  }
  return "audio";
}

}  // namespace

int integerBits(int format) {
  switch (format & SF_FORMAT_SUBMASK) {
    case SF_FORMAT_PCM_S8:
    case SF_FORMAT_PCM_U8:
    case SF_FORMAT_DPCM_8:
      return 8;
    case SF_FORMAT_DWVW_12:
      return 12;
    case SF_FORMAT_PCM_16:
    case SF_FORMAT_ALAC_16:
    case SF_FORMAT_DWVW_16:
    case SF_FORMAT_DPCM_16:
      return 16;
    case SF_FORMAT_ALAC_20:
      return 20;
    case SF_FORMAT_PCM_24:
    case SF_FORMAT_ALAC_24:
    case SF_FORMAT_DWVW_24:
      return 24;
    case SF_FORMAT_PCM_32:
    case SF_FORMAT_ALAC_32:
      return 32;
    default:
      return 0;
  }
}

std::string codingName(int format) {
  if (const int bits = integerBits(format); bits > 0) return std::to_string(bits) + " bit";
  switch (format & SF_FORMAT_SUBMASK) {
    case SF_FORMAT_FLOAT:
      return "32 bit float";
    case SF_FORMAT_DOUBLE:
      return "64 bit float";
    case SF_FORMAT_MPEG_LAYER_III:
      return "layer III (MP3)";
    default:
      break;
  }
  SF_FORMAT_INFO info{};
  info.format = format & SF_FORMAT_SUBMASK;
  if (sf_command(nullptr, SFC_GET_FORMAT_INFO, &info, sizeof info) == 0 && info.name) {
    return info.name;
  }
  return "compressed";
}

std::string formatName(int format) {
  return containerName(format) + ", " + codingName(format);
}

}  // namespace velmor::disc
