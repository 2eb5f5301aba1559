# What `cmake --install` puts where, and the Debian package made from it by CPack.
#
# Two kinds of users, two components:
#   commands     kzStartLocal and kzLocalCache in bin/, their manual pages, an example
#                systemd unit: what an administrator installs (the Debian package).
#   development  the subsystem libraries in lib/, their headers in include/kz/<subsystem>/,
#                and the CMake package "kz": another program of the suite does
#                `find_package(kz CONFIG REQUIRED)` and links kz::strings, kz::files, ...,
#                each imported target bringing the subsystems it stands on.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

install(TARGETS kzStartLocal kzLocalCache RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT commands)

# Manual pages, compressed as Debian keeps them.
foreach(page kzStartLocal kzLocalCache)
  add_custom_command(OUTPUT ${page}.1.gz
    COMMAND gzip -9nc ${PROJECT_SOURCE_DIR}/packaging/${page}.1 > ${page}.1.gz
    DEPENDS ${PROJECT_SOURCE_DIR}/packaging/${page}.1 VERBATIM)
  list(APPEND kz_manual_pages ${CMAKE_CURRENT_BINARY_DIR}/${page}.1.gz)
endforeach()
add_custom_target(manual_pages ALL DEPENDS ${kz_manual_pages})
install(FILES ${kz_manual_pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT commands)
install(FILES packaging/kzStartLocal.service
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/kzstartlocal/examples COMPONENT commands)
# Every Debian package carries its copyright file and its changelog, compressed.
add_custom_command(OUTPUT changelog.Debian.gz
  COMMAND gzip -9nc ${PROJECT_SOURCE_DIR}/packaging/changelog > changelog.Debian.gz
  DEPENDS ${PROJECT_SOURCE_DIR}/packaging/changelog VERBATIM)
add_custom_target(debian_changelog ALL DEPENDS ${CMAKE_CURRENT_BINARY_DIR}/changelog.Debian.gz)
install(FILES packaging/copyright ${CMAKE_CURRENT_BINARY_DIR}/changelog.Debian.gz
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/kzstartlocal COMPONENT commands)

# The shared code: one library per subsystem, exported under the subsystem's folder name.
foreach(subsystem strings platform time buffers files process exe_cache)
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

# The Debian package for administrators: the commands component only.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kzstartlocal)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_PACKAGE_CONTACT "kzStartLocal maintainers <maintainers@users.noreply.c-seed-d06f011f.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "mirrors a render-farm server's local folder to the network folder")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "kzStartLocal runs beside the render-farm server (kzServerconsole) and,
while the server runs, mirrors its log files and job database from its fast
local folder to the farm's network folder every seven seconds. kzLocalCache
primes a workstation's local cache with an application of the suite and its
libraries.")
set(CPACK_DEBIAN_PACKAGE_SECTION admin)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
# One package, made from the commands component only.
set(CPACK_INSTALL_CMAKE_PROJECTS "${CMAKE_BINARY_DIR};${PROJECT_NAME};commands;/")
include(CPack)
