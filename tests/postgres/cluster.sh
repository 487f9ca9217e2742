#!/bin/sh
# A PostgreSQL server of one's own for tests: cluster.sh start FOLDER prints its URL, cluster.sh stop FOLDER removes it.
# It listens on a socket in FOLDER only. TSV_SEM_FSYNC=1 trades safety in a crash for speed.
# cluster.sh kill FOLDER lets it end as in a crash of the machine's, all its processes at once; resume starts it again.
set -eu

fail() {
  echo "cluster.sh: $*" >&2
  exit 1
}

[ $# = 2 ] || fail "use: cluster.sh start|stop|kill|resume FOLDER"
case $2 in
/*) folder=$2 ;;
*) folder=$PWD/$2 ;;
esac
binaries=$(ls -d /usr/lib/postgresql/*/bin 2>/dev/null | sort -V | tail -n 1)

# The server refuses to run as root.
as_owner() {
  if [ "$(id -u)" = 0 ]; then
    runuser -u postgres -- "$@"
  else
    "$@"
  fi
}

give_up() {
  cd /
  rm -rf "$folder"
  fail "$1"
}

percent_encoded() {
  printf %s "$1" | sed 's/%/%25/g; s|/|%2F|g; s/ /%20/g; s/#/%23/g; s/&/%26/g; s/=/%3D/g; s/?/%3F/g'
}

launch() {
  as_owner "$binaries/pg_ctl" --pgdata="$folder/data" --log="$folder/log" --timeout=60 --wait start >/dev/null
}

start() {
  [ -n "$binaries" ] || fail "PostgreSQL's server is not installed"
  [ ! -e "$folder" ] || fail "$folder exists already"
  [ ${#folder} -le 80 ] || fail "the path $folder is too long for a socket"
  mkdir -p "$folder"
  if [ "$(id -u)" = 0 ]; then
    id -u postgres >/dev/null 2>&1 || fail "root needs a user named postgres to run the server as"
    chown postgres "$folder"
  fi
  cd "$folder"
  said=$(as_owner "$binaries/initdb" --pgdata="$folder/data" --username=postgres --auth=trust --encoding=UTF8 \
    --no-locale --no-sync 2>&1) || give_up "$said"
  fsync=on
  [ "${TSV_SEM_FSYNC:-}" != 1 ] || fsync=off
  as_owner tee -a "$folder/data/postgresql.conf" >/dev/null <<SETTINGS
listen_addresses = ''
unix_socket_directories = '$folder'
max_connections = 100
fsync = $fsync
wal_writer_delay = 10s  # what is not committed shall not survive a crash either
SETTINGS
  launch || give_up "$(tail -n 20 "$folder/log")"
  echo "postgresql:///postgres?host=$(percent_encoded "$folder")&user=postgres"
}

stop() {
  [ -e "$folder" ] || return 0
  [ -d "$folder/data" ] || fail "$folder holds no server of ours"
  cd "$folder"
  if [ -e "$folder/data/postmaster.pid" ]; then
    as_owner "$binaries/pg_ctl" --pgdata="$folder/data" --mode=immediate --timeout=60 --wait stop >/dev/null || true
  fi
  cd /
  rm -rf "$folder"
}

# The first process starts no more while the others are counted. Some machines keep the dead as zombies, which make the
# marks of a running server look true.
crash() {
  read -r server <"$folder/data/postmaster.pid"
  kill -STOP "$server"
  processes=$server
  for stat in /proc/[0-9]*/stat; do
    read -r process _ _ parent _ <"$stat" || continue
    [ "$parent" != "$server" ] || processes="$processes $process"
  done 2>/dev/null
  # shellcheck disable=SC2086
  kill -KILL $processes
  for process in $processes; do
    while read -r _ _ state _ <"/proc/$process/stat" && [ "$state" != Z ]; do sleep 0.01; done 2>/dev/null
  done
  rm "$folder/data/postmaster.pid" "$folder"/.s.PGSQL.*.lock
}

resume() {
  cd "$folder"
  launch || fail "$(tail -n 20 "$folder/log")"
}

case $1 in
start | stop | resume) "$1" ;;
kill) crash ;;
*) fail "use: cluster.sh start|stop|kill|resume FOLDER" ;;
esac
