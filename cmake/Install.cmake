# What `cmake --install` gives: both libraries, headers, a CMake package and a pkg-config file.
include(CMakePackageConfigHelpers)

install(TARGETS tsvlib2 tsvlib2_static EXPORT TsvLib2Targets)
install(DIRECTORY lib/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tsvlib2 FILES_MATCHING PATTERN "*.h")
install(FILES typelib/TesoviaLib2.idl DESTINATION ${CMAKE_INSTALL_DATADIR}/tsvlib2)

set(package ${CMAKE_INSTALL_LIBDIR}/cmake/TsvLib2)
install(EXPORT TsvLib2Targets NAMESPACE TsvLib2:: DESTINATION ${package})
configure_package_config_file(cmake/TsvLib2Config.cmake.in TsvLib2Config.cmake INSTALL_DESTINATION ${package})
write_basic_package_version_file(TsvLib2ConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/TsvLib2Config.cmake ${PROJECT_BINARY_DIR}/TsvLib2ConfigVersion.cmake
        DESTINATION ${package})

file(RELATIVE_PATH TSV_PREFIX_FROM_PC /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
set(TSV_PC_PRIVATE sqlite3)
if(PostgreSQL_FOUND)
  string(APPEND TSV_PC_PRIVATE ", libpq")
endif()
configure_file(cmake/tsvlib2.pc.in tsvlib2.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/tsvlib2.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
