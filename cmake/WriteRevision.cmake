# Writes the source file with the program's version and the build's revision, only if they have changed.
execute_process(COMMAND git -C ${SOURCE_DIR} rev-parse --short=12 HEAD
  OUTPUT_VARIABLE revision OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
string(SUBSTRING "${revision}000000000000" 0 12 revision)
set(text "#include \"base/revision.h\"\n\n")
string(APPEND text "const char kProgramVersion[] = \"${VERSION}\";\n")
string(APPEND text "const char kBuildRevision[] = \"${revision}\";\n")
set(old "")
if(EXISTS ${OUTPUT})
  file(READ ${OUTPUT} old)
endif()
if(NOT old STREQUAL text)
  file(WRITE ${OUTPUT} "${text}")
endif()
