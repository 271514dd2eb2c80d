# One place for the flags that every target shares.
if(NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
  find_program(CCACHE ccache)
  if(CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
  endif()
endif()

add_compile_options(
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wformat=2 -Werror
  -fno-strict-aliasing -ffunction-sections -fdata-sections)
add_link_options(-Wl,--gc-sections)
add_compile_definitions(_FILE_OFFSET_BITS=64)

if(WIN32)
  # printf of the C standard instead of the system library's, so that formats mean the same everywhere.
  add_compile_definitions(UNICODE _UNICODE __USE_MINGW_ANSI_STDIO=1 WINVER=0x0601 _WIN32_WINNT=0x0601)
  add_link_options(-static)
endif()

if(TANDREL_SANITIZE)
  add_compile_options(-O1 -g -fno-omit-frame-pointer -fsanitize=address,undefined -fno-sanitize-recover=all)
  add_link_options(-fsanitize=address,undefined)
elseif(NOT WIN32 AND NOT TANDREL_FUZZ)
  # The Linux programs must run on machines that have little beside the C library.
  add_link_options(-static-libstdc++ -static-libgcc)
endif()

if(TANDREL_FUZZ)
  # Another compiler with other warnings; the compiler of the programs is the judge of the sources.
  add_compile_options(-Wno-error -Wno-format-nonliteral)
  add_compile_options(-O1 -g -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all)
  add_link_options(-fsanitize=address,undefined)
endif()
