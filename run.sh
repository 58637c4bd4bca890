#!/usr/bin/env bash
# Builds Kivra and opens the editor. See --help.
set -uo pipefail
. "$(dirname "$0")/tools/common.sh"
. "$kivra_root/tools/packages.sh"
. "$kivra_root/tools/wine.sh"

usage() {
  cat <<'HELP'
Usage: ./run.sh [--picture] [file]

Builds the editor and opens it, on the file if one is given. What it needs (a cross compiler, Wine) is
installed first where it is missing: on Debian as root or through sudo.

With an X display the editor opens there, and the command ends when the editor does.
Without one, or with --picture, it opens on a virtual display, on the file or on a sample that is made,
and a picture of its window is left in build/kivra.png.

  --picture   use the virtual display even if there is a real one
  --help      show this text
HELP
}

# have_display: a display that answers, not only a name for one.
have_display() {
  [ -n "${DISPLAY:-}" ] && timeout 10 xwininfo -root >/dev/null 2>&1
}

# make_sample <path>: every byte value once, then text in two scripts and a run of zeros.
make_sample() {
  local row column
  {
    for row in 0 1 2 3 4 5 6 7 8 9 a b c d e f; do
      for column in 0 1 2 3 4 5 6 7 8 9 a b c d e f; do
        printf '%b' "\\x$row$column"
      done
    done
    printf 'Kivra shows a file as rows of sixteen bytes: offset, hexadecimal, text.\n'
    printf 'バイナリエディタ\n'
    head -c 512 /dev/zero
    printf 'The end.'
  } >"$1"
}

# main_window: prints the id of the editor's main window once it is on the screen.
main_window() {
  local id
  for id in $(xwininfo -root -tree 2>/dev/null | sed -n 's/^ *\(0x[0-9a-f]*\) .*("kivra\.exe" .*/\1/p'); do
    case $(xwininfo -id "$id" 2>/dev/null) in
      *'Map State: IsViewable'*) printf '%s\n' "$id" && return ;;
    esac
  done
  return 1
}

# painted <picture of the inside>: text is smoothed, so a drawn window has many colours, and where nothing
# is drawn yet it is black.
painted() {
  local colours light
  read -r colours light < <(convert "$1" -format '%k ' -write info: \
    -fill white +opaque black -format '%[fx:mean>0.5]\n' info: 2>/dev/null)
  [ "${colours:-0}" -ge 16 ] && [ "${light:-0}" = 1 ]
}

# take_picture <picture> <process id>: waits until the window is up, painted and at rest.
take_picture() {
  local picture=$1 pid=$2 window last='' now rest=0 deadline=$((SECONDS + 60))
  local inside=$wine_run_dir/inside.png
  while [ "$SECONDS" -lt "$deadline" ]; do
    kill -0 "$pid" 2>/dev/null || fail "the editor ended before its window was up
$(cat "$kivra_build/logs/kivra.log")"
    if window=$(main_window) && import -window "$window" "$inside" 2>/dev/null; then
      now=$(cksum <"$inside")
      if [ "$now" != "$last" ] || ! painted "$inside"; then rest=0; else rest=$((rest + 1)); fi
      last=$now
      if [ "$rest" -ge 3 ]; then
        import -frame -window "$window" "$picture" || fail "the picture could not be taken"
        return
      fi
    fi
    sleep 0.3
  done
  fail "the editor's window was not up and painted within 60 seconds
$(xwininfo -root -tree 2>&1; cat "$kivra_build/logs/kivra.log")"
}

# close_editor <process id>: asks the program to close its window, as a user would.
close_editor() {
  local tries
  timeout -k 5 20 wine taskkill /im kivra.exe >/dev/null 2>&1
  for ((tries = 0; tries < 100; tries++)); do
    kill -0 "$1" 2>/dev/null || { wait "$1"; return; }
    sleep 0.1
  done
  fail "the editor did not close within 10 seconds"
}

picture='' file=
while [ $# -gt 0 ]; do
  case $1 in
    --help | -h) usage && exit 0 ;;
    --picture) picture=yes ;;
    --) shift && break ;;
    -*) fail "unknown option $1 (see --help)" ;;
    *) break ;;
  esac
  shift
done
[ $# -le 1 ] || fail "one file at the most: an editor shows one file"
if [ $# -eq 1 ]; then
  [ -e "$1" ] || fail "no such file: $1"
  [ ! -d "$1" ] || fail "a folder, not a file: $1"
  [ -r "$1" ] || fail "not readable: $1"
  file=$(realpath -- "$1")
fi

need build wine display
use_ccache
say "Building build/windows/kivra.exe"
build_preset windows kivra || fail "the build failed"

trap wine_end EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

if [ -z "$picture" ] && have_display; then
  wine_begin
  say "Opening the editor"
  wine "$kivra_build/windows/kivra.exe" ${file:+"$(wine_path "$file")"}
  exit
fi

if [ -z "$file" ]; then
  file=$kivra_build/sample.bin
  make_sample "$file"
fi
say "Opening the editor on a virtual display"
wine_begin --display
wine "$kivra_build/windows/kivra.exe" "$(wine_path "$file")" >"$kivra_build/logs/kivra.log" 2>&1 &
editor=$!
take_picture "$kivra_build/kivra.png" "$editor"
close_editor "$editor" || fail "the editor ended with exit code $?"
say "A picture of its window: $kivra_build/kivra.png"
