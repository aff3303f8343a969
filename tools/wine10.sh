# Sourced by ./dev: a second Wine, that of Debian's next release, in a root folder of its own under build/.

wine10_release=trixie
wine10_root=build/wine10/root

# Makes the root folder once. Mounting and chroot are root's.
need_wine10() {
  local mirror file
  [ "$(id -u)" = 0 ] || fail "--wine10 works in a root folder of another release: run it as root"
  [ ! -e $wine10_root/wfinfo-ready ] || return 0
  need "the root folder of another Debian release" debootstrap mount
  say "installing Debian's next release with its Wine into $wine10_root"
  rm -rf build/wine10
  mkdir -p build/wine10
  mirror=$(apt-get indextargets --format '$(SITE)' 'Created-By: Packages' 2>/dev/null | grep -v security | head -n 1)
  [ -n "$mirror" ] || fail "apt-get knows no mirror of Debian yet: apt-get update"
  debootstrap --variant=minbase --include=wine,wine64,locales,python3,cmake,gnupg,openssl,ca-certificates,procps,git,googletest,g++-mingw-w64-x86-64-posix \
    $wine10_release $wine10_root "$mirror" >build/wine10/debootstrap.log 2>&1 ||
    { tail -n 5 build/wine10/debootstrap.log >&2; fail "debootstrap failed: see above and build/wine10/debootstrap.log"; }
  # Without it look-ups of local names, and of the machine's own, fail.
  echo "127.0.0.1 localhost $(hostname)" >$wine10_root/etc/hosts
  mkdir -p build/wine10/locale "$wine10_root$root"
  touch $wine10_root/wfinfo-ready
  in_wine10 localedef -i ja_JP -f UTF-8 build/wine10/locale/ja_JP.UTF-8 2>/dev/null || true
  [ -d build/wine10/locale/ja_JP.UTF-8 ] || { rm $wine10_root/wfinfo-ready; fail "localedef could not make ja_JP.UTF-8"; }
}

# in_wine10 COMMAND...: in the repository's folder, seen at its own place from within the root folder. The mounts are
# gone with the command. The lists of tests name CMake's own scripts by their folder in this system.
in_wine10() {
  local cmake
  cmake=$(echo /usr/share/cmake-*)
  mkdir -p "$wine10_root$root" "$wine10_root$cmake"
  unshare --mount --propagation private bash -c '
    set -e
    top=$1 root=$2 cmake=$3; shift 3
    mount --rbind /proc "$top/proc"; mount --rbind /dev "$top/dev"; mount --bind /sys "$top/sys"
    mount -t tmpfs -o mode=1777 none "$top/tmp"
    mount --bind "$root" "$top$root"; mount --bind "$cmake" "$top$cmake"
    exec chroot "$top" /usr/bin/env -C "$root" HOME=/root PATH=/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin "$@"
  ' in_wine10 "$root/$wine10_root" "$root" "$cmake" "$@"
}
