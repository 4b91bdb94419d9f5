// The module's own handle, which the host gives to the entry.
#include <gtest/gtest.h>

#include "abi/exports.h"
#include "abi/host_functions.h"

namespace plugin_class_test {
namespace {

void* findNothing(const char* /*name*/) {
  return nullptr;
}

TEST(InstanceHandle, IsKeptWhateverTheRecordIs) {
  int handles[4] = {};
  EXPECT_EQ(VelmorPluginEntry(&handles[0], nullptr), 0);
  EXPECT_EQ(g_hInst, &handles[0]) << "there is no record";

  velmor_plugin_info_t info = {};
  info.version = kVelmorPluginVersion + 1;
  info.lookup_fn = findNothing;
  EXPECT_EQ(VelmorPluginEntry(&handles[1], &info), 0);
  EXPECT_EQ(g_hInst, &handles[1]) << "the record is of another version";

  info.version = kVelmorPluginVersion;
  info.lookup_fn = nullptr;
  EXPECT_EQ(VelmorPluginEntry(&handles[2], &info), 0);
  EXPECT_EQ(g_hInst, &handles[2]) << "the record has no lookup function";

  info.lookup_fn = findNothing;
  EXPECT_EQ(VelmorPluginEntry(&handles[3], &info), 0);
  EXPECT_EQ(g_hInst, &handles[3]) << "the host lacks every function";

  EXPECT_EQ(VelmorPluginEntry(nullptr, nullptr), 0);
  EXPECT_EQ(g_hInst, nullptr);
}

}  // namespace
}  // namespace plugin_class_test
