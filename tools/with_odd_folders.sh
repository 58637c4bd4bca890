#!/usr/bin/env bash
# Usage: with_odd_folders.sh <folder> <command> [argument]...
#
# Runs the command where <folder>/small is a disk of 7 MiB and <folder>/read-only cannot be written, even
# by root. Both are mounts that only the command sees and that vanish with it. Fails with exit code 125,
# without running the command, where the system allows no mounts.
set -uo pipefail

if [ "${1:-}" = --inside ]; then
  folder=$2 user=$3 group=$4
  shift 4
  mount -t tmpfs -o size=7m,mode=777 tmpfs "$folder/small" &&
    mount --bind "$folder/read-only" "$folder/read-only" &&
    mount -o remount,bind,ro "$folder/read-only" || exit 125
  [ "$(id -u):$(id -g)" = "$user:$group" ] && exec "$@"
  # Mounting took the name of root; the command runs under the caller's own again.
  exec unshare --user --map-user="$user" --map-group="$group" "$@"
fi

[ $# -ge 2 ] || { echo "Usage: with_odd_folders.sh <folder> <command> [argument]..." >&2 && exit 2; }
folder=$(realpath "$1")
mkdir -p "$folder/small" "$folder/read-only" || exit 125
for namespace in '--mount' '--mount --user --map-root-user'; do
  # shellcheck disable=SC2086
  if unshare $namespace mount -t tmpfs tmpfs "$folder/small" 2>/dev/null; then
    # shellcheck disable=SC2086
    exec unshare $namespace "$BASH" "$0" --inside "$folder" "$(id -u)" "$(id -g)" "${@:2}"
  fi
done
exit 125
