# Installs the build tree into a fresh prefix, then configures, builds and
# runs a small host program that finds the installed package. With
# -DEXAMPLE_DIR=..., it also builds the README's embedding example there
# (EXAMPLE_CMAKELISTS: the example's CMakeLists.txt, if not the one in EXAMPLE_DIR).
#   cmake -DBUILD_DIR=... -DWORK_DIR=... -DCONSUMER_DIR=... -DGENERATOR=... -P InstallAndConsume.cmake
# -DQT_MAJOR=6 for a build made with Qt 6 (default 5); -DLAUNCHER=ccache
# compiles the builds this script makes through the launcher.
# With -DEXTERNAL_HOST=ON -DSOURCE_DIR=<project> instead of BUILD_DIR, it first
# builds the library for an external host in a build tree of its own and
# checks that the library does not depend on the reference host; with
# -DHOST_CHECKLIST=<doc>, also that the doc names all the library needs of the host.
if(EXTERNAL_HOST)
    if(NOT DEFINED SOURCE_DIR)
        message(FATAL_ERROR "InstallAndConsume: SOURCE_DIR is needed with EXTERNAL_HOST")
    endif()
    set(BUILD_DIR ${WORK_DIR}/build)
endif()
foreach(var BUILD_DIR WORK_DIR CONSUMER_DIR GENERATOR)
    if(NOT DEFINED ${var})
        message(FATAL_ERROR "InstallAndConsume: ${var} is not set")
    endif()
endforeach()
if(NOT DEFINED QT_MAJOR)
    set(QT_MAJOR 5)
endif()
# The names the Qt 6 build installs under carry the major.
if(QT_MAJOR EQUAL 5)
    set(suffix "")
    set(otherMajor 6)
else()
    set(suffix "-qt${QT_MAJOR}")
    set(otherMajor 5)
endif()
set(includeDir include/brennvik${suffix})
set(configureOptions -G ${GENERATOR} -DCMAKE_BUILD_TYPE=Release)
if(LAUNCHER)
    list(APPEND configureOptions -DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER} -DCMAKE_C_COMPILER_LAUNCHER=${LAUNCHER})
endif()

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE err)
    if(NOT result EQUAL 0)
        string(REPLACE ";" " " command "${ARGN}")
        message(FATAL_ERROR "Failed (${result}): ${command}\n${out}\n${err}")
    endif()
    set(last_output "${out}" PARENT_SCOPE)
endfunction()

set(prefix ${WORK_DIR}/prefix)
set(consumerBuild ${WORK_DIR}/consumer-build)
file(REMOVE_RECURSE ${WORK_DIR})

if(EXTERNAL_HOST)
    run(${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${BUILD_DIR} ${configureOptions} -DBRENNVIK_QT_MAJOR=${QT_MAJOR}
        -DBRENNVIK_EXTERNAL_HOST=ON -DBRENNVIK_BUILD_TESTS=OFF -DBRENNVIK_BUILD_APP=OFF)
    run(${CMAKE_COMMAND} --build ${BUILD_DIR})
endif()

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})

file(GLOB library ${prefix}/lib*/libbrennvik_debugmenucontent${suffix}.so.*.*.*)
if(NOT library)
    message(FATAL_ERROR "Not installed: libbrennvik_debugmenucontent${suffix}.so")
endif()
# Everything the library loads, its own libraries' dependencies included,
# comes from its Qt major: one library of the other would bring a second Qt.
find_program(LDD NAMES ldd)
if(LDD)
    get_filename_component(libraryDir ${library} DIRECTORY)
    run(${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${libraryDir} ${LDD} ${library})
    if(NOT last_output MATCHES "libQt${QT_MAJOR}Widgets")
        message(FATAL_ERROR "The library does not load Qt ${QT_MAJOR} Widgets:\n${last_output}")
    endif()
    if(last_output MATCHES "libQt${otherMajor}")
        message(FATAL_ERROR "The library loads Qt ${otherMajor} libraries:\n${last_output}")
    endif()
    if(last_output MATCHES "not found")
        message(FATAL_ERROR "The library misses libraries:\n${last_output}")
    endif()
endif()

if(EXTERNAL_HOST)
    find_program(READELF NAMES readelf)
    if(NOT library OR NOT READELF)
        message(FATAL_ERROR "Cannot inspect the installed library (${library}, ${READELF})")
    endif()
    run(${READELF} -d ${library})
    if(last_output MATCHES "brennvik_referencehost")
        message(FATAL_ERROR "The library for an external host depends on the reference host:\n${last_output}")
    endif()
    if(NOT last_output MATCHES "libQt${QT_MAJOR}Widgets")
        message(FATAL_ERROR "Unexpected dependencies of ${library}:\n${last_output}")
    endif()
    if(DEFINED HOST_CHECKLIST)
        include(${CMAKE_CURRENT_LIST_DIR}/CheckHostChecklist.cmake)
        check_host_checklist(${library} ${HOST_CHECKLIST})
    endif()
endif()
foreach(expected
        ${includeDir}/debugmenucontent/displaymodeldialog/DisplayModelDialog.h
        ${includeDir}/debugmenucontent/displaymodeldialog/ui_DisplayModelDialog.h
        ${includeDir}/debugmenucontent/DebugMenuContentExport.h
        ${includeDir}/hostcontract/DisplayItemInterface.h
        ${includeDir}/conformancekit/ConformanceHost.h
        ${includeDir}/conformancekit/ConformanceTest.h)
    if(NOT EXISTS ${prefix}/${expected})
        message(FATAL_ERROR "Not installed: ${expected}")
    endif()
endforeach()
foreach(internal treewidgets/EditModelTreeWidgetItem.h treewidgets/RowText.h)
    if(EXISTS ${prefix}/${includeDir}/debugmenucontent/${internal})
        message(FATAL_ERROR "An internal header was installed: ${internal}")
    endif()
endforeach()
# A host gets the exported classes, the forms they inherit and the export
# macro, and nothing of the internal units.
file(GLOB_RECURSE installedHeaders RELATIVE ${prefix}/${includeDir}/debugmenucontent
     ${prefix}/${includeDir}/debugmenucontent/*)
list(SORT installedHeaders)
set(publicHeaders
    DebugMenuContentExport.h
    clonecomparison/DebugCloneDisplayModelDialog.h
    clonecomparison/ui_DebugCloneDisplayModelDialog.h
    displaymodel2d/DisplayModel2DDialog.h
    displaymodel2d/ViewModelHolder.h
    displaymodel2d/ui_DisplayModel2DDialog.h
    displaymodeldialog/DisplayModelDialog.h
    displaymodeldialog/ui_DisplayModelDialog.h
    treewidgets/DisplayItemTreeWidget.h
    treewidgets/DisplayItemTreeWidgetItem.h)
if(NOT installedHeaders STREQUAL publicHeaders)
    message(FATAL_ERROR "Installed library headers differ from the public ones:\n${installedHeaders}")
endif()

run(${CMAKE_COMMAND} -S ${CONSUMER_DIR} -B ${consumerBuild} ${configureOptions}
    -DCMAKE_PREFIX_PATH=${prefix} -DBRENNVIK_QT_MAJOR=${QT_MAJOR})
run(${CMAKE_COMMAND} --build ${consumerBuild})
set(ENV{QT_QPA_PLATFORM} offscreen)
run(${consumerBuild}/brennvik-consumer)
message(STATUS "consumer: ${last_output}")
if(NOT last_output MATCHES "top row: Forming simulation")
    message(FATAL_ERROR "The consumer did not show the model: ${last_output}")
endif()

# The conformance kit, linked by the host's own test program, passes with the
# implementation that stands in for the host's.
run(${consumerBuild}/brennvik-consumer-conformance)
message(STATUS "conformance: ${last_output}")
if(NOT last_output MATCHES "Totals: [0-9]+ passed, 0 failed")
    message(FATAL_ERROR "The conformance kit did not pass: ${last_output}")
endif()

# The README's embedding example, as a newcomer copies it, builds against
# the same prefix.
if(DEFINED EXAMPLE_DIR)
    if(NOT DEFINED EXAMPLE_CMAKELISTS)
        set(EXAMPLE_CMAKELISTS ${EXAMPLE_DIR}/CMakeLists.txt)
    endif()
    set(exampleSource ${WORK_DIR}/example-source)
    file(COPY ${EXAMPLE_DIR}/main.cpp ${EXAMPLE_CMAKELISTS} DESTINATION ${exampleSource})
    run(${CMAKE_COMMAND} -S ${exampleSource} -B ${WORK_DIR}/example-build ${configureOptions}
        -DCMAKE_PREFIX_PATH=${prefix})
    run(${CMAKE_COMMAND} --build ${WORK_DIR}/example-build)
    if(NOT EXISTS ${WORK_DIR}/example-build/my_host)
        message(FATAL_ERROR "The embedding example built no program")
    endif()
endif()
