// Every allocation and every system call of velmor-render fails in turn, once and from then on,
// until a run passes without a failure. The program ends in good order each time: with the album,
// or with a sentence and the old album as it was.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "tests/host/render/faults/forked_program.h"
#include "tests/kit/audio_files.h"
#include "tests/kit/faults/system_calls.h"
#include "tests/kit/faults/trapped_calls.h"
#include "tests/kit/scratch_folder.h"
#include "tests/kit/wav.h"
#include "tests/kit/whole_files.h"

namespace render_test {
namespace {

namespace fs = std::filesystem;
using test_kit::contentOf;
using test_kit::SharedCallTrap;
using test_kit::Times;
using testing::AnyOf;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

const std::vector<std::string> kAlbum = {"a.bin", "a.cue", "a.portable.cue"};
constexpr const char* kOld = "of an older album\n";

/// A WAV file of a little over four seconds with a cue point named "Two" at four.
std::string wavWithACuePoint() {
  using test_kit::little32;
  constexpr uint32_t kAt = 4 * 44100;
  const std::string cue = little32(1) + little32(1) + little32(kAt) + "data" + little32(0) +
                          little32(0) + little32(kAt);
  const std::string label = "adtl" + test_kit::riffChunk("labl", little32(1) + "Two" + '\0');
  const std::string audio = test_kit::asImage(test_kit::noise(kAt + 5000, 2));
  return test_kit::riffFile(test_kit::formatChunk() + test_kit::riffChunk("cue ", cue) +
                            test_kit::riffChunk("LIST", label) +
                            test_kit::riffChunk("data", audio));
}

struct Fault {
  int nth = 0;
  Times times = Times::kOnce;
};

/// One run's end, and how far it came in counting what can fail.
struct FaultyRun {
  EndedProgram ended;
  int made = 0;      ///< calls; fewer than the fault's number: none has failed
  long failed = -1;  ///< the system's number of the first call that failed
};

class RenderFaults : public testing::TestWithParam<Times> {
 protected:
  void SetUp() override {
    test_kit::writeFile(m_inputs / "one.wav", wavWithACuePoint());
    test_kit::writeAudio(m_inputs.file("two.flac"), SF_FORMAT_FLAC | SF_FORMAT_PCM_16, 44100, 2,
                         test_kit::noise(3000, 2, 7), {"Three", "Somebody", "An Album"});
    test_kit::writeFile(m_inputs / "labels.txt", "1.0\t1.0\tPERF=A label's performer\n");
    const FaultyRun good = withoutFault();
    ASSERT_EQ(good.ended.status, 0) << good.ended.err;
    ASSERT_EQ(m_place.names(), kAlbum);
    for (const std::string& name : kAlbum) m_whole.push_back(contentOf(m_place / name));
    ASSERT_THAT(m_whole[1], HasSubstr("TITLE \"Two\""));
    ASSERT_THAT(m_whole[1], HasSubstr("PERFORMER \"A label's performer\""));
    m_printed = good.ended.out;
  }

  bool isOnce() const { return GetParam() == Times::kOnce; }
  std::vector<std::string> arguments(bool force) const {
    std::vector<std::string> all = {m_inputs.file("one.wav"),
                                    m_inputs.file("two.flac"),
                                    "--labels",
                                    m_inputs.file("labels.txt"),
                                    "--title",
                                    "An Album",
                                    "--portable-cue",
                                    "--module",
                                    VELMOR_MODULE,
                                    "-o",
                                    "a.cue"};
    if (force) all.emplace_back("--force");
    return all;
  }
  EndedProgram run(bool force,
                   const std::function<void(const std::function<void()>&)>& surroundings) const {
    return runForked(arguments(force), m_place.path().string(), surroundings);
  }
  FaultyRun withoutFault() const {
    return {run(false, [](const auto& program) { program(); }), 0};
  }
  FaultyRun withFailingCall(bool force, const Fault& fault) const {
    const SharedCallTrap trap;
    trap->nth = fault.nth;
    trap->times = fault.times;
    trap->error = EIO;
    const EndedProgram ended = run(force, [&](const auto& program) {
      test_kit::trapSystemCalls(*trap);
      program();
    });
    return {ended, trap->calls, trap->failed};
  }
  FaultyRun withFailingAllocation(bool force, const Fault& fault) const {
    const SharedCallTrap counted;  // for its number of calls alone
    const EndedProgram ended = run(force, [&](const auto& program) {
      test_kit::SystemCalls calls;
      // It reads through a null pointer where one of its own allocations is refused.
      calls.leaveOut("/libsndfile.so");
      calls.observe([&](test_kit::Call, const test_kit::CallRecord&) {
        counted->calls = calls.allocations();
      });
      calls.failAllocation(fault.nth, fault.times);
      program();
    });
    return {ended, counted->calls};
  }

  /// How many a run takes in which none fails.
  int allocationsOf(bool force) const {
    prepare(force);
    return withFailingAllocation(force, {std::numeric_limits<int>::max(), Times::kOnce}).made;
  }

  void prepare(bool old_album) const {
    m_place.empty();
    if (!old_album) return;
    for (const std::string& name : kAlbum) test_kit::writeFile(m_place / name, kOld + name);
  }
  bool isNew(size_t file) const { return contentOf(m_place / kAlbum[file]) == m_whole[file]; }
  bool isOld(size_t file) const { return contentOf(m_place / kAlbum[file]) == kOld + kAlbum[file]; }

  void expectGoodEnd(const FaultyRun& run, const Fault& fault, bool old_album) const {
    const std::string about = "fault " + std::to_string(fault.nth) + ", call " +
                              std::to_string(run.failed) + ", status " +
                              std::to_string(run.ended.status) + ": " + run.ended.err;
    ASSERT_THAT(run.ended.status, AnyOf(0, 1)) << about;
    if (run.ended.status == 0) {
      for (size_t i = 0; i < kAlbum.size(); ++i) EXPECT_TRUE(isNew(i)) << kAlbum[i] << " " << about;
      EXPECT_EQ(ownReport(run.ended.out), ownReport(m_printed)) << about;
      EXPECT_THAT(run.ended.out, HasSubstr("\na.portable.cue: not ready")) << about;
    } else {
      expectSentence(run, about);
      expectOldOrNew(run, old_album, about);
    }
    if (isOnce()) {
      expectNothingElse(about);
    }
  }
  /// What the program says of its work. The rest is the check of the finished files, which tells
  /// what it could not read.
  static std::string ownReport(const std::string& printed) {
    return printed.substr(0, printed.find("\nerror line"));
  }
  /// What happened to what, why, and what to do, unless the system takes nothing more to print.
  void expectSentence(const FaultyRun& run, const std::string& about) const {
    const bool is_system_call = run.failed != -1;
    if (!isOnce() && is_system_call && run.ended.err.empty()) return;
    EXPECT_THAT(run.ended.err, StartsWith("velmor-render: ")) << about;
    EXPECT_THAT(run.ended.err, AnyOf(HasSubstr("; "), HasSubstr("but its report"))) << about;
    for (const char* const raw : {"std::", "filesystem error", "basic_"}) {
      EXPECT_THAT(run.ended.err, testing::Not(HasSubstr(raw))) << about;
    }
  }
  void expectOldOrNew(const FaultyRun& run, bool old_album, const std::string& about) const {
    if (isNew(0) && isNew(1)) {
      // Complete, and said to be, unless there was no memory to say it.
      if (isOnce()) {
        EXPECT_THAT(run.ended.err, AnyOf(HasSubstr("complete, but"), HasSubstr("memory"))) << about;
      }
      return;
    }
    for (size_t i = 0; i < kAlbum.size(); ++i) {
      const bool as_it_was = old_album ? isOld(i) || wasKept(i) : isAbsent(i);
      EXPECT_TRUE(as_it_was) << kAlbum[i] << " " << about;
    }
  }
  /// Where everything fails from some point on, a whole file cannot be taken away again either.
  bool isAbsent(size_t file) const {
    return !fs::exists(m_place / kAlbum[file]) || (!isOnce() && isNew(file));
  }
  /// Nor can an old file be put back. It is then in the folder that the program has left.
  bool wasKept(size_t file) const {
    if (isOnce()) return false;
    for (const std::string& name : m_place.names()) {
      const fs::path kept = m_place / name / "replaced" / kAlbum[file];
      if (contentOf(kept) == kOld + kAlbum[file]) return true;
    }
    return false;
  }
  void expectNothingElse(const std::string& about) const {
    for (const std::string& name : m_place.names()) {
      EXPECT_THAT(kAlbum, testing::Contains(name)) << about;
    }
  }

  test_kit::ScratchFolder m_inputs;
  test_kit::ScratchFolder m_place;
  std::vector<std::string> m_whole;
  std::string m_printed;
};

INSTANTIATE_TEST_SUITE_P(Process, RenderFaults, testing::Values(Times::kOnce, Times::kFromThenOn),
                         [](const auto& parameter) {
                           return parameter.param == Times::kOnce ? "Once" : "FromThenOn";
                         });

/// Under a sanitizer a child is many times as dear, so that there only some allocations fail.
/// System calls do not: the sanitizer makes calls of its own through the C library when it looks at
/// an object, and takes one that fails for an object that is none.
constexpr bool kSanitized = VELMOR_SANITIZED;

/// Whole loops take minutes. A run of all tests lets one call in so many fail, `usual`, and every
/// allocation at the end, where the album is put in its place; `./dev faults` takes all.
int stepOr(int usual) {
  const char* const step = std::getenv("VELMOR_FAULT_STEP");
  return step != nullptr ? std::max(std::atoi(step), 1) : usual;
}

int stepOfSystemCalls() {
  return stepOr(3);
}
int stepOfAllocations() {
  return stepOr(kSanitized ? 301 : 61);
}

constexpr int kAtTheEnd = kSanitized ? 5 : 80;  ///< allocations, from the album's last moves on

int nextAllocation(int nth, int all) {
  return std::max(nth + 1, std::min(nth + stepOfAllocations(), all - kAtTheEnd));
}

TEST_P(RenderFaults, WhicheverSystemCallFailsAnOldAlbumIsReplacedByAWholeOneOrStays) {
  if (kSanitized) GTEST_SKIP() << "a sanitizer takes its own failing calls for errors";
  for (Fault fault{1, GetParam()};; fault.nth += stepOfSystemCalls()) {
    prepare(true);
    const FaultyRun run = withFailingCall(true, fault);
    expectGoodEnd(run, fault, true);
    if (run.made < fault.nth) break;
  }
}

TEST_P(RenderFaults, WhicheverSystemCallFailsANewAlbumIsWholeOrAbsent) {
  if (kSanitized) GTEST_SKIP() << "a sanitizer takes its own failing calls for errors";
  for (Fault fault{1, GetParam()};; fault.nth += stepOfSystemCalls()) {
    prepare(false);
    const FaultyRun run = withFailingCall(false, fault);
    expectGoodEnd(run, fault, false);
    if (run.made < fault.nth) break;
  }
}

TEST_P(RenderFaults, WhicheverAllocationFailsAnOldAlbumIsReplacedByAWholeOneOrStays) {
  const int all = allocationsOf(true);
  for (Fault fault{1, GetParam()};; fault.nth = nextAllocation(fault.nth, all)) {
    prepare(true);
    const FaultyRun run = withFailingAllocation(true, fault);
    expectGoodEnd(run, fault, true);
    if (run.made < fault.nth) break;
  }
}

TEST_P(RenderFaults, WhicheverAllocationFailsANewAlbumIsWholeOrAbsent) {
  const int all = allocationsOf(false);
  for (Fault fault{2, GetParam()};; fault.nth = nextAllocation(fault.nth, all)) {
    prepare(false);
    const FaultyRun run = withFailingAllocation(false, fault);
    expectGoodEnd(run, fault, false);
    if (run.made < fault.nth) break;
  }
}

}  // namespace
}  // namespace render_test
