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
