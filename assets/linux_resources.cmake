# The bitmaps in GLib's resources. Included by CMakeLists.txt, which knows how to draw.

find_package(PkgConfig REQUIRED)
pkg_check_modules(VELOR_GIO REQUIRED IMPORTED_TARGET gio-2.0)
find_program(GLIB_COMPILE_RESOURCES glib-compile-resources REQUIRED)

# Three times its size on an ordinary screen, so that it stays sharp on the densest ones.
velor_bitmap(logo.svg logo.png 300)
# The smallest has a drawing of its own: five bars do not fit into sixteen pixels.
velor_bitmap(icon-small.svg icon-16.png 16)
foreach(size 32 48 128 256)
  velor_bitmap(icon.svg icon-${size}.png ${size})
endforeach()

add_custom_command(
  OUTPUT "${CMAKE_CURRENT_BINARY_DIR}/resources.c"
  COMMAND "${GLIB_COMPILE_RESOURCES}" --generate-source "--sourcedir=${CMAKE_CURRENT_BINARY_DIR}"
          "--target=${CMAKE_CURRENT_BINARY_DIR}/resources.c"
          "${CMAKE_CURRENT_SOURCE_DIR}/resources.gresource.xml"
  DEPENDS resources.gresource.xml ${velor_bitmaps}
  VERBATIM)

# Objects, not an archive: the bitmaps register themselves when a program starts, and nothing names
# a symbol that would make a linker take them out of an archive.
add_library(velor_resources OBJECT "${CMAKE_CURRENT_BINARY_DIR}/resources.c")
target_link_libraries(velor_resources PUBLIC PkgConfig::VELOR_GIO)
