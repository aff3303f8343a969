# Sourced: runs CTest quietly.

# ctest_in NAME FOLDER JOBS [PATTERN [OPTION...]]: the tests of a build folder; the log stands in build/test-NAME.log.
ctest_in() {
  local log=build/test-$1.log folder=$2 jobs=$3 pattern=()
  [ -z "${4:-}" ] || pattern=(-R "$4")
  shift $(($# < 4 ? $# : 4))
  (cd "$folder" && ctest --output-on-failure -j "$jobs" --no-tests=error "${pattern[@]}" "$@" </dev/null) >"$log" 2>&1
}
