# Read by the other scripts of this directory: installs what a build needs, configures and builds.
# Debian 12 with nothing but a shell is enough.

root=$(cd "$(dirname "$0")/.." && pwd)

# need PACKAGE TEST...: notes the package when the test fails.
need() {
  package=$1
  shift
  "$@" >/dev/null 2>&1 || missing="$missing $package"
}

# find_tools [tests|comparison]: makes sure that the tools are there, for tests GoogleTest too, for
# comparisons git and Python.
find_tools() {
  missing=
  need cmake command -v cmake
  need ninja-build command -v ninja
  need g++ command -v g++
  if [ "${1-}" = tests ]; then
    need libgtest-dev test -e /usr/include/gtest/gtest.h
    need libgmock-dev test -e /usr/include/gmock/gmock.h
    need liblapack-dev sh -c "ls /usr/lib/*/liblapack.so"
  fi
  if [ "${1-}" = comparison ]; then
    need git command -v git
    need python3 command -v python3
  fi
  [ -z "$missing" ] && return 0
  if [ "$(id -u)" -ne 0 ] || ! command -v apt-get >/dev/null 2>&1; then
    echo "Please install:$missing (on Debian: sudo apt-get install$missing)" >&2
    exit 1
  fi
  echo "Installing:$missing"
  log=$(mktemp)
  { apt-get update && DEBIAN_FRONTEND=noninteractive \
      apt-get install -y --no-install-recommends $missing; } >"$log" 2>&1 || {
    cat "$log" >&2
    rm -f "$log"
    exit 1
  }
  rm -f "$log"
}

# build DIRECTORY [CMAKE-OPTION...]: configures the directory when that is needed, and builds.
build() {
  directory=$1
  shift
  # A directory that was configured with another generator keeps it.
  generator="-G Ninja"
  [ -e "$directory/CMakeCache.txt" ] && generator=
  cmake -S "$root" -B "$directory" $generator "$@" >"$directory.log" 2>&1 &&
    cmake --build "$directory" -j "$(nproc)" >>"$directory.log" 2>&1 || {
    cat "$directory.log" >&2
    exit 1
  }
  rm -f "$directory.log"
}
