# SPDX-License-Identifier: Apache-2.0
# Installed as include/vortik, lib/vortik and a CMake package; nothing in it holds an absolute path,
# so the tree may be moved.

get_property(libraries GLOBAL PROPERTY VORTIK_LIBRARIES)
get_property(folders GLOBAL PROPERTY VORTIK_FOLDERS)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/vortik)

install(TARGETS ${libraries} vortik_compile EXPORT VortikTargets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}/vortik)
foreach(folder IN LISTS folders)
  file(GLOB headers CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/${folder}/*.h")
  install(FILES ${headers} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/vortik/${folder})
endforeach()
install(EXPORT VortikTargets NAMESPACE Vortik:: DESTINATION ${package_dir})

configure_package_config_file(cmake/VortikConfig.cmake.in
  "${PROJECT_BINARY_DIR}/VortikConfig.cmake" INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file("${PROJECT_BINARY_DIR}/VortikConfigVersion.cmake"
  COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/VortikConfig.cmake"
  "${PROJECT_BINARY_DIR}/VortikConfigVersion.cmake" DESTINATION ${package_dir})
install(FILES LICENSE README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
