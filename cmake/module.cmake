# The module: its rooms as one object library (which the class tests link too), and the shared library.

set(VELMOR_CD_SOURCES
    plugin/module_init.cpp)

add_library(velmor_cd_objects OBJECT ${VELMOR_CD_SOURCES})
target_compile_options(velmor_cd_objects PRIVATE -fvisibility=hidden -fvisibility-inlines-hidden)

add_library(velmor_cd MODULE $<TARGET_OBJECTS:velmor_cd_objects>)
set_target_properties(velmor_cd PROPERTIES
  PREFIX "" LINKER_LANGUAGE CXX
  LINK_DEPENDS ${CMAKE_SOURCE_DIR}/cmake/velmor_cd.map)
# A version script: hidden visibility alone still exports weak instances of the standard library's templates.
target_link_options(velmor_cd PRIVATE
  -Wl,--version-script=${CMAKE_SOURCE_DIR}/cmake/velmor_cd.map -Wl,--as-needed)
if(NOT VELMOR_SANITIZE)
  target_link_options(velmor_cd PRIVATE -Wl,-z,defs)
endif()
