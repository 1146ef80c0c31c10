# velor_module(<name> <sources>...): the static library `velor_<name>` of src/<name>. A module does not
# link the platform: a program, or a test, brings the back end that it wants.
function(velor_module module)
  list(TRANSFORM ARGN PREPEND "${module}/" OUTPUT_VARIABLE sources)
  add_library(velor_${module} STATIC ${sources})
  target_link_libraries(velor_${module} PUBLIC velor_flags)
endfunction()

# The modules in the order in which a linker needs them.
set(VELOR_MODULES velor_app velor_catalogue velor_i18n velor_paths)
