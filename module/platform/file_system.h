// What differs between systems about files: data caching, and telling local disks from network
// ones.
#pragma once

#include <cstdint>

/// Asks the system not to keep in its cache what is written through `fd`; no effect on systems that
/// cannot do so.
extern "C" void platformDisableWriteCache(int fd);
/// Prepares for reading `fd` through in order without filling the cache: switches caching off, or
/// where that cannot be done tells the system so; `platformReadAdvanced` does the rest.
extern "C" void platformDisableReadCache(int fd);
/// To be called when an uncached reader's physical reads have moved from `from` to `to` (bytes,
/// `from` < `to`), so that pages behind it can be given back where the system does not do so by
/// itself.
extern "C" void platformReadAdvanced(int fd, int64_t from, int64_t to);
/// Whether `fd` lies on a local file system; true also when the system cannot say.
extern "C" bool platformIsLocalFile(int fd);
