# Writes a .cpp file that holds the files of a folder: cmake -DFOLDER=… -DOUTPUT=… -P EmbedFiles.cmake
file(GLOB_RECURSE files RELATIVE ${FOLDER} ${FOLDER}/*)
list(SORT files)
set(arrays "")
set(entries "")
set(number 0)
foreach(name IN LISTS files)
  file(READ ${FOLDER}/${name} bytes HEX)
  file(SHA256 ${FOLDER}/${name} digest)
  string(REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
  string(REGEX REPLACE "(0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,0x..,)" "\\1\n" bytes "${bytes}")
  string(APPEND arrays "constexpr unsigned char file${number}[] = {${bytes}0};\n")
  string(APPEND entries "    {\"${name}\", textOf(file${number}), \"${digest}\"},\n")
  math(EXPR number "${number} + 1")
endforeach()
file(WRITE ${OUTPUT} "// Generated from ${FOLDER}. The byte after each file's last is not part of it.
#include \"viewing/WebFile.hpp\"

#include <array>
#include <cstddef>

namespace mireth::receiver {
namespace {

${arrays}
template <std::size_t size>
std::string_view textOf(const unsigned char (&bytes)[size]) {
    return {reinterpret_cast<const char*>(&bytes[0]), size - 1};
}

}  // namespace

std::span<const WebFile> webFiles() {
    static const std::array<WebFile, ${number}> files{{
${entries}    }};
    return files;
}

}  // namespace mireth::receiver
")
