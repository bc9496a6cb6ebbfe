#!/bin/sh
# Builds and runs every test. "sh tools/test.sh sanitize" does it with AddressSanitizer and
# UndefinedBehaviorSanitizer, in a build directory of its own.
set -eu
. "$(dirname "$0")/setup.sh"

# run_shards DIRECTORY: all tests in as many processes as there are processors. To start one for each
# test takes longer with sanitizers than most tests.
run_shards() {
  cd "$1"
  shards=$(nproc)
  export GTEST_TOTAL_SHARDS="$shards" GTEST_BRIEF=1
  pids=
  n=0
  while [ "$n" -lt "$shards" ]; do
    GTEST_SHARD_INDEX=$n timeout 900 ./tests/vardento_tests >"shard-$n.log" 2>&1 &
    pids="$pids $!"
    n=$((n + 1))
  done
  failed=0
  n=0
  for pid in $pids; do
    if ! wait "$pid"; then
      cat "shard-$n.log"
      failed=1
    fi
    tail -n 2 "shard-$n.log"
    n=$((n + 1))
  done
  return "$failed"
}

find_tools tests
echo "Building ..."
if [ "${1-}" = sanitize ]; then
  directory="$root/build-asan"
  build "$directory" -DVARDENTO_TESTS=ON -DVARDENTO_WERROR=ON -DVARDENTO_SANITIZE=ON \
    -DCMAKE_BUILD_TYPE=Release "-DCMAKE_CXX_FLAGS_RELEASE=-O1 -g1 -D_GLIBCXX_ASSERTIONS"
  run_shards "$directory"
else
  directory="$root/build-test"
  # Without NDEBUG: the assertions check every index.
  build "$directory" -DVARDENTO_TESTS=ON -DVARDENTO_WERROR=ON \
    -DCMAKE_BUILD_TYPE=Release "-DCMAKE_CXX_FLAGS_RELEASE=-O2 -D_GLIBCXX_ASSERTIONS"
  ctest --test-dir "$directory" -j "$(nproc)" --output-on-failure
fi
