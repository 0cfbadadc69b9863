# Installation: the library, both headers, the CMake package (target
# zeqcv::zeqcv), a pkg-config file, the tool, README and LICENSE.
include(CMakePackageConfigHelpers)

set(ZEQCV_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/zeqcv)

install(TARGETS zeqcv EXPORT zeqcvTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES ${PROJECT_SOURCE_DIR}/include/zeqcv.h ${PROJECT_SOURCE_DIR}/include/zeqcv.hpp
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT zeqcvTargets NAMESPACE zeqcv:: DESTINATION ${ZEQCV_CMAKE_DIR})

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/zeqcvConfig.cmake.in
  ${PROJECT_BINARY_DIR}/zeqcvConfig.cmake INSTALL_DESTINATION ${ZEQCV_CMAKE_DIR})
# One ABI per major version: 4.x serves any request for 4.y with y <= x.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/zeqcvConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/zeqcvConfig.cmake ${PROJECT_BINARY_DIR}/zeqcvConfigVersion.cmake
  DESTINATION ${ZEQCV_CMAKE_DIR})

# The .pc file finds its prefix from its own place, so an installed tree can
# be moved (or installed with `cmake --install --prefix` elsewhere than configured).
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}" OR IS_ABSOLUTE "${CMAKE_INSTALL_INCLUDEDIR}")
  set(ZEQCV_PC_PREFIX "${CMAKE_INSTALL_PREFIX}")
else()
  file(RELATIVE_PATH zeqcv_pc_up "/p/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/p")
  string(REGEX REPLACE "/$" "" zeqcv_pc_up "${zeqcv_pc_up}")
  set(ZEQCV_PC_PREFIX "\${pcfiledir}/${zeqcv_pc_up}")
endif()
foreach(kind LIBDIR INCLUDEDIR)
  if(IS_ABSOLUTE "${CMAKE_INSTALL_${kind}}")
    set(ZEQCV_PC_${kind} "${CMAKE_INSTALL_${kind}}")
  else()
    set(ZEQCV_PC_${kind} "\${prefix}/${CMAKE_INSTALL_${kind}}")
  endif()
endforeach()
configure_file(${CMAKE_CURRENT_LIST_DIR}/zeqcv.pc.in ${PROJECT_BINARY_DIR}/zeqcv.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zeqcv.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

if(TARGET zeqcv-tool)
  install(TARGETS zeqcv-tool RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()
install(FILES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/LICENSE
  DESTINATION ${CMAKE_INSTALL_DOCDIR})
