# The Qt that everything is built with. Qt's own variable decides, which also decides what targets without
# a version, such as Qt::Core, stand for. What depends on it is here.
set(QT_DEFAULT_MAJOR_VERSION 5 CACHE STRING "Major version of Qt: 5, or 6 without the terminal")
set_property(CACHE QT_DEFAULT_MAJOR_VERSION PROPERTY STRINGS 5 6)

set(RIVO_QT_MINIMUM_5 5.15)
set(RIVO_QT_MINIMUM_6 6.4)
if(NOT DEFINED RIVO_QT_MINIMUM_${QT_DEFAULT_MAJOR_VERSION})
    message(FATAL_ERROR "QT_DEFAULT_MAJOR_VERSION: there is no Qt ${QT_DEFAULT_MAJOR_VERSION} to build with; it must be 5 or 6")
endif()
# Sizes of containers have 64 bits with Qt 6. Product code writes where it narrows them; tests need
# not, they compare them with small numbers.
set(RIVO_TEST_CONVERSIONS_5 -Wconversion)
set(RIVO_TEST_CONVERSIONS_6 "")
set(RIVO_TEST_CONVERSIONS "${RIVO_TEST_CONVERSIONS_${QT_DEFAULT_MAJOR_VERSION}}")
# Tests that are about Qt 5 itself: the figures of its operations and rows, the ABI of the library
# built with it, and the type description and the linter that it has.
set(RIVO_TESTS_LEFT_OUT_5 "")
set(RIVO_TESTS_LEFT_OUT_6
    tst_operation_budget tst_row_memory abi_kept tst_qml_qmltypes qmllint tst_documented_qml)
set(RIVO_TESTS_LEFT_OUT ${RIVO_TESTS_LEFT_OUT_${QT_DEFAULT_MAJOR_VERSION}})
set(RIVO_QT "Qt${QT_DEFAULT_MAJOR_VERSION}")
set(RIVO_QT_MINIMUM "${RIVO_QT_MINIMUM_${QT_DEFAULT_MAJOR_VERSION}}")

# rivo_find_qt(<component>...)
macro(rivo_find_qt)
    find_package(${RIVO_QT} ${RIVO_QT_MINIMUM} REQUIRED COMPONENTS ${ARGN})
endmacro()
