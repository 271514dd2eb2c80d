# The folders of src/ are the layers of the system. src/layers.txt says which of them each may include; a layer is linked
# to the same ones. TANDREL_LAYERS lists them, lowest first, and TANDREL_USED_BY_<layer> the layers that one may include.
set(TANDREL_LAYERS)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/layers.txt)
file(STRINGS ${CMAKE_SOURCE_DIR}/src/layers.txt table REGEX "^[a-z]")
foreach(line IN LISTS table)
  # folder | folders that it may include | what lives there
  if(NOT line MATCHES "^([a-z_]+)(/[a-z_/]+)? *\\|([a-z_/ ]*)\\|")
    message(FATAL_ERROR "src/layers.txt: cannot read \"${line}\"")
  endif()
  set(layer ${CMAKE_MATCH_1})
  string(REGEX MATCHALL "[a-z_/]+" used "${CMAKE_MATCH_3}")
  # The parts of a layer (ui/gui) are compiled into its library.
  list(TRANSFORM used REPLACE "/.*" "")
  list(APPEND TANDREL_LAYERS ${layer})
  list(APPEND TANDREL_USED_BY_${layer} ${used})
  list(REMOVE_ITEM TANDREL_USED_BY_${layer} ${layer})
  list(REMOVE_DUPLICATES TANDREL_USED_BY_${layer})
endforeach()
list(REMOVE_DUPLICATES TANDREL_LAYERS)

# What nearly every source includes is parsed once. The sources still name all that they use: builds with sanitizers do
# without it, and would fail.
if(NOT TANDREL_SANITIZE AND NOT TANDREL_FUZZ)
  add_library(tandrel_standard_headers OBJECT ${CMAKE_SOURCE_DIR}/cmake/precompiled/standard_headers.cpp)
  target_precompile_headers(tandrel_standard_headers PRIVATE ${CMAKE_SOURCE_DIR}/cmake/precompiled/standard_headers.h)
endif()

# tandrel_precompiled(TARGET): has the standard headers parsed already.
function(tandrel_precompiled target)
  if(TARGET tandrel_standard_headers)
    target_precompile_headers(${target} REUSE_FROM tandrel_standard_headers)
    # The compiler forgets that these headers are the system's, and takes a string's short buffer for all it has.
    target_compile_options(${target} PRIVATE -Wno-array-bounds -Wno-stringop-overflow -Wno-stringop-overread)
  endif()
endfunction()

# tandrel_layer(NAME): a static library of all sources of one layer, linked to the layers that it may include. What holds
# an entry point (main.cpp, and entry.cpp of the platform) belongs to the programs, because test programs have their own.
function(tandrel_layer name)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.cpp)
  list(FILTER sources EXCLUDE REGEX "/(main|entry)\\.cpp$")
  # The window needs libraries that nothing else links; src/CMakeLists.txt makes libraries of its own from it.
  list(FILTER sources EXCLUDE REGEX "/ui/gui/")
  if(WIN32)
    list(FILTER sources EXCLUDE REGEX "/platform/posix/")
  else()
    list(FILTER sources EXCLUDE REGEX "/platform/windows/")
  endif()
  list(TRANSFORM TANDREL_USED_BY_${name} PREPEND tandrel_ OUTPUT_VARIABLE libraries)
  if(sources)
    add_library(tandrel_${name} STATIC ${sources})
    target_include_directories(tandrel_${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(tandrel_${name} PUBLIC ${libraries})
    tandrel_precompiled(tandrel_${name})
  else()
    add_library(tandrel_${name} INTERFACE)
    target_include_directories(tandrel_${name} INTERFACE ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(tandrel_${name} INTERFACE ${libraries})
  endif()
endfunction()

# tandrel_resources(NAME): the manifest and the version information of a Windows program.
function(tandrel_resources name)
  set(TANDREL_PROGRAM ${name})
  if(name STREQUAL installer)
    set(TANDREL_EXECUTION_LEVEL requireAdministrator)
    set(TANDREL_PROGRAM_TITLE "Tandrel setup")
  else()
    set(TANDREL_EXECUTION_LEVEL asInvoker)
    set(TANDREL_PROGRAM_TITLE "Tandrel packager")
  endif()
  set(source ${CMAKE_SOURCE_DIR}/src/platform/windows/program)
  set(target ${CMAKE_BINARY_DIR}/generated/${name})
  configure_file(${source}.manifest.in ${target}.manifest @ONLY)
  configure_file(${source}.rc.in ${target}.rc @ONLY)
  set_source_files_properties(${target}.rc PROPERTIES OBJECT_DEPENDS ${target}.manifest)
  target_sources(${name} PRIVATE ${target}.rc)
endfunction()

# All programs of the system, without tests.
add_custom_target(programs)

# tandrel_program(NAME FOLDER LAYER...): an executable in <build>/bin from FOLDER/main.cpp and the platform's entry.
function(tandrel_program name folder)
  if(NOT EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/main.cpp)
    return()
  endif()
  if(WIN32)
    set(system windows)
  else()
    set(system posix)
  endif()
  add_executable(${name} ${folder}/main.cpp platform/${system}/entry.cpp)
  foreach(layer ${ARGN})
    target_link_libraries(${name} PRIVATE tandrel_${layer})
  endforeach()
  if(WIN32)
    target_link_options(${name} PRIVATE -municode -mconsole)
    tandrel_resources(${name})
  elseif(NOT TANDREL_SANITIZE)
    # Nothing above asks for it: platform/posix/exception_tables.cpp.
    target_link_options(${name} PRIVATE -Wl,-u,_dl_find_object)
  endif()
  if(TANDREL_SANITIZE)
    # The names of functions stay, for reports.
    target_link_options(${name} PRIVATE -Wl,--strip-debug)
  else()
    target_link_options(${name} PRIVATE -s)
  endif()
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
  add_dependencies(programs ${name})
endfunction()
