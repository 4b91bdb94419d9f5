// What a test does with Objective-C objects, for tests that are plain C++.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tests/module/mac/doubles/framework_state.h"

namespace doubles {

/// How the application object stands while the module is loaded.
enum class Application {
  kMissing,  ///< NSApp is nil
  kWithoutDelegate,
  kDelegateWithoutProvider,
  kDelegateWithProvider,  ///< the delegate answers with the process's `quelmGetAPPAPIFunc`
};

/// Makes the application object, the constants and the log's handler, and counts the instances of
/// the module's two classes from now on. Once, before the module.
void setUpProcess(Application application);
/// Forgets the script and the record, and makes these devices the list; a burn then finishes at the
/// first turn.
void setDevices(const std::vector<Device>& devices);

/// An autorelease pool, as an event loop has around each event.
class Pool {
 public:
  Pool();
  ~Pool();
  Pool(const Pool&) = delete;
  Pool& operator=(const Pool&) = delete;

 private:
  void* m_pool;
};

/// The panel tells its delegate that the burn, and then that it itself is done.
void finishBurn();

/// A track's producer, called as the framework does.
class Producer {
 public:
  explicit Producer(void* object) : m_object(object) {}

  bool conformsToProtocol() const;
  /// An `int` instance variable.
  int variable(const char* name) const;
  uint64_t estimateLength() const;
  bool prepare() const;
  void cleanUpAfterBurn() const;
  uint32_t producePreGap(char* buffer, uint32_t length) const;
  uint32_t produceData(char* buffer, uint32_t length) const;
  bool prepareForVerification() const;
  bool verifyPreGap(const char* buffer, uint32_t length) const;
  bool verifyData(const char* buffer, uint32_t length) const;
  bool cleanUpAfterVerification() const;

 private:
  void* m_object;
};

/// The producer of the layout's track `index`, from 0.
Producer producerOf(int index);
/// The properties of the layout's track `index`, from 0.
const Properties& propertiesOf(int index);

}  // namespace doubles
