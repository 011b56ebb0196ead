# Writes a file's text as a C++ array: cmake -DOUT=schema.cpp -DTEXT=report.schema.json -P schema.cmake
file(READ ${TEXT} WORDS HEX)
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," WORDS "${WORDS}")
file(WRITE ${OUT} "#include \"Report/schema.h\"\n\nconst char REPORT_SCHEMA[] = {${WORDS} '\\0'};\n")
