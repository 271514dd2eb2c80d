# Writes a source file with the pages of the manual, so that a test can read them on every system without looking for
# files. Variables: PAGES (separated by blanks) and OUTPUT.
separate_arguments(PAGES)
set(text "#include \"manual/manual_text.h\"\n\nconst std::vector<ManualPage>& manualPages() {\n")
string(APPEND text "    static const std::vector<ManualPage> kPages = {\n")
foreach(page ${PAGES})
  get_filename_component(name ${page} NAME)
  file(READ ${page} content)
  string(APPEND text "        {\"${name}\", R\"MANUAL(${content})MANUAL\"},\n")
endforeach()
string(APPEND text "    };\n    return kPages;\n}\n")
file(WRITE ${OUTPUT} "${text}")
