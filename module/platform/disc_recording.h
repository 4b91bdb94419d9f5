// Where the process's disc recording service is found.
#pragma once

#include "abi/disc_recording.h"

/// The recording service, or null when there is none. Looked up anew for every listing and every
/// burn, since a host may bring its service up late; what it returns serves until the next look-up.
extern "C" DiscRecordingService* platformFindDiscRecording();
