# Builds for macOS on Debian: Debian's clang and lld, the headers that scripts/setup_mac.sh fetches, and the stand-in
# SDK of tools/mac/sdk.

set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

get_filename_component(checkout ${CMAKE_CURRENT_LIST_DIR} DIRECTORY)
set(fetched ${checkout}/build/mac-sdk)
set(sdk ${checkout}/tools/mac/sdk)

find_program(CMAKE_CXX_COMPILER clang++-14 REQUIRED)
find_program(CMAKE_OBJCXX_COMPILER clang++-14 REQUIRED)
set(CMAKE_CXX_COMPILER_TARGET x86_64-apple-macos10.13)
set(CMAKE_OBJCXX_COMPILER_TARGET x86_64-apple-macos10.13)
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
find_program(ld64 ld64.lld-14 REQUIRED)
string(JOIN " " CMAKE_SHARED_LINKER_FLAGS_INIT
  --ld-path=${ld64} -mlinker-version=609 -isysroot ${sdk} -L${fetched}/usr/lib -Wno-unused-command-line-argument -Wl,-adhoc_codesign)
