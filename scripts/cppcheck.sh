#!/usr/bin/env bash
# cppcheck over product code: fails with every finding that scripts/cppcheck.supp does not excuse.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/setup.sh
. scripts/setup.sh

# shellcheck disable=SC2086 # a list of names
need_packages $packages_to_lint
mkdir -p build/cppcheck
includes=()
while IFS= read -r folder; do
    includes+=(-I "$folder")
done < <(git ls-files 'GuiCore/*.h' 'Core/*.h' 'GuiCoreQml/*.h' 'Feed/*.h' 'Office/*.h' 'Program/*.h' 'Terminal/*.h' 'tools/*.h' | xargs -n1 dirname | sort -u)
includes+=(-I GuiCore/include -I Core/include)

# What the macros of Qt and of the generated headers stand for; its own Qt library misses these.
git ls-files 'GuiCore/*.cpp' 'Core/*.cpp' 'GuiCoreQml/*.cpp' 'Feed/*.cpp' 'Office/*.cpp' 'Program/*.cpp' 'Terminal/*.cpp' 'tools/*.cpp' |
    xargs cppcheck -j 2 --quiet --error-exitcode=1 --std=c++17 --language=c++ --library=qt \
        --enable=warning,style,performance,portability --inline-suppr \
        --suppressions-list=scripts/cppcheck.supp --cppcheck-build-dir=build/cppcheck \
        '-DQ_DISABLE_COPY_MOVE(c)=' '-DQML_FOREIGN(t)=' '-DQML_NAMED_ELEMENT(n)=' \
        '-DQML_UNCREATABLE(reason)=' -DGUICORE_EXPORT= "${includes[@]}"
echo "cppcheck: clean"
