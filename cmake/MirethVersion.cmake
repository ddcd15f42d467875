# Sets `version` to what the public header says, the one place where it stands.
function(mireth_read_version version)
  file(STRINGS ${CMAKE_CURRENT_SOURCE_DIR}/include/MirethVex/Version.hpp lines REGEX "^#define MIRETHVEX_VERSION_")
  list(TRANSFORM lines REPLACE "^.* ([0-9]+)$" "\\1")
  list(JOIN lines "." text)
  set(${version} ${text} PARENT_SCOPE)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS include/MirethVex/Version.hpp)
endfunction()
