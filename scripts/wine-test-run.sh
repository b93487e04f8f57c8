#!/usr/bin/env bash
# Runs the Windows build's tests under Wine: prepares the Wine prefix once without asking anyone
# anything, keeps one wineserver up for the whole run and stops it afterwards, whatever the
# outcome. Usage: wine-test-run.sh BUILD_DIR JOBS (WINEPREFIX and WINEDEBUG set by the caller).
set -euo pipefail
build=$1 jobs=${2:-2}
: "${WINEPREFIX:?set WINEPREFIX to a directory for the Wine prefix}"
# No desktop here: the first start must not offer to install Mono or Gecko, nor wait for a window.
export WINEPREFIX WINEDEBUG=${WINEDEBUG:--all} WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-mscoree,mshtml=}
wineserver=$(command -v wineserver)

wine64=/usr/lib/wine/wine64
[ -x "$wine64" ] || wine64=wine
if [ ! -f "$WINEPREFIX/system.reg" ]; then
  mkdir -p "$WINEPREFIX"
  DISPLAY= "$wine64" wineboot -i >/dev/null 2>&1 || true
  "$wineserver" -w
  # A test program that crashes unexpectedly gets its report on the console, never a dialog.
  "$wine64" reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f >/dev/null 2>&1 || true
  "$wineserver" -w
fi

# A server already up for this prefix (an earlier run's) serves this one as well.
"$wineserver" -p 2>/dev/null || true
trap '"$wineserver" -k 2>/dev/null || true' EXIT
# Wine's own background processes start with the first program and live as long as the server.
# Started here, they do not inherit a test's output pipe, which ctest would wait on until timeout.
"$wine64" wineboot >/dev/null 2>&1 </dev/null || true
ctest --test-dir "$build" --output-on-failure -j "$jobs"
