#include "page/measure/jobs.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <string>
#include <thread>

#include "disc/failure.h"

namespace velmor::page {

namespace {

constexpr std::chrono::milliseconds kBetweenLooks{100};
constexpr size_t kMostThreads = 8;

struct Stopped {};

/// The threads that share the jobs.
class Workers {
 public:
  Workers(const std::vector<Job>& jobs, SharedProgress& progress)
      : m_jobs(jobs), m_progress(progress) {
    const size_t processors = std::max<size_t>(std::thread::hardware_concurrency(), 1);
    const size_t threads = std::min({processors, kMostThreads, jobs.size()});
    m_threads.reserve(threads);
    while (m_threads.size() < threads && begin()) {
    }
  }

  ~Workers() { join(); }
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;

  /// False when all have ended before a while has passed.
  bool runFor(std::chrono::milliseconds longest) {
    std::unique_lock lock(m_mutex);
    return !m_ended.wait_for(lock, longest, [this] { return m_running == 0; });
  }

  void fail(const std::exception_ptr& error) {
    const std::lock_guard lock(m_mutex);
    if (!m_error) m_error = error;
    m_progress.stop();
  }

  void join() {
    for (std::thread& thread : m_threads) thread.join();
    m_threads.clear();
  }

  /// Throws what has ended the work early.
  void rethrow() const {
    if (m_error) std::rethrow_exception(m_error);
  }

 private:
  /// False when the system gives no more threads: those that have begun do all the work.
  bool begin() {
    const std::lock_guard lock(m_mutex);
    try {
      m_threads.emplace_back([this] { work(); });
    } catch (const std::exception& error) {
      if (m_threads.empty())
        throw Failure(std::string("no thread can be begun: ") + error.what() +
                      "; end other programs, or raise the limit of processes");
      return false;
    }
    ++m_running;
    return true;
  }

  void work() {
    try {
      for (size_t job = m_next++; job < m_jobs.size(); job = m_next++) {
        m_jobs[job]();
        m_progress.add(0);
      }
    } catch (const Stopped&) {
      // Somebody else has said why.
    } catch (...) {
      fail(std::current_exception());
    }
    const std::lock_guard lock(m_mutex);
    --m_running;
    m_ended.notify_all();
  }

  const std::vector<Job>& m_jobs;
  SharedProgress& m_progress;
  std::vector<std::thread> m_threads;
  std::atomic<size_t> m_next{0};
  std::mutex m_mutex;
  std::condition_variable m_ended;
  size_t m_running = 0;
  std::exception_ptr m_error;
};

}  // namespace

void SharedProgress::add(int64_t done) {
  m_done += done;
  if (m_stopped) throw Stopped{};
}

void runJobs(const std::vector<Job>& jobs, SharedProgress& progress,
             const std::function<void()>& watch) {
  Workers workers(jobs, progress);
  try {
    while (workers.runFor(kBetweenLooks)) watch();
  } catch (...) {
    workers.fail(std::current_exception());
  }
  workers.join();
  workers.rethrow();
}

}  // namespace velmor::page
