#!/bin/sh
# The server engine's proofs at full size, on a server of their own: full.sh FOLDER, which holds the built tests.
# 22,000 random steps, of which more than 20,000 are operations, on the server and in a file, each held against the
# model; eight processes at work for two minutes; ten crashes of a server at work. TSV_SEED repeats the random steps.
set -eu
[ $# = 1 ] || {
  echo "use: full.sh FOLDER" >&2
  exit 1
}
cluster=$(dirname "$0")/cluster.sh
folder=$(mktemp -d)
chmod 755 "$folder"
trap 'sh "$cluster" stop "$folder/servidor"; rmdir "$folder"' EXIT
trap 'exit 1' INT TERM
TSV_SERVIDOR=$(sh "$cluster" start "$folder/servidor")
export TSV_SERVIDOR
TSV_OPERATIONS=22000 "$1/model_test"
TSV_SECONDS=120 TSV_FALLS=10 "$1/concurrency_test"
