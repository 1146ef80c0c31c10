# One place for how every target is compiled.
add_library(velor_flags INTERFACE)
target_compile_options(velor_flags INTERFACE -Wall -Wextra -Wpedantic -Werror)
target_include_directories(velor_flags INTERFACE "${CMAKE_SOURCE_DIR}/src")
if(NOT WIN32 AND CMAKE_BUILD_TYPE STREQUAL "Release")
  # As cmake/toolchains/mingw.cmake does for Windows; scripts/check-image looks at the result.
  include(CheckPIESupported)
  check_pie_supported()
  set(CMAKE_POSITION_INDEPENDENT_CODE ON)
  target_compile_options(velor_flags INTERFACE
    -fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3)
  target_link_options(velor_flags INTERFACE -Wl,-z,relro,-z,now,-z,noexecstack)
endif()
if(VELOR_SANITIZE)
  set(sanitizers -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  # The browser engine is built without type information, and calls functions of the standard library
  # that the linker takes from our program: looked at there, its objects would seem to be of no type.
  list(APPEND sanitizers -fno-sanitize=vptr)
  # The sanitizers' own code makes GCC take what is initialised for something that may not be; the
  # build without them looks at that.
  target_compile_options(velor_flags INTERFACE ${sanitizers}
                         $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  target_link_options(velor_flags INTERFACE ${sanitizers})
endif()
if(VELOR_FUZZ)
  # libFuzzer is told which ways the code went; only the programs of tests/fuzz/ have its main. It is
  # not told what was compared with what, which takes longer than the code itself: the words that it
  # would guess from that stand in the dictionaries.
  target_compile_options(velor_flags INTERFACE -fsanitize=fuzzer-no-link
                         -fno-sanitize-coverage=trace-cmp)
endif()
