# Sourced: runs CTest quietly, and keeps one Wine desktop for all that runs in a prefix.

# Until the prefix stops.
keep_desktop() { wine build/windows/doubles/desktop_keeper.exe </dev/null >/dev/null 2>&1 & }

# ctest_in NAME FOLDER JOBS [PATTERN [OPTION...]]: the tests of a build folder; the log stands in build/test-NAME.log.
ctest_in() {
  local log=build/test-$1.log folder=$2 jobs=$3 pattern=(--no-tests=error)
  [ -z "${4:-}" ] || pattern=(--no-tests=ignore -R "$4")  # it may name none of this folder
  shift $(($# < 4 ? $# : 4))
  (cd "$folder" && ctest --output-on-failure -j "$jobs" "${pattern[@]}" "$@" </dev/null) >"$log" 2>&1
}
