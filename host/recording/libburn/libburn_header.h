// libburn's header, which does not bring the types it uses. In C++ it lives in `namespace burn`.
#pragma once

// clang-format off
#include <sys/types.h>
#include <libburn/libburn.h>
// clang-format on
