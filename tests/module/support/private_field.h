// A class's private field, reached without a door in the class: explicit instantiations may name
// private members.
//
//   struct Mapping {
//     friend constexpr auto fieldOf(Mapping);
//   };
//   template struct Field<&YDK_FileRead::m_mmap, Mapping>;
//   reader.*fieldOf(Mapping()) = …;
#pragma once

namespace support_test {

template <auto Member, class Tag>
struct Field {
  friend constexpr auto fieldOf(Tag /*tag*/) { return Member; }
};

}  // namespace support_test
