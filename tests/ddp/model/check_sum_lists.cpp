// The product's home for the same rules is disc/ddp.
#include "tests/ddp/model/check_sum_lists.h"

#include "tests/kit/child_process.h"

namespace ddp_model {
namespace {

/// Python's zlib counts here, the names come behind the script.
constexpr const char* kCrcScript =
    "import sys, zlib\n"
    "print('[CRC32 Checksum]')\n"
    "for name in sys.argv[1:]:\n"
    "    print('%s=%08X' % (name, zlib.crc32(open(name, 'rb').read())))\n";

std::string printedBy(std::vector<std::string> command, const std::string& folder,
                      const std::vector<std::string>& names) {
  command.insert(command.end(), names.begin(), names.end());
  test_kit::ProcessOptions options;
  options.folder = folder;
  return test_kit::runProcess(command, options).all;
}

}  // namespace

std::string md5List(const std::string& folder, const std::vector<std::string>& names) {
  return printedBy({"md5sum", "--binary"}, folder, names);
}

std::string crcList(const std::string& folder, const std::vector<std::string>& names) {
  return printedBy({"python3", "-c", kCrcScript}, folder, names);
}

}  // namespace ddp_model
