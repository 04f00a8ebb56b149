#!/usr/bin/env bash
# Builds the Debian package with scripts/package (a release build kept inside the test build
# tree, so later runs rebuild only what changed), checks its metadata and file list, validates
# its desktop entry and AppStream metadata, unpacks it into a throw-away root and runs the
# unpacked tessaline-vault and tessaline there against a fresh HOME.
# Usage: package_test.sh SOURCE_DIR WORK_DIR
set -euo pipefail
source_dir=$1
work_dir=$2
failures=0
fail() { echo "FAIL: $*" >&2; failures=$((failures + 1)); }
check() { local what=$1; shift; if "$@"; then echo "ok: $what"; else fail "$what"; fi; }

out_dir="$work_dir/out"
rm -rf "$out_dir"
TESSALINE_JOBS=${TESSALINE_JOBS:-2} "$source_dir/scripts/package" "$work_dir/release" "$out_dir"

arch=$(dpkg --print-architecture)
deb="$out_dir/tessaline_0.1.0_${arch}.deb"
[[ -f "$deb" ]] || { echo "FAIL: no package at $deb" >&2; ls -l "$out_dir" >&2; exit 1; }
echo "package: $(basename "$deb"), $(stat -c %s "$deb") bytes"

# Metadata.
field() { dpkg-deb -f "$deb" "$1"; }
check "package name" test "$(field Package)" = tessaline
check "version" test "$(field Version)" = 0.1.0
check "architecture" test "$(field Architecture)" = "$arch"
depends=$(field Depends)
echo "Depends: $depends"
# The accessibility bus is reached over D-Bus (GIO), not through libatspi: at-spi2-core, named
# below, provides the bus.
for needed in libqt6core6 libqt6gui6 libqt6qml6 libqt6quick6 libqt6widgets6 libqt6dbus6 \
    libglib2.0-0 libxcb1 libxkbcommon0 libc6 libstdc++6 \
    qml6-module-qtquick qml6-module-qtquick-controls qml6-module-qtquick-layouts \
    qml6-module-qtquick-templates qml6-module-qtquick-window qml6-module-qtqml-workerscript \
    qt6-qpa-plugins libqt6svg6 at-spi2-core hicolor-icon-theme; do
    check "Depends names $needed" grep -Fq ", $needed " <<<", ${depends//,/ ,} "
done
check "no sanitizer runtime in Depends" bash -c '! grep -Eq "libasan|libubsan" <<<"$1"' _ "$depends"

# Nothing runs when the package is removed, so the user's vault stays where it is.
control=$(mktemp -d)
dpkg-deb -e "$deb" "$control"
check "no maintainer scripts" test -z "$(ls "$control" | grep -Ev '^(control|md5sums)$' || true)"

# File list.
mapfile -t files < <(dpkg-deb -c "$deb" | awk '{print $NF}' | sed 's|^\./|/|' | grep -v '/$')
printf '  %s\n' "${files[@]}"
expected=(
    /usr/bin/tessaline
    /usr/bin/tessaline-vault
    /usr/share/tessaline/keybinds.json
    /usr/share/tessaline/TessalineLogo.png
    /usr/share/applications/org.tessaline.Tessaline.desktop
    /usr/share/metainfo/org.tessaline.Tessaline.metainfo.xml
    /usr/share/icons/hicolor/256x256/apps/org.tessaline.Tessaline.png
    /usr/share/icons/hicolor/scalable/apps/org.tessaline.Tessaline.svg
    /usr/share/icons/hicolor/symbolic/apps/org.tessaline.Tessaline-symbolic.svg
    /usr/share/man/man1/tessaline.1.gz
    /usr/share/man/man1/tessaline-vault.1.gz
    /usr/share/bash-completion/completions/tessaline-vault
    /usr/share/zsh/vendor-completions/_tessaline-vault
    /usr/share/fish/vendor_completions.d/tessaline-vault.fish
)
check "file list is exactly the expected one" \
    diff <(printf '%s\n' "${expected[@]}" | sort) <(printf '%s\n' "${files[@]}" | sort)

# Unpack into a throw-away root.
root=$(mktemp -d)
trap 'rm -rf "$root" "$control"' EXIT
dpkg -x "$deb" "$root"
for binary in tessaline tessaline-vault; do
    check "$binary is stripped" bash -c '! readelf -S "$1" | grep -q "\.symtab"' _ \
        "$root/usr/bin/$binary"
done
check "desktop entry validates" desktop-file-validate \
    "$root/usr/share/applications/org.tessaline.Tessaline.desktop"
check "AppStream metadata validates" appstreamcli validate --no-net \
    "$root/usr/share/metainfo/org.tessaline.Tessaline.metainfo.xml"
check "AppStream metadata and desktop entry validate together" \
    appstreamcli validate-tree --no-net "$root"
for page in tessaline tessaline-vault; do
    check "manual page $page is a troff page" \
        bash -c 'gzip -dc "$1" | grep -q "^\.TH \"$2\" \"1\""' _ \
        "$root/usr/share/man/man1/$page.1.gz" "$page"
done

# The unpacked binaries find the seed beside them: mark the unpacked seed so that the vault
# built from it can be told apart from the build tree's copy.
seed="$root/usr/share/tessaline/keybinds.json"
python3 - "$seed" <<'PY'
import json, sys
path = sys.argv[1]
with open(path) as f:
    vault = json.load(f)
vault["global"].append({"name": "Unpacked Seed Marker", "chord": "⌃ ⌥ F12",
                        "note": "only in the unpacked package"})
with open(path, "w") as f:
    json.dump(vault, f, ensure_ascii=False)
PY
home=$(mktemp -d -p "$root")
output=$(env -i PATH=/usr/bin:/bin HOME="$home" LC_ALL=C.UTF-8 \
    "$root/usr/bin/tessaline-vault" sections 2>&1) || fail "tessaline-vault sections: $output"
check "sections lists the global section" grep -q "Unpacked Seed Marker" <<<"$output"
check "the vault was created in the fresh HOME" \
    test -f "$home/.local/share/Tessaline/keybinds.json"
check "the vault comes from the unpacked seed" \
    grep -q "Unpacked Seed Marker" "$home/.local/share/Tessaline/keybinds.json"

version=$(env -i PATH=/usr/bin:/bin HOME="$home" "$root/usr/bin/tessaline" --version 2>&1) ||
    fail "tessaline --version: $version"
check "tessaline --version without a display" test "$version" = "tessaline 0.1.0"
help=$(env -i PATH=/usr/bin:/bin HOME="$home" "$root/usr/bin/tessaline" --help 2>&1) ||
    fail "tessaline --help: $help"
check "tessaline --help names --toggle" grep -q -- "--toggle" <<<"$help"

if ((failures > 0)); then
    echo "$failures check(s) failed" >&2
    exit 1
fi
echo "all package checks passed"
