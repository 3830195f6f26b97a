# Fails when a C++ source of the project does not follow .clang-format.
#   cmake -DSOURCE_DIR=<checkout> -DCLANG_FORMAT=<clang-format> -P CheckFormat.cmake
# Exits with 77 (the test's skip code) when no clang-format is at hand.
if(NOT CLANG_FORMAT OR NOT EXISTS "${CLANG_FORMAT}")
    message("clang-format not found; format not checked")
    cmake_language(EXIT 77)
endif()

set(_files)
foreach(dir app bench debugmenucontent hostcontract referencehost tests)
    file(GLOB_RECURSE _found LIST_DIRECTORIES false "${SOURCE_DIR}/${dir}/*.cpp" "${SOURCE_DIR}/${dir}/*.h")
    list(APPEND _files ${_found})
endforeach()
list(LENGTH _files _count)

# One clang-format for all files: started once per file, it spent a minute
# on starting alone. It names each offending file in its warnings.
execute_process(COMMAND "${CLANG_FORMAT}" --dry-run --Werror ${_files}
                RESULT_VARIABLE _result OUTPUT_QUIET ERROR_VARIABLE _errors)
set(_offenders)
if(NOT _result EQUAL 0)
    string(REGEX MATCHALL "[^\n]+: error: code should be clang-formatted" _lines "${_errors}")
    foreach(line IN LISTS _lines)
        string(REGEX REPLACE ":[0-9]+:[0-9]+: error: code should be clang-formatted$" "" file "${line}")
        file(RELATIVE_PATH _relative "${SOURCE_DIR}" "${file}")
        list(APPEND _offenders "${_relative}")
    endforeach()
    list(REMOVE_DUPLICATES _offenders)
    if(NOT _offenders)
        message(FATAL_ERROR "clang-format failed (${_result}):\n${_errors}")
    endif()
endif()

if(_offenders)
    list(JOIN _offenders "\n  " _listing)
    message(FATAL_ERROR "Not formatted with .clang-format (run clang-format -i on them):\n  ${_listing}")
endif()
message("${_count} files follow .clang-format")
