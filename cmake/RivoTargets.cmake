# Compiler settings shared by every target of ours.
include(RivoCoreLibrary)

# The flags of preset "fuzz": then the fuzzers are built.
string(REGEX MATCH "-fsanitize=[^ ]*fuzzer" RIVO_IS_FUZZED "${CMAKE_CXX_FLAGS}")

add_library(rivo_settings INTERFACE)
target_compile_options(rivo_settings INTERFACE
    -Wall -Wextra -Wpedantic ${RIVO_TEST_CONVERSIONS} -Wshadow -Werror
    # QSKIP() with one argument.
    $<$<CXX_COMPILER_ID:Clang>:-Wno-gnu-zero-variadic-macro-arguments>
    # Log records carry __FILE__: relative to the repository, the same on every machine.
    -ffile-prefix-map=${CMAKE_SOURCE_DIR}/=
    -ffile-prefix-map=${CMAKE_BINARY_DIR}=build
    # No function of ours is replaced at load time by one of the same name: the compiler may inline
    # exported functions into each other.
    -fno-semantic-interposition)
target_compile_definitions(rivo_settings INTERFACE QT_DEPRECATED_WARNINGS QT_NO_FOREACH)
target_compile_definitions(rivo_settings INTERFACE ${RIVO_LAYOUT_DEFINITIONS})
target_link_options(rivo_settings INTERFACE -Wl,--as-needed)
if(NOT RIVO_IS_FUZZED) # its sanitizers are in the programs alone
    target_link_options(rivo_settings INTERFACE -Wl,--no-undefined)
endif()

# rivo_settings for product code: no silent conversion between bytes and text.
add_library(rivo_strict INTERFACE)
target_link_libraries(rivo_strict INTERFACE rivo_settings)
if(NOT RIVO_TEST_CONVERSIONS)
    target_compile_options(rivo_strict INTERFACE -Wconversion)
endif()
target_compile_definitions(rivo_strict INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_CAST_FROM_BYTEARRAY)
if(CMAKE_CXX_FLAGS MATCHES "--coverage")
    # Edges that only an exception takes, or another thread at the first use of a static variable,
    # are no branches of ours.
    target_compile_options(rivo_strict INTERFACE -fno-exceptions -fno-threadsafe-statics)
endif()

# rivo_precompile(<target> <header>...)
# Has a target read headers of Qt that most of its files include once. Where a forgotten #include has
# to be noticed CMAKE_DISABLE_PRECOMPILE_HEADERS is on: in preset tidy and in packages.
function(rivo_precompile target)
    target_precompile_headers(${target} PRIVATE ${ARGN})
endfunction()
