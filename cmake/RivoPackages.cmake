# Makes the Debian packages with CPack, one for each component. packaging/make-packages.sh uses it.

# rivo_debian_architecture(<variable>)
# Sets the variable to Debian's name of the architecture that the compiler builds for.
function(rivo_debian_architecture variable)
    set(x86_64-linux-gnu amd64)
    set(aarch64-linux-gnu arm64)
    set(arm-linux-gnueabihf armhf)
    if(NOT DEFINED "${CMAKE_LIBRARY_ARCHITECTURE}")
        message(FATAL_ERROR "No packages for \"${CMAKE_LIBRARY_ARCHITECTURE}\": "
            "cmake/RivoPackages.cmake knows amd64, arm64 and armhf")
    endif()
    set(${variable} "${${CMAKE_LIBRARY_ARCHITECTURE}}" PARENT_SCOPE)
endfunction()

# rivo_debian_package(<component> <package> DESCRIPTION <line>... [SECTION <section>]
#                     [NEEDS <component>...] [DEPENDS <package>...] [RECOMMENDS <package>...]
#                     [LIBRARIES <package>...] [EXTRA <control file>...]
#                     [SUPPRESS <lintian tag>...] [MULTIARCH_SAME])
# DESCRIPTION: the synopsis, then the lines of the text. LIBRARIES: the packages of the libraries that
# the binaries load. Cross builds need this list: dpkg-shlibdeps does not know the target's packages.
# MULTIARCH_SAME: packages of several architectures may be installed beside each other, because files
# outside the folder of the architecture are the same in each.
function(rivo_debian_package component package)
    cmake_parse_arguments(PARSE_ARGV 2 arg "MULTIARCH_SAME"
        "SECTION" "DESCRIPTION;NEEDS;DEPENDS;RECOMMENDS;LIBRARIES;EXTRA;SUPPRESS")
    string(TOUPPER "${component}" id)
    set(CPACK_COMPONENTS_ALL ${CPACK_COMPONENTS_ALL} ${component} PARENT_SCOPE)
    list(POP_FRONT arg_DESCRIPTION synopsis)
    list(JOIN arg_DESCRIPTION "\n" text)
    set(generated "${CMAKE_CURRENT_BINARY_DIR}/packaging/${package}")
    file(MAKE_DIRECTORY "${generated}")
    set(all_depends ${arg_LIBRARIES} ${arg_DEPENDS})
    list(TRANSFORM all_depends REPLACE " .*" "")
    list(JOIN all_depends "\n" all_depends)
    file(CONFIGURE OUTPUT "${generated}/depends" CONTENT "${all_depends}\n")
    if(NOT CPACK_DEBIAN_PACKAGE_SHLIBDEPS)
        list(APPEND arg_DEPENDS ${arg_LIBRARIES})
    endif()
    list(JOIN arg_DEPENDS ", " depends)
    list(JOIN arg_RECOMMENDS ", " recommends)
    if(arg_MULTIARCH_SAME) # CPack has no variable for this field before CMake 3.31
        string(APPEND arg_SECTION "\nMulti-Arch: same")
    endif()
    foreach(setting IN ITEMS
            "DEBIAN_${id}_PACKAGE_NAME=${package}"
            "DEBIAN_${id}_FILE_NAME=DEB-DEFAULT"
            "DEBIAN_${id}_PACKAGE_SECTION=${arg_SECTION}"
            "DEBIAN_${id}_DESCRIPTION=${synopsis}\n${text}"
            "DEBIAN_${id}_PACKAGE_DEPENDS=${depends}"
            "DEBIAN_${id}_PACKAGE_RECOMMENDS=${recommends}"
            "COMPONENT_${id}_DEPENDS=${arg_NEEDS}"
            "DEBIAN_${id}_PACKAGE_CONTROL_EXTRA=${arg_EXTRA}")
        string(REGEX MATCH "^([^=]*)=(.*)$" unused "${setting}")
        set(CPACK_${CMAKE_MATCH_1} "${CMAKE_MATCH_2}" PARENT_SCOPE)
    endforeach()

    execute_process(COMMAND gzip -9nc "${rivo_changelog}"
        OUTPUT_FILE "${generated}/changelog.gz" COMMAND_ERROR_IS_FATAL ANY)
    install(FILES "${generated}/changelog.gz" "${CMAKE_SOURCE_DIR}/packaging/debian/copyright"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${package}" COMPONENT ${component})
    # packaging/make-packages.sh makes it, with the versions of what the package needs.
    install(FILES "${generated}/sbom.spdx.json" OPTIONAL
        DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${package}" COMPONENT ${component})
    if(arg_SUPPRESS)
        list(TRANSFORM arg_SUPPRESS PREPEND "${package}: ")
        list(JOIN arg_SUPPRESS "\n" overrides)
        file(CONFIGURE OUTPUT "${generated}/${package}" CONTENT "${overrides}\n" @ONLY)
        install(FILES "${generated}/${package}"
            DESTINATION "${CMAKE_INSTALL_DATADIR}/lintian/overrides" COMPONENT ${component})
    endif()
endfunction()

# Installs what starts the terminal with the machine.
function(rivo_install_kiosk)
    set(generated "${CMAKE_CURRENT_BINARY_DIR}/packaging/kiosk")
    set(kiosk "${CMAKE_SOURCE_DIR}/packaging/kiosk")
    foreach(file IN ITEMS rivo-terminal.service rivo-terminal.desktop)
        configure_file("${kiosk}/${file}.in" "${generated}/${file}" @ONLY)
    endforeach()
    install(FILES "${generated}/rivo-terminal.service" "${kiosk}/rivo-terminal-stopped.service"
        DESTINATION lib/systemd/system COMPONENT terminal)
    install(FILES "${generated}/rivo-terminal.desktop" DESTINATION "${CMAKE_INSTALL_DATADIR}/xsessions"
        COMPONENT terminal)
    install(FILES "${kiosk}/default" DESTINATION "${CMAKE_INSTALL_FULL_SYSCONFDIR}/default"
        RENAME rivo-terminal COMPONENT terminal)
endfunction()

# Installs what starts the office with its machine.
function(rivo_install_office_service)
    set(generated "${CMAKE_CURRENT_BINARY_DIR}/packaging/office")
    foreach(unit IN ITEMS rivo-office@.service rivo-office-web.service)
        configure_file("${CMAKE_SOURCE_DIR}/packaging/office/${unit}.in" "${generated}/${unit}" @ONLY)
        install(FILES "${generated}/${unit}" DESTINATION lib/systemd/system COMPONENT office)
    endforeach()
    install(FILES "${CMAKE_SOURCE_DIR}/packaging/office/default"
        DESTINATION "${CMAKE_INSTALL_FULL_SYSCONFDIR}/default" RENAME rivo-office COMPONENT office)
endfunction()

# dpkg-shlibdeps finds the packages of needed libraries.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
if(CMAKE_CROSSCOMPILING AND CMAKE_SYSROOT)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS OFF) # the package database of this machine does not have the target's packages
endif()

set(CPACK_PACKAGE_NAME rivo-guicore)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has one of its own
set(CPACK_PACKAGE_VENDOR "Rivo")
set(CPACK_PACKAGE_CONTACT "Rivo GuiCore developers <guicore@rivo.example>")
set(CPACK_PACKAGING_INSTALL_PREFIX "${CMAKE_INSTALL_PREFIX}")
set(CPACK_OUTPUT_FILE_PREFIX "${CMAKE_BINARY_DIR}/packages")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL "") # those of which there is a package
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
rivo_debian_architecture(CPACK_DEBIAN_PACKAGE_ARCHITECTURE)

set(rivo_changelog "${CMAKE_CURRENT_BINARY_DIR}/packaging/changelog")
file(MAKE_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}/packaging")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/CHANGELOG.md")
execute_process(
    COMMAND "${CMAKE_SOURCE_DIR}/packaging/debian-changelog.sh"
        "${CPACK_PACKAGE_NAME}" "${PROJECT_VERSION}" "${CPACK_PACKAGE_CONTACT}"
    OUTPUT_FILE "${rivo_changelog}" COMMAND_ERROR_IS_FATAL ANY)

set(compiler_libraries "libc6 (>= 2.34)" "libgcc-s1 (>= 3.5)" "libstdc++6 (>= 12)")
set(qt_core "libqt5core5a (>= 5.15.1)")
set(positioning "libqt5positioning5 (>= 5.15.1)")

configure_file(packaging/debian/runtime/shlibs.in packaging/shlibs @ONLY)
# packaging/make-packages.sh makes the symbols file, from the built library.
rivo_debian_package(runtime libguicore${PROJECT_VERSION_MAJOR}
    SECTION libs
    MULTIARCH_SAME
    DESCRIPTION
        "list models of a ticketing terminal"
        "Qt list models for the touch screen of a ticketing terminal in a bus: the"
        "selection grid, the basket, the fare products, the Z reports, the vehicles of"
        "the fleet and the devices. The package also contains the core library"
        "libRIVO_ARM_QtLib.so with configuration, registry and logger."
    LIBRARIES ${compiler_libraries} ${qt_core} ${positioning}
    EXTRA "${CMAKE_CURRENT_BINARY_DIR}/packaging/shlibs"
        "${CMAKE_CURRENT_BINARY_DIR}/packaging/symbols"
        "${CMAKE_SOURCE_DIR}/packaging/debian/runtime/triggers"
    # The core library has no version in its name and no list of symbols, so that another build can
    # replace it. CPack adds a call of ldconfig to the trigger.
    SUPPRESS
        "shared-library-lacks-version usr/lib/*/libRIVO_ARM_QtLib.so libRIVO_ARM_QtLib.so"
        "shared-library-symbols-not-tracked libRIVO_ARM_QtLib.so for usr/lib/*/libRIVO_ARM_QtLib.so [symbols]"
        "maintscript-calls-ldconfig [postinst]" "maintscript-calls-ldconfig [postrm]")
# Not MULTIARCH_SAME: core/Logging.h of a 32-bit architecture demands definitions.
rivo_debian_package(dev libguicore-dev
    SECTION libdevel
    DESCRIPTION
        "list models of a ticketing terminal - development files"
        "Headers of GuiCore and of the core library, with files for CMake"
        "(find_package(GuiCore)) and pkg-config (GuiCore)."
    NEEDS runtime
    DEPENDS "qtbase5-dev (>= 5.15)" "qtpositioning5-dev (>= 5.15)" libeasyloggingpp-dev
    SUPPRESS "pkg-config-bad-directive -fPIC [usr/lib/*/pkgconfig/GuiCore.pc]")
if(TARGET GuiCoreQml)
    rivo_debian_package(qml qml-module-rivo-guicore
        SECTION libs
        MULTIARCH_SAME
        DESCRIPTION
            "list models of a ticketing terminal - QML module"
            "QML types for the models and rows of GuiCore: import Rivo.GuiCore 1.0"
        NEEDS runtime
        LIBRARIES ${compiler_libraries} ${qt_core} "libqt5qml5 (>= 5.15.1)")
endif()
if(TARGET rivo-terminal)
    rivo_debian_package(terminal rivo-terminal
        SECTION misc
        DESCRIPTION
            "ticketing terminal for the driver of a bus"
            "Sells tickets from a feed on a touch screen. It shows the selection grid, the"
            "basket with payment and printing, the fare products, the Z reports, the"
            "vehicles on a map and the devices. A journal on disk keeps the sales, also"
            "after a power cut."
            "."
            "A systemd service, which is not enabled by default, and a session for display"
            "managers show the terminal on the whole screen. Two sample feeds are included."
        NEEDS runtime qml
        LIBRARIES ${compiler_libraries} ${qt_core} ${positioning} "libcsv3 (>= 3.0.3)"
            "libzip4 (>= 1.0)"
            "libqt5gui5 (>= 5.15.1)" "libqt5multimedia5 (>= 5.15.1)"
            "libqt5network5 (>= 5.15.1)" "libqt5serialport5 (>= 5.15.1)"
            "libqt5qml5 (>= 5.15.1)" "libqt5quick5 (>= 5.15.1)"
            "libqt5quickcontrols2-5 (>= 5.15.1)" "libqt5sql5 (>= 5.15.1)"
            "libsqlite3-0 (>= 3.6.18)" "libssl3 (>= 3.0.0)"
            "libqrencode4 (>= 4.0.0)" "libmosquitto1 (>= 1.4)"
            "libprotobuf-lite32 (>= 3.21.12)" "zlib1g (>= 1:1.2.0)"
        # Loaded at run time: the database of the journal, icons, fonts, sound devices, and what the
        # QML imports.
        DEPENDS adduser libqt5sql5-sqlite libqt5svg5 libqt5multimedia5-plugins "fonts-dejavu-core | fonts-dejavu"
            qml-module-qtqml qml-module-qtquick2 qml-module-qtquick-window2
            qml-module-qtquick-controls2 qml-module-qtquick-templates2
            qml-module-qtlocation qml-module-qtpositioning
        RECOMMENDS libgl1-mesa-dri
        EXTRA ${CMAKE_SOURCE_DIR}/packaging/debian/terminal/conffiles
            ${CMAKE_SOURCE_DIR}/packaging/debian/terminal/postinst
            ${CMAKE_SOURCE_DIR}/packaging/debian/terminal/prerm
            ${CMAKE_SOURCE_DIR}/packaging/debian/terminal/postrm)
    rivo_install_kiosk()
    rivo_debian_package(simulators rivo-terminal-simulators
        SECTION misc
        DESCRIPTION
            "devices of a ticketing terminal as programs"
            "To try a ticketing terminal without its devices. virtual-printer is a ticket"
            "printer in the network or at a serial line: it draws its paper into pictures,"
            "and has the faults of a printer on command. virtual-card-terminal speaks ZVT"
            "over TCP, has its own books, and plays scripts of faults."
        NEEDS runtime
        LIBRARIES ${compiler_libraries} ${qt_core} "libqt5gui5 (>= 5.15.1)"
            "libqt5network5 (>= 5.15.1)" "libqrencode4 (>= 4.0.0)"
        DEPENDS "fonts-dejavu-core | fonts-dejavu" "python3 (>= 3.9)"
        RECOMMENDS rivo-terminal)
endif()
if(TARGET rivo-office)
    rivo_debian_package(office rivo-office
        SECTION misc
        DESCRIPTION
            "office of a fleet of ticketing terminals"
            "Takes the sales of all vehicles from a broker of MQTT, checks their seals,"
            "keeps them in PostgreSQL, and reports what was sold and what is missing. More"
            "than one program may run at a time."
            "."
            "A template of a systemd service, which is not enabled by default, is included."
        NEEDS runtime
        LIBRARIES ${compiler_libraries} ${qt_core} "libqt5sql5 (>= 5.15.1)"
            "libsqlite3-0 (>= 3.6.18)" "libssl3 (>= 3.0.0)" "libmosquitto1 (>= 1.4)"
            "libcsv3 (>= 3.0.3)" "libzip4 (>= 1.0)" "libprotobuf-lite32 (>= 3.21.12)"
            "libmicrohttpd12 (>= 0.9.50)"
        DEPENDS adduser libqt5sql5-psql
        RECOMMENDS mosquitto postgresql
        EXTRA ${CMAKE_SOURCE_DIR}/packaging/debian/office/conffiles
            ${CMAKE_SOURCE_DIR}/packaging/debian/office/postinst
            ${CMAKE_SOURCE_DIR}/packaging/debian/office/prerm
            ${CMAKE_SOURCE_DIR}/packaging/debian/office/postrm)
    rivo_install_office_service()
endif()
if(TARGET rivo-grid)
    rivo_debian_package(tools rivo-guicore-tools
        SECTION misc
        DESCRIPTION
            "tools for the feeds of a ticketing terminal"
            "rivo-grid prints the selection grid of a feed and checks its back-office"
            "positions. rivo-models prints the rows of a model as a table, JSON or CSV."
        NEEDS runtime
        LIBRARIES ${compiler_libraries} ${qt_core} ${positioning} "libcsv3 (>= 3.0.3)"
            "libzip4 (>= 1.0)"
        RECOMMENDS rivo-terminal)
endif()
include(CPack)
