# Installs the build tree into a fresh prefix and configures a host project
# that has found the other Qt major before it looks for the library: the
# package must refuse it with a message that says which major it was built
# with. Exits with 77 (the test's skip code) when the other Qt major is not
# installed on this machine.
#   cmake -DBUILD_DIR=... -DWORK_DIR=... -DHOST_DIR=... -DGENERATOR=... -DQT_MAJOR=5|6 -P RefuseOtherQtMajor.cmake
foreach(var BUILD_DIR WORK_DIR HOST_DIR GENERATOR QT_MAJOR)
    if(NOT DEFINED ${var})
        message(FATAL_ERROR "RefuseOtherQtMajor: ${var} is not set")
    endif()
endforeach()
if(QT_MAJOR EQUAL 5)
    set(package BrennvikDebugMenu)
    set(otherMajor 6)
else()
    set(package BrennvikDebugMenuQt${QT_MAJOR})
    set(otherMajor 5)
endif()

set(prefix ${WORK_DIR}/prefix)
file(REMOVE_RECURSE ${WORK_DIR})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix}
    RESULT_VARIABLE result OUTPUT_QUIET ERROR_VARIABLE err)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "Install failed: ${err}")
endif()

execute_process(COMMAND ${CMAKE_COMMAND} -S ${HOST_DIR} -B ${WORK_DIR}/host-build -G ${GENERATOR}
        -DCMAKE_PREFIX_PATH=${prefix} -DHOST_QT_MAJOR=${otherMajor} -DPACKAGE=${package}
    RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE err)
string(REGEX REPLACE "[ \n]+" " " output "${out} ${err}")
if(output MATCHES "provided by \"Qt${otherMajor}\"")
    message("Qt ${otherMajor} is not installed; the refusal of a Qt ${otherMajor} host is not checked")
    cmake_language(EXIT 77)
endif()
if(result EQUAL 0)
    message(FATAL_ERROR "A Qt ${otherMajor} host configured with ${package}, built with Qt ${QT_MAJOR}:\n${out}")
endif()
if(NOT output MATCHES "${package} was built with Qt ${QT_MAJOR}, but this project uses Qt ${otherMajor}")
    message(FATAL_ERROR "The package refused the Qt ${otherMajor} host without saying why:\n${out}\n${err}")
endif()
message(STATUS "${package} refuses a Qt ${otherMajor} host")
