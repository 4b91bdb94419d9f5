# The folders of an install tree on Linux, and the way from the programs to what they load.

include(GNUInstallDirs)
# Debian looks for a package's documents under the package's name, which knows no underscore.
set(VELMOR_INSTALL_DOCDIR ${CMAKE_INSTALL_DATAROOTDIR}/doc/velmor-cd)
set(VELMOR_INSTALL_LIBDIR ${CMAKE_INSTALL_LIBDIR}/velmor_cd)
file(RELATIVE_PATH VELMOR_LIBRARIES_FROM_PROGRAMS
  ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR}/velmor_cd)
