# What every target of ours is compiled and linked with, as one interface target.
add_library(vorlane_options INTERFACE)
target_compile_features(vorlane_options INTERFACE cxx_std_20)
target_compile_definitions(vorlane_options INTERFACE UNICODE _UNICODE $<$<CONFIG:Debug>:_DEBUG>)
target_compile_options(vorlane_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror
  # Without it a structured exception cannot be caught as a C++ exception.
  $<$<COMPILE_LANGUAGE:CXX>:-fnon-call-exceptions>
  # The debug help library of Wine reads no newer format; call stacks get their names from it.
  $<$<CONFIG:Debug>:-gdwarf-4>
  # The place of a failed assertion is told relative to the source tree, and a debugger looks for sources from there.
  -fmacro-prefix-map=${CMAKE_SOURCE_DIR}/=
  -fdebug-prefix-map=${CMAKE_SOURCE_DIR}=.
  $<$<BOOL:${VORLANE_COVERAGE}>:--coverage>
  # Not alignment: the platform's marshalling code hands over identifiers from the middle of its format strings.
  $<$<BOOL:${VORLANE_UBSAN}>:-fsanitize=undefined>
  $<$<BOOL:${VORLANE_UBSAN}>:-fno-sanitize=alignment>
  $<$<BOOL:${VORLANE_UBSAN}>:-fsanitize-undefined-trap-on-error>)
target_link_options(vorlane_options INTERFACE
  # No run-time DLL of the compiler is left over.
  -static
  # Two builds of the same sources give the same bytes.
  -Wl,--no-insert-timestamp
  $<$<BOOL:${VORLANE_COVERAGE}>:--coverage>)

# A broken assertion tells the file by its tree, whatever room it is in: of several mappings that match, the last counts.
foreach(room arrays text files system registry failures threads)
  target_compile_options(vorlane_options INTERFACE
    -fmacro-prefix-map=${CMAKE_SOURCE_DIR}/driver/foundation/${room}/=driver/foundation/)
endforeach()
foreach(room spooler driver frame core tracking classes server)
  target_compile_options(vorlane_options INTERFACE
    -fmacro-prefix-map=${CMAKE_SOURCE_DIR}/driver/automation/vrl/${room}/=driver/automation/vrl/)
endforeach()
