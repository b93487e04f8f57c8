# Turns text files into a C++ source that returns them as constant strings, so the library reads
# nothing from disk at run time. Run as a script:
#   cmake -DOUTPUT=<file.cpp> -DHEADER=<include> -DFUNCTION=<qualified::name> -DINPUTS=<a|b|...> -P EmbedText.cmake
# FUNCTION is declared in HEADER as `std::vector<std::string> name();` and returns the texts in
# INPUTS order. Bytes are written as numbers, so no content can break the generated literal.
foreach(var OUTPUT HEADER FUNCTION INPUTS)
  if(NOT DEFINED ${var})
    message(FATAL_ERROR "EmbedText.cmake: -D${var}=... is required")
  endif()
endforeach()
string(REPLACE "|" ";" inputs "${INPUTS}")

set(arrays "")
set(texts "")
set(index 0)
foreach(input IN LISTS inputs)
  file(READ "${input}" hex HEX)
  string(LENGTH "${hex}" hexLength)
  if(hexLength EQUAL 0)
    message(FATAL_ERROR "EmbedText.cmake: ${input} is empty; there is nothing to embed")
  endif()
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${hex}")
  string(REGEX REPLACE "((0x..,){20})" "\\1\n    " bytes "${bytes}")
  get_filename_component(name "${input}" NAME)
  string(APPEND arrays "// ${name}\nconst unsigned char text${index}[] = {\n    ${bytes}};\n\n")
  string(APPEND texts "        std::string(reinterpret_cast<const char*>(text${index}), sizeof text${index}),\n")
  math(EXPR index "${index} + 1")
endforeach()

string(REGEX MATCH "^(.*)::([^:]+)$" ignored "${FUNCTION}")
set(namespace "${CMAKE_MATCH_1}")
set(function "${CMAKE_MATCH_2}")

set(content "// Generated at build time by cmake/EmbedText.cmake; edit the embedded files instead.
#include \"${HEADER}\"

namespace {

${arrays}}  // namespace

namespace ${namespace} {

std::vector<std::string> ${function}() {
    return {
${texts}    };
}

}  // namespace ${namespace}
")
# Rewrite only on change, so an unchanged document does not recompile the core.
if(EXISTS "${OUTPUT}")
  file(READ "${OUTPUT}" previous)
  if(previous STREQUAL content)
    return()
  endif()
endif()
file(WRITE "${OUTPUT}" "${content}")
