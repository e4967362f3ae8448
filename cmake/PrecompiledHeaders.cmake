# The platform's headers cost most of the time of a compilation, so each library compiles them once. A build with this
# turned off proves that each source includes what it needs.
option(VORLANE_PRECOMPILED_HEADERS "Compile the platform's headers once for each library" ON)

# vorlane_precompile_headers(target header...): the way by which the platform's headers come in, and those that are named.
# None that brings std::string: the compiler then warns of the library's own code.
function(vorlane_precompile_headers target)
  if(VORLANE_PRECOMPILED_HEADERS)
    target_precompile_headers(${target} PRIVATE ${CMAKE_SOURCE_DIR}/driver/foundation/Platform.h ${ARGN})
  endif()
endfunction()
