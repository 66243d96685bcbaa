#!/usr/bin/env bash
# The desktop entry and the metainfo as the desktop's own tools judge them, the two agreeing
# with each other, with the icon and with the project's version; and every staged icon a PNG
# of the size its folder names.
#   desktop_files_test.sh DATA_DESKTOP_DIR ICON_THEME_DIR SIZES VERSION
set -euo pipefail
data=$1
theme=$2
IFS=, read -ra sizes <<<"$3"
version=$4
desktop=$data/folioexport.desktop
metainfo=$data/org.example.folioexport.metainfo.xml
fail() { echo "FAIL: $*" >&2; exit 1; }

# desktop-file-validate says nothing about a good file, not even hints.
out=$(desktop-file-validate "$desktop" 2>&1) || fail "desktop-file-validate: $out"
[ -z "$out" ] || fail "desktop-file-validate: $out"

# appstreamcli fails on errors and warnings; infos and pedantic hints are refused too.
out=$(appstreamcli validate --no-net --pedantic --no-color "$metainfo" 2>&1) \
    || fail "appstreamcli: $out"
! grep -Eq '^[EWIP]: ' <<<"$out" || fail "appstreamcli: $out"

key() { sed -n "s/^$1=//p" "$desktop"; }
[ "$(key Exec)" = folioexport ] || fail "Exec is $(key Exec)"
[ "$(key Icon)" = folioexport ] || fail "Icon is $(key Icon)"
grep -q '<launchable type="desktop-id">folioexport.desktop</launchable>' "$metainfo" \
    || fail "the metainfo launches another desktop file"
grep -q "<binary>$(key Exec)</binary>" "$metainfo" || fail "the metainfo lacks the binary $(key Exec)"
grep -q '<binary>folioexport-cli</binary>' "$metainfo" || fail "the metainfo lacks folioexport-cli"
grep -q "<release version=\"$version\"" "$metainfo" || fail "no release $version in the metainfo"

# A PNG: the signature, IHDR first with width and height, 8 bits a sample, RGBA; IEND last.
bytes() { od -An -tu1 -j "$2" -N "$3" "$1" | tr -s ' \n' ' ' | sed 's/^ //; s/ $//'; }
be32() { local b; read -ra b <<<"$(bytes "$1" "$2" 4)"; echo $(((b[0] << 24) | (b[1] << 16) | (b[2] << 8) | b[3])); }
[ ${#sizes[@]} -ge 6 ] || fail "only ${#sizes[@]} icon sizes"
for n in "${sizes[@]}"; do
    png=$theme/${n}x$n/apps/$(key Icon).png
    [ -f "$png" ] || fail "no icon $png"
    [ "$(bytes "$png" 0 8)" = "137 80 78 71 13 10 26 10" ] || fail "$png: no PNG signature"
    [ "$(be32 "$png" 8)" -eq 13 ] && [ "$(bytes "$png" 12 4)" = "73 72 68 82" ] \
        || fail "$png: IHDR isn't the first chunk"
    [ "$(be32 "$png" 16)" -eq "$n" ] && [ "$(be32 "$png" 20)" -eq "$n" ] \
        || fail "$png: $(be32 "$png" 16) by $(be32 "$png" 20) pixels, not $n"
    [ "$(bytes "$png" 24 2)" = "8 6" ] || fail "$png: not 8-bit RGBA"
    size=$(stat -c %s "$png")
    [ "$(bytes "$png" $((size - 12)) 12)" = "0 0 0 0 73 69 78 68 174 66 96 130" ] \
        || fail "$png: doesn't end with IEND"
done
echo "desktop files: ok"
