# Writes a source file that holds the scripts: cmake -DOUTPUT=… -DFOLDER=… -DENGINES=… -P embed.cmake
#
# ENGINES is a list of engine:file,file,… in the order in which the files are to be run; a file may
# stand in another engine's folder, ../other/file.
string(CONCAT text
  "// The scripts of schema/, made by embed.cmake.\n"
  "#include <array>\n\n"
  "#include \"platform/value/text.h\"\n"
  "#include \"schema/schema.h\"\n\n"
  "namespace pelm {\nnamespace {\n\n")
set(names "")
set(branches "")
foreach(entry IN LISTS ENGINES)
  string(REPLACE ":" ";" entry "${entry}")
  list(GET entry 0 engine)
  list(GET entry 1 files)
  string(REPLACE "," ";" files "${files}")
  string(MAKE_C_IDENTIFIER "k_${engine}" scripts)
  string(APPEND text "constexpr SchemaScript ${scripts}[] = {\n")
  foreach(file IN LISTS files)
    file(READ "${FOLDER}/${engine}/${file}" script)
    cmake_path(GET file FILENAME name)
    string(APPEND text "    {\"${name}\", R\"~script~(${script})~script~\"},\n")
  endforeach()
  string(APPEND text "};\n\n")
  string(APPEND names "\"${engine}\", ")
  string(APPEND branches "  if (text::equal_case_blind(engine, \"${engine}\")) return ${scripts};\n")
endforeach()
string(APPEND text
  "constexpr std::string_view kEngines[] = {${names}};\n\n}  // namespace\n\n"
  "std::span<const std::string_view> schema_engines() noexcept { return kEngines; }\n\n"
  "std::span<const SchemaScript> schema_scripts(std::string_view engine) noexcept {\n"
  "${branches}  return {};\n}\n\n}  // namespace pelm\n")
file(WRITE "${OUTPUT}" "${text}")
