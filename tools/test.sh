#!/bin/sh
# Builds and runs every test. "sh tools/test.sh sanitize" does it with AddressSanitizer and
# UndefinedBehaviorSanitizer, in a build directory of its own.
set -eu
. "$(dirname "$0")/setup.sh"

find_tools tests
echo "Building ..."
if [ "${1-}" = sanitize ]; then
  directory="$root/build-asan"
  build "$directory" -DVARDENTO_TESTS=ON -DVARDENTO_WERROR=ON -DVARDENTO_SANITIZE=ON \
    -DCMAKE_BUILD_TYPE=Release "-DCMAKE_CXX_FLAGS_RELEASE=-O1 -g1 -D_GLIBCXX_ASSERTIONS"
else
  directory="$root/build-test"
  # Without NDEBUG: the assertions check every index.
  build "$directory" -DVARDENTO_TESTS=ON -DVARDENTO_WERROR=ON \
    -DCMAKE_BUILD_TYPE=Release "-DCMAKE_CXX_FLAGS_RELEASE=-O2 -D_GLIBCXX_ASSERTIONS"
fi
ctest --test-dir "$directory" -j "$(nproc)" --output-on-failure
