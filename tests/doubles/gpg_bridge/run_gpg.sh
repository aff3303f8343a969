#!/bin/sh
# run_gpg.sh BASE ARGUMENTS: runs gpg with BASE.in as its input; BASE.out gets what it says, BASE.code its exit code.
base=$1
shift
gpg "$@" < "$base.in" > "$base.out" 2>&1
echo $? > "$base.code.new"
mv "$base.code.new" "$base.code"
