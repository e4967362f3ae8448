# The IDL compiler and the folders that it needs: the platform's own definitions and the standard type library.
if(NOT VORLANE_WIDL)
  find_program(VORLANE_WIDL NAMES widl x86_64-w64-mingw32-widl REQUIRED)
endif()

find_program(VORLANE_PYTHON NAMES python3 python REQUIRED)

find_path(VORLANE_IDL_FOLDER oaidl.idl
  HINTS /usr/include/wine/wine/windows /usr/include/wine/windows $ENV{MINGW_PREFIX}/include
  NO_CMAKE_FIND_ROOT_PATH REQUIRED)
find_path(VORLANE_STANDARD_TYPELIB_FOLDER stdole2.tlb
  HINTS /usr/lib/x86_64-linux-gnu/wine/x86_64-windows /usr/lib/wine/x86_64-windows $ENV{SystemRoot}/System32
  NO_CMAKE_FIND_ROOT_PATH REQUIRED)

# vorlane_compile_idl(NAME.idl FOLDER): makes NAME.h, NAME.tlb, NAME_i.c with the identifiers and NAME_p.c with the
# marshalling code in FOLDER, each by a call of its own.
function(vorlane_compile_idl idl folder)
  cmake_path(ABSOLUTE_PATH idl)
  cmake_path(GET idl STEM name)
  set(widl ${VORLANE_WIDL} -m64 -I ${VORLANE_IDL_FOLDER} -L ${VORLANE_STANDARD_TYPELIB_FOLDER})
  add_custom_command(
    OUTPUT ${folder}/${name}.h ${folder}/${name}.tlb ${folder}/${name}_i.c ${folder}/${name}_p.c
    COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}
    COMMAND ${widl} -h -o ${folder}/${name}.h ${idl}
    COMMAND ${widl} -t -o ${folder}/${name}.tlb ${idl}
    COMMAND ${VORLANE_PYTHON} ${CMAKE_SOURCE_DIR}/cmake/undate-typelib.py ${folder}/${name}.tlb
    COMMAND ${widl} -u -o ${folder}/${name}_i.c ${idl}
    # -Oif: without it the marshalling code asks for a header that mingw-w64 lacks.
    COMMAND ${widl} -Oif -p -o ${folder}/${name}_p.c ${idl}
    DEPENDS ${idl} ${CMAKE_SOURCE_DIR}/cmake/undate-typelib.py
    COMMENT "Compiling ${name}.idl"
    VERBATIM)
endfunction()
