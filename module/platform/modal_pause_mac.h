// The pause of a modal loop. It has a file of its own because the windowing layer's BOOL and that
// of Objective-C cannot be declared in the same one.
#pragma once

/// Gives the processor away for a millisecond, through the host's windowing layer.
extern "C" void platformModalPause();
