#!/bin/sh
# Runs a test program under Wine. Once in many thousand starts Wine ends without a word before the program has come up
# (it tells by the file that WFINFO_CAME_UP names): such a start says nothing of the program, and is tried again.
# The standard error is printed afterwards: a console that Wine leaves behind a child that was killed keeps it open, and
# CTest waits until all have closed it. The same console keeps what CTest leaves open beside the usual three.
exec 3>&- 4>&- 5>&- 6>&- 7>&- 8>&- 9>&-
mark=${TMPDIR:-/tmp}/wfinfo-came-up-$$
for try in 1 2 3; do
  WFINFO_CAME_UP=Z:$mark wine "$@" 2>"$mark-errors"
  code=$?
  cat "$mark-errors" >&2
  if [ $code -eq 0 ] || [ -e "$mark" ]; then break; fi
  echo "try $try: Wine ended with $code before the program came up" >&2
done
rm -f "$mark" "$mark-errors"
exit $code
