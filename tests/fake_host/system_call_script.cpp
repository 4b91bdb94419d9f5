#include "tests/fake_host/system_call_script.h"

namespace fake_host {

SystemCallScript::SystemCallScript() {
  observe([this](SystemCall call, const test_kit::CallRecord& record) { keep(call, record); });
}

void SystemCallScript::keep(SystemCall call, const test_kit::CallRecord& record) {
  if (call == SystemCall::kOpen) {
    opens.push_back({record.path, static_cast<int>(record.size),
                     static_cast<unsigned>(record.offset), record.fd});
  } else if (call == SystemCall::kFlock) {
    flock_operations.push_back(static_cast<int>(record.size));
  } else if (call == SystemCall::kPwrite) {
    pwrites.push_back({record.fd, record.offset, record.size, record.only_zeros, record.result});
  }
}

}  // namespace fake_host
