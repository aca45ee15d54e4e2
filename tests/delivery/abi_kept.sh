#!/usr/bin/env bash
# The built library keeps the ABI that applications were built with.
# usage: abi_kept.sh LIBGUICORE SOURCE_DIR
set -u
# Sanitizers add to the library.
nm -D --undefined-only "$1" | grep -q __asan_init && exit 0
exec "$2/packaging/check-abi.sh" "$1"
