#!/bin/sh
# Builds and tests everything: ./test.sh, or only some stages: ./test.sh dev asan tsan windows windows32 format tidy
# ./test.sh --so nucleo is the quick one: the core and the command, without sanitizers and Windows.
# The stages windows and windows32 build the automation server for 64 and 32 bits and run it under Wine.
# ./test.sh --longo leads the ledger through 200,000 random operations, each held against a model, and then through the
# server's proofs at full size: two ledgers in step, eight processes, crashes. TSV_SEED repeats the operations.
# Installs the Debian packages that are missing. With CI=true the random walks of the SQL front end last a minute.
set -eu
cd "$(dirname "$0")"
. cmake/packages.sh

stages="${*:-dev asan tsan windows windows32}"
if [ "$stages" = "--so nucleo" ]; then
  stages=dev
fi
need build-essential cmake ninja-build pkg-config libsqlite3-dev libgtest-dev libbenchmark-dev libcli11-dev \
  nlohmann-json3-dev libcsv-dev libpq-dev postgresql

# The thread sanitizer needs a fixed layout of memory that some kernels do not give by themselves.
steady() {
  if setarch -R true 2>/dev/null; then
    run setarch -R "$@"
  else
    run "$@"
  fi
}

# SQLite's amalgamation comes with this package; Debian has it for Debian only.
sqlite_for_windows() {
  command -v npm >/dev/null || need npm
  if [ ! -e "$1/package" ]; then
    mkdir -p "$1"
    (
      cd "$1"
      run npm pack --loglevel=error better-sqlite3@12.4.1
      echo "14398acbf00d1e8fe0a2753df7d4f15c13138e4b874f4e6e96791f65b4536d0d  better-sqlite3-12.4.1.tgz" | sha256sum -c -
      tar xzf better-sqlite3-12.4.1.tgz
    )
  fi
}

# on_windows PRESET WINE
on_windows() {
  sqlite_for_windows build/sqlite
  run cmake --preset "$1" -D "TSV_SQLITE_SOURCE=$PWD/build/sqlite/package/deps/sqlite3" -D "TSV_WINE=$2"
  run cmake --build --preset "$1"
  run ctest --preset "$1"
}

for stage in $stages; do
  case $stage in
    dev | asan)
      say "Build and tests: $stage"
      run cmake --preset "$stage"
      run cmake --build --preset "$stage"
      if [ "${CI:-}" = true ] && [ "$stage" = asan ]; then
        for fuzzer in build/asan/tests/*_fuzz; do
          run "$fuzzer" 60
        done
      fi
      run ctest --preset "$stage"
      ;;
    tsan)
      say "Thread sanitizer: the tests that run several sessions at once"
      run cmake --preset tsan
      run cmake --build --preset tsan --target concurrency_test
      steady ctest --preset tsan -R '^concurrency_test$'
      ;;
    windows)
      say "The automation server and the ledger's model on 64-bit Windows, under Wine"
      need g++-mingw-w64-x86-64-posix mingw-w64-tools wine wine64
      on_windows windows64 wine
      ;;
    windows32)
      say "The same on 32-bit Windows"
      need g++-mingw-w64-i686-posix mingw-w64-tools libc6-i386
      run cmake/wine32.sh build/wine32
      on_windows windows32 "$PWD/build/wine32/wine"
      ;;
    --longo)
      say "The ledger against its model: 200,000 operations; then the server's proofs"
      run cmake --preset release
      run cmake --build --preset release --target model_test concurrency_test
      run env TSV_OPERATIONS=200000 ${TSV_SEED:+"TSV_SEED=$TSV_SEED"} build/release/tests/model_test
      run tests/postgres/full.sh build/release/tests
      ;;
    format)
      say "Layout of the sources"
      need clang-format git
      git ls-files '*.h' '*.cpp' | run xargs clang-format --dry-run -Werror
      ;;
    tidy)
      say "Static analysis"
      need clang-tidy git
      run cmake --preset dev
      git ls-files 'lib/*.cpp' 'cli/*.cpp' 'com/*.cpp' | run xargs -P "$(nproc)" -n 4 clang-tidy -p build/dev --quiet
      ;;
    *)
      echo "Unknown stage: $stage" >&2
      exit 2
      ;;
  esac
done
