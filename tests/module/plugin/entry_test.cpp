// The entry: what it asks the host for, in which order, and when it registers the CD image sink.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "tests/fake_host/session.h"

namespace {

using fake_host::BoundSession;
using fake_host::makeConfig;
using fake_host::Session;
using testing::ElementsAre;
using testing::IsEmpty;

const std::vector<std::string> kAskedFirst = {"GetMainHwnd",
                                              "GetExePath",
                                              "get_ini_file",
                                              "format_timestr",
                                              "EnumProjectMarkers",
                                              "PCM_Source_CreateFromSimple",
                                              "EnumCurrentSinkMetadata",
                                              "update_disk_counters"};
const std::vector<std::string> kAskedAfterwards = {"vac_createGroupsFromTab", "__localizeFunc",
                                                   "__localizeMenu", "__localizeInitializeDialog",
                                                   "__localizePrepareDialog"};

std::vector<std::string> allLookups() {
  std::vector<std::string> all = kAskedFirst;
  all.insert(all.end(), kAskedAfterwards.begin(), kAskedAfterwards.end());
  return all;
}

TEST(Entry, AsksForEveryHostFunctionOnceInOrderAndRegistersAfterwards) {
  Session session;
  session.load();
  EXPECT_THAT(session.host.journal, IsEmpty()) << "before the entry is called";
  EXPECT_EQ(session.bind(), 1);
  std::vector<std::string> expected;
  for (const std::string& name : allLookups()) expected.push_back("lookup " + name);
  expected.emplace_back("register pcmsink");
  EXPECT_EQ(session.host.journal, expected);
}

TEST(Entry, ARecordOfAnotherVersionIsRefusedWithoutALookup) {
  for (const int version : {525, 527, 0, -526}) {
    Session session;
    session.load();
    velmor_plugin_info_t info = session.host.info();
    info.version = version;
    EXPECT_EQ(session.module->entry()(nullptr, &info), 0) << version;
    EXPECT_THAT(session.host.journal, IsEmpty()) << version;
  }
}

TEST(Entry, ANullRecordBindsNothing) {
  Session session;
  session.load();
  EXPECT_EQ(session.module->entry()(&session, nullptr), 0);
  EXPECT_THAT(session.host.journal, IsEmpty());
}

TEST(Entry, ARecordWithoutALookupFunctionIsRefused) {
  Session session;
  session.load();
  velmor_plugin_info_t info = session.host.info();
  info.lookup_fn = nullptr;
  EXPECT_EQ(session.module->entry()(nullptr, &info), 0);
  EXPECT_THAT(session.host.journal, IsEmpty());
}

TEST(Entry, ARecordWithoutARegistrationFunctionIsRefusedAfterAllLookups) {
  Session session;
  session.load();
  velmor_plugin_info_t info = session.host.info();
  info.register_fn = nullptr;
  EXPECT_EQ(session.module->entry()(nullptr, &info), 0);
  EXPECT_EQ(session.host.lookups, allLookups());
}

TEST(Entry, AHostLackingARequiredFunctionGetsNoSinkAndIsAskedNoFurther) {
  for (const char* name : {"GetMainHwnd", "get_ini_file", "GetExePath", "EnumProjectMarkers",
                           "update_disk_counters"}) {
    Session session;
    session.load();
    session.host.withhold(name);
    EXPECT_EQ(session.bind(), 0) << name;
    EXPECT_THAT(session.host.registrations, IsEmpty()) << name;
    EXPECT_EQ(session.host.lookups, kAskedFirst) << name;
  }
}

TEST(Entry, AHostLackingAnOptionalFunctionStillGetsTheSink) {
  for (const char* name :
       {"format_timestr", "PCM_Source_CreateFromSimple", "EnumCurrentSinkMetadata",
        "vac_createGroupsFromTab", "__localizeFunc", "__localizeMenu", "__localizeInitializeDialog",
        "__localizePrepareDialog"}) {
    Session session;
    session.load();
    session.host.withhold(name);
    EXPECT_EQ(session.bind(), 1) << name;
    EXPECT_EQ(session.host.lookups, allLookups()) << name;
    EXPECT_EQ(session.host.registrations.size(), 1U) << name;
  }
}

TEST(Entry, TheHostsAnswerToTheRegistrationDecides) {
  for (const int answer : {0, 1, -5, 256}) {
    Session session;
    session.load();
    session.host.answer_to_registration = answer;
    EXPECT_EQ(session.bind(), answer == 0 ? 0 : 1) << answer;
    EXPECT_EQ(session.host.registrations.size(), 1U) << answer;
  }
}

TEST(Entry, AnyModuleHandleAndMainWindowWillDo) {
  Session session;
  session.load();
  velmor_plugin_info_t info = session.host.info();
  info.main_window = nullptr;
  int handle = 0;
  EXPECT_EQ(session.module->entry()(&handle, &info), 1);
  EXPECT_EQ(session.registration().GetFmt(nullptr), kIsoFormatCode);
}

TEST(Entry, AnUnloadCallLeavesTheSinkWorking) {
  BoundSession session;
  const size_t calls_before = session.host.journal.size();
  EXPECT_EQ(session.module->entry()(nullptr, nullptr), 0);
  EXPECT_EQ(session.host.journal.size(), calls_before);
  fake_host::Sink sink = session.createSink("after.cue");
  ASSERT_TRUE(sink);
  sink.writeSignal(588);
  EXPECT_EQ(sink.finish(), 1);
  EXPECT_EQ(fake_host::sizeOfFile(session.file("after.bin")), 2352);
}

TEST(Entry, BindingAgainRegistersTheSameRecord) {
  BoundSession session;
  EXPECT_EQ(session.bind(), 1);
  ASSERT_EQ(session.host.registrations.size(), 2U);
  EXPECT_EQ(session.host.registrations[0], session.host.registrations[1]);
}

TEST(Entry, ALaterBindingTakesBackWhatTheHostNoLongerOffers) {
  BoundSession session;
  session.host.withhold("__localizeFunc");
  session.host.translations["Audio CD Image (CUE/BIN format)"] = "Audio-CD-Abbild";
  EXPECT_EQ(session.bind(), 1);
  const char* description = nullptr;
  session.registration().GetFmt(&description);
  EXPECT_STREQ(description, "Audio CD Image (CUE/BIN format)");
}

TEST(Registration, TheSpareFieldsAreNull) {
  BoundSession session;
  EXPECT_EQ(session.registration().reserved[0], nullptr);
  EXPECT_EQ(session.registration().reserved[1], nullptr);
}

TEST(Registration, TheFormatIsDescribed) {
  BoundSession session;
  const char* description = nullptr;
  EXPECT_EQ(session.registration().GetFmt(&description), 0x69736F20U);
  EXPECT_STREQ(description, "Audio CD Image (CUE/BIN format)");
  EXPECT_THAT(session.host.localize_calls,
              ElementsAre(fake_host::LocalizeCall{"Audio CD Image (CUE/BIN format)", "cd", 0}));
}

TEST(Registration, TheHostsTranslationOfTheDescriptionIsHandedOnAsItIs) {
  BoundSession session;
  std::string& translated = session.host.translations["Audio CD Image (CUE/BIN format)"];
  translated = "Image de CD audio (format CUE/BIN), assez longue pour le tas";
  const char* description = nullptr;
  session.registration().GetFmt(&description);
  EXPECT_EQ(description, translated.c_str());
}

TEST(Registration, AskingForTheFormatWithoutADescriptionTouchesNothing) {
  BoundSession session;
  EXPECT_EQ(session.registration().GetFmt(nullptr), 0x69736F20U);
  EXPECT_THAT(session.host.localize_calls, IsEmpty());
}

// A blob is the code and whatever follows: what a callback makes of `size` bytes of it.
class Blob : public testing::Test {
 protected:
  bool extensionAccepts(int size) {
    const char* extension = m_session.registration().GetExtension(m_blob, size);
    if (extension != nullptr) {
      EXPECT_STREQ(extension, "cue");
    }
    return extension != nullptr;
  }
  bool dialogAccepts(int size) {
    return m_session.registration().ShowConfig(m_blob, size, &m_session.windowing.parent) !=
           nullptr;
  }
  bool sinkAccepts(int size) {
    const std::string file = m_session.file("blob" + std::to_string(size) + ".cue");
    fake_host::Sink sink(
        m_session.registration().CreateSink(file.c_str(), m_blob, size, 2, 44100, false));
    EXPECT_EQ(fake_host::fileExists(file), static_cast<bool>(sink));
    return static_cast<bool>(sink);
  }

  BoundSession m_session;
  SinkConfig m_config = makeConfig({});
  void* m_blob = &m_config;
};

TEST_F(Blob, FourBytesHoldingTheCodeAreEnough) {
  EXPECT_TRUE(extensionAccepts(4));
  EXPECT_TRUE(dialogAccepts(4));
  EXPECT_TRUE(sinkAccepts(4));
}

TEST_F(Blob, OneThatIsLongerThanTheRecordIsAccepted) {
  unsigned char longer[64] = {0x20, 0x6F, 0x73, 0x69};
  m_blob = longer;
  EXPECT_TRUE(extensionAccepts(64));
  EXPECT_TRUE(dialogAccepts(64));
  EXPECT_TRUE(sinkAccepts(64));
}

TEST_F(Blob, FewerThanFourBytesAreRejected) {
  for (const int size : {3, 0, -1, -24}) {
    EXPECT_FALSE(extensionAccepts(size)) << size;
    EXPECT_FALSE(dialogAccepts(size)) << size;
    EXPECT_FALSE(sinkAccepts(size)) << size;
  }
}

TEST_F(Blob, AnotherCodeIsRejected) {
  for (const uint32_t code : {0x206F7369U, 0U, 0x69736F21U}) {
    std::memcpy(&m_config, &code, sizeof code);
    EXPECT_FALSE(extensionAccepts(24)) << code;
    EXPECT_FALSE(dialogAccepts(24)) << code;
    EXPECT_FALSE(sinkAccepts(24)) << code;
  }
}

TEST_F(Blob, ANullBlobIsRejectedWhateverItsLength) {
  m_blob = nullptr;
  for (const int size : {24, 4, 0}) {
    EXPECT_FALSE(extensionAccepts(size)) << size;
    EXPECT_FALSE(dialogAccepts(size)) << size;
    EXPECT_FALSE(sinkAccepts(size)) << size;
  }
}

TEST_F(Blob, ARejectedOneOpensNoDialog) {
  m_config.format_code = 0;
  EXPECT_FALSE(dialogAccepts(24));
  EXPECT_THAT(m_session.windowing.requests, IsEmpty());
  EXPECT_THAT(m_session.host.prepare_calls, IsEmpty());
}

TEST_F(Blob, AnUnalignedOneIsRead) {
  unsigned char bytes[25] = {0};
  std::memcpy(bytes + 1, &m_config, sizeof m_config);
  m_blob = bytes + 1;
  EXPECT_TRUE(extensionAccepts(24));
  EXPECT_TRUE(dialogAccepts(24));
  EXPECT_TRUE(sinkAccepts(24));
}

}  // namespace
