# The program that is shipped, and its twin for demonstration and tests: the same objects but for
# the build settings.

# velor_build_settings(<target> <server> <ca file or empty>)
function(velor_build_settings target SERVER TRUSTED_CA)
  set(file "${CMAKE_BINARY_DIR}/generated/${target}.cpp")
  configure_file("${CMAKE_SOURCE_DIR}/cmake/build_settings.cpp.in" "${file}" @ONLY)
  add_library(${target} OBJECT "${file}")
  target_link_libraries(${target} PUBLIC velor_flags)
endfunction()

function(velor_program target settings)
  add_executable(${target} $<TARGET_OBJECTS:${settings}>)
  target_link_libraries(${target} PRIVATE velor_entry ${VELOR_MODULES} velor_platform velor_core
                                          velor_resources)
  add_dependencies(${target} velor_assets)
endfunction()

velor_build_settings(velor_settings_shipped "${VELOR_DOWNLOAD_SERVER}" "")
velor_build_settings(velor_settings_local "${VELOR_LOCAL_SERVER}" "${VELOR_LOCAL_CA}")
velor_program(VelorVoiceSetup velor_settings_shipped)
velor_program(VelorVoiceSetupLocal velor_settings_local)
