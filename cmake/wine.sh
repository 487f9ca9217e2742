#!/bin/sh
# wine.sh PREFIX WINE PROGRAM [ARGUMENT...]: runs a Windows program, with that Wine, in a registry and file system of
# its own. Its output goes through a file, because Wine's services keep the caller's pipe open longer than the program
# lives.
set -eu
export WINEPREFIX="$1" WINEDEBUG="${WINEDEBUG:--all}" TMPDIR=/tmp
wine=$2
shift 2
if [ ! -e "$WINEPREFIX/ready" ]; then
  mkdir -p "$WINEPREFIX"
  # There is no screen: windows exist without being drawn.
  printf 'WINE REGISTRY Version 2\n\n[Software\\\\Wine\\\\Drivers]\n"Graphics"="null"\n' >"$WINEPREFIX/user.reg"
  "$wine" wineboot -i >/dev/null 2>&1 </dev/null
  touch "$WINEPREFIX/ready"
fi
output=$(mktemp)
status=0
"$wine" "$@" >"$output" 2>&1 </dev/null || status=$?
cat "$output"
rm -f "$output"
exit "$status"
