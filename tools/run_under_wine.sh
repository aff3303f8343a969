#!/bin/sh
# Runs a test program under Wine. The standard error is printed afterwards: a console that Wine leaves behind a child that
# was killed keeps it open, and CTest waits until all have closed it. The same console keeps what CTest leaves open beside
# the usual three.
exec 3>&- 4>&- 5>&- 6>&- 7>&- 8>&- 9>&-
errors=${TMPDIR:-/tmp}/wfinfo-errors-$$
wine "$@" 2>"$errors"
code=$?
cat "$errors" >&2
rm -f "$errors"
exit $code
