# What `cmake --install` writes: the layers' static libraries and public headers, the programs
# (host/CMakeLists.txt), a CMake package (find_package(Ravelin COMPONENTS ...)) and a pkg-config
# file. Included at the end of the top-level CMakeLists.txt, once every layer target is complete.

include(CMakePackageConfigHelpers)

set(RAVELIN_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Ravelin)
set(RAVELIN_PKGCONFIG_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(TARGETS ravelin ${RAVELIN_LAYER_TARGETS} EXPORT RavelinTargets
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})

# Each folder's public headers, with the implementation headers they include (detail/) and the
# in-memory platform fakes; folder-private headers (internal/) and the native platform sources
# stay behind.
foreach(target IN LISTS RAVELIN_LAYER_TARGETS)
  get_target_property(folder ${target} EXPORT_NAME)
  file(GLOB_RECURSE headers CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${folder}/*.hpp)
  if(NOT headers)
    continue()
  endif()
  install(DIRECTORY ${folder}/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/ravelin/${folder}
          FILES_MATCHING PATTERN "*.hpp" PATTERN "posix" EXCLUDE PATTERN "win32" EXCLUDE
          PATTERN "internal" EXCLUDE)
endforeach()

# What the layers link from outside the project: a plain library name (shell32 on Windows)
# becomes -l<name> for pkg-config, Threads::Threads the package's Threads dependency and
# -pthread, LibXml2::LibXml2 the package's LibXml2 dependency and -lxml2.
set(RAVELIN_FIND_DEPENDENCIES)
set(system_libs)
foreach(target IN LISTS RAVELIN_LAYER_TARGETS)
  get_target_property(links ${target} INTERFACE_LINK_LIBRARIES)
  if(NOT links)
    continue()
  endif()
  foreach(item IN LISTS links)
    string(REGEX REPLACE "^\\$<LINK_ONLY:(.*)>$" "\\1" item "${item}")
    if(item IN_LIST RAVELIN_LAYER_TARGETS)
      continue()
    elseif(item STREQUAL "Threads::Threads")
      string(APPEND RAVELIN_FIND_DEPENDENCIES "find_dependency(Threads)\n")
      list(APPEND system_libs -pthread)
    elseif(item STREQUAL "LibXml2::LibXml2")
      string(APPEND RAVELIN_FIND_DEPENDENCIES "find_dependency(LibXml2)\n")
      list(APPEND system_libs -lxml2)
    elseif(TARGET ${item} OR item MATCHES "[$<>]")
      message(FATAL_ERROR "The installed package cannot describe the dependency ${item} of "
                          "${target}: teach cmake/RavelinInstall.cmake about it.")
    elseif(item MATCHES "^-")
      list(APPEND system_libs ${item})
    else()
      list(APPEND system_libs -l${item})
    endif()
  endforeach()
endforeach()
list(REMOVE_DUPLICATES system_libs)

# The CMake package. While the major version is 0, a new minor version may change the interface,
# so a request for 0.1 accepts any 0.1.x and nothing else (SameMajorVersion would let 0.2 satisfy
# it); from 1.0 on this becomes SameMajorVersion.
if(PROJECT_VERSION_MAJOR EQUAL 0)
  set(compatibility SameMinorVersion)
else()
  set(compatibility SameMajorVersion)
endif()
set(RAVELIN_COMPONENTS)
foreach(target IN LISTS RAVELIN_LAYER_TARGETS)
  get_target_property(folder ${target} EXPORT_NAME)
  list(APPEND RAVELIN_COMPONENTS ${folder})
endforeach()
configure_package_config_file(${CMAKE_SOURCE_DIR}/cmake/RavelinConfig.cmake.in
                              ${CMAKE_BINARY_DIR}/RavelinConfig.cmake
                              INSTALL_DESTINATION ${RAVELIN_CMAKE_DIR})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/RavelinConfigVersion.cmake
                                 COMPATIBILITY ${compatibility})
install(FILES ${CMAKE_BINARY_DIR}/RavelinConfig.cmake ${CMAKE_BINARY_DIR}/RavelinConfigVersion.cmake
        DESTINATION ${RAVELIN_CMAKE_DIR})
install(EXPORT RavelinTargets NAMESPACE Ravelin:: DESTINATION ${RAVELIN_CMAKE_DIR})

# The pkg-config file. The libraries are static, so Libs names every layer's archive (named
# after its target), the top one first as a static link needs, and what they link from the
# system; Libs.private would reach only `pkg-config --static` users. The prefix is found from the
# file's own place, so the installed tree can move (and `cmake --install --prefix` works).
set(pc_libs)
foreach(target IN LISTS RAVELIN_LAYER_TARGETS)
  get_target_property(type ${target} TYPE)
  if(type STREQUAL "STATIC_LIBRARY")
    list(PREPEND pc_libs -l${target})
  endif()
endforeach()
list(APPEND pc_libs ${system_libs})
list(JOIN pc_libs " " RAVELIN_PC_LIBS)
if(IS_ABSOLUTE ${CMAKE_INSTALL_LIBDIR} OR IS_ABSOLUTE ${CMAKE_INSTALL_INCLUDEDIR})
  set(RAVELIN_PC_PREFIX ${CMAKE_INSTALL_PREFIX})
  set(RAVELIN_PC_LIBDIR ${CMAKE_INSTALL_FULL_LIBDIR})
  set(RAVELIN_PC_INCLUDEDIR ${CMAKE_INSTALL_FULL_INCLUDEDIR})
else()
  # ${pcfiledir} is <prefix>/<libdir>/pkgconfig: one step up per folder of the path.
  set(up "\${pcfiledir}")
  string(REPLACE "/" ";" steps "${RAVELIN_PKGCONFIG_DIR}")
  foreach(step IN LISTS steps)
    string(APPEND up "/..")
  endforeach()
  set(RAVELIN_PC_PREFIX ${up})
  set(RAVELIN_PC_LIBDIR "\${prefix}/${CMAKE_INSTALL_LIBDIR}")
  set(RAVELIN_PC_INCLUDEDIR "\${prefix}/${CMAKE_INSTALL_INCLUDEDIR}")
endif()
configure_file(${CMAKE_SOURCE_DIR}/cmake/ravelin.pc.in ${CMAKE_BINARY_DIR}/ravelin.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/ravelin.pc DESTINATION ${RAVELIN_PKGCONFIG_DIR})
