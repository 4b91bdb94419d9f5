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
void SetUpProcess(Application application);
/// Forgets the script and the record, and makes these devices the list; a burn then finishes at the
/// first turn.
void SetDevices(const std::vector<Device>& devices);

/// An autorelease pool, as an event loop has around each event.
class Pool {
 public:
  Pool();
  ~Pool();
  Pool(const Pool&) = delete;
  Pool& operator=(const Pool&) = delete;

 private:
  void* pool_;
};

/// The panel tells its delegate that the burn, and then that it itself is done.
void FinishBurn();

/// A track's producer, called as the framework does.
class Producer {
 public:
  explicit Producer(void* object) : object_(object) {}

  bool ConformsToProtocol() const;
  /// An `int` instance variable.
  int Variable(const char* name) const;
  uint64_t EstimateLength() const;
  bool Prepare() const;
  void CleanUpAfterBurn() const;
  uint32_t ProducePreGap(char* buffer, uint32_t length) const;
  uint32_t ProduceData(char* buffer, uint32_t length) const;
  bool PrepareForVerification() const;
  bool VerifyPreGap(const char* buffer, uint32_t length) const;
  bool VerifyData(const char* buffer, uint32_t length) const;
  bool CleanUpAfterVerification() const;

 private:
  void* object_;
};

/// The producer of the layout's track `index`, from 0.
Producer ProducerOf(int index);
/// The properties of the layout's track `index`, from 0.
const Properties& PropertiesOf(int index);

}  // namespace doubles
