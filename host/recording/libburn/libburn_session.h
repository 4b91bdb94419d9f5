// The session of a burn in libburn's own types.
#pragma once

#include <memory>

#include "disc/failure.h"
#include "host/recording/burn/recorder.h"
#include "host/recording/libburn/libburn_header.h"

namespace velmor::recording {

/// Ownership of what libburn frees by a function of its own.
template <auto kFree>
struct FreeWith {
  template <typename Owned>
  void operator()(Owned* owned) const {
    kFree(owned);
  }
};
using BurnDisc = std::unique_ptr<burn::burn_disc, FreeWith<burn::burn_disc_free>>;
using WriteOptions = std::unique_ptr<burn::burn_write_opts, FreeWith<burn::burn_write_opts_free>>;

/// libburn takes its texts through pointers to char that it does not write to.
inline char* mutableText(const char* text) {
  return const_cast<char*>(text);
}

/// The session with its tracks, fed from `feed` on libburn's worker thread; a feed that fails
/// cancels `drive`. Feed and drive must live until the drive is idle. Throws `Failure`.
BurnDisc makeBurnDisc(const Session& session, SectorFeed& feed, burn::burn_drive* drive);

/// How the session is to be written. Throws `Failure` when the drive cannot write so.
WriteOptions makeWriteOptions(burn::burn_drive* drive, const Session& session);

}  // namespace velmor::recording
