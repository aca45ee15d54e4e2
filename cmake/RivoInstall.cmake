# Where everything is installed, and what lets other projects find the library there. All of it is
# relative to the prefix, so that an installed tree may be moved.
#
# Components: runtime (both libraries), dev (headers, CMake package, pkg-config), qml, terminal,
# simulators, office, tools.

# Debian's folders in a cross build too, where GNUInstallDirs does not take them.
if(CMAKE_CROSSCOMPILING AND CMAKE_LIBRARY_ARCHITECTURE AND CMAKE_INSTALL_PREFIX STREQUAL "/usr")
    set(CMAKE_INSTALL_LIBDIR "lib/${CMAKE_LIBRARY_ARCHITECTURE}" CACHE PATH "Folder of libraries")
endif()
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)
include(RivoCoreLibrary)

set(RIVO_INSTALL_INCLUDEDIR "${CMAKE_INSTALL_INCLUDEDIR}/guicore")
set(RIVO_INSTALL_CMAKEDIR "${CMAKE_INSTALL_LIBDIR}/cmake/GuiCore")
set(RIVO_INSTALL_QMLDIR "${CMAKE_INSTALL_LIBDIR}/qt${QT_DEFAULT_MAJOR_VERSION}/qml")
set(RIVO_INSTALL_FEEDDIR "${CMAKE_INSTALL_DATADIR}/rivo-terminal/feeds")

# rivo_relative_path(<variable> <from> <to>)
# The way between two folders of the installed tree.
function(rivo_relative_path variable from to)
    file(RELATIVE_PATH path "/prefix/${from}" "/prefix/${to}")
    set(${variable} "${path}" PARENT_SCOPE)
endfunction()

# rivo_install_manual(<program> <component>)
# The manual page of a program, compressed.
function(rivo_install_manual program component)
    set(page "${CMAKE_SOURCE_DIR}/docs/man/${program}.1")
    set(compressed "${CMAKE_CURRENT_BINARY_DIR}/${program}.1.gz")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${page}")
    execute_process(COMMAND gzip -9nc "${page}"
        OUTPUT_FILE "${compressed}" COMMAND_ERROR_IS_FATAL ANY)
    install(FILES "${compressed}" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT ${component})
endfunction()

# rivo_install(<target> COMPONENT <component> DESTINATION <folder>)
# A program or plugin that finds our libraries wherever the tree is; a program with its manual page.
function(rivo_install target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "COMPONENT;DESTINATION" "")
    rivo_relative_path(libraries "${arg_DESTINATION}" "${CMAKE_INSTALL_LIBDIR}")
    set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries}")
    install(TARGETS ${target}
        RUNTIME DESTINATION "${arg_DESTINATION}" COMPONENT ${arg_COMPONENT}
        LIBRARY DESTINATION "${arg_DESTINATION}" COMPONENT ${arg_COMPONENT})
    get_target_property(type ${target} TYPE)
    if(type STREQUAL "EXECUTABLE")
        rivo_install_manual(${target} ${arg_COMPONENT})
    endif()
endfunction()

# rivo_install_core()
# The core library under the name that the loader looks for. Another build of it
# (GUICORE_CORE_LIBRARY) is a copy.
function(rivo_install_core)
    if(GUICORE_CORE_LIBRARY)
        get_filename_component(file "${GUICORE_CORE_LIBRARY}" REALPATH BASE_DIR "${CMAKE_SOURCE_DIR}")
        get_target_property(name RivoCore RIVO_LOADED_NAME)
        install(FILES "${file}" DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT runtime
            RENAME "${name}")
        if(NOT name STREQUAL RIVO_CORE_LIBRARY_SONAME) # for linkers
            set(link "${CMAKE_CURRENT_BINARY_DIR}/install/${RIVO_CORE_LIBRARY_SONAME}")
            file(MAKE_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}/install")
            file(CREATE_LINK "${name}" "${link}" SYMBOLIC)
            install(FILES "${link}" DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT dev)
        endif()
    else()
        install(TARGETS RivoCore LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT runtime)
    endif()
endfunction()

# rivo_install_library()
# Both libraries, their headers, and the packages GuiCore of CMake and pkg-config.
function(rivo_install_library)
    set_target_properties(GuiCore PROPERTIES INSTALL_RPATH "$ORIGIN")
    install(TARGETS GuiCore EXPORT GuiCoreTargets
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT runtime NAMELINK_COMPONENT dev
        FILE_SET HEADERS DESTINATION "${RIVO_INSTALL_INCLUDEDIR}" COMPONENT dev)
    install(TARGETS RivoCoreBoundary
        FILE_SET HEADERS DESTINATION "${RIVO_INSTALL_INCLUDEDIR}" COMPONENT dev)
    rivo_install_core()

    set(generated "${CMAKE_CURRENT_BINARY_DIR}/install")
    configure_package_config_file(cmake/GuiCoreConfig.cmake.in "${generated}/GuiCoreConfig.cmake"
        INSTALL_DESTINATION "${RIVO_INSTALL_CMAKEDIR}"
        PATH_VARS CMAKE_INSTALL_LIBDIR RIVO_INSTALL_INCLUDEDIR RIVO_INSTALL_QMLDIR)
    write_basic_package_version_file("${generated}/GuiCoreConfigVersion.cmake"
        COMPATIBILITY SameMajorVersion)
    install(EXPORT GuiCoreTargets NAMESPACE GuiCore::
        DESTINATION "${RIVO_INSTALL_CMAKEDIR}" COMPONENT dev)
    install(FILES "${generated}/GuiCoreConfig.cmake" "${generated}/GuiCoreConfigVersion.cmake"
        DESTINATION "${RIVO_INSTALL_CMAKEDIR}" COMPONENT dev)

    set(pkgconfig_dir "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
    rivo_relative_path(RIVO_PC_PREFIX "${pkgconfig_dir}" "")
    configure_file(cmake/GuiCore.pc.in "${generated}/GuiCore.pc" @ONLY)
    install(FILES "${generated}/GuiCore.pc" DESTINATION "${pkgconfig_dir}" COMPONENT dev)
endfunction()
