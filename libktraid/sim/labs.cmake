# Turns the labs into one source file: cmake -DOUT=labs.cpp -DLABS=a.json,b.json -P labs.cmake
string(REPLACE "," ";" LABS "${LABS}")
set(TEXT "#include \"lab/lab.h\"\n\nnamespace sim {\n\nextern const BuiltInLab BUILT_IN_LABS[];\n")
string(APPEND TEXT "const BuiltInLab BUILT_IN_LABS[] = {\n")
foreach(LAB ${LABS})
  get_filename_component(NAME ${LAB} NAME_WE)
  file(READ ${LAB} JSON)
  # A string literal has a length limit that compilers warn of; neighbours are joined.
  string(REPLACE "\n" "\n)lab\" R\"lab(" JSON "${JSON}")
  string(APPEND TEXT "    {\"${NAME}\", R\"lab(${JSON})lab\"},\n")
endforeach()
string(APPEND TEXT "    {nullptr, nullptr}};\n\n} // namespace sim\n")
file(WRITE ${OUT} "${TEXT}")
