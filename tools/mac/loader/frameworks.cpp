#include "tools/mac/loader/frameworks.h"

#include <dlfcn.h>
#include <syslog.h>

#include <cstdio>
#include <cstring>
#include <deque>

#include "abi/disc_recording.h"
#include "abi/quelm_provider.h"
#include "tools/mac/loader/mac_process.h"
#include "tools/mac/loader/objective_c.h"
#include "tools/mac/loader/processor.h"

namespace loader {

namespace {

using Selector = const char*;
using Bool = signed char;  ///< BOOL: a byte for either processor, a bool of C++ on arm64

/// A string that the dylib's compiler laid out.
struct ConstantString {
  void* isa;
  long flags;
  const char* text;
  long length;
};

// ---- Foundation

Object* makeCollection(void* receiver, Selector /*selector*/) {
  return newObject(static_cast<ToyClass*>(receiver)->name);
}
Object* makeArray(void* receiver, Selector selector, unsigned long /*capacity*/) {
  return makeCollection(receiver, selector);
}
void addObject(Object* array, Selector /*selector*/, void* item) {
  array->items.push_back(item);
}
unsigned long count(Object* array, Selector /*selector*/) {
  return array->items.size();
}
void* objectAtIndex(Object* array, Selector /*selector*/, unsigned long index) {
  return array->items.at(index);
}
void setObject(Object* dictionary, Selector /*selector*/, void* value, Object* key) {
  dictionary->entries.emplace_back(key, value);
}
void* objectForKey(Object* dictionary, Selector /*selector*/, const Object* key) {
  for (const auto& [known, value] : dictionary->entries) {
    if (known == key) return value;
  }
  return nullptr;
}
Object* numberWithInt(void* /*receiver*/, Selector /*selector*/, int value) {
  Object* const number = newObject("NSNumber");
  number->number = value;
  return number;
}
Object* numberWithBool(void* receiver, Selector selector, Bool value) {
  return numberWithInt(receiver, selector, value);
}
const char* utf8String(Object* text, Selector /*selector*/) {
  return text->text.c_str();
}

/// A constant of a framework: a variable that holds a string, whose text here is its name.
Object** constant(const std::string& name) {
  static std::map<std::string, Object*> variables;
  Object*& variable = variables[name];
  variable = newObject("NSString");
  variable->text = name;
  return &variable;
}

/// The value that a dictionary has for the constant of that name.
Object* valueFor(const Object* dictionary, const char* name) {
  for (const auto& [key, value] : dictionary->entries) {
    if (key->text == name) return static_cast<Object*>(value);
  }
  fprintf(stderr, "a dictionary lacks %s\n", name);
  abort();
}
int numberFor(const Object* dictionary, const char* name) {
  return static_cast<int>(valueFor(dictionary, name)->number);
}

// ---- DiscRecording

DiscRecordingService* theService() {
  const auto find =
      reinterpret_cast<VelmorGetDiscRecordingFn>(dlsym(RTLD_DEFAULT, "velmorGetDiscRecording"));
  return find ? find() : nullptr;
}

Object* deviceFor(void* handle) {
  static std::map<void*, Object*> devices;
  Object*& device = devices[handle];
  if (!device) {
    device = newObject("DRDevice");
    device->handle = handle;
  }
  return device;
}

Object* devices(void* /*receiver*/, Selector /*selector*/) {
  DiscRecordingService* const service = theService();
  if (!service) return nullptr;
  Object* const list = newObject("NSMutableArray");
  for (int i = 0; i < service->DeviceCount(); ++i) {
    if (void* handle = service->DeviceAt(i)) list->items.push_back(deviceFor(handle));
  }
  return list;
}
void addName(Object* info, const char* key, const char* name) {
  if (!name) return;
  Object* const text = newObject("NSString");
  text->text = name;
  info->entries.emplace_back(*static_cast<Object**>(frameworkSymbol(key)), text);
}
Object* deviceInfo(Object* device, Selector /*selector*/) {
  Object* const info = newObject("NSMutableDictionary");
  addName(info, "_DRDeviceVendorNameKey", theService()->VendorName(device->handle));
  addName(info, "_DRDeviceProductNameKey", theService()->ProductName(device->handle));
  return info;
}
Bool isValid(Object* device, Selector /*selector*/) {
  return theService()->IsValid(device->handle) ? 1 : 0;
}
Bool acquire(Object* device, Selector /*selector*/) {
  return theService()->AcquireExclusiveAccess(device->handle) ? 1 : 0;
}
void giveBack(Object* device, Selector /*selector*/) {
  theService()->ReleaseExclusiveAccess(device->handle);
}
Object* burnForDevice(void* /*receiver*/, Selector /*selector*/, Object* device) {
  void* const handle = theService()->BurnForDevice(device->handle);
  if (!handle) return nullptr;
  Object* const burn = newObject("DRBurn");
  burn->handle = handle;
  return burn;
}
void setBurnProperties(Object* burn, Selector /*selector*/, const Object* values) {
  const std::string& completion = valueFor(values, "DRBurnCompletionActionKey")->text;
  const std::string& failure = valueFor(values, "DRBurnFailureActionKey")->text;
  const DiscBurnProperties properties = {
      .testing = numberFor(values, "DRBurnTestingKey") != 0,
      .appendable = numberFor(values, "DRBurnAppendableKey") != 0,
      .overwrite = numberFor(values, "DRBurnOverwriteDiscKey") != 0,
      .verify = numberFor(values, "DRBurnVerifyDiscKey") != 0,
      .completion_action =
          completion == "DRBurnCompletionActionEject" ? kDiscActionEject : kDiscActionMount,
      .failure_action =
          failure == "DRBurnCompletionActionEject" ? kDiscActionEject : kDiscActionNone};
  theService()->SetProperties(burn->handle, &properties);
}
Object* initWithProducer(Object* track, Selector /*selector*/, void* producer) {
  track->handle = send<void*>(producer, "retain");
  return track;
}
void setTrackProperties(Object* track, Selector /*selector*/, Object* values) {
  track->items = {values};
}

/// A producer of the dylib as the process's service takes it.
class MessagingProducer final : public DiscTrackProducer {
 public:
  explicit MessagingProducer(void* producer) : m_producer(producer) {}

  uint64_t EstimateLengthOfTrack() override {
    return send<uint64_t, void*>(m_producer, "estimateLengthOfTrack:", nullptr);
  }
  bool PrepareTrack() override {
    return send<Bool, void*, void*, void*>(m_producer, "prepareTrack:forBurn:toMedia:", nullptr,
                                           nullptr, nullptr) != 0;
  }
  void CleanupTrackAfterBurn() override {
    send<void, void*>(m_producer, "cleanupTrackAfterBurn:", nullptr);
  }
  uint32_t ProducePreGap(void* buffer, uint32_t length) override {
    return transfer<uint32_t>("producePreGapForTrack:intoBuffer:", buffer, length);
  }
  uint32_t ProduceData(void* buffer, uint32_t length) override {
    return transfer<uint32_t>("produceDataForTrack:intoBuffer:", buffer, length);
  }
  bool PrepareTrackForVerification() override {
    return send<Bool, void*>(m_producer, "prepareTrackForVerification:", nullptr) != 0;
  }
  bool VerifyPreGap(const void* buffer, uint32_t length) override {
    return transfer<Bool>("verifyPreGapForTrack:inBuffer:", buffer, length) != 0;
  }
  bool VerifyData(const void* buffer, uint32_t length) override {
    return transfer<Bool>("verifyDataForTrack:inBuffer:", buffer, length) != 0;
  }
  bool CleanupTrackAfterVerification() override {
    return send<Bool, void*>(m_producer, "cleanupTrackAfterVerification:", nullptr) != 0;
  }

 private:
  template <class Result, class Buffer>
  Result transfer(const std::string& start, Buffer* buffer, uint32_t length) {
    uint32_t flags = 0;
    return send<Result, void*, Buffer*, uint32_t, uint64_t, uint32_t, uint32_t*>(
        m_producer, (start + "length:atAddress:blockSize:ioFlags:").c_str(), nullptr, buffer,
        length, 0, 2352, &flags);
  }

  void* m_producer;
};

DiscTrack trackOf(const Object* track, DiscTrackProducer* producer) {
  const auto* const values = static_cast<const Object*>(track->items.at(0));
  return {.producer = producer,
          .pregap_length = numberFor(values, "DRPreGapLengthKey"),
          .data_form = numberFor(values, "DRDataFormKey"),
          .track_mode = numberFor(values, "DRTrackModeKey"),
          .block_type = numberFor(values, "DRBlockTypeKey"),
          .session_format = numberFor(values, "DRSessionFormatKey"),
          .block_size = numberFor(values, "DRBlockSizeKey"),
          .track_length = numberFor(values, "DRTrackLengthKey")};
}

// ---- The panel and the application

Object* progressPanel(void* /*receiver*/, Selector /*selector*/) {
  return newObject("DRBurnProgressPanel");
}
void setDelegate(Object* window, Selector /*selector*/, void* delegate) {
  window->handle = delegate;
}
void setVerbose(Object* /*panel*/, Selector /*selector*/, Bool /*verbose*/) {}
void beginPanel(Object* panel, Selector /*selector*/, void* burn, void* layout) {
  panel->items = {burn, layout};
}

/// The framework's hold on the producers of a layout, which it gives back when the burn ends, be it
/// by an exception of the process's.
class HeldProducers {
 public:
  explicit HeldProducers(const Object* layout) : m_layout(layout) {}
  ~HeldProducers() {
    for (void* item : m_layout->items) {
      send<void>(static_cast<const Object*>(item)->handle, "release");
    }
  }
  HeldProducers(const HeldProducers&) = delete;
  HeldProducers& operator=(const HeldProducers&) = delete;

 private:
  const Object* m_layout;
};

/// What the panel and the framework do while the application runs modally.
void burn(Object* panel) {
  const auto* const burn_object = static_cast<const Object*>(panel->items.at(0));
  const auto* const layout = static_cast<const Object*>(panel->items.at(1));
  const HeldProducers held(layout);
  std::deque<MessagingProducer> producers;
  std::vector<DiscTrack> tracks;
  for (void* item : layout->items) {
    const auto* const track = static_cast<const Object*>(item);
    tracks.push_back(trackOf(track, &producers.emplace_back(track->handle)));
  }
  theService()->RunProgressPanel(burn_object->handle, tracks.empty() ? nullptr : tracks.data(),
                                 static_cast<int>(tracks.size()));
  send<Bool, void*, void*>(panel->handle, "burnProgressPanel:burnDidFinish:", panel, nullptr);
  send<void, void*>(panel->handle, "burnProgressPanelDidFinish:", nullptr);
}

constexpr long kStopped = -1000;
constexpr long kAborted = -1001;
constexpr long kGoesOn = -1002;

Bool isActive(Object* /*application*/, Selector selector) {
  theProcess().sentToApplication(selector);
  return theProcess().isActive() ? 1 : 0;
}
void stopModal(Object* application, Selector selector) {
  theProcess().sentToApplication(selector);
  application->number = kStopped;
}
/// Burns, and returns what stopping the modal run answers.
long burnModally(Object* application, Object* window) {
  application->number = 0;
  burn(window);
  if (application->number != kStopped) {
    fputs("the modal run was not stopped\n", stderr);
    abort();
  }
  return kStopped;
}
long runModal(Object* application, Selector selector, Object* window) {
  theProcess().sentToApplication(selector);
  return burnModally(application, window);
}

/// The session is an object of its own; `number` are the turns that it has had, or less than 0 when
/// it is over.
Object* beginSession(Object* /*application*/, Selector selector, Object* window) {
  theProcess().sentToApplication(selector);
  Object* const session = newObject("ModalSession");
  session->items = {window};
  return session;
}
long runSession(Object* application, Selector selector, Object* session) {
  theProcess().sentToApplication(selector);
  if (session->number < 0) {
    fputs("the dylib runs a modal session that is over\n", stderr);
    abort();
  }
  if (session->number++ < theProcess().turnsOfSession()) return kGoesOn;
  session->number = -1;
  auto* const panel = static_cast<Object*>(session->items.at(0));
  if (!theProcess().abortsSession()) return burnModally(application, panel);
  const HeldProducers given_up(static_cast<const Object*>(panel->items.at(1)));
  return kAborted;
}
void endSession(Object* /*application*/, Selector selector, Object* session) {
  theProcess().sentToApplication(selector);
  if (session->isa != findToyClass("ModalSession")) abort();
}
void* applicationDelegate(Object* application, Selector /*selector*/) {
  return application->handle;
}
QuelmLookupFn provideWindowing(Object* /*delegate*/, Selector /*selector*/) {
  const auto provider =
      reinterpret_cast<QuelmProviderFn>(dlsym(RTLD_DEFAULT, "quelmGetAPPAPIFunc"));
  return provider ? provider() : nullptr;
}

template <class Function>
void* method(Function* function) {
  return reinterpret_cast<void*>(function);
}

void describeClasses() {
  findToyClass("NSString")->methods = {{"UTF8String", method(utf8String)}};
  findToyClass("NSNumber")->class_methods = {{"numberWithInt:", method(numberWithInt)},
                                             {"numberWithBool:", method(numberWithBool)}};
  ToyClass* const array = findToyClass("NSMutableArray");
  array->class_methods = {{"arrayWithCapacity:", method(makeArray)}};
  array->methods = {{"addObject:", method(addObject)},
                    {"count", method(count)},
                    {"objectAtIndex:", method(objectAtIndex)}};
  ToyClass* const dictionary = findToyClass("NSMutableDictionary");
  dictionary->class_methods = {{"dictionary", method(makeCollection)}};
  dictionary->methods = {{"setObject:forKey:", method(setObject)},
                         {"objectForKey:", method(objectForKey)}};
  findToyClass("NSApplication")->methods = {{"delegate", method(applicationDelegate)},
                                            {"isActive", method(isActive)},
                                            {"runModalForWindow:", method(runModal)},
                                            {"beginModalSessionForWindow:", method(beginSession)},
                                            {"runModalSession:", method(runSession)},
                                            {"endModalSession:", method(endSession)},
                                            {"stopModal", method(stopModal)}};
  findToyClass("HostDelegate")->methods = {{"quelmGetAPPAPIFunc", method(provideWindowing)}};
  ToyClass* const device = findToyClass("DRDevice");
  device->class_methods = {{"devices", method(devices)}};
  device->methods = {{"info", method(deviceInfo)},
                     {"isValid", method(isValid)},
                     {"acquireExclusiveAccess", method(acquire)},
                     {"releaseExclusiveAccess", method(giveBack)}};
  ToyClass* const burn_class = findToyClass("DRBurn");
  burn_class->class_methods = {{"burnForDevice:", method(burnForDevice)}};
  burn_class->methods = {{"setProperties:", method(setBurnProperties)}};
  findToyClass("DRTrack")->methods = {{"initWithProducer:", method(initWithProducer)},
                                      {"setProperties:", method(setTrackProperties)}};
  ToyClass* const panel = findToyClass("DRBurnProgressPanel");
  panel->class_methods = {{"progressPanel", method(progressPanel)}};
  panel->methods = {{"setDelegate:", method(setDelegate)},
                    {"setVerboseProgressStatus:", method(setVerbose)},
                    {"beginProgressPanelForBurn:layout:", method(beginPanel)}};
}

Object** theApplication() {
  static Object* application;
  application = newObject("NSApplication");
  application->handle = newObject("HostDelegate");
  return &application;
}

}  // namespace

void logLine(const void* format, const char* line) {
  if (strcmp(static_cast<const ConstantString*>(format)->text, "%s") != 0) return;
  syslog(LOG_USER | LOG_ERR, "%s", line);
  fputs(line, stderr);
}

void* frameworkSymbol(const std::string& symbol) {
  static const bool kDescribed = (describeClasses(), true);
  static std::map<std::string, void*> known;
  void*& address = known[symbol];
  if (address || !kDescribed) return address;
  for (const char* prefix : {"_OBJC_CLASS_$_", "_OBJC_METACLASS_$_"}) {
    if (symbol.starts_with(prefix)) {
      const std::string name = symbol.substr(strlen(prefix));
      return address = findToyClass(prefix[6] == 'M' ? "meta " + name : name);
    }
  }
  if (void* const variadic = variadicSymbol(symbol)) return address = variadic;
  if (symbol == "___CFConstantStringClassReference") return address = findToyClass("NSString");
  if (symbol == "_NSApp") return address = theApplication();
  if (symbol.starts_with("_DR")) return address = constant(symbol.substr(1));
  return nullptr;
}

}  // namespace loader
