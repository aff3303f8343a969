# What Debian's packages hold and the build or its tests need, fetched into build/, never into the system: the source
# of the small host's libraries (docs/dependencies.md says which and why), mails for tests.
# shellcheck shell=bash

# source_package PACKAGE FOLDER: the upstream tarball of a Debian source package, checked by apt, unpacked in FOLDER.
# apt gets a source list and a state folder of its own, since a bare machine has no deb-src lines.
source_package() {
  local package=$1 folder=$2 state=$PWD/build/apt apt file
  rm -rf "$state" "$folder.part"
  mkdir -p "$state/lists/partial" "$state/cache/archives/partial" "$state/parts" "$state/source" "$folder.part"
  { cat /etc/apt/sources.list /etc/apt/sources.list.d/*.list 2>/dev/null || true; } |
    sed -nE 's/^deb( \[[^]]*\])? ([^ ]+ (bookworm|stable)(-updates|-security)? )/deb-src\1 \2/p' >"$state/sources.list"
  for file in /etc/apt/sources.list.d/*.sources; do
    if grep -qsE '^Suites: *(bookworm|stable)( |-|$)' "$file"; then
      sed 's/^Types:.*/Types: deb-src/' "$file" >"$state/parts/${file##*/}"
    fi
  done
  apt=(apt-get -qq -o "Dir::Etc::SourceList=$state/sources.list" -o "Dir::Etc::SourceParts=$state/parts"
       -o "Dir::State::Lists=$state/lists" -o "Dir::Cache=$state/cache" -o Acquire::Retries=2
       -o "APT::Sandbox::User=$(id -un)")
  "${apt[@]}" update && (cd "$state/source" && "${apt[@]}" source --download-only --tar-only "$package") || return 1
  tar -xf "$state"/source/*.orig.tar.* -C "$folder.part" --strip-components=1 && mv "$folder.part" "$folder" &&
    rm -rf "$state"
}

# fetch_source PACKAGE FOLDER: the same, three times over; nothing when FOLDER is there.
fetch_source() {
  local wait
  [ ! -e "$2" ] || return 0
  for wait in 0 3 10; do
    sleep "$wait"
    ! source_package "$1" "$2" >&2 || return 0
  done
  rm -rf "$2.part"
  return 1
}

# package_files PACKAGE FOLDER PATTERN: the files of a binary package whose paths match, in FOLDER, without folders.
# The system's package lists serve when they know the package; else lists of our own are fetched.
package_files() {
  local package=$1 folder=$2 pattern=$3 state=$PWD/build/apt own
  [ ! -e "$folder" ] || return 0
  rm -rf "$state" "$folder.part"
  mkdir -p "$state/lists/partial" "$state/cache/archives/partial" "$state/files" "$folder.part"
  own=(-qq -o "Dir::State::Lists=$state/lists" -o "Dir::Cache=$state/cache" -o "APT::Sandbox::User=$(id -un)")
  (
    cd "$state/files"
    apt-get -qq -o "APT::Sandbox::User=$(id -un)" download "$package" 2>/dev/null ||
      { apt-get "${own[@]}" update && apt-get "${own[@]}" download "$package"; }
  ) >&2 || return 1
  dpkg-deb --fsys-tarfile "$state"/files/*.deb |
    tar -x -C "$folder.part" --wildcards --transform='s|.*/||' "$pattern" && mv "$folder.part" "$folder" &&
    rm -rf "$state"
}
