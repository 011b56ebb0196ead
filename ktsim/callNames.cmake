# Lists the calls of the library's header: cmake -DOUT=callNames.cpp -DHEADER=ktraid.h -P callNames.cmake
# What a library may bring along and no command calls, the driver's version, answers an int and is none of them.
file(STRINGS ${HEADER} LINES REGEX "^(KT_U8|KT_U32) KT_[A-Za-z0-9_]+\\(")
set(TEXT "extern const char* const CALL_NAMES[];\nconst char* const CALL_NAMES[] = {\n")
foreach(LINE ${LINES})
  string(REGEX REPLACE "^[A-Za-z0-9_]+ (KT_[A-Za-z0-9_]+)\\(.*" "\\1" NAME "${LINE}")
  string(APPEND TEXT "    \"${NAME}\",\n")
endforeach()
string(APPEND TEXT "    nullptr};\n")
file(WRITE ${OUT} "${TEXT}")
