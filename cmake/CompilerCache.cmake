# With ccache installed, what this folder has compiled once is not compiled again: after a change of branch, or of the
# build folder's options and back. Precompiled headers need it to look away from times; nothing else depends on it.
find_program(VORLANE_CCACHE ccache)
if(VORLANE_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  foreach(language C CXX)
    set(CMAKE_${language}_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
      CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${VORLANE_CCACHE})
  endforeach()
endif()
