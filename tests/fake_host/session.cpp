#include "tests/fake_host/session.h"

#include <gtest/gtest.h>

namespace fake_host {

int Session::Bind() {
  velmor_plugin_info_t info = host.Info();
  return module->entry()(nullptr, &info);
}

Sink Session::CreateSink(const std::string& name, const Settings& settings) {
  SinkConfig config = MakeConfig(settings);
  return Sink(
      registration().CreateSink(File(name).c_str(), &config, sizeof config, 2, 44100, false));
}

BoundSession::BoundSession() {
  Load();
  EXPECT_EQ(Bind(), 1);
}

}  // namespace fake_host
