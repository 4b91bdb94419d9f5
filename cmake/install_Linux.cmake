# The install tree on Linux, and the Debian package made of it.

install(TARGETS velmor_cd LIBRARY DESTINATION ${VELMOR_INSTALL_LIBDIR})
if(NOT VELMOR_BUILD_PROGRAMS)
  return()
endif()
install(TARGETS velmor-render velmor-cdcheck velmor-ddp RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS velmor_recording LIBRARY DESTINATION ${VELMOR_INSTALL_LIBDIR})
install(FILES docs/velmor-render.1 docs/velmor-cdcheck.1 docs/velmor-ddp.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES LICENSE DESTINATION ${VELMOR_INSTALL_DOCDIR} RENAME copyright)
install(FILES docs/package/LICENCES.linux.txt DESTINATION ${VELMOR_INSTALL_DOCDIR} RENAME LICENCES.txt)
install(FILES docs/package/INSTALL.linux.txt DESTINATION ${VELMOR_INSTALL_DOCDIR} RENAME INSTALL.txt)
install(FILES CHANGELOG.md DESTINATION ${VELMOR_INSTALL_DOCDIR})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME velmor-cd)
set(CPACK_PACKAGE_CONTACT "the velmor_cd developers")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "render a mix to an audio CD image, check it and burn it
 velmor-render lays audio files end to end, streams them through the velmor_cd
 plug-in and writes a raw CD image with its cue sheet, or burns the disc.
 velmor-cdcheck says which readers will not take a sheet and its image.
 velmor-ddp makes, checks and takes apart the DDP set that a plant presses from.")
# The libraries that the programs and the recording service link are found out from the files themselves.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
include(CPack)
