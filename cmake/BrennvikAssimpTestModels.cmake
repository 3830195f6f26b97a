# Finds the data folder of Assimp's test models (Debian package
# assimp-testmodels): the folder that holds its "invalid" folder. Sets
# BRENNVIK_ASSIMP_TESTMODELS to it, or to "" when the package is absent.
set(BRENNVIK_ASSIMP_TESTMODELS "")
find_program(BRENNVIK_DPKG_QUERY dpkg-query)
if(BRENNVIK_DPKG_QUERY)
    execute_process(COMMAND ${BRENNVIK_DPKG_QUERY} -L assimp-testmodels
                    OUTPUT_VARIABLE _brennvik_files ERROR_QUIET RESULT_VARIABLE _brennvik_status)
    if(_brennvik_status EQUAL 0)
        string(REGEX MATCH "[^\n]*/invalid\n" _brennvik_invalid "${_brennvik_files}")
        string(STRIP "${_brennvik_invalid}" _brennvik_invalid)
        if(_brennvik_invalid)
            get_filename_component(BRENNVIK_ASSIMP_TESTMODELS "${_brennvik_invalid}" DIRECTORY)
        endif()
    endif()
endif()
