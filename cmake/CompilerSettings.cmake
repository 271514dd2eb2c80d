# The flags that all targets share.
if(NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
  find_program(CCACHE ccache)
  if(CCACHE)
    # Without this it compiles everything anew that uses a precompiled header.
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE})
  endif()
endif()

add_compile_options(
  -Wall -Wextra -Wpedantic -Wshadow $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor> $<$<COMPILE_LANGUAGE:CXX>:-Woverloaded-virtual>
  -Wformat=2 -Werror
  -fno-strict-aliasing -ffunction-sections -fdata-sections)
add_link_options(-Wl,--gc-sections)
add_compile_definitions(_FILE_OFFSET_BITS=64)

if(WIN32)
  # The standard printf instead of the system library's, so that formats mean the same everywhere.
  add_compile_definitions(UNICODE _UNICODE __USE_MINGW_ANSI_STDIO=1 WINVER=0x0601 _WIN32_WINNT=0x0601)
  add_link_options(-static)
endif()

if(TANDREL_SANITIZE)
  # The tests pack, start and check many setups, so what makes these larger is left out: all but line numbers, and the
  # relocations of the sanitizers' own tables.
  add_compile_options(-O1 -g1 -fno-pie -fno-omit-frame-pointer -fsanitize=address,undefined -fno-sanitize-recover=all)
  add_link_options(-no-pie -fsanitize=address,undefined)
elseif(NOT WIN32 AND NOT TANDREL_FUZZ)
  # The Linux programs must run on machines that have little more than the C library.
  add_link_options(-static-libstdc++ -static-libgcc)
endif()

if(TANDREL_FUZZ)
  # A different compiler with different warnings; the sources only have to satisfy the one for the programs.
  add_compile_options(-Wno-error -Wno-format-nonliteral)
  add_compile_options(-O1 -g -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all)
  # What a target reaches in its reader is read from these counters (scripts/fuzz-all).
  add_compile_options(-fprofile-instr-generate -fcoverage-mapping)
  add_link_options(-fsanitize=address,undefined -fprofile-instr-generate)
endif()
