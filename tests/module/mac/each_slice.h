// Tests that hold for the dylib's slice of each processor.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "tools/mac/macho/mach_o_file.h"

namespace mac {

using macho::Processor;

/// Cases run once for each slice. A suite of its own derives from it and is instantiated with
/// `eachSlice()` and `SliceName`.
class EachSlice : public testing::TestWithParam<Processor> {
 protected:
  bool isX86() const { return GetParam() == Processor::kX86; }

  const macho::MachOFile m_file{VELMOR_DYLIB, GetParam()};
};

inline auto eachSlice() {
  return testing::Values(Processor::kX86, Processor::kArm64);
}

struct SliceName {
  std::string operator()(const testing::TestParamInfo<Processor>& slice) const {
    return slice.param == Processor::kX86 ? "x86_64" : "arm64";
  }
};

}  // namespace mac
