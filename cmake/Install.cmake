# Install rules: the shared library with its soname links, the public headers
# under include/zemxmps/<subsystem>/, the zem program, the correlation
# library beside libzemxmps (where the library looks for it), a CMake
# package (find_package(zemxmps CONFIG) gives zemxmps::zemxmps) and a
# pkg-config file. A consumer compiles against include/zemxmps, so its
# includes read as in this tree: #include "zemmgr/IZEMMgr.h".
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(ZEM_INSTALL_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR}/zemxmps)
set(ZEM_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/zemxmps)

install(TARGETS zemxmps EXPORT zemxmpsTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  INCLUDES DESTINATION ${ZEM_INSTALL_INCLUDEDIR})
install(TARGETS zemqcl LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
foreach(dir ${ZEM_SUBSYSTEMS})
  if(EXISTS ${PROJECT_SOURCE_DIR}/${dir})
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/${dir}/ DESTINATION ${ZEM_INSTALL_INCLUDEDIR}/${dir}
      FILES_MATCHING PATTERN "*.h")
  endif()
endforeach()
if(TARGET zem)
  # The installed program finds the installed library relative to itself.
  set_target_properties(zem PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
  install(TARGETS zem RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

install(EXPORT zemxmpsTargets NAMESPACE zemxmps:: DESTINATION ${ZEM_INSTALL_CMAKEDIR})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/zemxmpsConfig.cmake.in
  ${CMAKE_BINARY_DIR}/zemxmpsConfig.cmake INSTALL_DESTINATION ${ZEM_INSTALL_CMAKEDIR})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/zemxmpsConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/zemxmpsConfig.cmake ${CMAKE_BINARY_DIR}/zemxmpsConfigVersion.cmake
  DESTINATION ${ZEM_INSTALL_CMAKEDIR})

# pkg-config: paths relative to the .pc file, so that the prefix given at
# install time (cmake --install --prefix P) is the one the file names.
file(RELATIVE_PATH ZEM_PC_TO_PREFIX /p/${CMAKE_INSTALL_LIBDIR}/pkgconfig /p)
configure_file(${CMAKE_CURRENT_LIST_DIR}/zemxmps.pc.in ${CMAKE_BINARY_DIR}/zemxmps.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/zemxmps.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
