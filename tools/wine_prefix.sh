# Sourced by ./dev: makes and starts a Wine prefix for tests (no display needed), and stops it again.
#
#   wine_prefix_start FOLDER LOCALE     LOCALE ja_JP.UTF-8 gives code page 932, C gives 1252
#   wine_prefix_stop

wine_prefix_start() {
  export WINEPREFIX=$1 LC_ALL=$2 WINEARCH=win64 WINEDEBUG=${WINEDEBUG:--all}
  unset DISPLAY
  if [ ! -e "$WINEPREFIX/wfinfo-ready" ]; then
    rm -rf "$WINEPREFIX"
    mkdir -p "$WINEPREFIX"
    timeout 180 wineboot -i </dev/null >/dev/null 2>&1
    # Windows without a display, and no dialog that would wait for ever after a crash.
    timeout 60 wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f </dev/null >/dev/null 2>&1
    timeout 60 wine reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f </dev/null >/dev/null 2>&1
    wineserver -k </dev/null >/dev/null 2>&1
    wineserver -w </dev/null >/dev/null 2>&1
    grep -qi '"Graphics"="null"' "$WINEPREFIX/user.reg" || { echo "the Wine prefix could not be made" >&2; return 1; }
    touch "$WINEPREFIX/wfinfo-ready"
  fi
  # A server that stays: later starts take milliseconds. The quiet boot keeps services off our standard output.
  # (It answers with an error when one runs already.)
  wineserver -p </dev/null >/dev/null 2>&1 || true
  timeout 120 wine wineboot </dev/null >/dev/null 2>&1
}

wine_prefix_stop() {
  wineserver -k </dev/null >/dev/null 2>&1 || true
}
