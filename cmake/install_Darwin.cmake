# On macOS a person copies the module by hand: a flat folder.

install(TARGETS velmor_cd LIBRARY DESTINATION .)
install(FILES LICENSE CHANGELOG.md DESTINATION .)
install(FILES docs/package/INSTALL.macos.txt DESTINATION . RENAME INSTALL.txt)
install(FILES docs/package/LICENCES.macos.txt DESTINATION . RENAME LICENCES.txt)
