# Everything but the C library is linked statically.
find_package(Threads REQUIRED)

if(WIN32)
  set(ZLIB_LIBRARY /usr/x86_64-w64-mingw32/lib/libz.a)
  set(ZLIB_INCLUDE_DIR /usr/x86_64-w64-mingw32/include)
else()
  find_library(ZLIB_LIBRARY NAMES libz.a REQUIRED)
  find_path(ZLIB_INCLUDE_DIR zlib.h REQUIRED)
  find_library(SQLITE_LIBRARY NAMES libsqlite3.a REQUIRED)
  find_library(MD_LIBRARY NAMES libmd.a REQUIRED)
  find_library(EDIT_LIBRARY NAMES libedit.a REQUIRED)
  find_library(TINFO_LIBRARY NAMES libtinfo.a REQUIRED)
  find_library(BSD_LIBRARY NAMES libbsd.a REQUIRED)
endif()

add_library(tandrel_zlib INTERFACE)
target_link_libraries(tandrel_zlib INTERFACE ${ZLIB_LIBRARY})

include(${CMAKE_CURRENT_LIST_DIR}/Expat.cmake)

# The window's: wxWidgets and the decoders of pictures.
include(${CMAKE_CURRENT_LIST_DIR}/Toolkit.cmake)

# What src/platform needs of the system.
add_library(tandrel_system INTERFACE)
target_link_libraries(tandrel_system INTERFACE Threads::Threads)
if(WIN32)
  # Only libraries that Windows takes from its own directory whatever lies beside a program; others are loaded by
  # platform/windows/library_search.h.
  target_link_libraries(tandrel_system INTERFACE psapi shell32 ole32 oleaut32 uuid advapi32 user32 ntdll)
else()
  target_link_libraries(tandrel_system INTERFACE ${SQLITE_LIBRARY} ${EDIT_LIBRARY} ${TINFO_LIBRARY} ${BSD_LIBRARY} ${MD_LIBRARY} m dl)
endif()
