# The installed library: one object made of all areas, its public headers, a CMake package and a pkg-config file.
include(CMakePackageConfigHelpers)

set(_areas
  mireth_base mireth_platform mireth_data_models mireth_async mireth_logger mireth_configuration mireth_timeline mireth_storage
  mireth_api mireth_remote_log mireth_extensions mireth_recording mireth_video mireth_detection mireth_collection
  mireth_ingestion mireth_orchestrator mireth_public mireth_linux mireth_linux_media mireth_linux_network
  mireth_linux_system)
list(TRANSFORM _areas REPLACE "(.+)" "$<TARGET_OBJECTS:\\1_objects>" OUTPUT_VARIABLE _objects)

add_library(MirethVex ${_objects})
add_library(MirethVex::MirethVex ALIAS MirethVex)
# Versions that find_package does not take for each other must not be taken for each other by the loader either.
set_target_properties(MirethVex PROPERTIES
  VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR} LINKER_LANGUAGE CXX)
target_compile_features(MirethVex INTERFACE cxx_std_23)
target_include_directories(MirethVex INTERFACE
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/platforms/linux/include>
  $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_link_libraries(MirethVex PRIVATE
  $<BUILD_INTERFACE:mireth_options> Threads::Threads Boost::url CURL::libcurl OpenSSL::Crypto PkgConfig::CAIRO
  PkgConfig::OPENH264 PkgConfig::NETLINK PkgConfig::SYSTEMD)
if(BUILD_SHARED_LIBS)
  set(_map ${PROJECT_SOURCE_DIR}/cmake/MirethVex.map)
  target_link_options(MirethVex PRIVATE "LINKER:--version-script=${_map}")
  set_property(TARGET MirethVex APPEND PROPERTY LINK_DEPENDS ${_map})
endif()

if(MIRETH_HAS_QT)
  include(MirethInstallQt)
endif()
if(NOT MIRETH_INSTALL)
  return()
endif()

install(TARGETS MirethVex EXPORT MirethVexTargets)
install(DIRECTORY include/MirethVex platforms/linux/include/MirethVex
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.hpp")
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})

set(_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/MirethVex)
if(MIRETH_HAS_QT)
  install(EXPORT MirethVexQtTargets NAMESPACE MirethVex:: DESTINATION ${_package_dir})
endif()
install(EXPORT MirethVexTargets NAMESPACE MirethVex:: DESTINATION ${_package_dir})
configure_package_config_file(cmake/MirethVexConfig.cmake.in ${PROJECT_BINARY_DIR}/MirethVexConfig.cmake
  INSTALL_DESTINATION ${_package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/MirethVexConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/MirethVexConfig.cmake ${PROJECT_BINARY_DIR}/MirethVexConfigVersion.cmake
  DESTINATION ${_package_dir})

# Relative to the file itself, so that an installation may be moved; unless a folder was given as a whole path.
file(RELATIVE_PATH _to_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
cmake_path(APPEND MIRETH_PC_INCLUDEDIR "\${pcfiledir}/${_to_prefix}" ${CMAKE_INSTALL_INCLUDEDIR})
cmake_path(APPEND MIRETH_PC_LIBDIR "\${pcfiledir}/${_to_prefix}" ${CMAKE_INSTALL_LIBDIR})
# A shared object knows itself what it needs: its hosts build without the packages behind it.
if(NOT BUILD_SHARED_LIBS)
  set(MIRETH_PC_LIBS " -lcurl -lcrypto -lboost_url")
  set(MIRETH_PC_REQUIRES "cairo openh264 libnl-3.0 libsystemd")
endif()
configure_file(cmake/mirethvex.pc.in ${PROJECT_BINARY_DIR}/mirethvex.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/mirethvex.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
