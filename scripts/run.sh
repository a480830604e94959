#!/usr/bin/env bash
# The main job: cadhost with a sample drawing and VarDesk loaded. Without a display, the demo script
# runs in the batch console instead and leaves its screenshots in a folder named at the end.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
mode=${1:-}
set -- # deps.sh takes extra package names from the arguments
. "$root/scripts/deps.sh"
vardesk_install_missing

build="$root/build/release"
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF -DVARDESK_BENCH=OFF >/dev/null
cmake --build "$build" -j "${JOBS:-2}"
stage="$build/stage"
sample="$stage/share/vardesk/samples/Werkhalle.dxf"
work=$(mktemp -d "${TMPDIR:-/tmp}/vardesk-demo.XXXXXX")
cp "$sample" "$work/"

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] && [ "$mode" != "--demo" ]; then
    exec "$stage/bin/cadhost" "$work/$(basename "$sample")"
fi

shots="$root/out/demo"
rm -rf "$shots"
mkdir -p "$shots" "$work/profile"
# A description file with a few faults, so the demo's load has a log to offer.
grep -v -E '#(SNAPANG|GRIDUNIT)#' "$stage/share/vardesk/VarDesk.avl" > "$work/Demo.avl"
cat "$root/data/demo/demo-errors.avl" >> "$work/Demo.avl"
printf '[Settings]\nAutoCADVarList=%s\n' "$work/Demo.avl" > "$work/profile/VarDesk.ini"
sed -e "s|@SHOTS@|$shots|g" -e "s|@WORK@|$work|g" "$root/data/demo/demo.scr" > "$work/demo.scr"
(cd "$work" && "$stage/bin/cadhost" --profile "$work/profile" --batch "$work/demo.scr")
echo
echo "Demo finished. Screenshots: $shots"
ls -1 "$shots"
