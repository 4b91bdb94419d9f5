#include "page/measure/jobs.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace velmor::page::test {
namespace {

const auto kNobody = [] {};

TEST(Jobs, RunAllToTheirEnd) {
  SharedProgress progress;
  std::vector<int> done(100);
  std::vector<Job> jobs;
  for (int& d : done)
    jobs.emplace_back([&d, &progress] {
      progress.add(3);
      d = 1;
    });
  runJobs(jobs, progress, kNobody);
  EXPECT_EQ(done, std::vector<int>(100, 1));
  EXPECT_EQ(progress.done(), 300);
}

TEST(Jobs, GiveTheFirstFailureToTheCallerAndStopTheOthers) {
  SharedProgress progress;
  std::vector<Job> jobs{[] { throw std::runtime_error("a broken disk"); }};
  // Each goes on until it is told to stop, which the failure does.
  for (int i = 0; i < 20; ++i)
    jobs.emplace_back([&] {
      while (true) progress.add(1);
    });
  try {
    runJobs(jobs, progress, kNobody);
    FAIL() << "nothing was thrown";
  } catch (const std::runtime_error& error) {
    EXPECT_EQ(error.what(), std::string("a broken disk"));
  }
}

TEST(Jobs, StopWhenTheCallerDoesNotWantThemAnyMore) {
  SharedProgress progress;
  const std::vector<Job> jobs(3, [&] {
    while (true) progress.add(1);
  });
  EXPECT_THROW(runJobs(jobs, progress, [] { throw std::logic_error("enough"); }), std::logic_error);
}

TEST(Jobs, MayBeNone) {
  SharedProgress progress;
  runJobs({}, progress, kNobody);
}

}  // namespace
}  // namespace velmor::page::test
