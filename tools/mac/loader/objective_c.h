// As much of an Objective-C runtime as the module's code calls: messages, allocation, reference
// counts. Classes are the dylib's own, read from its metadata, and toy classes written in C++.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace loader {

struct Object;

/// A class of the doubles. Methods are functions of (receiver, selector, arguments…).
struct ToyClass {
  void* words[5] = {};  ///< a class record's, for code that looks at one
  std::string name;
  std::map<std::string, void*> class_methods;
  std::map<std::string, void*> methods;
};

/// An object of a toy class; each class uses what it needs.
struct Object {
  ToyClass* isa = nullptr;
  std::string text;
  long number = 0;
  void* handle = nullptr;
  std::vector<void*> items;
  std::vector<std::pair<Object*, void*>> entries;
};

/// The toy class of that name, made when it is asked for first.
ToyClass* findToyClass(const std::string& name);
/// Lives as long as the runtime.
Object* newObject(const std::string& class_name);

/// The function that answers `selector`; ends the process, saying so, when nothing does.
void* findMethod(void* receiver, const char* selector);

template <class Result, class... Arguments>
Result send(void* receiver, const char* selector, Arguments... arguments) {
  const auto method = reinterpret_cast<Result (*)(void*, const char*, Arguments...)>(
      findMethod(receiver, selector));
  return method(receiver, selector, arguments...);
}

/// libobjc's functions; null when there is none of that name.
void* runtimeSymbol(const std::string& symbol);
/// Instances of the dylib's own classes that are alive.
int instancesAlive();

}  // namespace loader
