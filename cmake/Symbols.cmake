# What ships has no symbols in it; a debugger finds them in a file beside it.
find_program(VORLANE_OBJCOPY NAMES ${CMAKE_OBJCOPY} x86_64-w64-mingw32-objcopy objcopy REQUIRED)

# Debug information for the parts of what ships. It changes no code. The compiler's tracking of assignments is left out,
# because it does not come out the same each time.
add_library(vorlane_symbols INTERFACE)
target_compile_options(vorlane_symbols INTERFACE
  $<$<CONFIG:Release>:-g> $<$<CONFIG:Release>:-gdwarf-4> $<$<CONFIG:Release>:-fno-var-tracking-assignments>)

# vorlane_part_symbols(target): moves the symbols of a release build into the file beside it whose name ends in ".debug".
function(vorlane_part_symbols target)
  if(NOT CMAKE_BUILD_TYPE STREQUAL Release)
    return()
  endif()
  set(module $<TARGET_FILE_NAME:${target}>)
  add_custom_command(TARGET ${target} POST_BUILD
    # -p: the linker's time stamp stays, which is none.
    COMMAND ${VORLANE_OBJCOPY} -p --only-keep-debug ${module} ${module}.debug
    COMMAND ${VORLANE_OBJCOPY} -p --strip-all --add-gnu-debuglink=${module}.debug ${module}
    WORKING_DIRECTORY $<TARGET_FILE_DIR:${target}>
    VERBATIM)
endfunction()
