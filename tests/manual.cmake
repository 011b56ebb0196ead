# Holds the manual pages to mandoc's rules. usage: cmake -DMANDOC=... -DPAGES=a;b -P manual.cmake
execute_process(COMMAND ${MANDOC} -Tlint ${PAGES} OUTPUT_VARIABLE FOUND ERROR_VARIABLE FOUND)
if(NOT FOUND STREQUAL "")
  message(FATAL_ERROR "${FOUND}")
endif()
