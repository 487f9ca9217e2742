#!/bin/sh
# wine.sh PREFIX PROGRAM [ARGUMENT...]: runs a Windows program in a registry and file system of its own. Its output goes
# through a file, because Wine's services keep the caller's pipe open longer than the program lives.
set -eu
export WINEPREFIX="$1" WINEDEBUG="${WINEDEBUG:--all}" TMPDIR=/tmp
shift
if [ ! -e "$WINEPREFIX/ready" ]; then
  mkdir -p "$WINEPREFIX"
  wine wineboot -i >/dev/null 2>&1 </dev/null
  # There is no screen: windows exist without being drawn.
  wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f >/dev/null 2>&1 </dev/null
  touch "$WINEPREFIX/ready"
fi
output=$(mktemp)
status=0
wine "$@" >"$output" 2>&1 </dev/null || status=$?
cat "$output"
rm -f "$output"
exit "$status"
