// What differs between systems about files: data caching, and telling local disks from network
// ones.
#pragma once

#include <cstdint>

/// Asks the system not to keep what is written through `fd` in its cache, where it can.
extern "C" void platformDisableWriteCache(int fd);
/// Prepares for reading `fd` through in order without filling the cache: switches caching off, or
/// where that cannot be done tells the system so; `platformReadAdvanced` does the rest.
extern "C" void platformDisableReadCache(int fd);
/// Tells that an uncached reader's physical reads moved from `from` to `to` (bytes, `from` < `to`),
/// so that pages behind it can be given back where the system does not do so by itself.
extern "C" void platformReadAdvanced(int fd, int64_t from, int64_t to);
/// Whether `fd` lies on a local file system; true also when the system cannot say.
extern "C" bool platformIsLocalFile(int fd);
