# The libraries of the window as targets, from the project's cache (scripts/toolkit): never those of the machine, which are
# shared and of another version. The first configuration builds them, which takes minutes.
#
#   tandrel_png, tandrel_jpeg   the decoders of pictures
#   tandrel_toolkit             wxWidgets with HTML window and rich text control, and the decoders
if(NOT TANDREL_TOOLKIT_SCRIPT)
  set(TANDREL_TOOLKIT_SCRIPT ${CMAKE_CURRENT_LIST_DIR}/../scripts/toolkit)
endif()
if(WIN32)
  set(toolkit_system windows)
else()
  set(toolkit_system linux)
endif()
# Another recipe means other libraries.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
  ${CMAKE_CURRENT_LIST_DIR}/../scripts/lib/make-toolkit ${CMAKE_CURRENT_LIST_DIR}/toolkit/CMakeLists.txt
  ${CMAKE_CURRENT_LIST_DIR}/toolkit/WxOptions.cmake ${CMAKE_CURRENT_LIST_DIR}/toolkit/png.dfa)
execute_process(COMMAND ${TANDREL_TOOLKIT_SCRIPT} ${toolkit_system}
  OUTPUT_VARIABLE TANDREL_TOOLKIT OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)

function(tandrel_toolkit_library name)
  add_library(tandrel_${name} INTERFACE)
  target_include_directories(tandrel_${name} SYSTEM INTERFACE ${TANDREL_TOOLKIT}/include)
  target_link_libraries(tandrel_${name} INTERFACE ${TANDREL_TOOLKIT}/lib/lib${name}.a ${ARGN})
endfunction()

# tandrel_delayed_library(NAME OUTPUT): an import library that loads NAME.dll at the first call of one of its functions, made
# from the cross-compiler's ordinary one. Its path goes into the variable OUTPUT.
function(tandrel_delayed_library name output)
  set(directory ${CMAKE_BINARY_DIR}/generated/delayed)
  file(MAKE_DIRECTORY ${directory})
  execute_process(COMMAND ${CMAKE_NM} ${CMAKE_FIND_ROOT_PATH}/lib/lib${name}.a
    OUTPUT_VARIABLE symbols ERROR_QUIET COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "__imp_[A-Za-z_0-9]+" functions "${symbols}")
  list(REMOVE_DUPLICATES functions)
  list(TRANSFORM functions REPLACE "^__imp_" "  ")
  list(JOIN functions "\n" functions)
  file(WRITE ${directory}/${name}.def "LIBRARY ${name}.dll\nEXPORTS\n${functions}\n")
  execute_process(COMMAND ${CMAKE_DLLTOOL} --input-def ${directory}/${name}.def
    --output-delaylib ${directory}/lib${name}.a COMMAND_ERROR_IS_FATAL ANY)
  set(${output} ${directory}/lib${name}.a PARENT_SCOPE)
endfunction()

if(WIN32)
  tandrel_toolkit_library(png /usr/x86_64-w64-mingw32/lib/libz.a)
else()
  find_library(TOOLKIT_ZLIB NAMES libz.a REQUIRED)
  tandrel_toolkit_library(png ${TOOLKIT_ZLIB} m)
endif()
tandrel_toolkit_library(jpeg)

add_library(tandrel_toolkit INTERFACE)
# In this order: wxWidgets' settings before its own headers, users before what they use.
target_include_directories(tandrel_toolkit SYSTEM INTERFACE ${TANDREL_TOOLKIT}/setup ${TANDREL_TOOLKIT}/include)
target_link_libraries(tandrel_toolkit INTERFACE tandrel_png tandrel_jpeg)
foreach(library richtext html core base)
  target_link_libraries(tandrel_toolkit INTERFACE ${TANDREL_TOOLKIT}/lib/libwx${library}.a)
endforeach()

if(WIN32)
  target_compile_definitions(tandrel_toolkit INTERFACE __WXMSW__)
  # The libraries are protected in every build.
  target_link_options(tandrel_toolkit INTERFACE -fstack-protector-strong)
  # uuid comes first: oleacc defines one of its identifiers as well.
  target_link_libraries(tandrel_toolkit INTERFACE
    uuid comdlg32 gdi32 ole32 oleaut32 rpcrt4 shell32 shlwapi user32 advapi32)
  # The rest the system would take from the directory of a program, where a setup lies beside other downloads. They are
  # loaded when they are first used, and by then only from the system's directory.
  foreach(library comctl32 gdiplus msimg32 oleacc uxtheme version winmm)
    tandrel_delayed_library(${library} delayed_library)
    target_link_libraries(tandrel_toolkit INTERFACE ${delayed_library})
  endforeach()
  target_link_libraries(tandrel_toolkit INTERFACE delayimp)
else()
  find_package(PkgConfig REQUIRED)
  find_package(Threads REQUIRED)
  pkg_check_modules(TOOLKIT_GTK REQUIRED gtk+-3.0 x11)
  target_compile_definitions(tandrel_toolkit INTERFACE __WXGTK3__ __WXGTK__)
  target_include_directories(tandrel_toolkit SYSTEM INTERFACE ${TOOLKIT_GTK_INCLUDE_DIRS})
  target_link_libraries(tandrel_toolkit INTERFACE ${TOOLKIT_GTK_LINK_LIBRARIES} Threads::Threads m dl)
endif()

# tandrel_toolkit_module(NAME EXPORTS SOURCE...): a Linux module NAME.so with the toolkit inside, which asks the machine for
# GTK's libraries and the C library alone, and offers nothing but the functions that the file EXPORTS lists (a version
# script): its C++ library must not mix with that of the program. Static libraries among what it is linked to must be
# position-independent (-fPIC).
function(tandrel_toolkit_module name exports)
  add_library(${name} MODULE EXCLUDE_FROM_ALL ${ARGN})
  # What Hardening.cmake gives to programs and a module can't have.
  foreach(property COMPILE_OPTIONS LINK_OPTIONS)
    get_target_property(flags ${name} ${property})
    list(REMOVE_ITEM flags -fPIE -pie)
    # It has to work in a program that has the sanitizers' run-time library and in one that hasn't.
    list(FILTER flags EXCLUDE REGEX "^-f(no-)?sanitize")
    set_target_properties(${name} PROPERTIES ${property} "${flags}")
  endforeach()
  target_compile_options(${name} PRIVATE -fPIC -fvisibility=hidden -fvisibility-inlines-hidden)
  target_link_libraries(${name} PRIVATE tandrel_toolkit)
  target_link_options(${name} PRIVATE -static-libstdc++ -static-libgcc -s -Wl,--gc-sections -Wl,--as-needed
    -Wl,--exclude-libs,ALL -Wl,--version-script=${exports} -Wl,-z,defs -Wl,-z,relro,-z,now,-z,noexecstack)
  set_target_properties(${name} PROPERTIES PREFIX "" LINK_DEPENDS ${exports})
endfunction()
