# Fails when the library exports a symbol that is not part of its API.
#   cmake -DLIBRARY=<path of the shared library> -DNM=<nm> -DCLASSES=<a;b> -DHOST_CLASSES=<a;b> -P CheckExportedSymbols.cmake
# CLASSES: the exported classes; every member, vtable, typeinfo and thunk of
# them may be exported. HOST_CLASSES: the contract's classes, whose typeinfo
# and vtables a user of them emits (they have no key function of their own).
foreach(var LIBRARY NM CLASSES HOST_CLASSES)
    if(NOT DEFINED ${var})
        message(FATAL_ERROR "CheckExportedSymbols: ${var} is not set")
    endif()
endforeach()

execute_process(COMMAND ${NM} -D --defined-only -C ${LIBRARY}
    OUTPUT_VARIABLE listing RESULT_VARIABLE result ERROR_VARIABLE errors)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "nm failed on ${LIBRARY}: ${errors}")
endif()

string(REPLACE ";" "|" classes "${CLASSES}")
string(REPLACE ";" "|" hostClasses "${HOST_CLASSES}")
set(allowed
    "^(non-virtual thunk to |virtual thunk to |vtable for |typeinfo for |typeinfo name for )?Brennvik::(${classes})(::|$)"
    "^(vtable for |typeinfo for |typeinfo name for )Brennvik::(${hostClasses})$"
    # Symbols the linker defines in every shared object.
    "^(_edata|_end|__bss_start|_init|_fini)$")

string(REPLACE "\n" ";" lines "${listing}")
set(count 0)
set(unexpected "")
foreach(line IN LISTS lines)
    # "<address> <type> <name>"
    if(NOT line MATCHES "^[0-9a-fA-F]+ [A-Za-z] (.+)$")
        continue()
    endif()
    set(symbol "${CMAKE_MATCH_1}")
    math(EXPR count "${count} + 1")
    set(ok FALSE)
    foreach(pattern IN LISTS allowed)
        if(symbol MATCHES "${pattern}")
            set(ok TRUE)
            break()
        endif()
    endforeach()
    if(NOT ok)
        string(APPEND unexpected "  ${symbol}\n")
    endif()
endforeach()

if(count EQUAL 0)
    message(FATAL_ERROR "No exported symbols found in ${LIBRARY}: is it the shared library?")
endif()
foreach(class IN LISTS CLASSES)
    if(NOT listing MATCHES "vtable for Brennvik::${class}\n")
        message(FATAL_ERROR "The exported class Brennvik::${class} is missing from ${LIBRARY}")
    endif()
endforeach()
if(unexpected)
    message(FATAL_ERROR "Unintended exports in ${LIBRARY}:\n${unexpected}")
endif()
message(STATUS "${count} exported symbols, all of the library's API")
