#!/bin/sh
# Installs a build, and takes away again all that it made: files, links and folders.
#   install.sh install|uninstall BUILD PREFIX [DESTDIR]
# BUILD/installed keeps a list for each place of installation. A folder that has got other files since then stays.
set -eu
action=$1 build=$2 prefix=$3 destdir=${4:-}
case $prefix in /*) ;; *) echo "install: the prefix has to be an absolute path, not '$prefix'" >&2; exit 1 ;; esac
case $destdir in '' | /*) ;; *) destdir=$PWD/$destdir ;; esac
record=$build/installed/$(printf '%s' "$destdir$prefix" | tr / +)

# The loader's cache tells programs of a new library in its folders.
refresh_loader() {
  if [ -z "$destdir" ] && [ "$(id -u)" = 0 ] && command -v ldconfig > /dev/null; then ldconfig; fi
}

# What a first installation into an empty place makes tells what this one will.
list_new() {
  stage=$(mktemp -d)
  trap 'rm -rf "$stage"' EXIT
  DESTDIR=$stage cmake --install "$build" --prefix "$prefix" > /dev/null
  (cd "$stage" && find . ! -type d | sed 's|^\.||') | while read -r file; do echo "$destdir$file"; done > "$record.files.new"
  (cd "$stage" && find . -type d | sed 's|^\.||') | while read -r folder; do
    [ -d "$destdir$folder/" ] || echo "$destdir$folder"
  done > "$record.folders.new"
  above=$destdir
  while [ -n "$above" ] && [ ! -d "$above/" ]; do
    echo "$above"
    above=${above%/*}
  done >> "$record.folders.new"
}

install() {
  mkdir -p "$build/installed"
  list_new
  # The list is there before the first file, so a broken installation can be taken away too.
  for kind in files folders; do
    touch "$record.$kind"
    sort -u -o "$record.$kind" "$record.$kind" "$record.$kind.new"
    rm "$record.$kind.new"
  done
  DESTDIR=$destdir cmake --install "$build" --prefix "$prefix"
  refresh_loader
}

uninstall() {
  if [ ! -e "$record.files" ]; then
    echo "uninstall: nothing is known to be installed in $destdir$prefix" >&2
    exit 1
  fi
  while read -r file; do rm -f "$file"; done < "$record.files"
  sort -r "$record.folders" | while read -r folder; do rmdir "$folder" 2> /dev/null || true; done
  rm "$record.files" "$record.folders"
  refresh_loader
}

case $action in
  install) install ;;
  uninstall) uninstall ;;
  *) echo "usage: install.sh install|uninstall BUILD PREFIX [DESTDIR]" >&2; exit 2 ;;
esac
