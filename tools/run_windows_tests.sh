#!/usr/bin/env bash
# run_windows_tests.sh NAME LOCALE [PATTERN]: the tests of build/windows under the Wine of this system, in the prefix
# build/NAME; the log stands in build/test-NAME.log. Called by ./dev, also inside another system's root folder.
# A NAME that ends in "-once" has those that say nothing of a locale, any other one the rest.
set -uo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root" || exit 1
. tools/wine_prefix.sh
. tools/run_tests.sh
export LOCPATH=$root/build/locale

# What says nothing of a Wine needs tools that only the system of this release has.
others=()
case $1 in wine10*) export LOCPATH=$root/build/wine10/locale; others=(-E '^test_(dev|house|library|repository|service_tables|site|translations|where)$|^torture_table$') ;; esac
case $1 in *-once) others+=(-L '^once$') ;; *) others+=(-LE '^once$') ;; esac

wine_prefix_start "$root/build/$1" "$2" || exit 1
keep_desktop
ctest_in "$1" build/windows 1 "${3:-}" "${others[@]}"
result=$?
wine_prefix_stop
exit $result
