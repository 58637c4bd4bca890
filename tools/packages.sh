# shellcheck shell=bash
# The Debian packages that Kivra's scripts need, by purpose, and their installation. Sourced, never run.

# The cross compiler with the posix thread model: std::thread does not exist in the other one.
packages_build='cmake ninja-build g++-mingw-w64-x86-64-posix'

# Wine and a display to show it on. Without Mesa's software driver Direct2D programs abort. The X
# libraries are only recommended by Wine, yet without them windows have no frames or cursors.
packages_wine='wine wine64 libgl1 libgl1-mesa-dri libgnutls30 libxcomposite1 libxcursor1 libxfixes3
  libxi6 libxinerama1 libxrandr2 libxrender1 fonts-dejavu-core fonts-unifont'
packages_display='xvfb xkb-data openbox x11-utils imagemagick'

packages_test='g++ googletest libbenchmark-dev libicu-dev clang libclang-rt-dev clang-tidy
  clang-format llvm'
# The sample patterns are tested on files that these make.
packages_test+=' binutils cpio dosfstools e2fsprogs fdisk gzip imagemagick ntfs-3g p7zip sqlite3 squashfs-tools
  tar xorriso xz-utils zip'

# Commands that stand for the packages where there is no dpkg to ask.
commands_build='cmake ninja x86_64-w64-mingw32-g++-posix x86_64-w64-mingw32-windres'
commands_wine='wine wineserver winepath'
commands_display='Xvfb openbox xwininfo import'
commands_test='g++ clang++ clang-tidy clang-format llvm-cov ar cpio mkfs.fat mkfs.ext4 sfdisk gzip convert mkntfs 7zr sqlite3
  mksquashfs tar xorriso xz zip'

# missing_packages <package>...: prints those that are not installed.
missing_packages() {
  local package status installed=' '
  while read -r package status; do
    [ "$status" = installed ] && installed="$installed$package "
  done < <(dpkg-query -W -f '${Package} ${db:Status-Status}\n' "$@" 2>/dev/null)
  for package in "$@"; do
    case $installed in
      *" $package "*) ;;
      *) printf '%s ' "$package" ;;
    esac
  done
}

# install_packages <package>...: as root, or through sudo, or not at all.
install_packages() {
  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null || { ! sudo -n true 2>/dev/null && [ ! -t 0 ]; }; then
      fail "these Debian packages are missing and neither root nor sudo is at hand: $*
Install them with: apt-get install --no-install-recommends $*"
    fi
    as_root=(sudo)
  fi
  say "Installing Debian packages: $*"
  as_root+=(env DEBIAN_FRONTEND=noninteractive apt-get -q -o Dpkg::Use-Pty=0)
  "${as_root[@]}" update >"$kivra_build/logs/apt.log" 2>&1 ||
    say "apt-get update failed; going on with the package lists there are"
  if ! "${as_root[@]}" install -y --no-install-recommends "$@" >>"$kivra_build/logs/apt.log" 2>&1; then
    tail -n 20 "$kivra_build/logs/apt.log" >&2
    fail "apt-get could not install them; the whole output is in build/logs/apt.log"
  fi
}

# need <purpose>...: makes sure that the packages of these purposes (build, wine, display, test) exist.
need() {
  local purpose command list packages=() commands=() missing=()
  for purpose in "$@"; do
    # The lists are split into words on purpose.
    # shellcheck disable=SC2206
    list=packages_$purpose packages+=(${!list})
    # shellcheck disable=SC2206
    list=commands_$purpose commands+=(${!list})
  done
  mkdir -p "$kivra_build/logs"

  if command -v dpkg-query >/dev/null && command -v apt-get >/dev/null; then
    read -r -a missing < <(missing_packages "${packages[@]}"; echo)
    [ "${#missing[@]}" -eq 0 ] || install_packages "${missing[@]}"
    return
  fi
  for command in "${commands[@]}"; do
    command -v "$command" >/dev/null || missing+=("$command")
  done
  [ "${#missing[@]}" -eq 0 ] ||
    fail "this is no Debian system, so nothing was installed; these commands are missing: ${missing[*]}"
}
