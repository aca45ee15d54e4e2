#!/usr/bin/env bash
# Runs a test under valgrind memcheck, for scripts/valgrind.sh; the report is memcheck.log in its home.
# usage: memcheck.sh PROGRAM [ARGUMENT...]
exec valgrind --tool=memcheck --error-exitcode=99 --leak-check=full \
    --show-leak-kinds=definite,indirect --errors-for-leak-kinds=definite,indirect \
    --num-callers=40 --gen-suppressions=all --child-silent-after-fork=yes \
    --suppressions="$(dirname "${BASH_SOURCE[0]}")/valgrind.supp" --log-file="$HOME/memcheck.log" "$@"
