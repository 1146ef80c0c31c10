# Builds for 64-bit Windows, with the mingw-w64 compilers of Debian. The "posix" ones: the others have
# no std::thread, which GoogleTest needs.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(triplet x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${triplet}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triplet}-g++-posix)
set(CMAKE_RC_COMPILER ${triplet}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${triplet})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# The folder in which it was built is nobody's business, and would make two builds differ.
set(flags "-ffunction-sections -fdata-sections -fstack-protector-strong -D_FORTIFY_SOURCE=2 \
-ffile-prefix-map=${CMAKE_SOURCE_DIR}/= -ffile-prefix-map=${CMAKE_BINARY_DIR}/=")
set(CMAKE_C_FLAGS_INIT "${flags}")
set(CMAKE_CXX_FLAGS_INIT "${flags}")
# One file that needs no library but the system's own, loaded at an address that nobody knows ahead,
# with data that cannot be run. No time stamp: two builds are equal.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -Wl,--gc-sections,--dynamicbase,--high-entropy-va,--nxcompat,\
--no-insert-timestamp")

# Wine runs what is built here, in a prefix that belongs to the build folder.
set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/../../scripts/with-wine")
