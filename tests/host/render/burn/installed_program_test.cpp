// The program as it is installed. The recorder is preloaded, which a sanitizer does not take.
#include <gtest/gtest.h>

#include "tests/host/render/burn/burn_program_case.h"

namespace burn_test {
namespace {

class InstalledProgram : public BurnProgramCase {};

TEST_F(InstalledProgram, BurnsThroughThePreloadedRecorder) {
  ASSERT_EQ(
      shell("exec '" VELMOR_BINARY_DIR "/velmor-emulated-drive' run drives -- '" VELMOR_BINARY_DIR
            "/velmor-render' song1.wav -o album.cue --burn --drive 1"),
      0)
      << m_said;
  EXPECT_TRUE(burned(1) == image());
}

}  // namespace
}  // namespace burn_test
