# Sourced by demo.sh and test.sh.

say() { printf '\n== %s\n' "$*"; }

# Prints the command as it would be typed and runs it.
run() {
  printf '+'
  for word in "$@"; do
    case $word in
      *[!A-Za-z0-9_./:=,-]*) printf ' "%s"' "$word" ;;
      *) printf ' %s' "$word" ;;
    esac
  done
  printf '\n'
  "$@"
}

# Installs, with apt, those of the named Debian packages that are missing.
need() {
  missing=""
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing="$missing $package"
  done
  if [ -z "$missing" ]; then
    return
  fi
  say "Installing:$missing"
  as_root=""
  if [ "$(id -u)" -ne 0 ]; then
    as_root="sudo"
  fi
  run $as_root apt-get update -q
  run $as_root env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends $missing
}
