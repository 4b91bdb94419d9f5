// What several parts of a page write alike.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "page/drawing/page_view.h"

namespace velmor::page {

/// "MM:SS:FF", with a minus sign before the disc's first sector.
std::string timeText(int64_t sector);

/// A cell of a table; `name` is the column's, which a small screen shows beside the value.
std::string cell(std::string_view name, const std::string& html, std::string_view kind = {});

/// A link to the track at `index`, by its number.
std::string trackLink(const PageView& view, size_t index);

/// The title, or "Track 3" where there is none.
std::string shownTitle(const PageTrack& track);

/// Integrated loudness in LUFS, and the true peak in dBTP.
std::string lufsText(const Loudness& loudness);
std::string truePeakText(const Loudness& loudness);
/// Decibels of a level of which 1.0 is full scale.
double decibels(double level);

/// "<section id=...><h2>...</h2>" and what ends it around `html`; empty for an empty `html`.
std::string section(const std::string& id, const std::string& heading, const std::string& html);

}  // namespace velmor::page
