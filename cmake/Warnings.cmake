# One place for how every target is compiled.
add_library(velor_flags INTERFACE)
target_compile_options(velor_flags INTERFACE -Wall -Wextra -Wpedantic -Werror)
target_include_directories(velor_flags INTERFACE "${CMAKE_SOURCE_DIR}")
if(VELOR_SANITIZE)
  set(sanitizers -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  # The sanitizers' own code makes GCC take what is initialised for something that may not be; the
  # build without them looks at that.
  target_compile_options(velor_flags INTERFACE ${sanitizers} -Wno-maybe-uninitialized)
  target_link_options(velor_flags INTERFACE ${sanitizers})
endif()
