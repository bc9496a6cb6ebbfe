#!/bin/sh
# Compares this checkout's program with that of an earlier commit, over many data sets and settings:
# exit status, messages, report and every other file, byte for byte.
#
#   sh tools/compare-runs.sh COMMIT [--only PATTERN] [--list] [--keep] [--expect FILE]
#
# The exit status is 0 when all runs are the same or differ as expected, 1 when some differ, 2 when
# they can't be compared. Everything is written below build/compare.
set -eu
. "$(dirname "$0")/setup.sh"

work="$root/build/compare"
case "${1-}" in
  '' | -*)
    sed -n 's/^#   /Usage: /p' "$0" >&2
    exit 2
    ;;
esac
(find_tools comparison) || exit 2
commit=$(git -C "$root" rev-parse --verify --quiet "$1^{commit}") || {
  echo "No such commit: $1" >&2
  exit 2
}
shift

base="$work/$commit"

# Progress goes to the standard error stream, apart from the result.
build_both() {
  if [ ! -x "$base/build/vardento" ]; then
    echo "Building $commit ..." >&2
    rm -rf "$base"
    mkdir -p "$base"
    git clone --quiet --shared --no-checkout "$root" "$base/source"
    git -C "$base/source" checkout --quiet --detach "$commit"
    (root="$base/source" && build "$base/build" -DCMAKE_BUILD_TYPE=Release) || exit 2
  fi
  echo "Building the present state ..." >&2
  (build "$work/now" -DCMAKE_BUILD_TYPE=Release) || exit 2
}

case " $* " in
  *' --list '*) ;;
  *) build_both ;;
esac
# Without compiled modules beside the scripts.
PYTHONDONTWRITEBYTECODE=1 exec python3 "$root/tools/compare_runs.py" \
  "$base/build/vardento" "$work/now/vardento" "$root/examples" "$work" "$@"
