#!/bin/sh
# install_test.sh CMAKE BUILD: installs into a new folder and starts the programs there.
set -eu
prefix=$(mktemp -d)
desk=
end() {
    [ -z "$desk" ] || kill "$desk" 2>/dev/null || true
    rm -rf "$prefix"
}
trap end EXIT
fail() {
    echo "$*" >&2
    exit 1
}

"$1" --install "$2" --prefix "$prefix" >/dev/null
export HOME="$prefix" QT_QPA_PLATFORM=offscreen
for file in share/applications/crenara-desk.desktop share/mime/packages/crenara.xml \
    share/icons/hicolor/48x48/apps/crenara.png share/icons/hicolor/scalable/apps/crenara.svg \
    share/doc/crenara/copyright share/doc/crenara/docs/formats.md \
    share/man/man1/crenara-desk.1.gz share/man/man1/crenara-samples.1.gz; do
    [ -s "$prefix/$file" ] || fail "$file is missing"
done
# A desk that finds no plug-in says so; the libraries of the tree must not be needed.
"$prefix/bin/crenara" --version | grep -q '^crenara 1\.' || fail "crenara does not start"
"$prefix/bin/crenara-samples" "$prefix/leaves" --count 1 >/dev/null
[ -s "$prefix/leaves/plain-01.tif" ] || fail "no leaf was drawn"
gzip -dc "$prefix/share/man/man1/crenara.1.gz" | grep -q 'Fl \\-propose\\-junctions' ||
    fail "the manual page lacks the options"

"$prefix/bin/crenara-desk" "$prefix/leaves/plain-01.tif" 2>"$prefix/said" &
desk=$!
for _ in $(seq 200); do
    if grep -q "$prefix/lib/crenara/plugins/libcrenaraplugin.so" "/proc/$desk/maps" 2>/dev/null; then
        # It opens the photograph next.
        sleep 0.4
        kill -0 "$desk" || fail "crenara-desk ended by itself"
        exit 0
    fi
    sleep 0.05
done
cat "$prefix/said" >&2
fail "crenara-desk did not load its plug-in"
