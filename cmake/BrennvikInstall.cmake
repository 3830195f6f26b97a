# Installs the library, the host contract and the reference host with their
# headers and a CMake package, so that a host finds them with
#   find_package(BrennvikDebugMenu REQUIRED)      # BrennvikDebugMenuQt6 for the Qt 6 build
#   target_link_libraries(app PRIVATE Brennvik::DebugMenuContent)
# and, unless BRENNVIK_INSTALL_CONFORMANCE_KIT is off, the conformance kit a
# host links into a test program of its own (Brennvik::ConformanceKit).
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# The targets' install interfaces name the same folder.
set(BRENNVIK_INSTALL_INCLUDEDIR ${BRENNVIK_INSTALL_INCLUDE_PREFIX})
set(BRENNVIK_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/${BRENNVIK_PACKAGE_NAME})
# The package of the other Qt major, named when a consumer on that major finds this one.
if(BRENNVIK_QT_MAJOR STREQUAL "5")
    set(BRENNVIK_OTHER_QT_MAJOR 6)
    set(BRENNVIK_OTHER_PACKAGE_NAME BrennvikDebugMenuQt6)
else()
    set(BRENNVIK_OTHER_QT_MAJOR 5)
    set(BRENNVIK_OTHER_PACKAGE_NAME BrennvikDebugMenu)
endif()

set_target_properties(brennvik_hostcontract PROPERTIES EXPORT_NAME HostContract)
set_target_properties(brennvik_referencehost PROPERTIES EXPORT_NAME ReferenceHost)
set_target_properties(brennvik_debugmenucontent PROPERTIES EXPORT_NAME DebugMenuContent)
# The Qt 6 build's libraries carry the major in their names, as Qt's do.
foreach(target brennvik_referencehost brennvik_debugmenucontent brennvik_conformancekit)
    if(TARGET ${target})
        set_target_properties(${target} PROPERTIES OUTPUT_NAME ${target}${BRENNVIK_NAME_SUFFIX})
    endif()
endforeach()

install(TARGETS brennvik_hostcontract brennvik_referencehost brennvik_debugmenucontent
    EXPORT BrennvikDebugMenuTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    INCLUDES DESTINATION ${BRENNVIK_INSTALL_INCLUDEDIR})

# The contract and the reference host are headers of the host: all of them.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/hostcontract/
    DESTINATION ${BRENNVIK_INSTALL_INCLUDEDIR}/hostcontract
    FILES_MATCHING PATTERN "*.h")
install(DIRECTORY ${PROJECT_SOURCE_DIR}/referencehost/
    DESTINATION ${BRENNVIK_INSTALL_INCLUDEDIR}/referencehost
    FILES_MATCHING PATTERN "*.h")

# The library: the headers of the exported classes only, each dialog with the
# form header it inherits from, and the generated export header.
foreach(header IN LISTS BRENNVIK_DEBUGMENU_PUBLIC_HEADERS)
    get_filename_component(dir ${header} DIRECTORY)
    install(FILES ${PROJECT_SOURCE_DIR}/debugmenucontent/${header}
        DESTINATION ${BRENNVIK_INSTALL_INCLUDEDIR}/debugmenucontent/${dir})
endforeach()
foreach(form IN LISTS BRENNVIK_DEBUGMENU_FORMS)
    get_filename_component(dir ${form} DIRECTORY)
    get_filename_component(name ${form} NAME_WE)
    install(FILES ${BRENNVIK_DEBUGMENU_FORMS_DIR}/ui_${name}.h
        DESTINATION ${BRENNVIK_INSTALL_INCLUDEDIR}/debugmenucontent/${dir})
endforeach()
install(FILES ${PROJECT_BINARY_DIR}/debugmenucontent/include/debugmenucontent/DebugMenuContentExport.h
    DESTINATION ${BRENNVIK_INSTALL_INCLUDEDIR}/debugmenucontent)

install(EXPORT BrennvikDebugMenuTargets
    NAMESPACE Brennvik::
    DESTINATION ${BRENNVIK_INSTALL_CMAKEDIR})
configure_package_config_file(
    ${PROJECT_SOURCE_DIR}/cmake/BrennvikDebugMenuConfig.cmake.in
    ${PROJECT_BINARY_DIR}/${BRENNVIK_PACKAGE_NAME}Config.cmake
    INSTALL_DESTINATION ${BRENNVIK_INSTALL_CMAKEDIR})
write_basic_package_version_file(
    ${PROJECT_BINARY_DIR}/${BRENNVIK_PACKAGE_NAME}ConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/${BRENNVIK_PACKAGE_NAME}Config.cmake
    ${PROJECT_BINARY_DIR}/${BRENNVIK_PACKAGE_NAME}ConfigVersion.cmake
    DESTINATION ${BRENNVIK_INSTALL_CMAKEDIR})

# The conformance kit a host links into a test program of its own. It has an
# export set of its own, loaded only when it was installed.
if(BRENNVIK_INSTALL_CONFORMANCE_KIT)
    install(TARGETS brennvik_conformancekit
        EXPORT BrennvikConformanceKitTargets
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        INCLUDES DESTINATION ${BRENNVIK_INSTALL_INCLUDEDIR})
    install(FILES ${BRENNVIK_CONFORMANCEKIT_PUBLIC_HEADERS}
        DESTINATION ${BRENNVIK_INSTALL_INCLUDEDIR}/conformancekit)
    install(EXPORT BrennvikConformanceKitTargets
        NAMESPACE Brennvik::
        DESTINATION ${BRENNVIK_INSTALL_CMAKEDIR})
endif()
