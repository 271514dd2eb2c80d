# Writes a source file with texts of the repository, so that a test can read them on every system without looking for
# files. Variables: TEXTS (separated by blanks), ROOT (they are named by their
# paths below it; without it by their names alone), OUTPUT, and what its
# function is: HEADER, TYPE (a structure of name and text) and FUNCTION.
separate_arguments(TEXTS)
set(text "#include \"${HEADER}\"\n\nconst std::vector<${TYPE}>& ${FUNCTION}() {\n")
string(APPEND text "    static const std::vector<${TYPE}> kTexts = {\n")
foreach(file ${TEXTS})
  if(ROOT)
    file(RELATIVE_PATH name ${ROOT} ${file})
  else()
    get_filename_component(name ${file} NAME)
  endif()
  file(READ ${file} content)
  string(APPEND text "        {\"${name}\", R\"CONTENT(${content})CONTENT\"},\n")
endforeach()
string(APPEND text "    };\n    return kTexts;\n}\n")
file(WRITE ${OUTPUT} "${text}")
