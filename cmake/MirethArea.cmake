# An area of the house: a folder of sources with the libraries it stands on. Each area is an object library,
# from which the installed library is put together, and a static one of the same name, which tests link.
#
#   mireth_area(NAME mireth_x [SMALL] SOURCES a.cpp … USES libs that its headers show … HIDES libs that only its .cpp files see …)
#
# Include paths and definitions come from the areas it uses. SMALL is for areas that wait for others most of their time: a
# release is built for size there, which is two fifths less for a host to load.
function(mireth_area)
  cmake_parse_arguments(AREA "SMALL" "NAME" "SOURCES;USES;HIDES" ${ARGN})
  add_library(${AREA_NAME}_objects OBJECT ${AREA_SOURCES})
  add_library(${AREA_NAME} STATIC $<TARGET_OBJECTS:${AREA_NAME}_objects>)
  foreach(target ${AREA_NAME}_objects ${AREA_NAME})
    target_include_directories(${target} PUBLIC
      $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/src>)
  endforeach()
  if(AREA_SMALL)
    target_compile_options(${AREA_NAME}_objects PRIVATE $<$<CONFIG:Release>:-Os>)
  endif()
  target_link_libraries(${AREA_NAME}_objects PRIVATE mireth_options ${AREA_USES} ${AREA_HIDES})
  target_link_libraries(${AREA_NAME} PUBLIC ${AREA_USES} PRIVATE ${AREA_HIDES})
endfunction()
