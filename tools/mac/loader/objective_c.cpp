#include "tools/mac/loader/objective_c.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "tools/mac/loader/processor.h"

namespace loader {

namespace {

// What the compiler writes for a class of the dylib (public records of the runtime).
struct MethodList {
  uint32_t entry_size, count;
  struct Method {
    const char *name, *types;
    void* function;
  } methods[1];
};
struct ClassConstants {
  uint32_t flags, instance_start, instance_size, reserved;
  const void* variable_layout;
  const char* name;
  const MethodList* methods;
};
struct DylibClass {
  DylibClass* isa;
  void* superclass;
  void *cache, *vtable;
  const ClassConstants* constants;
};

std::map<std::string, std::unique_ptr<ToyClass>>& toyClasses() {
  static std::map<std::string, std::unique_ptr<ToyClass>> classes;
  return classes;
}

std::vector<std::unique_ptr<Object>>& objects() {
  static std::vector<std::unique_ptr<Object>> all;
  return all;
}

std::map<void*, int>& instances() {
  static std::map<void*, int> counts;
  return counts;
}

ToyClass* asToyClass(const void* address) {
  for (const auto& [name, toy] : toyClasses()) {
    if (toy.get() == address) return toy.get();
  }
  return nullptr;
}

void* methodOf(const std::map<std::string, void*>& methods, const char* selector) {
  const auto found = methods.find(selector);
  return found == methods.end() ? nullptr : found->second;
}

void* methodOfDylibClass(const DylibClass* dylib_class, const char* selector) {
  const MethodList* const list = dylib_class->constants->methods;
  for (uint32_t i = 0; list && i < list->count; ++i) {
    if (strcmp(list->methods[i].name, selector) == 0) return list->methods[i].function;
  }
  return methodOf(static_cast<ToyClass*>(dylib_class->superclass)->methods, selector);
}

void* lookUp(void* receiver, const char* selector) {
  if (const ToyClass* toy = asToyClass(receiver)) return methodOf(toy->class_methods, selector);
  void* isa;
  memcpy(&isa, receiver, sizeof isa);
  if (const ToyClass* toy = asToyClass(isa)) {
    if (void* method = methodOf(toy->methods, selector)) return method;
    return methodOf(findToyClass("NSObject")->methods, selector);
  }
  return methodOfDylibClass(static_cast<DylibClass*>(isa), selector);
}

void* itself(void* receiver, const char* /*selector*/) {
  return receiver;
}

signed char responds(void* receiver, const char* /*selector*/, const char* wanted) {
  return lookUp(receiver, wanted) != nullptr ? 1 : 0;
}

void* allocateOf(void* wanted) {
  if (const ToyClass* toy = asToyClass(wanted)) return newObject(toy->name);
  auto* const dylib_class = static_cast<DylibClass*>(wanted);
  void* const instance = calloc(1, dylib_class->constants->instance_size);
  memcpy(instance, &wanted, sizeof wanted);
  instances()[instance] = 1;
  return instance;
}

// A message to a class that is not there answers nil.
void* allocate(void* wanted) {
  return wanted ? allocateOf(wanted) : nullptr;
}

void* allocateAndInitialise(void* wanted) {
  void* const object = allocate(wanted);
  return object ? send<void*>(object, "init") : nullptr;
}

void release(void* object) {
  const auto found = instances().find(object);
  if (found == instances().end() || --found->second > 0) return;
  instances().erase(found);
  free(object);
}

void* retainObject(void* object) {
  const auto found = instances().find(object);
  if (found != instances().end()) ++found->second;
  return object;
}

void* retain(void* object, const char* /*selector*/) {
  return retainObject(object);
}

void releaseMessage(void* object, const char* /*selector*/) {
  release(object);
}

}  // namespace

ToyClass* findToyClass(const std::string& name) {
  std::unique_ptr<ToyClass>& toy = toyClasses()[name];
  if (!toy) {
    toy = std::make_unique<ToyClass>();
    toy->name = name;
    if (name == "NSObject") {
      toy->methods = {{"init", reinterpret_cast<void*>(&itself)},
                      {"respondsToSelector:", reinterpret_cast<void*>(&responds)},
                      {"retain", reinterpret_cast<void*>(&retain)},
                      {"release", reinterpret_cast<void*>(&releaseMessage)}};
    }
  }
  return toy.get();
}

Object* newObject(const std::string& class_name) {
  objects().push_back(std::make_unique<Object>());
  objects().back()->isa = findToyClass(class_name);
  return objects().back().get();
}

void* findMethod(void* receiver, const char* selector) {
  if (void* method = lookUp(receiver, selector)) return method;
  fprintf(stderr, "the dylib sends %s to an object that does not answer it\n", selector);
  abort();
}

int instancesAlive() {
  return static_cast<int>(instances().size());
}

void* loaderFindMethod(void* receiver, const char* selector) {
  return findMethod(receiver, selector);
}

void* runtimeSymbol(const std::string& symbol) {
  static void* empty_cache[2];
  if (symbol == "_objc_msgSend") return reinterpret_cast<void*>(&loaderSendMessage);
  if (symbol == "_objc_alloc") return reinterpret_cast<void*>(&allocate);
  if (symbol == "_objc_alloc_init") return reinterpret_cast<void*>(&allocateAndInitialise);
  if (symbol == "_objc_retain") return reinterpret_cast<void*>(&retainObject);
  if (symbol == "_objc_release") return reinterpret_cast<void*>(&release);
  if (symbol == "__objc_empty_cache") return empty_cache;
  return nullptr;
}

}  // namespace loader
