// Two dialogs such as a CD image module brings along: a panel embedded in the host's window and a
// stand-alone one with a list of tracks; and a third with nothing but a button and a label.
#pragma once

#include "abi/quelm_types.h"

namespace velmor::windowing {

inline constexpr intptr_t kPanel = 155;
inline constexpr intptr_t kBurn = 102;
inline constexpr intptr_t kProgress = 103;
/// As a template of a dialog that the layer is to size by its controls.
inline constexpr intptr_t kAutosized = 7;

/// The head of the list of templates: progress, burn, panel, autosized.
QuelmDialogResource* dialogTemplates();

}  // namespace velmor::windowing
