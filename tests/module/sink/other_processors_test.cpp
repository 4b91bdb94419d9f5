// Processors that lack one thing that the fastest form of the conversion needs, as an emulator
// shows them (without "avx" the system saves no AVX registers): on each the form is taken or left
// as the compiler's own question answers there.
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/kit/child_process.h"

namespace {

constexpr const char* kEmulator = "qemu-x86_64-static";

class OtherProcessors : public testing::TestWithParam<const char*> {};

INSTANTIATE_TEST_SUITE_P(Emulated, OtherProcessors,
                         testing::Values("max", "max,-fma", "max,-avx2", "max,-avx", "max,-xsave",
                                         "Nehalem"));

TEST_P(OtherProcessors, TakeTheFormsThatTheyCanRun) {
  if (test_kit::runProcess({kEmulator, "--version"}).status != 0) GTEST_SKIP() << "no emulator";
  const std::string program = std::filesystem::read_symlink("/proc/self/exe");
  const test_kit::EndedProcess run = test_kit::runProcess(
      {kEmulator, "-cpu", GetParam(), program, "--gtest_filter=ConversionForms.OfX86AreAvx2*"});
  EXPECT_EQ(run.status, 0) << run.all;
  EXPECT_NE(run.out.find("[  PASSED  ] 1 test."), std::string::npos) << run.all;
}

}  // namespace
