#!/bin/sh
# Builds and tests everything: ./test.sh, or only some stages: ./test.sh dev asan tsan format tidy
# ./test.sh --longo leads the ledger through 200,000 random operations, each held against a model; TSV_SEED repeats them.
# Installs the Debian packages that are missing. With CI=true the random walks of the SQL front end last a minute.
set -eu
cd "$(dirname "$0")"
. cmake/packages.sh

stages="${*:-dev asan tsan}"
need build-essential cmake ninja-build pkg-config libsqlite3-dev libgtest-dev libbenchmark-dev libcli11-dev \
  nlohmann-json3-dev libcsv-dev

# The thread sanitizer needs a fixed layout of memory that some kernels do not give by themselves.
steady() {
  if setarch -R true 2>/dev/null; then
    run setarch -R "$@"
  else
    run "$@"
  fi
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
    --longo)
      say "The ledger against its model: 200,000 operations"
      run cmake --preset release
      run cmake --build --preset release --target model_test
      run env TSV_OPERATIONS=200000 ${TSV_SEED:+"TSV_SEED=$TSV_SEED"} build/release/tests/model_test
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
