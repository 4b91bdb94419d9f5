// The binary interface once more, from its written description alone: records and signatures of
// this file's own, and the sink driven through the raw slots of its vtable. What the rest of the
// system declares must come to the same bytes.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "abi/disc_recording.h"
#include "abi/host_functions.h"
#include "abi/quelm_functions.h"
#include "abi/quelm_provider.h"
#include "abi/sink_registration.h"
#include "tests/module/sink/render_case.h"

namespace sink_test {
namespace {

namespace raw {

struct PluginInfo {
  int32_t version;
  void* main_window;
  int (*register_fn)(const char*, void*);
  void* (*lookup_fn)(const char*);
};

struct SinkRecord {
  unsigned int (*get_fmt)(const char**);
  const char* (*get_extension)(const void*, int);
  void* (*show_config)(const void*, int, void*);
  void* (*create_sink)(const char*, void*, int, int, int, bool);
  void* fifth;
  void* sixth;
};

struct ListColumn {
  unsigned int mask;
  int fmt;
  int cx;
  char* text;
  int text_max;
  int sub_item;
};

struct ListItem {
  unsigned int mask;
  int item;
  int sub_item;
  unsigned int state;
  unsigned int state_mask;
  char* text;
  int text_max;
  int image;
  intptr_t param;
};

struct Resource {
  intptr_t id;
  const char* title;
  int flags;
  void (*create)(void*, int);
  int width;
  int height;
  Resource* next;
};

struct Control {
  const char* first_text;
  int first_value;
  const char* second_text;
  int second_value;
  int x, y, w, h;
  int extra_style;
};

struct BurnProperties {
  bool testing, appendable, overwrite, verify;
  int completion_action;
  int failure_action;
};

struct Track {
  void* producer;
  int pregap_length, data_form, track_mode, block_type, session_format, block_size, track_length;
};

using Dialog = intptr_t (*)(void*, unsigned int, intptr_t, intptr_t);

// A sink: the vtable pointer, then the start time. Slots count from 1.
class Sink {
 public:
  explicit Sink(void* object) : object_(static_cast<Object*>(object)) {}

  template <class Result, class... Arguments>
  Result Call(int slot, Arguments... arguments) const {
    const auto function =
        reinterpret_cast<Result (*)(void*, Arguments...)>(object_->vtable[slot - 1]);
    return function(object_, arguments...);
  }
  double start_field() const { return object_->start; }

 private:
  struct Object {
    void** vtable;
    double start;
  };
  Object* object_;
};

enum Slot {
  kCompleteDestructor = 1,
  kDeletingDestructor,
  kGetOutputInfoString,
  kGetStartTime,
  kSetStartTime,
  kGetFileName,
  kGetNumChannels,
  kGetLength,
  kGetFileSize,
  kWriteMidi,
  kWriteDoubles,
  kWantMidi,
  kGetLastSecondPeaks,
  kGetPeakInfo,
  kExtended
};

// A host of six functions.
double marker_position = 0.0;
int EnumProjectMarkers(int index, bool* is_region, double* position, double* end, const char** name,
                       int*) {
  if (index != 0) return 0;
  if (is_region != nullptr) *is_region = false;
  if (position != nullptr) *position = marker_position;
  if (end != nullptr) *end = 0.0;
  if (name != nullptr) *name = "Second";
  return 41;
}
void* GetMainHwnd() {
  return nullptr;
}
const char* Text() {
  return "";
}
void UpdateDiskCounters(int, int) {}

void* Lookup(const char* name) {
  const std::string wanted = name;
  if (wanted == "GetMainHwnd") return reinterpret_cast<void*>(GetMainHwnd);
  if (wanted == "GetExePath" || wanted == "get_ini_file") return reinterpret_cast<void*>(Text);
  if (wanted == "EnumProjectMarkers") return reinterpret_cast<void*>(EnumProjectMarkers);
  if (wanted == "update_disk_counters") return reinterpret_cast<void*>(UpdateDiskCounters);
  return nullptr;
}

SinkRecord* registered = nullptr;
int Register(const char* kind, void* record) {
  if (std::strcmp(kind, "pcmsink") == 0) registered = static_cast<SinkRecord*>(record);
  return 1;
}

}  // namespace raw

// The module loaded and bound through this file's declarations only.
class BinaryInterface : public testing::Test {
 protected:
  void SetUp() override {
    raw::registered = nullptr;
    auto* entry =
        reinterpret_cast<int (*)(void*, raw::PluginInfo*)>(module_.Symbol("VelmorPluginEntry"));
    ASSERT_NE(entry, nullptr);
    raw::PluginInfo info = {526, nullptr, raw::Register, raw::Lookup};
    ASSERT_EQ(entry(nullptr, &info), 1);
    ASSERT_NE(raw::registered, nullptr);
  }
  void* MakeSink(int32_t track_leadin_ms = 0) {
    int32_t blob[6] = {0x69736F20, 0, track_leadin_ms, 0, 0, 0};
    return raw::registered->create_sink(folder_.file("disc.cue").c_str(), blob, sizeof blob, 2,
                                        44100, false);
  }

  fake_host::TempFolder folder_;
  fake_host::WindowingLayer windowing_;
  fake_host::LoadedModule module_;
};

TEST_F(BinaryInterface, TheRecordAnswersThroughItsFields) {
  const char* description = nullptr;
  EXPECT_EQ(raw::registered->get_fmt(&description), 0x69736F20U);
  EXPECT_STREQ(description, "Audio CD Image (CUE/BIN format)");
  const unsigned char blob[4] = {0x20, 0x6F, 0x73, 0x69};
  EXPECT_STREQ(raw::registered->get_extension(blob, 4), "cue");
  EXPECT_EQ(raw::registered->fifth, nullptr);
  EXPECT_EQ(raw::registered->sixth, nullptr);
}

TEST_F(BinaryInterface, ARenderRunsThroughTheFifteenSlots) {
  raw::marker_position = 100.0 + 5.0;
  void* object = MakeSink(1000);
  ASSERT_NE(object, nullptr);
  const raw::Sink sink(object);

  EXPECT_EQ(sink.start_field(), 0.0);
  EXPECT_EQ(sink.Call<double>(raw::kGetStartTime), 0.0);
  sink.Call<void>(raw::kSetStartTime, 100.0);
  EXPECT_EQ(sink.start_field(), 100.0);
  EXPECT_EQ(sink.Call<double>(raw::kGetStartTime), 100.0);

  char text[64] = {0};
  sink.Call<void>(raw::kGetOutputInfoString, &text[0], int{sizeof text});
  EXPECT_STREQ(text, "Audio CD Image 44100Hz 2ch");
  EXPECT_EQ(sink.Call<const char*>(raw::kGetFileName), folder_.file("disc.cue"));
  EXPECT_EQ(sink.Call<int>(raw::kGetNumChannels), 2);
  EXPECT_EQ(sink.Call<int>(raw::kWantMidi), 0);
  sink.Call<void>(raw::kWriteMidi, static_cast<void*>(nullptr), 0, 44100.0);
  sink.Call<void>(raw::kGetPeakInfo, static_cast<void*>(nullptr));
  double peak = 7.0;
  EXPECT_EQ(sink.Call<int>(raw::kGetLastSecondPeaks, 1, &peak), 0);
  EXPECT_EQ(peak, 7.0);

  int rate = 0;
  int channels = 0;
  void* const none = nullptr;
  EXPECT_EQ(sink.Call<int>(raw::kExtended, 0x80002, static_cast<void*>(&rate),
                           static_cast<void*>(&channels), none),
            1);
  EXPECT_EQ(rate, 44100);
  EXPECT_EQ(channels, 2);

  double left = 0.5;
  double right = -0.5;
  double* samples[2] = {&left, &right};
  sink.Call<void>(raw::kWriteDoubles, &samples[0], 6 * 44100, 2, 0, 0);
  EXPECT_EQ(sink.Call<double>(raw::kGetLength), 7.0) << "the lead-in of track 2 included";
  EXPECT_EQ(sink.Call<long long>(raw::kGetFileSize), 0);
  EXPECT_EQ(sink.Call<int>(raw::kExtended, 0x80001, none, none, none), 1);
  sink.Call<void>(raw::kDeletingDestructor);

  EXPECT_EQ(fake_host::ReadText(folder_.file("disc.cue")),
            expected::Sheet({"FILE \"disc.bin\" BINARY", "  TRACK 01 AUDIO",
                             "    INDEX 01 00:00:00", "  TRACK 02 AUDIO", "    TITLE \"Second\"",
                             "    INDEX 00 00:05:00", "    INDEX 01 00:06:00"}));
  const std::vector<int16_t> image = fake_host::ReadSamples(folder_.file("disc.bin"));
  ASSERT_EQ(image.size(), 7U * 44100 * 2);
  for (size_t frame = 0; frame < image.size() / 2; ++frame) {
    const bool silent = frame >= 5 * 44100 && frame < 6 * 44100;
    ASSERT_EQ(image[2 * frame], silent ? 0 : 16384) << frame;
    ASSERT_EQ(image[2 * frame + 1], silent ? 0 : -16384) << frame;
  }
}

TEST_F(BinaryInterface, TheCompleteDestructorReleasesAndLeavesTheMemory) {
  void* object = MakeSink();
  ASSERT_NE(object, nullptr);
  const raw::Sink sink(object);
  sink.Call<void>(raw::kCompleteDestructor);
  void* again = MakeSink();
  EXPECT_NE(again, nullptr) << "the files are free again";
  if (again != nullptr) raw::Sink(again).Call<void>(raw::kDeletingDestructor);
  ::operator delete(object);
}

#define EXPECT_SAME_FIELD(theirs, their_field, ours, our_field)                      \
  EXPECT_EQ(offsetof(theirs, their_field), offsetof(ours, our_field)) << #our_field; \
  EXPECT_EQ(sizeof(theirs::their_field), sizeof(ours::our_field)) << #our_field

TEST(DeclaredInterface, RecordsOfTheHostMatch) {
  EXPECT_EQ(sizeof(velmor_plugin_info_t), sizeof(raw::PluginInfo));
  EXPECT_SAME_FIELD(velmor_plugin_info_t, version, raw::PluginInfo, version);
  EXPECT_SAME_FIELD(velmor_plugin_info_t, main_window, raw::PluginInfo, main_window);
  EXPECT_SAME_FIELD(velmor_plugin_info_t, register_fn, raw::PluginInfo, register_fn);
  EXPECT_SAME_FIELD(velmor_plugin_info_t, lookup_fn, raw::PluginInfo, lookup_fn);
  EXPECT_EQ(sizeof(SinkRegistration), sizeof(raw::SinkRecord));
  EXPECT_SAME_FIELD(SinkRegistration, GetFmt, raw::SinkRecord, get_fmt);
  EXPECT_SAME_FIELD(SinkRegistration, GetExtension, raw::SinkRecord, get_extension);
  EXPECT_SAME_FIELD(SinkRegistration, ShowConfig, raw::SinkRecord, show_config);
  EXPECT_SAME_FIELD(SinkRegistration, CreateSink, raw::SinkRecord, create_sink);
  EXPECT_EQ(offsetof(SinkRegistration, reserved), offsetof(raw::SinkRecord, fifth));
  EXPECT_EQ(sizeof(SinkConfig), 24U);
  EXPECT_EQ(offsetof(SinkConfig, format_code), 0U);
  EXPECT_EQ(offsetof(SinkConfig, disc_leadin_ms), 4U);
  EXPECT_EQ(offsetof(SinkConfig, track_leadin_ms), 8U);
  EXPECT_EQ(offsetof(SinkConfig, burn_after_render), 12U);
  EXPECT_EQ(offsetof(SinkConfig, track_mode), 16U);
  EXPECT_EQ(offsetof(SinkConfig, hash_markers_only), 20U);
}

TEST(DeclaredInterface, RecordsOfTheWindowingLayerMatch) {
  EXPECT_EQ(sizeof(LVCOLUMN), 32U);
  EXPECT_EQ(sizeof(raw::ListColumn), 32U);
  EXPECT_SAME_FIELD(LVCOLUMN, mask, raw::ListColumn, mask);
  EXPECT_SAME_FIELD(LVCOLUMN, fmt, raw::ListColumn, fmt);
  EXPECT_SAME_FIELD(LVCOLUMN, cx, raw::ListColumn, cx);
  EXPECT_SAME_FIELD(LVCOLUMN, text, raw::ListColumn, text);
  EXPECT_SAME_FIELD(LVCOLUMN, text_max, raw::ListColumn, text_max);
  EXPECT_SAME_FIELD(LVCOLUMN, sub_item, raw::ListColumn, sub_item);
  EXPECT_EQ(sizeof(LVITEM), 48U);
  EXPECT_EQ(sizeof(raw::ListItem), 48U);
  EXPECT_SAME_FIELD(LVITEM, mask, raw::ListItem, mask);
  EXPECT_SAME_FIELD(LVITEM, item, raw::ListItem, item);
  EXPECT_SAME_FIELD(LVITEM, sub_item, raw::ListItem, sub_item);
  EXPECT_SAME_FIELD(LVITEM, state, raw::ListItem, state);
  EXPECT_SAME_FIELD(LVITEM, state_mask, raw::ListItem, state_mask);
  EXPECT_SAME_FIELD(LVITEM, text, raw::ListItem, text);
  EXPECT_SAME_FIELD(LVITEM, text_max, raw::ListItem, text_max);
  EXPECT_SAME_FIELD(LVITEM, image, raw::ListItem, image);
  EXPECT_SAME_FIELD(LVITEM, param, raw::ListItem, param);
  EXPECT_EQ(sizeof(QuelmDialogResource), sizeof(raw::Resource));
  EXPECT_SAME_FIELD(QuelmDialogResource, id, raw::Resource, id);
  EXPECT_SAME_FIELD(QuelmDialogResource, title, raw::Resource, title);
  EXPECT_SAME_FIELD(QuelmDialogResource, flags, raw::Resource, flags);
  EXPECT_SAME_FIELD(QuelmDialogResource, create, raw::Resource, create);
  EXPECT_SAME_FIELD(QuelmDialogResource, width, raw::Resource, width);
  EXPECT_SAME_FIELD(QuelmDialogResource, height, raw::Resource, height);
  EXPECT_SAME_FIELD(QuelmDialogResource, next, raw::Resource, next);
  EXPECT_EQ(sizeof(QuelmControl), sizeof(raw::Control));
  EXPECT_SAME_FIELD(QuelmControl, first_text, raw::Control, first_text);
  EXPECT_SAME_FIELD(QuelmControl, first_value, raw::Control, first_value);
  EXPECT_SAME_FIELD(QuelmControl, second_text, raw::Control, second_text);
  EXPECT_SAME_FIELD(QuelmControl, second_value, raw::Control, second_value);
  EXPECT_SAME_FIELD(QuelmControl, x, raw::Control, x);
  EXPECT_SAME_FIELD(QuelmControl, y, raw::Control, y);
  EXPECT_SAME_FIELD(QuelmControl, w, raw::Control, w);
  EXPECT_SAME_FIELD(QuelmControl, h, raw::Control, h);
  EXPECT_SAME_FIELD(QuelmControl, extra_style, raw::Control, extra_style);
}

TEST(DeclaredInterface, RecordsOfDiscRecordingMatch) {
  EXPECT_EQ(sizeof(DiscBurnProperties), sizeof(raw::BurnProperties));
  EXPECT_SAME_FIELD(DiscBurnProperties, testing, raw::BurnProperties, testing);
  EXPECT_SAME_FIELD(DiscBurnProperties, appendable, raw::BurnProperties, appendable);
  EXPECT_SAME_FIELD(DiscBurnProperties, overwrite, raw::BurnProperties, overwrite);
  EXPECT_SAME_FIELD(DiscBurnProperties, verify, raw::BurnProperties, verify);
  EXPECT_SAME_FIELD(DiscBurnProperties, completion_action, raw::BurnProperties, completion_action);
  EXPECT_SAME_FIELD(DiscBurnProperties, failure_action, raw::BurnProperties, failure_action);
  EXPECT_EQ(sizeof(DiscTrack), sizeof(raw::Track));
  EXPECT_SAME_FIELD(DiscTrack, producer, raw::Track, producer);
  EXPECT_SAME_FIELD(DiscTrack, pregap_length, raw::Track, pregap_length);
  EXPECT_SAME_FIELD(DiscTrack, data_form, raw::Track, data_form);
  EXPECT_SAME_FIELD(DiscTrack, track_mode, raw::Track, track_mode);
  EXPECT_SAME_FIELD(DiscTrack, block_type, raw::Track, block_type);
  EXPECT_SAME_FIELD(DiscTrack, session_format, raw::Track, session_format);
  EXPECT_SAME_FIELD(DiscTrack, block_size, raw::Track, block_size);
  EXPECT_SAME_FIELD(DiscTrack, track_length, raw::Track, track_length);
}

// Signatures of the layer functions the module calls: two function pointer types that differ in
// nothing but the names of the handles are one type.
TEST(DeclaredInterface, SignaturesOfTheWindowingLayerMatch) {
#define EXPECT_SIGNATURE(name, ...) \
  static_assert(std::is_same_v<decltype(::name), __VA_ARGS__>, #name)
  EXPECT_SIGNATURE(GetDlgItem, void* (*)(void*, int));
  EXPECT_SIGNATURE(SendMessage, intptr_t(*)(void*, unsigned int, intptr_t, intptr_t));
  EXPECT_SIGNATURE(SetDlgItemInt, void (*)(void*, int, int, int));
  EXPECT_SIGNATURE(GetDlgItemInt, int (*)(void*, int, int*, int));
  EXPECT_SIGNATURE(CheckDlgButton, void (*)(void*, int, int));
  EXPECT_SIGNATURE(IsDlgButtonChecked, int (*)(void*, int));
  EXPECT_SIGNATURE(EnableWindow, void (*)(void*, int));
  EXPECT_SIGNATURE(GetWindowLong, intptr_t(*)(void*, int));
  EXPECT_SIGNATURE(SetWindowLong, intptr_t(*)(void*, int, intptr_t));
  EXPECT_SIGNATURE(MessageBox, int (*)(void*, const char*, const char*, int));
  EXPECT_SIGNATURE(EndDialog, void (*)(void*, int));
  EXPECT_SIGNATURE(QUELM_MakeSetCurParms, void (*)(float, float, float, float, void*, bool, bool));
  EXPECT_SIGNATURE(ListView_InsertColumn, void (*)(void*, int, const LVCOLUMN*));
  EXPECT_SIGNATURE(ListView_InsertItem, int (*)(void*, const LVITEM*));
  EXPECT_SIGNATURE(ListView_SetItemText, bool (*)(void*, int, int, const char*));
  EXPECT_SIGNATURE(ListView_SetExtendedListViewStyleEx, void (*)(void*, int, int));
  EXPECT_SIGNATURE(GetPrivateProfileInt, int (*)(const char*, const char*, int, const char*));
  EXPECT_SIGNATURE(WritePrivateProfileString,
                   int (*)(const char*, const char*, const char*, const char*));
  EXPECT_SIGNATURE(Sleep, void (*)(int));
#undef EXPECT_SIGNATURE
  EXPECT_TRUE((std::is_same_v<DLGPROC, raw::Dialog>));
  EXPECT_EQ(kQuelmApiVersion, 256);
  EXPECT_EQ(kVelmorPluginVersion, 526);
  EXPECT_EQ(kDiskOutOfSpace, -101010111);
  EXPECT_EQ(kDiskOtherError, -101010110);
}

TEST(DeclaredInterface, MessagesAndStylesAreThoseOfThePublicInterface) {
  EXPECT_EQ(WM_DESTROY, 2U);
  EXPECT_EQ(WM_INITDIALOG, 0x110U);
  EXPECT_EQ(WM_COMMAND, 0x111U);
  EXPECT_EQ(WM_USER, 0x400U);
  EXPECT_EQ(CB_ADDSTRING, 0x143U);
  EXPECT_EQ(CB_GETCURSEL, 0x147U);
  EXPECT_EQ(CB_RESETCONTENT, 0x14BU);
  EXPECT_EQ(CB_SETCURSEL, 0x14EU);
  EXPECT_EQ(CB_GETITEMDATA, 0x150U);
  EXPECT_EQ(CB_SETITEMDATA, 0x151U);
  EXPECT_EQ(GWL_USERDATA, -21);
  EXPECT_EQ(LVS_EX_FULLROWSELECT, 0x20);
  EXPECT_EQ(LVCF_TEXT | LVCF_WIDTH, 6U);
  EXPECT_EQ(LVIF_TEXT, 1U);
  EXPECT_EQ(kConfigGetBlob, 0x800U);
  EXPECT_EQ(kConfigSampleWidth, 0x801U);
}

// The abstract sink, slot by slot: a class of this file's own layout is called through the
// declared one.
std::vector<int> slots_called;
template <int kSlot>
intptr_t Recorded() {
  slots_called.push_back(kSlot);
  return 0;
}

// Without the check of the object's type: it has none.
__attribute__((no_sanitize("vptr"))) void CallEverySlot(PCM_sink* sink) {
  sink->GetOutputInfoString(nullptr, 0);
  sink->GetStartTime();
  sink->SetStartTime(0.0);
  sink->GetFileName();
  sink->GetNumChannels();
  sink->GetLength();
  sink->GetFileSize();
  sink->WriteMIDI(nullptr, 0, 0.0);
  sink->WriteDoubles(nullptr, 0, 0, 0, 0);
  sink->WantMIDI();
  sink->GetLastSecondPeaks(0, nullptr);
  sink->GetPeakInfo(nullptr);
  sink->Extended(0, nullptr, nullptr, nullptr);
  delete sink;
}

TEST(DeclaredInterface, TheSinksSlotsStandInTheirOrder) {
  void* vtable[] = {nullptr,
                    reinterpret_cast<void*>(Recorded<2>),
                    reinterpret_cast<void*>(Recorded<3>),
                    reinterpret_cast<void*>(Recorded<4>),
                    reinterpret_cast<void*>(Recorded<5>),
                    reinterpret_cast<void*>(Recorded<6>),
                    reinterpret_cast<void*>(Recorded<7>),
                    reinterpret_cast<void*>(Recorded<8>),
                    reinterpret_cast<void*>(Recorded<9>),
                    reinterpret_cast<void*>(Recorded<10>),
                    reinterpret_cast<void*>(Recorded<11>),
                    reinterpret_cast<void*>(Recorded<12>),
                    reinterpret_cast<void*>(Recorded<13>),
                    reinterpret_cast<void*>(Recorded<14>),
                    reinterpret_cast<void*>(Recorded<15>)};
  struct {
    void** vtable;
    double start;
  } object = {vtable, 0.0};
  auto* sink = reinterpret_cast<PCM_sink*>(&object);
  slots_called.clear();
  CallEverySlot(sink);
  EXPECT_EQ(slots_called, (std::vector<int>{3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 2}));
}

}  // namespace
}  // namespace sink_test
