// The state behind the doubles of the application object and of DiscRecording: what a test scripts
// and what it finds recorded. Plain C++, apart from the Objective-C classes that answer from it.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace doubles {

struct Device {
  std::string name;                                  ///< of this device in the record
  std::optional<std::string> vendor = "PLAYWRIGHT";  ///< nullopt: the description lacks it
  std::optional<std::string> product = "DW-1";
  bool has_description = true;
  bool valid = true;
  bool grants_access = true;
  bool gives_burn = true;
  void* object = nullptr;  ///< the DRDevice, once `setDevices` has made it
};

/// Keys and values as they were put into a dictionary, in that order: "i 2352" for an integer
/// number, "bool 1" for a truth value, the constant's name for a constant.
using Properties = std::vector<std::pair<std::string, std::string>>;

struct FrameworkState {
  // Script.
  std::vector<Device> devices;
  bool has_device_list = true;  ///< false: nil instead of a list
  bool active = true;           ///< the application is in the foreground
  bool aborts = false;          ///< a modal session ends with the next turn, the burn or not
  /// What goes on in each turn of a modal run; ends it through `finishBurn`.
  std::function<void()> on_turn;

  // Record.
  std::vector<std::string> calls;
  std::vector<std::string> inserted_keys;  ///< since the last dictionary was handed over
  Properties burn_properties;
  std::map<void*, Properties> track_properties;  ///< by DRTrack
  std::map<void*, void*> producers;              ///< by DRTrack, retained there
  std::vector<void*> layout;                     ///< DRTracks, in order
  std::vector<unsigned long> array_capacities;   ///< asked of NSMutableArray
  /// In which form numbers were made, by their values: "int 150", "bool 1". (Once made, an integer
  /// of any form looks the same here.)
  std::vector<std::string> numbers;
  bool delegate_reports_itself = true;  ///< its answer to `burnDidFinish:`
  std::map<std::string, int> created;   ///< instances by class
  std::map<std::string, int> gone;
  /// How many held a recorder's description each time that a name was looked up in it.
  std::vector<unsigned long> description_holders;
  std::vector<std::string> log_lines;  ///< of NSLog, without the prefix

  // Of the classes.
  void* panel_delegate = nullptr;
  bool stopped = false;
  int turns = 0;

  void note(std::string call) { calls.push_back(std::move(call)); }
};

/// What the doubles of this process answer from.
FrameworkState& theFrameworks();

}  // namespace doubles
