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

# Small, large and taskbar icons at 96 to 288 dots to the inch, so that Windows scales none of them.
# The smallest have drawings of their own: five bars do not fit into so few pixels.
velor_bitmap(icon-small.svg icon-16.png 16)
velor_bitmap(icon-small-20.svg icon-20.png 20)
set(sizes 24 30 32 36 40 48 60 64 72 80 96 256)
foreach(size ${sizes})
  velor_bitmap(icon.svg icon-${size}.png ${size})
endforeach()
# The larger ones are kept as they are: as uncompressed bitmaps they would have 400 KB.
set(icons "")
set(bitmaps "")
set(pictures "")
foreach(size 16 20 ${sizes})
  set(file "${CMAKE_CURRENT_BINARY_DIR}/icon-${size}.png")
  list(APPEND icons "${file}")
  if(size LESS 60)
    list(APPEND bitmaps "${file}")
  else()
    list(APPEND pictures "--raw=${file}")
  endif()
endforeach()
set(icon "${CMAKE_CURRENT_BINARY_DIR}/VelorVoiceSetup.ico")
add_custom_command(
  OUTPUT "${icon}"
  COMMAND "${ICOTOOL}" --create "--output=${icon}" ${bitmaps} ${pictures}
  DEPENDS ${icons}
  VERBATIM)

set(VELOR_ICON "${icon}")
set(VELOR_MANIFEST "${CMAKE_CURRENT_BINARY_DIR}/VelorVoiceSetup.manifest")
configure_file("${CMAKE_SOURCE_DIR}/packaging/win32/VelorVoiceSetup.manifest.in" "${VELOR_MANIFEST}" @ONLY)
set(script "${CMAKE_CURRENT_BINARY_DIR}/VelorVoiceSetup.rc")
configure_file("${CMAKE_SOURCE_DIR}/packaging/win32/VelorVoiceSetup.rc.in" "${script}" @ONLY)
set_source_files_properties("${script}" PROPERTIES
  OBJECT_DEPENDS "${icon};${VELOR_MANIFEST};${velor_bitmaps}")
add_library(velor_resources OBJECT "${script}")
