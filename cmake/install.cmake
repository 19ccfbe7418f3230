# What `cmake --install` puts where: the plug-in into its plug-in directory,
# the middleware contract and the simulator for a middleware's build, and
# the packages (pkg-config and CMake) that find them.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(ORVANE_PLUGIN_DIR "lib/orvane/plugins" CACHE STRING
    "Where the plug-in library goes, relative to the prefix (or absolute)")
set(ORVANE_INCLUDE_DIR "${CMAKE_INSTALL_INCLUDEDIR}/orvane")

install(TARGETS nporvane LIBRARY DESTINATION ${ORVANE_PLUGIN_DIR} COMPONENT plugin)
file(GLOB ORVANE_CONTRACT_HEADERS ${PROJECT_SOURCE_DIR}/src/middleware/*.h)
install(FILES ${ORVANE_CONTRACT_HEADERS} DESTINATION ${ORVANE_INCLUDE_DIR}/middleware COMPONENT dev)
file(GLOB ORVANE_SIM_HEADERS ${PROJECT_SOURCE_DIR}/sim/sim.h ${PROJECT_SOURCE_DIR}/sim/*_sim.h
     ${PROJECT_SOURCE_DIR}/sim/description.h)
install(FILES ${ORVANE_SIM_HEADERS} DESTINATION ${ORVANE_INCLUDE_DIR}/sim COMPONENT dev)
install(TARGETS orvane_sim EXPORT OrvaneTargets ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT dev)
install(TARGETS nporvane-sim EXPORT OrvaneTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT simulator)

# CMake: find_package(Orvane) gives Orvane::contract (the headers),
# Orvane::orvane_sim and Orvane::nporvane-sim, and ORVANE_PLUGIN_DIR.
add_library(orvane_contract INTERFACE)
target_include_directories(orvane_contract INTERFACE $<INSTALL_INTERFACE:${ORVANE_INCLUDE_DIR}>)
set_target_properties(orvane_contract PROPERTIES EXPORT_NAME contract)
install(TARGETS orvane_contract EXPORT OrvaneTargets)
set(ORVANE_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Orvane)
install(EXPORT OrvaneTargets NAMESPACE Orvane:: DESTINATION ${ORVANE_CMAKE_DIR} COMPONENT dev)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/package/OrvaneConfig.cmake.in
  ${PROJECT_BINARY_DIR}/OrvaneConfig.cmake INSTALL_DESTINATION ${ORVANE_CMAKE_DIR}
  PATH_VARS ORVANE_PLUGIN_DIR ORVANE_INCLUDE_DIR)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/OrvaneConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/OrvaneConfig.cmake ${PROJECT_BINARY_DIR}/OrvaneConfigVersion.cmake
  DESTINATION ${ORVANE_CMAKE_DIR} COMPONENT dev)

# pkg-config: `pkg-config --cflags orvane`, `--variable=plugindir orvane`.
configure_file(${PROJECT_SOURCE_DIR}/cmake/package/orvane.pc.in ${PROJECT_BINARY_DIR}/orvane.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/orvane.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT dev)
