# Qt's tools of the build machine, for a cross build: Qt's packages leave targets alone that exist.
foreach(tool moc qmake rcc uic)
    if(NOT TARGET Qt5::${tool})
        find_program(RIVO_HOST_${tool} ${tool} REQUIRED
            PATHS /usr/lib/qt5/bin NO_DEFAULT_PATH
            DOC "Qt's ${tool} of the build machine (Debian: qtbase5-dev-tools, qt5-qmake-bin)")
        add_executable(Qt5::${tool} IMPORTED)
        set_target_properties(Qt5::${tool} PROPERTIES IMPORTED_LOCATION "${RIVO_HOST_${tool}}")
    endif()
endforeach()
# As Qt's package sets it, for AUTOMOC.
set(QT_MOC_EXECUTABLE "${RIVO_HOST_moc}")

# lrelease and lupdate: the package has nothing but programs, so it is the build machine's.
file(GLOB RIVO_HOST_LINGUIST /usr/lib/*/cmake/Qt5LinguistTools)
if(RIVO_HOST_LINGUIST)
    list(GET RIVO_HOST_LINGUIST 0 Qt5LinguistTools_DIR)
endif()
