# The bitmaps, and what Windows reads about the program, in its resources. Included by
# CMakeLists.txt, which knows how to draw.

find_program(ICOTOOL icotool REQUIRED)
enable_language(RC)

# The logo column at 96 to 288 dots to the inch: resource number and width are the same.
set(VELOR_LOGO_RESOURCES "")
foreach(width 100 125 150 175 200 225 250 275 300)
  velor_bitmap(logo.svg logo-${width}.png ${width})
  string(APPEND VELOR_LOGO_RESOURCES
         "${width} RCDATA \"${CMAKE_CURRENT_BINARY_DIR}/logo-${width}.png\"\n")
endforeach()

# The smallest has a drawing of its own: five bars do not fit into sixteen pixels.
velor_bitmap(icon-small.svg icon-16.png 16)
set(icons "${CMAKE_CURRENT_BINARY_DIR}/icon-16.png")
foreach(size 20 24 32 40 48 64 256)
  velor_bitmap(icon.svg icon-${size}.png ${size})
  list(APPEND icons "${CMAKE_CURRENT_BINARY_DIR}/icon-${size}.png")
endforeach()
# The largest is kept as it is: as an uncompressed bitmap it alone would have 256 KB.
list(POP_BACK icons largest)
set(icon "${CMAKE_CURRENT_BINARY_DIR}/VelorVoiceSetup.ico")
add_custom_command(
  OUTPUT "${icon}"
  COMMAND "${ICOTOOL}" --create "--output=${icon}" ${icons} "--raw=${largest}"
  DEPENDS ${icons} "${largest}"
  VERBATIM)

set(VELOR_ICON "${icon}")
set(VELOR_MANIFEST "${CMAKE_SOURCE_DIR}/packaging/win32/VelorVoiceSetup.manifest")
set(script "${CMAKE_CURRENT_BINARY_DIR}/VelorVoiceSetup.rc")
configure_file("${CMAKE_SOURCE_DIR}/packaging/win32/VelorVoiceSetup.rc.in" "${script}" @ONLY)
set_source_files_properties("${script}" PROPERTIES
  OBJECT_DEPENDS "${icon};${VELOR_MANIFEST};${velor_bitmaps}")
add_library(velor_resources OBJECT "${script}")
