# What `cmake --install` lays out, and the Debian package made of it. The programs find what they
# ship in share/korvenatronix beside their bin folder, so these two paths are fixed.

set(KVX_SHARE_DIR share/korvenatronix)
# A umask of the one who installs must not make folders only they can read.
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
# Installing takes the programs as built: scripts/package builds them first, without the tests.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)

install(TARGETS korvenatronix kvx RUNTIME DESTINATION bin)
install(FILES "resources/SAE OBD II CODES.dat" DESTINATION ${KVX_SHARE_DIR})
install(FILES ${KVX_VEHICLES} DESTINATION ${KVX_SHARE_DIR}/vehicles)

# The menu entry and its icon, where desktops look for them.
install(FILES resources/desktop/korvenatronix.desktop DESTINATION share/applications)
install(FILES resources/icons/korvenatronix.svg DESTINATION share/icons/hicolor/scalable/apps)
# scripts/icons renders korvenatronix-<size>.png from the SVG.
file(GLOB KVX_ICONS CONFIGURE_DEPENDS resources/icons/korvenatronix-*.png)
foreach(icon ${KVX_ICONS})
  string(REGEX REPLACE ".*-([0-9]+)\\.png$" "\\1" size ${icon})
  install(FILES ${icon} DESTINATION share/icons/hicolor/${size}x${size}/apps RENAME korvenatronix.png)
endforeach()

# Manual pages carry the version and are installed compressed, as Debian keeps them.
find_program(KVX_GZIP gzip REQUIRED)
set(KVX_MAN_PAGES "")
foreach(page korvenatronix kvx)
  set(page_file ${CMAKE_BINARY_DIR}/man/${page}.1)
  configure_file(docs/man/${page}.1 ${page_file} @ONLY)
  set(compressed ${page_file}.gz)
  add_custom_command(OUTPUT ${compressed}
    COMMAND ${KVX_GZIP} -9nkf ${page_file}
    DEPENDS ${page_file}
    VERBATIM)
  list(APPEND KVX_MAN_PAGES ${compressed})
endforeach()
add_custom_target(kvx_man_pages ALL DEPENDS ${KVX_MAN_PAGES})
install(FILES ${KVX_MAN_PAGES} DESTINATION share/man/man1)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME korvenatronix)
set(CPACK_PACKAGE_CONTACT "Korvenatronix maintainers <maintainers@users.noreply.c-seed-f483017a.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "vehicle diagnostics over a K-line cable, with a virtual vehicle")
# One string, a line of the control file's description a line.
string(JOIN "\n" CPACK_PACKAGE_DESCRIPTION
  "Korvenatronix OBD-II reads live data, trouble codes with their descriptions,"
  "freeze frames, oxygen-sensor and monitor tests from OBD-II cars on ISO 9141-2"
  "and ISO 14230 (KWP2000) through a plain K-line (KKL) cable, records and replays"
  "live data, and reads Nissan and Toyota enhanced data. A virtual vehicle answers"
  "every service without a car. The window is korvenatronix; kvx runs every"
  "service on the command line.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# The Qt libraries come from the programs' own links; a font the windows can draw with does not.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "fonts-dejavu-core")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
