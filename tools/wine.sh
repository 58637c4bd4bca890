# shellcheck shell=bash
# Runs Windows programs under Wine, on a display of its own where one is needed. Sourced after common.sh.
#
# Everything lives in build/wine: a prefix template that is made once, and for each run a copy of it
# that goes away at the end. Nothing is read from or written to the user's home folder.
#
#   trap wine_end EXIT
#   wine_begin [--display]
#   wine kivra.exe "$(wine_path file.bin)"

wine_dir=$kivra_build/wine
wine_run_dir=
wine_pids=()

# wine_begin [--display]: makes a prefix for this run; --display starts a virtual display too.
wine_begin() {
  mkdir -p "$wine_dir/home"
  # The home folder changes below, and with it where X clients look for their permission.
  [ -z "${DISPLAY:-}" ] || export XAUTHORITY="${XAUTHORITY:-${HOME:-/}/.Xauthority}"
  export HOME=$wine_dir/home XDG_CACHE_HOME=$wine_dir/home/.cache XDG_CONFIG_HOME=$wine_dir/home/.config
  export WINEARCH=win64 WINEDLLOVERRIDES='mscoree,mshtml=;winemenubuilder.exe=d'
  # "-all" also silences Debian's advice to install the 32-bit Wine, which nothing here needs.
  export WINEDEBUG=-all
  use_utf8

  wine_make_template
  wine_run_dir=$(mktemp -d "$wine_dir/run-XXXXXX")
  wine_copy_prefix "$wine_run_dir/prefix"
  export WINEPREFIX=$wine_run_dir/prefix
  [ "${1:-}" != --display ] || wine_start_display
}

# wine_end: ends every program of this run and removes its prefix. Harmless when nothing was begun.
wine_end() {
  [ -n "$wine_run_dir" ] || return 0
  wine_stop_server
  if [ "${#wine_pids[@]}" -gt 0 ]; then
    kill "${wine_pids[@]}" 2>/dev/null
    wait "${wine_pids[@]}" 2>/dev/null
  fi
  rm -rf "$wine_run_dir"
  wine_run_dir='' wine_pids=()
}

# wine_stop_server: ends every Windows program of this run.
wine_stop_server() {
  timeout -k 5 20 wineserver -k 2>/dev/null
  timeout -k 5 20 wineserver -w 2>/dev/null
}

# wine_path <path>: prints the Windows form of a path of this system.
wine_path() { winepath -w "$1" | tr -d '\r'; }

# wine_set_dpi <dpi>: for programs started afterwards; 144 is 150 %.
wine_set_dpi() {
  timeout -k 5 60 wine reg add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d "$1" /f >/dev/null
}

# The template is made anew when Wine or this recipe changes.
wine_make_template() {
  local stamp
  stamp=$(wine --version; cat "$kivra_root/tools/wine.sh" "$kivra_root/tools/wine.reg" | cksum)
  exec 9>"$wine_dir/lock"
  flock 9
  if [ "$(cat "$wine_dir/template/kivra-stamp" 2>/dev/null)" != "$stamp" ]; then
    say "Making a Wine prefix in build/wine (once, about 20 seconds)"
    wine_build_template "$wine_dir/template" >"$kivra_build/logs/wine-prefix.log" 2>&1 9>&- ||
      fail "Wine could not make its prefix; its output is in build/logs/wine-prefix.log"
    printf '%s\n' "$stamp" >"$wine_dir/template/kivra-stamp"
  fi
  exec 9>&-
}

wine_build_template() {
  local link
  rm -rf "$1"
  (
    export WINEPREFIX=$1
    unset DISPLAY
    timeout -k 10 300 wine wineboot -i || exit 1
    timeout -k 10 60 wine regedit /S "$(winepath -w "$kivra_root/tools/wine.reg")" || exit 1
    timeout -k 10 60 wineserver -w
  ) || return 1
  # Documents, Desktop and the like are links into the home folder; the programs get folders instead.
  find "$1/drive_c/users" -type l -print0 | while IFS= read -r -d '' link; do
    rm "$link" && mkdir "$link"
  done
}

# Hard links make the copy in no time; the registry files, which Wine rewrites, are copied.
wine_copy_prefix() {
  cp -al "$wine_dir/template" "$1" 2>/dev/null || { rm -rf "$1" && cp -a "$wine_dir/template" "$1"; } ||
    fail "the Wine prefix could not be copied to $1"
  local file
  for file in "$1"/*.reg; do
    cp --remove-destination "$wine_dir/template/${file##*/}" "$file"
  done
  rm -f "$1/wineserver"
}

# wine_start_display: Xvfb on a free display number, and a window manager, since without one closing
# a window takes two seconds and captions are not drawn.
wine_start_display() {
  local fifo=$wine_run_dir/display number
  mkfifo "$fifo"
  exec 8<>"$fifo"
  # The death signal keeps the server from outliving a script that was killed.
  setpriv --pdeathsig TERM Xvfb -displayfd 8 -screen 0 1400x1000x24 -noreset -nolisten tcp \
    >"$kivra_build/logs/xvfb.log" 2>&1 &
  wine_pids+=($!)
  read -r -t 30 number <&8 || fail "Xvfb did not start; its output is in build/logs/xvfb.log"
  exec 8>&-
  export DISPLAY=:$number
  unset WAYLAND_DISPLAY XAUTHORITY

  openbox --sm-disable >"$kivra_build/logs/openbox.log" 2>&1 &
  wine_pids+=($!)
  local tries
  for ((tries = 0; tries < 100; tries++)); do
    case $(xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null) in
      *'window id'*) return 0 ;;
    esac
    sleep 0.1
  done
  fail "the window manager did not start; its output is in build/logs/openbox.log"
}
