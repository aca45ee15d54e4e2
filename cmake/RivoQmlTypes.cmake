# Types for QML, from one description: a header of declarations with QML_FOREIGN. What moc reads
# there and in the headers of the classes gives both the registration with the engine and
# plugins.qmltypes, the description for tools. Only programs of the build machine run, so it is the
# same in a cross build.
rivo_find_qt(Qml)

get_target_property(moc ${RIVO_QT}::moc LOCATION)
get_filename_component(qt_tools "${moc}" DIRECTORY)
find_program(QMLTYPEREGISTRAR qmltyperegistrar REQUIRED HINTS "${qt_tools}" NO_CMAKE_FIND_ROOT_PATH)
find_file(QTCORE_METATYPES REQUIRED
    NAMES qt${QT_DEFAULT_MAJOR_VERSION}core_metatypes.json qt${QT_DEFAULT_MAJOR_VERSION}core_none_metatypes.json
    HINTS "${${RIVO_QT}Core_DIR}/../../metatypes" NO_DEFAULT_PATH)

# Qt 5's tool writes dependencies into the description, Qt 6's has neither the option nor the need.
execute_process(COMMAND "${QMLTYPEREGISTRAR}" --help
    OUTPUT_VARIABLE QMLTYPEREGISTRAR_HELP COMMAND_ERROR_IS_FATAL ANY)

# rivo_collect_metatypes(<target> <json> <header>...)
# What moc knows of the classes of these headers, in one file.
function(rivo_collect_metatypes target json)
    set(include_directories "$<TARGET_PROPERTY:${target},INCLUDE_DIRECTORIES>")
    set(parts "")
    foreach(header IN LISTS ARGN)
        get_filename_component(name "${header}" NAME_WE)
        set(part "${CMAKE_CURRENT_BINARY_DIR}/metatypes/${name}.cpp")
        add_custom_command(
            OUTPUT "${part}.json"
            BYPRODUCTS "${part}"
            COMMAND ${RIVO_QT}::moc --output-json "-I$<JOIN:${include_directories},;-I>" -o "${part}" "${header}"
            DEPENDS "${header}"
            COMMAND_EXPAND_LISTS
            VERBATIM)
        list(APPEND parts "${part}.json")
    endforeach()
    add_custom_command(
        OUTPUT "${json}"
        COMMAND ${RIVO_QT}::moc --collect-json -o "${json}" ${parts}
        DEPENDS ${parts}
        VERBATIM)
endfunction()

# rivo_add_qml_types(<target> MODULE <name> TYPES <header> [CLASSES <header>...] DEPENDENCIES <json>
#                    FOLDER <folder> REGISTRATION <file>)
# Registers the types that TYPES declares, of its own or for classes of the headers CLASSES, as
# MODULE 1.0: generates FOLDER/plugins.qmltypes, and REGISTRATION for #include in one source of the
# target.
function(rivo_add_qml_types target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "MODULE;TYPES;DEPENDENCIES;FOLDER;REGISTRATION" "CLASSES")
    file(MAKE_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}/generated" "${CMAKE_CURRENT_BINARY_DIR}/metatypes"
        "${arg_FOLDER}")
    set(types "${CMAKE_CURRENT_BINARY_DIR}/types_metatypes.json")
    set(foreign "${QTCORE_METATYPES}")
    rivo_collect_metatypes(${target} "${types}" "${arg_TYPES}")
    if(arg_CLASSES)
        set(classes "${CMAKE_CURRENT_BINARY_DIR}/classes_metatypes.json")
        rivo_collect_metatypes(${target} "${classes}" ${arg_CLASSES})
        list(PREPEND foreign "${classes}")
    endif()
    list(JOIN foreign "," foreign_argument)

    set(dependencies "")
    if(QMLTYPEREGISTRAR_HELP MATCHES "--dependencies")
        set(dependencies "--dependencies=${arg_DEPENDENCIES}")
    endif()
    set(registration "${CMAKE_CURRENT_BINARY_DIR}/generated/${arg_REGISTRATION}")
    add_custom_command(
        OUTPUT "${registration}" "${arg_FOLDER}/plugins.qmltypes"
        COMMAND "${QMLTYPEREGISTRAR}"
            "--import-name=${arg_MODULE}" --major-version=1 --minor-version=0
            "--generate-qmltypes=${arg_FOLDER}/plugins.qmltypes"
            "--foreign-types=${foreign_argument}"
            ${dependencies}
            -o "${registration}" "${types}"
        DEPENDS "${arg_DEPENDENCIES}" "${types}" ${foreign}
        VERBATIM)
    target_sources(${target} PRIVATE "${registration}")
    # A system folder: what Qt's tool writes is not held to the rules of our code.
    target_include_directories(${target} SYSTEM PRIVATE "${CMAKE_CURRENT_BINARY_DIR}/generated")
endfunction()
