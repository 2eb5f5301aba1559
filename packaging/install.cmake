# What `cmake --install` puts where, and the Debian package made from it by CPack.
#
# Two kinds of users, two components, and a Debian package of each:
#   commands     kzStartLocal and kzLocalCache in bin/, their manual pages, an example
#                systemd unit: what an administrator installs (package kzstartlocal).
#   development  the subsystem libraries in lib/<arch>/, their headers in
#                include/kz/<subsystem>/, the CMake package "kz" and the pkg-config file
#                kz.pc: another program of the suite does `find_package(kz CONFIG REQUIRED)`
#                and links kz::strings, kz::files, ..., each imported target bringing the
#                subsystems it stands on, or builds with `pkg-config --cflags --libs kz`
#                (package libkz-dev).
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

install(TARGETS kzStartLocal kzLocalCache RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT commands)

# Manual pages, with the version put in, compressed as Debian keeps them.
foreach(page kzStartLocal kzLocalCache)
  configure_file(packaging/${page}.1.in ${page}.1 @ONLY)
  add_custom_command(OUTPUT ${page}.1.gz
    COMMAND gzip -9nc ${CMAKE_CURRENT_BINARY_DIR}/${page}.1 > ${page}.1.gz
    DEPENDS ${CMAKE_CURRENT_BINARY_DIR}/${page}.1 VERBATIM)
  list(APPEND kz_manual_pages ${CMAKE_CURRENT_BINARY_DIR}/${page}.1.gz)
endforeach()
add_custom_target(manual_pages ALL DEPENDS ${kz_manual_pages})
install(FILES ${kz_manual_pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT commands)
install(FILES packaging/kzStartLocal.service
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/kzstartlocal/examples COMPONENT commands)
# Every Debian package carries its copyright file and its changelog, compressed; both
# packages come from one source, and share them.
add_custom_command(OUTPUT changelog.Debian.gz
  COMMAND gzip -9nc ${PROJECT_SOURCE_DIR}/packaging/changelog > changelog.Debian.gz
  DEPENDS ${PROJECT_SOURCE_DIR}/packaging/changelog VERBATIM)
add_custom_target(debian_changelog ALL DEPENDS ${CMAKE_CURRENT_BINARY_DIR}/changelog.Debian.gz)
foreach(component_and_package commands:kzstartlocal development:libkz-dev)
  string(REPLACE ":" ";" pair ${component_and_package})
  list(GET pair 0 component)
  list(GET pair 1 package)
  install(FILES packaging/copyright ${CMAKE_CURRENT_BINARY_DIR}/changelog.Debian.gz
          DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package} COMPONENT ${component})
endforeach()

# The shared code: one library per subsystem, exported under the subsystem's folder name.
foreach(subsystem ${KZ_SUBSYSTEMS})
  set_target_properties(kz_${subsystem} PROPERTIES EXPORT_NAME ${subsystem})
  add_library(kz::${subsystem} ALIAS kz_${subsystem})
  install(TARGETS kz_${subsystem} EXPORT kzTargets
          ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
  install(DIRECTORY ${subsystem}/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kz/${subsystem}
          COMPONENT development FILES_MATCHING PATTERN "*.h" PATTERN linux EXCLUDE)
endforeach()
set(kz_cmake_dir ${CMAKE_INSTALL_LIBDIR}/cmake/kz)
install(EXPORT kzTargets NAMESPACE kz:: DESTINATION ${kz_cmake_dir} COMPONENT development)
configure_package_config_file(packaging/kzConfig.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/kzConfig.cmake
                              INSTALL_DESTINATION ${kz_cmake_dir})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/kzConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/kzConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/kzConfigVersion.cmake
        DESTINATION ${kz_cmake_dir} COMPONENT development)
# pkg-config: kz.pc names the libraries in the order a static link needs, each before those
# it uses. It is written when it is installed, for the prefix the files land in.
set(kz_link_order ${KZ_SUBSYSTEMS})
list(REVERSE kz_link_order)
list(TRANSFORM kz_link_order PREPEND "-lkz_")
list(JOIN kz_link_order " " kz_libs)
install(CODE "
  set(prefix \"\${CMAKE_INSTALL_PREFIX}\")
  set(kz_libs \"${kz_libs}\")
  set(kz_libdir \"${CMAKE_INSTALL_LIBDIR}\")
  set(kz_includedir \"${CMAKE_INSTALL_INCLUDEDIR}\")
  set(kz_version \"${PROJECT_VERSION}\")
  configure_file(\"${PROJECT_SOURCE_DIR}/packaging/kz.pc.in\"
                 \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/pkgconfig/kz.pc\" @ONLY)
  " COMPONENT development)

# The Debian packages: kzstartlocal for administrators (the commands component) and
# libkz-dev for developers of the suite (the development component), from one source.
set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL commands development)
set(CPACK_PACKAGE_NAME kzstartlocal)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_DEBIAN_PACKAGE_RELEASE ${KZ_PACKAGE_RELEASE})
set(CPACK_DEBIAN_PACKAGE_SOURCE kzstartlocal)
set(CPACK_PACKAGE_CONTACT "kzStartLocal maintainers <maintainers@users.noreply.c-seed-d06f011f.example>")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_SET_DESTDIR ON) # the install runs for the prefix /usr, as kz.pc must say
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)

set(CPACK_DEBIAN_COMMANDS_PACKAGE_NAME kzstartlocal)
set(CPACK_DEBIAN_COMMANDS_PACKAGE_SECTION admin)
set(CPACK_DEBIAN_COMMANDS_PACKAGE_SHLIBDEPS ON)
set(CPACK_COMPONENT_COMMANDS_DESCRIPTION "mirrors a render-farm server's local folder to the network folder
kzStartLocal runs beside the render-farm server (kzServerconsole) and,
while the server runs, mirrors its log files and job database from its fast
local folder to the farm's network folder every seven seconds. kzLocalCache
primes a workstation's local cache with an application of the suite and its
libraries.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libkz-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libstdc++-12-dev")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "render-farm suite's shared code (static libraries and headers)
The shared code of the kzStartLocal suite as static libraries with their
headers: fixed-capacity strings, files and folders, buffers and checksums,
timestamps, process tables and launching, and the local executable cache.
It comes with the CMake package kz (find_package(kz) gives kz::strings,
kz::files, ...) and the pkg-config file kz.pc.")
include(CPack)
