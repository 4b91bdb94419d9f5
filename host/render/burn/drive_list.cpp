#include "host/render/burn/drive_list.h"

#include <strings.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <optional>

#include "disc/failure.h"
#include "disc/text/phrases.h"
#include "host/render/terminal/json_schema.h"

namespace velmor::render {

namespace {

using recording::ListedDrive;
using Json = nlohmann::ordered_json;

constexpr const char* kLookAtTheList = "; velmor-render --list-drives shows what is there";

std::optional<size_t> asNumber(const std::string& text) {
  size_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

std::string nameOf(const ListedDrive& drive) {
  return recording::driveName(drive.vendor, drive.product, drive.address);
}

bool contains(const std::string& text, const std::string& part) {
  const auto equal = [](char a, char b) { return strncasecmp(&a, &b, 1) == 0; };
  return std::search(text.begin(), text.end(), part.begin(), part.end(), equal) != text.end();
}

bool isNamed(const ListedDrive& drive, const std::string& wanted) {
  return !wanted.empty() && (drive.address == wanted || contains(nameOf(drive), wanted));
}

std::string numberAndName(const std::vector<ListedDrive>& drives, size_t number) {
  return std::to_string(number) + " " + disc::inQuotes(nameOf(drives[number]));
}

Json driveJson(recording::Service& service, const ListedDrive& drive, size_t number) {
  Json json = {{"number", number},         {"address", drive.address},   {"vendor", drive.vendor},
               {"product", drive.product}, {"revision", drive.revision}, {"usable", drive.usable}};
  if (drive.usable) json["disc"] = service.describeDisc(drive);
  if (!drive.usable) json["obstacle"] = drive.obstacle;
  return json;
}

}  // namespace

size_t chooseDrive(const std::vector<ListedDrive>& drives, const std::string& wanted) {
  if (const auto number = asNumber(wanted)) {
    if (*number < drives.size()) return *number;
    throw Failure("there is no drive " + disc::inQuotes(wanted) + ": " +
                  (drives.empty() ? "none was found"
                                  : disc::counted(static_cast<int64_t>(drives.size()), "drive") +
                                        " found, counting from 0") +
                  kLookAtTheList);
  }
  std::vector<size_t> named;
  for (size_t i = 0; i < drives.size(); ++i) {
    if (isNamed(drives[i], wanted)) named.push_back(i);
  }
  if (named.size() == 1) return named.front();
  if (named.empty()) throw Failure("there is no drive " + disc::inQuotes(wanted) + kLookAtTheList);
  throw Failure(disc::inQuotes(wanted) + " may be " + numberAndName(drives, named[0]) + " or " +
                numberAndName(drives, named[1]) + "; give the number with --drive");
}

void listDrives(recording::Service& service, bool json) {
  const std::vector<ListedDrive> drives = service.drives();
  if (json) {
    Json list = Json::array();
    for (size_t i = 0; i < drives.size(); ++i) list.push_back(driveJson(service, drives[i], i));
    const Json object = {{"schema_version", kJsonSchemaVersion}, {"drives", list}};
    printf("%s\n", object.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
    return;
  }
  if (drives.empty()) puts("No drive was found.");
  for (size_t i = 0; i < drives.size(); ++i) {
    const ListedDrive& drive = drives[i];
    printf("%2zu  %s: %s\n", i, nameOf(drive).c_str(),
           drive.usable ? service.describeDisc(drive).c_str() : drive.obstacle.c_str());
  }
}

}  // namespace velmor::render
