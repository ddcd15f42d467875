# Builds a house in the folder HOUSE that breaks every rule of the script CHECK, which has to tell of each.
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE ${HOUSE})
file(WRITE ${HOUSE}/docs/architecture.md "| 6 | `platforms/` |\n| 6.2 | `platforms/glass/pane` |\n| 6.1 | `platforms/glass/sand` |\n| 2 | `Work` |\n| 1 | `Work/Tools`, `Phone` |\n| 0 | `Base/` |\n")
file(WRITE ${HOUSE}/include/MirethVex/Phone/Screen.hpp "#include <vector>\n#include <curl/curl.h>\n")
file(WRITE ${HOUSE}/platforms/paper/include/MirethVex/Paper/Sheet.hpp "#include \"MirethVex/Phone/Screen.hpp\"\n")
file(WRITE ${HOUSE}/platforms/paper/Pen.hpp "")
file(WRITE ${HOUSE}/platforms/paper/Ink.hpp "#include \"Pen.hpp\"\n#include \"Work/Works.hpp\"\n")
file(WRITE ${HOUSE}/platforms/paper/Sheet.cpp "#include \"platforms/paper/Ink.hpp\"\n#include <curl/curl.h>\n")
file(WRITE ${HOUSE}/platforms/glass/pane/Pane.cpp "#include \"platforms/glass/sand/Grain.hpp\"\n#include \"platforms/paper/Ink.hpp\"\n")
file(WRITE ${HOUSE}/platforms/glass/pane/Pane.hpp "")
file(WRITE ${HOUSE}/platforms/glass/sand/Grain.hpp "#include \"platforms/glass/pane/Pane.hpp\"\n#include \"MirethVex/Paper/Sheet.hpp\"\n")
file(WRITE ${HOUSE}/src/Work/Works.cpp "#include \"Work/Tools/Hammer.hpp\"\n")
file(WRITE ${HOUSE}/src/Work/Works.hpp "")
file(WRITE ${HOUSE}/src/Work/Tools/Hammer.hpp "  #  include <Work/Works.hpp>\n")
file(WRITE ${HOUSE}/src/Base/Upward.hpp "#include \"MirethVex/Phone/Screen.hpp\"\n")
file(WRITE ${HOUSE}/src/Base/Outward.cpp "#include \"MirethVex/Paper/Sheet.hpp\"\n")
file(WRITE ${HOUSE}/src/Base/Lost.cpp "#include \"Base/Nowhere.hpp\"\n")
file(WRITE ${HOUSE}/src/Attic/Trunk.hpp "")

execute_process(COMMAND ${CMAKE_COMMAND} -DHOUSE=${HOUSE} -P ${CHECK} RESULT_VARIABLE result ERROR_VARIABLE told)
string(REGEX REPLACE "[ \n]+" " " told "${told}")
set(breaches
  "platforms/glass/sand/Grain.hpp, floor 6.1: #include \"platforms/glass/pane/Pane.hpp\", floor 6.2"
  "include/MirethVex/Phone/Screen.hpp: #include <curl/curl.h> in a public header"
  "src/Work/Tools/Hammer.hpp, floor 1: # include <Work/Works.hpp>, floor 2"
  "src/Base/Upward.hpp, floor 0: #include \"MirethVex/Phone/Screen.hpp\", floor 1"
  "src/Base/Outward.cpp, floor 0: #include \"MirethVex/Paper/Sheet.hpp\", floor 6"
  "src/Base/Lost.cpp: #include \"Base/Nowhere.hpp\" is not there"
  "On no floor: src/Attic/Trunk.hpp")
foreach(breach ${breaches})
  string(FIND "${told}" "${breach}" place)
  if(place EQUAL -1)
    message(SEND_ERROR "Not told of: ${breach}")
  endif()
endforeach()
string(REGEX MATCHALL "CMake Error" errors "${told}")
list(LENGTH errors count)
list(LENGTH breaches expected)
if(result EQUAL 0 OR NOT count EQUAL expected)
  message(SEND_ERROR "${count} errors, not ${expected}: ${told}")
endif()
