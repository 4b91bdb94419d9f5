#include "tools/mac/loader/dylib_image.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "tools/mac/loader/processor.h"

namespace loader {

DylibImage::DylibImage(const std::string& path, const Resolver& resolve)
    : m_file(path, kThisProcessor) {
  map();
  try {
    rebase();
    bind(resolve);
    protect();
    m_unwind_tables = std::make_unique<UnwindTables>(m_file, m_base);
  } catch (...) {
    munmap(m_base, m_size);
    throw;
  }
}

DylibImage::~DylibImage() {
  m_unwind_tables.reset();
  munmap(m_base, m_size);
}

void DylibImage::map() {
  for (const macho::Segment& segment : m_file.segments) {
    m_size = std::max<size_t>(m_size, segment.address + segment.size);
  }
  void* const memory =
      mmap(nullptr, m_size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) throw std::runtime_error("no memory for the dylib");
  m_base = static_cast<char*>(memory);
  for (const macho::Segment& segment : m_file.segments) {
    memcpy(at(segment.address), m_file.data() + segment.file_offset, segment.file_size);
  }
}

void DylibImage::rebase() {
  for (const uint64_t address : m_file.rebases) {
    uint64_t pointer;
    memcpy(&pointer, at(address), sizeof pointer);
    pointer += reinterpret_cast<uint64_t>(m_base);
    memcpy(at(address), &pointer, sizeof pointer);
  }
}

void DylibImage::bind(const Resolver& resolve) {
  for (const macho::Binding& binding : m_file.bindings) {
    void* const target = resolve(binding.library, binding.symbol);
    if (!target && !binding.may_be_missing) {
      throw std::runtime_error(binding.library + " has no " + binding.symbol);
    }
    const char* const pointer = target ? static_cast<char*>(target) + binding.addend : nullptr;
    memcpy(at(binding.address), &pointer, sizeof pointer);
  }
}

void DylibImage::protect() {
  for (const macho::Segment& segment : m_file.segments) {
    if (segment.name != "__TEXT") continue;
    // What was just written as data is read as code.
    __builtin___clear_cache(at(segment.address), at(segment.address + segment.size));
    if (mprotect(at(segment.address), segment.size, PROT_READ | PROT_EXEC) != 0) {
      throw std::runtime_error("the dylib's code cannot be made executable");
    }
  }
}

void DylibImage::runInitialisers() const {
  const macho::Section* const list = m_file.findSection("__mod_init_func");
  if (!list) return;
  for (uint64_t at = list->address; at < list->address + list->size; at += sizeof(void*)) {
    void (*initialiser)();
    memcpy(&initialiser, this->at(at), sizeof initialiser);
    initialiser();
  }
}

void* DylibImage::findExport(const std::string& name) const {
  const auto found = m_file.exports.find(name);
  return found == m_file.exports.end() ? nullptr : at(found->second);
}

void* DylibImage::findFunction(const std::string& name) const {
  for (const auto& [address, names] : m_file.symbols) {
    if (std::find(names.begin(), names.end(), name) != names.end()) return at(address);
  }
  return nullptr;
}

}  // namespace loader
