// The pause of a modal loop. Apart from the rest because the windowing layer's BOOL is not that of
// Objective-C.
#pragma once

/// Gives the processor away for a millisecond, through the host's windowing layer.
extern "C" void platformModalPause();
