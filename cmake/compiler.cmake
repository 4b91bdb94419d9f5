# How every target is compiled.

get_property(several_configurations GLOBAL PROPERTY GENERATOR_IS_MULTI_CONFIG)
if(NOT CMAKE_BUILD_TYPE AND NOT several_configurations)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Release, RelWithDebInfo or Debug" FORCE)
endif()
# What gains from more than -O2 asks for it by itself.
string(REPLACE "-O3" "-O2" CMAKE_CXX_FLAGS_RELEASE "${CMAKE_CXX_FLAGS_RELEASE}")

# The image must not depend on whether a compiler fuses a multiplication with an addition.
add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Wshadow $<$<BOOL:${VELMOR_WERROR}>:-Werror> -ffp-contract=off)

if(VELMOR_SANITIZE STREQUAL "thread")
  set(VELMOR_SANITIZERS -fsanitize=thread)
elseif(VELMOR_SANITIZE)
  # Without the function check: the module calls a placeholder through the signatures of the layer functions a
  # host does not offer, which is sound under the calling convention and what that check reports.
  set(VELMOR_SANITIZERS -fsanitize=address,undefined -fno-sanitize=function -fno-sanitize-recover=all)
  # For the tests' own code: a quarter of its compilation goes into checks of each pointer and reference in it.
  set(VELMOR_TEST_SANITIZERS -fno-sanitize=null,alignment,vptr)
endif()
if(VELMOR_SANITIZE)
  add_compile_options(${VELMOR_SANITIZERS} -fno-omit-frame-pointer)
  add_link_options(${VELMOR_SANITIZERS})
endif()

if(VELMOR_COVERAGE)
  # Counters that live in a file count on through dlclose and _Exit.
  add_compile_options(-fprofile-instr-generate -fcoverage-mapping "SHELL:-mllvm -runtime-counter-relocation")
  add_link_options(-fprofile-instr-generate)
endif()

include_directories(${CMAKE_SOURCE_DIR})

# velmor_reads_command_line(file...): such files are compiled unoptimised, since nobody waits for them and the
# library behind them takes twice as long otherwise.
function(velmor_reads_command_line)
  set_source_files_properties(${ARGN} PROPERTIES COMPILE_OPTIONS -O0)
endfunction()

# velmor_waits_for_others(target...): no sample and no sector goes through these targets, or few do. For the sanitizers
# they are compiled unoptimised: optimising what those put in takes longer than all that their tests would gain.
function(velmor_waits_for_others)
  if(VELMOR_SANITIZE)
    foreach(target IN LISTS ARGN)
      target_compile_options(${target} PRIVATE -O0)
    endforeach()
  endif()
endfunction()
