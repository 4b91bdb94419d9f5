#include "tools/mac/loader/dylib_image.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace loader {

DylibImage::DylibImage(const std::string& path, const Resolver& resolve) : file_(path) {
  Map();
  try {
    Rebase();
    Bind(resolve);
    Protect();
  } catch (...) {
    munmap(base_, size_);
    throw;
  }
}

DylibImage::~DylibImage() {
  munmap(base_, size_);
}

void DylibImage::Map() {
  for (const macho::Segment& segment : file_.segments) {
    size_ = std::max<size_t>(size_, segment.address + segment.size);
  }
  void* const memory =
      mmap(nullptr, size_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) throw std::runtime_error("no memory for the dylib");
  base_ = static_cast<char*>(memory);
  for (const macho::Segment& segment : file_.segments) {
    memcpy(At(segment.address), file_.data() + segment.file_offset, segment.file_size);
  }
}

void DylibImage::Rebase() {
  for (const uint64_t address : file_.rebases) {
    uint64_t pointer;
    memcpy(&pointer, At(address), sizeof pointer);
    pointer += reinterpret_cast<uint64_t>(base_);
    memcpy(At(address), &pointer, sizeof pointer);
  }
}

void DylibImage::Bind(const Resolver& resolve) {
  for (const macho::Binding& binding : file_.bindings) {
    void* const target = resolve(binding.library, binding.symbol);
    if (!target) throw std::runtime_error(binding.library + " has no " + binding.symbol);
    const char* const pointer = static_cast<char*>(target) + binding.addend;
    memcpy(At(binding.address), &pointer, sizeof pointer);
  }
}

void DylibImage::Protect() {
  for (const macho::Segment& segment : file_.segments) {
    if (segment.name == "__TEXT" &&
        mprotect(At(segment.address), segment.size, PROT_READ | PROT_EXEC) != 0) {
      throw std::runtime_error("the dylib's code cannot be made executable");
    }
  }
}

void DylibImage::RunInitialisers() const {
  const macho::Section* const list = file_.FindSection("__DATA", "__mod_init_func");
  if (!list) return;
  for (uint64_t at = list->address; at < list->address + list->size; at += sizeof(void*)) {
    void (*initialiser)();
    memcpy(&initialiser, At(at), sizeof initialiser);
    initialiser();
  }
}

void* DylibImage::Export(const std::string& name) const {
  const auto found = file_.exports.find(name);
  return found == file_.exports.end() ? nullptr : At(found->second);
}

bool DylibImage::Holds(const void* address) const {
  return address >= base_ && address < base_ + size_;
}

}  // namespace loader
