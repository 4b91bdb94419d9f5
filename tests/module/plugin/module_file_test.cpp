// The module's file: what it shows to others and what it asks of them.
#include <elf.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <set>

#include "tests/fake_host/loaded_module.h"

namespace {

using testing::ElementsAre;
using testing::IsSubsetOf;

// The dynamic section and symbol table of a shared object.
class SharedObject {
 public:
  explicit SharedObject(const std::string& path) : m_bytes(fake_host::readText(path)) {
    m_header = at<Elf64_Ehdr>(0);
    EXPECT_EQ(std::memcmp(m_header->e_ident, ELFMAG, SELFMAG), 0);
    EXPECT_EQ(m_header->e_machine, VELMOR_ELF_MACHINE);
    EXPECT_EQ(m_header->e_type, ET_DYN);
  }

  std::multiset<std::string> exportedSymbols() const {
    std::multiset<std::string> names;
    const Elf64_Shdr* table = section(SHT_DYNSYM);
    for (uint64_t i = 0; i < table->sh_size / sizeof(Elf64_Sym); ++i) {
      const auto* symbol = at<Elf64_Sym>(table->sh_offset + i * sizeof(Elf64_Sym));
      const auto visibility = ELF64_ST_VISIBILITY(symbol->st_other);
      if (symbol->st_shndx == SHN_UNDEF || ELF64_ST_BIND(symbol->st_info) == STB_LOCAL) continue;
      if (visibility == STV_HIDDEN || visibility == STV_INTERNAL) continue;
      names.insert(text(table, symbol->st_name));
    }
    return names;
  }

  std::vector<std::string> needed() const {
    std::vector<std::string> names;
    const Elf64_Shdr* dynamic = section(SHT_DYNAMIC);
    for (uint64_t i = 0; i < dynamic->sh_size / sizeof(Elf64_Dyn); ++i) {
      const auto* entry = at<Elf64_Dyn>(dynamic->sh_offset + i * sizeof(Elf64_Dyn));
      if (entry->d_tag == DT_NEEDED) names.push_back(text(dynamic, entry->d_un.d_val));
    }
    return names;
  }

 private:
  template <class Record>
  const Record* at(uint64_t offset) const {
    return reinterpret_cast<const Record*>(m_bytes.data() + offset);
  }
  const Elf64_Shdr* section(uint32_t type) const {
    for (uint64_t i = 0; i < m_header->e_shnum; ++i) {
      const auto* section = at<Elf64_Shdr>(m_header->e_shoff + i * sizeof(Elf64_Shdr));
      if (section->sh_type == type) return section;
    }
    throw std::runtime_error("the module has no section of type " + std::to_string(type));
  }
  std::string text(const Elf64_Shdr* user, uint64_t offset) const {
    const auto* strings = at<Elf64_Shdr>(m_header->e_shoff + user->sh_link * sizeof(Elf64_Shdr));
    return m_bytes.data() + strings->sh_offset + offset;
  }

  std::string m_bytes;
  const Elf64_Ehdr* m_header = nullptr;
};

TEST(ModuleFile, ExportsTheEntryAndTheLayersHookAndNothingElse) {
  const SharedObject module(fake_host::LoadedModule::file());
  EXPECT_THAT(module.exportedSymbols(), ElementsAre("QUELM_dllMain", "VelmorPluginEntry"));
}

TEST(ModuleFile, NeedsNothingButTheCAndCppRuntime) {
#ifdef VELMOR_SANITIZED
  GTEST_SKIP() << "a sanitizer's runtime needs more";
#endif
  const SharedObject module(fake_host::LoadedModule::file());
  EXPECT_THAT(module.needed(),
              IsSubsetOf({"libstdc++.so.6", "libm.so.6", "libgcc_s.so.1", "libc.so.6",
                          "ld-linux-x86-64.so.2", "ld-linux-aarch64.so.1"}));
}

TEST(ModuleFile, IsCalledVelmorCd) {
  const std::string file = fake_host::LoadedModule::file();
  EXPECT_TRUE(file.ends_with("/velmor_cd.so")) << file;
}

}  // namespace
