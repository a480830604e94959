#!/usr/bin/env bash
# Builds the Debian package from a build folder, installs it into a fresh root with dpkg, runs
# batch-console scenarios against the installed cadhost, removes the package and checks that
# nothing of it is left.
#   scripts/package-test.sh BUILD_FOLDER
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:?usage: $0 BUILD_FOLDER}
build=$(cd "$build" && pwd)

(cd "$build" && cpack -G DEB >/dev/null)
package=$(ls -t "$build"/vardesk_*.deb | head -1)
echo "== package $(basename "$package")"

# The fresh root holds no other package, so the Qt libraries the package depends on are looked
# for on this machine, where the installed cadhost will find them.
depends=$(dpkg-deb -f "$package" Depends)
IFS=',' read -ra wanted <<<"$depends"
for entry in "${wanted[@]}"; do
    name=$(echo "$entry" | awk '{print $1}')
    if ! dpkg-query -W -f='${Status}' "$name" 2>/dev/null | grep -q "install ok installed"; then
        echo "the package depends on $name, which is not installed here" >&2
        exit 1
    fi
done

target=$(mktemp -d "${TMPDIR:-/tmp}/vardesk-package.XXXXXX")
trap 'rm -rf "$target"' EXIT
mkdir -p "$target/root/var/lib/dpkg/info" "$target/root/var/lib/dpkg/updates"
touch "$target/root/var/lib/dpkg/status"
dpkg_root() { dpkg --root="$target/root" --force-not-root --log=/dev/null "$@"; }

dpkg_root --force-depends -i "$package" >/dev/null 2>"$target/install.log" || {
    cat "$target/install.log" >&2
    exit 1
}
cadhost="$target/root/usr/bin/cadhost"
for drawing in template/cadhost-r2018.dxf samples/Werkhalle.dxf samples/Lageplan.dxf samples/Schnitt.dxf; do
    if [ ! -s "$target/root/usr/share/vardesk/$drawing" ]; then
        echo "the package lacks share/vardesk/$drawing" >&2
        exit 1
    fi
done
for library in $(ldd "$cadhost" | awk '/libacsdk|libkovaplatform/ {print $3}'); do
    case $library in
    "$target/root/"*) ;;
    *) echo "the installed cadhost loads $library from outside the package" >&2; exit 1 ;;
    esac
done

status=0
for scenario in host_basics main_dialog commands_set; do
    if cmake -DCADHOST="$cadhost" -DSCENARIO_DIR="$root/tests/scenarios" -DNAME="$scenario" \
        -DSAMPLES="$target/root/usr/share/vardesk/samples" -DWORK="$target/work/$scenario" \
        -P "$root/tests/scenarios/RunScenario.cmake"; then
        echo "   scenario $scenario against the installed files: passed"
    else
        echo "   scenario $scenario against the installed files: FAILED" >&2
        status=1
    fi
done

dpkg_root -r vardesk >/dev/null
left=$(find "$target/root" -path "$target/root/var" -prune -o -mindepth 1 -print)
if [ -n "$left" ]; then
    echo "removing the package left files behind:" >&2
    echo "$left" >&2
    status=1
else
    echo "   removed, nothing left behind"
fi
exit $status
