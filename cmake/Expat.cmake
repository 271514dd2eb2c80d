# Expat as the target tandrel_expat, compiled from source on both systems, with the positions of attributes, which the
# machine's own library doesn't offer. Without document types: what asks for them is refused (src/checking).
if(NOT TANDREL_EXPAT_SCRIPT)
  set(TANDREL_EXPAT_SCRIPT ${CMAKE_CURRENT_LIST_DIR}/../scripts/expat)
endif()
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${TANDREL_EXPAT_SCRIPT})
execute_process(COMMAND ${TANDREL_EXPAT_SCRIPT}
  OUTPUT_VARIABLE expat_sources OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)

# Its settings are definitions here, but it insists on the file.
file(WRITE ${CMAKE_BINARY_DIR}/generated/expat/expat_config.h "")
add_library(tandrel_expat STATIC ${expat_sources}/xmlparse.c ${expat_sources}/xmltok.c ${expat_sources}/xmlrole.c)
target_include_directories(tandrel_expat SYSTEM PUBLIC ${expat_sources})
target_include_directories(tandrel_expat PRIVATE ${CMAKE_BINARY_DIR}/generated/expat)
target_compile_options(tandrel_expat PRIVATE -w)
target_compile_definitions(tandrel_expat PUBLIC XML_STATIC XML_ATTR_INFO PRIVATE XML_CONTEXT_BYTES=1024 BYTEORDER=1234)
if(NOT WIN32)
  target_compile_definitions(tandrel_expat PRIVATE HAVE_GETRANDOM)
endif()
