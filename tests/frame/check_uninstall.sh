#!/bin/sh
# After install and uninstall a tree is as it was, down to the folders.
#   check_uninstall.sh SOURCE BUILD WORK
set -eu
script=$1/packaging/install.sh build=$2 tree=$3/tree

fail() { echo "check_uninstall: $1" >&2; exit 1; }
same() { (cd "$tree" && find . | sort) | diff "$before" - || fail "$1"; }

rm -rf "$3" && mkdir -p "$tree/usr/local/lib" "$tree/usr/local/empty"
touch "$tree/usr/local/lib/libother.so"
before=$3/before
(cd "$tree" && find . | sort) > "$before"

"$script" install "$build" /usr/local "$tree" > /dev/null
[ -e "$tree/usr/local/include/portraitcut/vizl_api.h" ] || fail "nothing was installed"
"$script" install "$build" /usr/local "$tree" > /dev/null
"$script" uninstall "$build" /usr/local "$tree"
same "left after two installations"

"$script" install "$build" /usr/local "$tree" > /dev/null
touch "$tree/usr/local/include/portraitcut/mine.h"
"$script" uninstall "$build" /usr/local "$tree"
[ -e "$tree/usr/local/include/portraitcut/mine.h" ] || fail "a foreign file is gone"
rm -r "$tree/usr/local/include"
same "left beside a foreign file"

# The folders above are new too; two places are kept apart.
"$script" install "$build" /opt/a "$tree/new/root" > /dev/null
"$script" install "$build" /opt/b "$tree/new/root" > /dev/null
"$script" uninstall "$build" /opt/b "$tree/new/root"
[ -e "$tree/new/root/opt/a/include/portraitcut/vizl_api.h" ] || fail "the other place is gone"
"$script" uninstall "$build" /opt/a "$tree/new/root"
same "left in new folders"
! "$script" uninstall "$build" /opt/a "$tree/new/root" 2> /dev/null || fail "nothing was there to uninstall"
