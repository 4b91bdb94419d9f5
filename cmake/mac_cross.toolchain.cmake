# Builds for macOS on Debian: Debian's clang and lld, the headers that scripts/setup_mac.sh fetches, and the stand-in
# SDK of tools/mac/sdk. VELMOR_MAC_PROCESSOR is the processor, x86_64 or arm64.

set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VELMOR_MAC_PROCESSOR)
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR ${VELMOR_MAC_PROCESSOR})
# The oldest systems: the first that such a Mac ran, and the oldest that still matters before it.
set(minimum_x86_64 10.13)
set(minimum_arm64 11.0)
set(target ${VELMOR_MAC_PROCESSOR}-apple-macos${minimum_${VELMOR_MAC_PROCESSOR}})

get_filename_component(checkout ${CMAKE_CURRENT_LIST_DIR} DIRECTORY)
set(fetched ${checkout}/build/mac-sdk)
set(sdk ${checkout}/tools/mac/sdk)

find_program(CMAKE_CXX_COMPILER clang++-14 REQUIRED)
find_program(CMAKE_OBJCXX_COMPILER clang++-14 REQUIRED)
set(CMAKE_CXX_COMPILER_TARGET ${target})
set(CMAKE_OBJCXX_COMPILER_TARGET ${target})
# The compilers are known to work; trying needs a whole SDK.
set(CMAKE_CXX_COMPILER_WORKS ON)
set(CMAKE_OBJCXX_COMPILER_WORKS ON)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
find_program(CMAKE_AR llvm-ar-14 REQUIRED)
find_program(CMAKE_RANLIB llvm-ranlib-14 REQUIRED)
find_program(CMAKE_INSTALL_NAME_TOOL llvm-install-name-tool-14 REQUIRED)

# Without -nostdlibinc the headers of Linux come in. The defines are what the C++ library's configuration step writes.
string(JOIN " " compile_flags
  -stdlib=libc++ -nostdlibinc -nostdinc++
  -D_LIBCPP_ABI_VERSION=1 -D_LIBCPP_ABI_NAMESPACE=__1
  -D_LIBCPP_HAS_NO_VENDOR_AVAILABILITY_ANNOTATIONS -D_LIBCPP_PSTL_CPU_BACKEND_SERIAL
  -isystem ${fetched}/libcxx -isystem ${fetched}/libcxxabi -isystem ${fetched}/libc
  -isystem ${sdk}/frameworks -isystem ${sdk}/foundation)
set(CMAKE_CXX_FLAGS_INIT ${compile_flags})
set(CMAKE_OBJCXX_FLAGS_INIT ${compile_flags})

# For x86-64 the compiler writes unwind tables in two forms, and this linker does not move the addresses in the older one,
# __eh_frame. The system reads the newer one, which holds every function; the older one is left out.
if(VELMOR_MAC_PROCESSOR STREQUAL "x86_64")
  find_program(objcopy llvm-objcopy-14 REQUIRED)
  foreach(language IN ITEMS CXX OBJCXX)
    set(CMAKE_${language}_COMPILE_OBJECT
      "<CMAKE_${language}_COMPILER> <DEFINES> <INCLUDES> <FLAGS> -o <OBJECT> -c <SOURCE>"
      "${objcopy} --remove-section=__TEXT,__eh_frame <OBJECT>")
  endforeach()
  string(REPLACE "<FLAGS>" "-x objective-c++ <FLAGS>" CMAKE_OBJCXX_COMPILE_OBJECT "${CMAKE_OBJCXX_COMPILE_OBJECT}")
endif()

find_program(ld64 ld64.lld-14 REQUIRED)
string(JOIN " " CMAKE_SHARED_LINKER_FLAGS_INIT
  --ld-path=${ld64} -mlinker-version=609 -isysroot ${sdk} -L${fetched}/usr/lib -Wno-unused-command-line-argument -Wl,-adhoc_codesign)
