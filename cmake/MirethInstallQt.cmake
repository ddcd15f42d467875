# The Qt platform is an object of its own, the component `Qt` of the package: hosts without Qt never see it.
add_library(MirethVexQt $<TARGET_OBJECTS:mireth_qt_objects>)
add_library(MirethVex::Qt ALIAS MirethVexQt)
set_target_properties(MirethVexQt PROPERTIES
  # It finds the library beside it, also for a host that calls nothing of that itself.
  INSTALL_RPATH "$ORIGIN"
  EXPORT_NAME Qt VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR} LINKER_LANGUAGE CXX)
target_include_directories(MirethVexQt INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/platforms/qt/include>)
target_link_libraries(MirethVexQt
  PUBLIC MirethVex
  PRIVATE $<BUILD_INTERFACE:mireth_options> Qt6::Quick Qt6::QuickWidgets Qt6::Widgets)
if(BUILD_SHARED_LIBS)
  target_link_options(MirethVexQt PRIVATE "LINKER:--version-script=${_map}")
  set_property(TARGET MirethVexQt APPEND PROPERTY LINK_DEPENDS ${_map})
endif()
if(NOT MIRETH_INSTALL)
  return()
endif()

install(TARGETS MirethVexQt EXPORT MirethVexQtTargets)
install(DIRECTORY platforms/qt/include/MirethVex
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.hpp")

# Programs as they are, and such in QML alone. Each finds the library from where it stands itself.
set(_generic_dir ${CMAKE_INSTALL_LIBDIR}/mireth/plugins/generic)
set_target_properties(mireth_qt_plugin PROPERTIES INSTALL_RPATH "$ORIGIN/../../..")
install(TARGETS mireth_qt_plugin LIBRARY DESTINATION ${_generic_dir})
if(TARGET mireth-attach)
  install(TARGETS mireth-attach)
endif()
if(TARGET mireth_qml_plugin)
  set(_module_dir ${CMAKE_INSTALL_LIBDIR}/qt6/qml/MirethVex)
  set_target_properties(mireth_qml_plugin PROPERTIES INSTALL_RPATH "$ORIGIN/../../..")
  install(TARGETS mireth_qml_plugin LIBRARY DESTINATION ${_module_dir})
  install(FILES platforms/qt/qml/qmldir ${PROJECT_BINARY_DIR}/qml/MirethVex/mirethvex.qmltypes
    DESTINATION ${_module_dir})
endif()
