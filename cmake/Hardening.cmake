# Protections that the compiler, the linker and the C library offer. tests/e2e/test_binaries.py reads from the finished
# programs that they are there.
#
# They belong to what users get: the sanitizers replace some of them, and the library's checks need optimization.
string(TOUPPER "CMAKE_CXX_FLAGS_${CMAKE_BUILD_TYPE}" build_flags)
if(TANDREL_SANITIZE OR TANDREL_FUZZ OR NOT "${${build_flags}}" MATCHES "-O[123s]")
  set(TANDREL_HARDENED OFF)
else()
  set(TANDREL_HARDENED ON)
endif()

if(TANDREL_HARDENED)
  add_compile_options(-fstack-protector-strong)
  add_compile_definitions(_FORTIFY_SOURCE=2)
  if(WIN32)
    # Windows guards indirect calls by tables that this compiler can't make.
    add_link_options(-fstack-protector-strong -Wl,--dynamicbase,--high-entropy-va,--nxcompat)
  else()
    add_compile_options(-fPIE -fstack-clash-protection -fcf-protection=full)
    add_link_options(-pie -Wl,-z,relro,-z,now,-z,noexecstack)
  endif()
endif()
