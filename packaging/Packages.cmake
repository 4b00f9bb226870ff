# SPDX-License-Identifier: GPL-3.0-or-later
# Three Debian packages: the program, the library, and what is needed to build with the library.
file(STRINGS ${PROJECT_SOURCE_DIR}/VERSION package_version LIMIT_COUNT 1)
string(REGEX REPLACE "^v" "" package_version "${package_version}")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vantrel)
set(CPACK_PACKAGE_VERSION ${package_version})
# CPack would put any other summary in front of the descriptions below, whose first line is one.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${CMAKE_PROJECT_NAME} built using CMake")
set(CPACK_PACKAGE_CONTACT "The vantrel developers <vantrel@example.org>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL program library development)
set(CPACK_COMPONENTS_GROUPING IGNORE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME vantrel)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SHLIBDEPS ON)
set(CPACK_COMPONENT_PROGRAM_DESCRIPTION
"listen to, send and decode infrared remote-control signals
vantrel works with a USB infrared receiver and transmitter. It prints the
timings of what it hears in several text formats, sends such timings, and
decodes them with three families of decoders. Decoding needs no device.")
set(CPACK_DEBIAN_PROGRAM_PACKAGE_CONTROL_EXTRA
    ${CMAKE_CURRENT_SOURCE_DIR}/debian/postinst ${CMAKE_CURRENT_SOURCE_DIR}/debian/postrm)

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libdecodeir2)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_SOURCE_DIR}/debian/triggers
    ${CMAKE_CURRENT_SOURCE_DIR}/debian/library/postinst
    ${CMAKE_CURRENT_SOURCE_DIR}/debian/library/postrm
    ${CMAKE_CURRENT_BINARY_DIR}/shlibs)
file(CONFIGURE OUTPUT shlibs CONTENT "libDecodeIR 2 libdecodeir2 (>= @package_version@)\n" @ONLY)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION
"name the protocol of an infrared signal from its timings
The library looks for the frames of well over a hundred remote-control
protocols in a list of timings and says which one it is, with its device and
function numbers.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libdecodeir-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libdecodeir2 (= ${package_version})")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
"name the protocol of an infrared signal from its timings (development)
The header, the pkg-config file and the manual page of libDecodeIR.")

# Every package carries its licence and its changelog.
set(packages program vantrel library libdecodeir2 development libdecodeir-dev)
configure_file(debian/changelog.in changelog @ONLY)
add_custom_command(OUTPUT changelog.gz
  COMMAND ${GZIP} -9n < changelog > changelog.gz DEPENDS debian/changelog.in VERBATIM)
add_custom_target(changelog ALL DEPENDS changelog.gz)
while(packages)
  list(POP_FRONT packages component package)
  set(documents ${CMAKE_INSTALL_DATADIR}/doc/${package})
  install(FILES debian/copyright DESTINATION ${documents} COMPONENT ${component})
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz
          DESTINATION ${documents} COMPONENT ${component})
endwhile()
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/vantrel COMPONENT program)

include(CPack)
