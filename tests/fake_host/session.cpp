#include "tests/fake_host/session.h"

#include <gtest/gtest.h>

namespace fake_host {

int Session::bind() {
  velmor_plugin_info_t info = host.info();
  return module->entry()(nullptr, &info);
}

Sink Session::createSink(const std::string& name, const Settings& settings) {
  SinkConfig config = makeConfig(settings);
  return Sink(
      registration().CreateSink(file(name).c_str(), &config, sizeof config, 2, 44100, false));
}

BoundSession::BoundSession() {
  load();
  EXPECT_EQ(bind(), 1);
}

}  // namespace fake_host
