# orvel_embed_resources(<target> FILES <file>...)
#
# Compiles the files into `target` as the table declared in orvel/resources/embedded_resources.h.
# A resource's name is the file's name without its extension, its type the extension in capitals.
# The assembler reads the bytes at build time, so a large file costs no time in the compiler; the
# object depends on every file and is rebuilt when one changes. Listing no file gives an empty table.
function(orvel_embed_resources target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "FILES")
  if(arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "orvel_embed_resources: unexpected '${arg_UNPARSED_ARGUMENTS}'; list files after FILES")
  endif()

  set(paths "")
  set(symbols "")
  set(rows "")
  set(index 0)
  foreach(file IN LISTS arg_FILES)
    cmake_path(ABSOLUTE_PATH file BASE_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}" NORMALIZE OUTPUT_VARIABLE path)
    if(NOT EXISTS "${path}")
      message(FATAL_ERROR "orvel_embed_resources: no file ${path}")
    endif()
    cmake_path(GET path STEM LAST_ONLY name)
    cmake_path(GET path EXTENSION LAST_ONLY type)
    string(SUBSTRING "${type}" 1 -1 type)
    string(TOUPPER "${type}" type)
    list(APPEND paths "${path}")

    set(symbol "orvel_resource_${index}")
    string(APPEND symbols
      "asm(R\"(\n"
      "  .pushsection .rodata\n"
      "  .balign 16\n"
      "  .hidden ${symbol}_begin\n"
      "  .hidden ${symbol}_end\n"
      "  .global ${symbol}_begin\n"
      "  .global ${symbol}_end\n"
      "${symbol}_begin:\n"
      "  .incbin \"${path}\"\n"
      "${symbol}_end:\n"
      "  .byte 0\n"
      "  .popsection\n"
      ")\");\n"
      "extern \"C\" {\n"
      "[[gnu::visibility(\"hidden\")]] extern const unsigned char ${symbol}_begin[];\n"
      "[[gnu::visibility(\"hidden\")]] extern const unsigned char ${symbol}_end[];\n"
      "}\n\n")
    string(APPEND rows
      "    {u\"${name}\", u\"${type}\", ${symbol}_begin,\n"
      "     static_cast<std::size_t>(${symbol}_end - ${symbol}_begin)},\n")
    math(EXPR index "${index} + 1")
  endforeach()

  # An array cannot have no element, so a row past the end stands in every table.
  set(source "${CMAKE_CURRENT_BINARY_DIR}/embedded_resources.cpp")
  file(CONFIGURE OUTPUT "${source}" @ONLY NEWLINE_STYLE LF CONTENT
"#include \"orvel/resources/embedded_resources.h\"

@symbols@namespace orvel::resources {

const EmbeddedResource kEmbeddedResources[] = {
@rows@    {nullptr, nullptr, nullptr, 0},
};
const std::size_t kEmbeddedResourceCount = @index@;

}  // namespace orvel::resources
")
  set_source_files_properties("${source}" PROPERTIES OBJECT_DEPENDS "${paths}")
  target_sources(${target} PRIVATE "${source}")
endfunction()
