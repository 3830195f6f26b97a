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

set(_offenders)
foreach(file IN LISTS _files)
    execute_process(COMMAND "${CLANG_FORMAT}" --dry-run --Werror "${file}"
                    RESULT_VARIABLE _result OUTPUT_QUIET ERROR_QUIET)
    if(NOT _result EQUAL 0)
        file(RELATIVE_PATH _relative "${SOURCE_DIR}" "${file}")
        list(APPEND _offenders "${_relative}")
    endif()
endforeach()

if(_offenders)
    list(JOIN _offenders "\n  " _listing)
    message(FATAL_ERROR "Not formatted with .clang-format (run clang-format -i on them):\n  ${_listing}")
endif()
message("${_count} files follow .clang-format")
