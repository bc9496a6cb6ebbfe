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

# The summary of the run: the box behind the convergence table.
echo
awk '/^Standardized Residuals/ { show = 1 } /TABLE 0\.3/ { show = 0 } show' report.txt
echo "The whole report:  $demo/report.txt"
for file in persons.csv items.csv; do
  if [ -e "$file" ]; then echo "A measure file:    $demo/$file"; fi
done
