# Writes a C++ source that holds every shaders/<id>.glsl as a raw string literal.
# Run as: cmake -DSHADER_DIR=... -DOUTPUT=... -P EmbedShaders.cmake
file(GLOB bodies "${SHADER_DIR}/*.glsl")
list(SORT bodies)
set(text "// Generated from ${SHADER_DIR}; do not edit.\n#include <map>\n#include <string_view>\n\nnamespace quellton {\n\nstd::string_view shaderBody(std::string_view id) {\n    static const std::map<std::string_view, std::string_view> bodies = {\n")
foreach(path IN LISTS bodies)
  get_filename_component(id "${path}" NAME_WE)
  file(READ "${path}" body)
  string(APPEND text "        {\"${id}\", R\"QUELLTONGLSL(${body})QUELLTONGLSL\"},\n")
endforeach()
string(APPEND text "    };\n    const auto it = bodies.find(id);\n    return it == bodies.end() ? std::string_view{} : it->second;\n}\n\n}  // namespace quellton\n")
file(WRITE "${OUTPUT}" "${text}")
