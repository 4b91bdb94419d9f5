// The record that makes the module a render target of the host.
#pragma once

#include "abi/sink_registration.h"

/// Registered under "pcmsink"; the host keeps its address.
extern SinkRegistration mySinkRegStruct;
