# velor_room(<folder>): the static library `velor_<folder>` of a room's sources. A room does not link
# the platform: a program, or a test, brings the one it wants.
function(velor_room room)
  file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/${room}/*.cpp")
  add_library(velor_${room} STATIC ${sources})
  target_link_libraries(velor_${room} PUBLIC velor_flags)
endfunction()

# The rooms in the order in which a linker needs them.
set(VELOR_ROOMS velor_app velor_catalogue velor_i18n velor_paths velor_voice)
