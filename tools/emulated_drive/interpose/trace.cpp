#include "tools/emulated_drive/interpose/trace.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace velmor::emulated_drive {

namespace {

std::string hex(ByteView bytes) {
  std::string out;
  for (const uint8_t byte : bytes) {
    char digits[4];
    std::snprintf(digits, sizeof digits, "%02X ", byte);
    out += digits;
  }
  return out;
}

}  // namespace

void trace(const std::string& device, ByteView cdb, std::size_t bytes_out, const Reply& reply) {
  const char* file = std::getenv(kTraceVariable);
  if (file == nullptr || *file == '\0') {
    return;
  }
  std::string line = device + ": " + hex(cdb) + " out " + std::to_string(bytes_out) + " in " +
                     std::to_string(reply.data.size());
  if (reply.sense) {
    char sense[24];
    std::snprintf(sense, sizeof sense, "  sense %X/%02X/%02X", reply.sense->key, reply.sense->code,
                  reply.sense->qualifier);
    line += sense;
  }
  line += "\n";
  // Opened anew for every line and appended in one piece: several programs may share the file.
  const int descriptor = ::open(file, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
  if (descriptor >= 0) {
    const ssize_t written = ::write(descriptor, line.data(), line.size());
    static_cast<void>(written);  // a full disk must not disturb what is being traced
    ::close(descriptor);
  }
}

}  // namespace velmor::emulated_drive
