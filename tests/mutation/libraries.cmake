# For mutants only, included by project() through CMAKE_PROJECT_INCLUDE: what makes one changed file
# of our libraries quick to build. Warnings are off, for a mutant may leave a variable unused.
cmake_language(DEFER CALL rivo_prepare_for_mutants)

function(rivo_prepare_for_mutants)
    foreach(library IN ITEMS GuiCore RivoCore RivoSettingsFile)
        target_compile_options(${library} PRIVATE -w)
        target_compile_definitions(${library} PRIVATE QT_FORCE_ASSERTS)
        # A test has copies of the inline functions as they were; the library uses its own.
        target_link_options(${library} PRIVATE -Wl,-Bsymbolic)
    endforeach()
    target_precompile_headers(GuiCore PRIVATE
        <core/Logging.h> <QAbstractListModel> <QDateTime> <QGeoCoordinate> <QSet> <QVector> <algorithm>)
    target_precompile_headers(RivoCore PRIVATE
        <core/Logging.h> <QFileSystemWatcher> <QHash> <QRegularExpression> <QTimer>)
    # It is compiled with another visibility.
    set_source_files_properties("${CMAKE_SOURCE_DIR}/Core/LoggerStorage.cpp"
        TARGET_DIRECTORY RivoCore PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
endfunction()
