#!/usr/bin/env bash
# The installed program for a new user: the build installed into a temporary root, its
# folioexport-cli started through bin/ by a user without a data folder. The data folder is
# made from what the installation ships, the sample tree exports, the independent reader
# accepts the file, and nothing under the installation changes.
#   installed_test.sh BUILD_DIR CHECK_JS
set -euo pipefail
build=$1
check=$2
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT

DESTDIR=$root/install cmake --install "$build" --prefix /usr >/dev/null
snapshot() { (cd "$root/install" && find . -printf '%p %s %m %T@\n' | sort); }
before=$(snapshot)

export HOME=$root/home
unset XDG_DOCUMENTS_DIR XDG_CONFIG_HOME LC_ALL LC_MESSAGES
export LANG=C.UTF-8
cli=$root/install/usr/bin/folioexport-cli
test -L "$cli"

# The desktop's menu finds the program by its entry, metainfo and icon; the entry's program
# is reachable from bin/ when it was built.
share=$root/install/usr/share
desktop-file-validate "$share/applications/folioexport.desktop"
tree=$(appstreamcli validate-tree --no-net "$root/install/usr" 2>&1) || { echo "$tree"; exit 1; }
for n in 16 32 48 64 128 256; do
    test -s "$share/icons/hicolor/${n}x$n/apps/folioexport.png"
done
if [ -e "$root/install/usr/lib/folioexport/Stammfolio/Folioexport/folioexport" ]; then
    test -L "$root/install/usr/bin/folioexport"
    test -x "$(readlink -f "$root/install/usr/bin/folioexport")"
fi

"$cli" --version | grep -q "Datenpfad:    $HOME/Documents/Stammfolio"
test -f "$HOME/Documents/Stammfolio/language.mdb"
"$cli" export "$HOME/Documents/Stammfolio/Beispiel.SF6" -o "$root/Hollerbach.ged" --all \
    | grep -q "The GEDCOM file has been written"
test "$(grep -c $'^0 @I' "$root/Hollerbach.ged")" -eq 53
node "$check" "$root/Hollerbach.ged"

if [ "$(snapshot)" != "$before" ]; then
    echo "the run changed the installation:"
    diff <(echo "$before") <(snapshot) || true
    exit 1
fi
echo "installed program: ok"
