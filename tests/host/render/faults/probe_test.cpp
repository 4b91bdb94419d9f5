#include <gtest/gtest.h>
#include <map>
#include <iostream>
#include <filesystem>
#include "tests/host/render/faults/forked_program.h"
#include "tests/kit/audio_files.h"
#include "tests/kit/faults/system_calls.h"
#include "tests/kit/faults/trapped_calls.h"
#include "tests/kit/scratch_folder.h"
#include "tests/kit/whole_files.h"
using namespace test_kit;
namespace render_test {
TEST(Probe, X) {
  ScratchFolder in, out;
  writeWav(in.file("in.wav"), 5);
  std::vector<std::string> args = {in.file("in.wav"), "--force", "-o", "a.cue", "--portable-cue", "--quiet", "--module", VELMOR_MODULE};
  for (int mode = 0; mode < 4; ++mode) {
    std::map<std::string, std::pair<int,std::string>> seen;
    int n = 1;
    for (;; ++n) {
      out.empty();
      writeFile(out / "a.cue", "old");
      writeFile(out / "a.bin", "old");
      SharedCallTrap trap;
      trap->nth = n; trap->times = mode & 1 ? Times::kFromThenOn : Times::kOnce; trap->error = EIO;
      EndedProgram e = runForked(args, out.path().string(), [&](auto& go) {
        if (mode < 2) { trapSystemCalls(*trap); go(); }
        else {
          static SystemCalls calls;
          calls.failAllocation(n, trap->times);
          go();
          trap->calls = calls.allocations();
        }
      });
      std::string names; for (auto& x : out.names()) names += " " + (x.size() > 8 && x[0]=='.' ? x.substr(0,8) : x);
      auto key = std::to_string(e.status) + " |" + e.err + "|" + names + " cue=" + contentOf(out / "a.cue").substr(0,5) + " bin=" + std::to_string(contentOf(out/"a.bin").size());
      size_t p; while ((p = key.find(out.path().string())) != std::string::npos) key.replace(p, out.path().string().size(), "O");
      if ((p = key.find(".velmor-render-")) != std::string::npos) key.replace(p+15, 6, "X");
      auto& s = seen[key]; ++s.first; s.second += " " + std::to_string(n) + ":" + std::to_string(trap->failed);
      if (e.status <= 1 && (trap->calls > 0 || mode<2) && trap->calls < n) break;
      if (n > 12000) break;
    }
    std::cout << "=== mode " << mode << " n " << n << "\n";
    for (auto& [k, v] : seen) std::cout << v.first << " x " << k << "    " << v.second.substr(0, 100) << "\n";
  }
}
}
