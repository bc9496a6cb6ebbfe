#!/bin/sh
# Builds the program and runs a real analysis: 316 students' answers to 24 items about verbal
# aggression. Everything is written below build/.
set -eu
. "$(dirname "$0")/setup.sh"

find_tools
echo "Building ..."
build "$root/build"

demo="$root/build/demo"
rm -rf "$demo"
cp -R "$root/examples/verbal-aggression" "$demo"
cd "$demo"
echo "Running: vardento control.txt report.txt BATCH=Y"
"$root/build/vardento" control.txt report.txt BATCH=Y

# The summary of the run: the box with the two rows of counts, means and reliabilities.
sed -n '/TABLE 3\.1/,$p' report.txt | tr -d '\f' | head -n 42
echo
echo "The whole report:  $demo/report.txt"
for file in persons.csv items.csv; do
  [ -e "$file" ] && echo "A measure file:    $demo/$file"
done
