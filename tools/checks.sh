# shellcheck shell=bash
# The checks of test.sh that run no test program. Sourced after common.sh; each prints what is wrong and
# returns non-zero.

# tree_files: prints every file of the tree, without what is built and what belongs to git.
tree_files() {
  (cd "$kivra_root" && find . \( -path ./build -o -path ./.git -o -path ./dist \) -prune -o -type f -print) |
    sed 's|^\./||' | sort
}

tree_sources() { tree_files | grep -E '\.(h|cpp)$'; }

check_format() {
  (cd "$kivra_root" && tree_sources | xargs -d '\n' clang-format --dry-run -Werror)
}

check_scripts() {
  local file result=0
  while IFS= read -r file; do
    bash -n "$kivra_root/$file" || result=1
  done < <(tree_files | grep -E '\.sh$|^\.ci/run$')
  return "$result"
}

# Texts explain the system by itself: nothing points to documents that a reader of the tree does not
# have, or to places on the machine of whoever wrote it.
check_wording() {
  local words='\bparts? [1-6]\.[0-9]\b|\bsp[e]c(ification)?s?\b' places='/wor[k]/|/tmp/[a-z]+[_.][a-z]|/hom[e]/[a-z]'
  local result=0
  cd "$kivra_root" || return 1
  export LC_ALL=C.UTF-8
  if tree_files | xargs -d '\n' grep -I -n -i -E "$words"; then result=1; fi
  if tree_files | xargs -d '\n' grep -I -n -E "$places"; then result=1; fi
  if tree_files | grep -i -E "$words"; then result=1; fi
  return "$result"
}

# database_files <build folder>: the product's sources that this build compiles.
database_files() {
  sed -n 's/^ *"file": "\(.*\)",\{0,1\}$/\1/p' "$1/compile_commands.json" |
    grep "^$kivra_root/" | grep -v -E "^$kivra_root/(tests|bench|fuzz|build)/" | sort -u
}

# check_tidy <native build folder> <Windows build folder>: portable files as the native build compiles
# them, the others as the Windows build does, for which clang is shown that compiler's own headers.
check_tidy() {
  local native=$1 windows=$2 headers result=0
  headers=$(x86_64-w64-mingw32-g++-posix -print-file-name=include/c++)
  tidy_files -p "$native" < <(database_files "$native") || result=1
  tidy_files -p "$windows" --extra-arg=-Wno-unknown-warning-option --extra-arg="-isystem$headers" \
    --extra-arg="-isystem$headers/x86_64-w64-mingw32" \
    < <(comm -13 <(database_files "$native") <(database_files "$windows") | grep -v '\.rc$') || result=1
  return "$result"
}

# tidy_files <clang-tidy option>...: the files on standard input, as many at a time as there are cores.
tidy_files() {
  xargs -d '\n' -P "$kivra_jobs" -n 1 clang-tidy --quiet "$@" 2>&1 | grep -v ' warnings\{0,1\} generated\.$'
  return "${PIPESTATUS[0]}"
}

# What every Windows 10 and 11 has.
stock_dlls="advapi32 comctl32 comdlg32 d2d1 dwmapi dwrite gdi32 imm32 kernel32 msvcrt ole32 oleaut32 shell32"
stock_dlls+=" shlwapi user32 uxtheme version"

# check_product <folder>: the folder that is copied to users holds all that the program needs: stock DLLs
# only, the texts, the icon, the manifest and the version information.
check_product() {
  local folder=$1 dll file resource resources result=0
  while read -r dll; do
    case " $stock_dlls " in
      *" ${dll%.dll} "*) ;;
      *) say "kivra.exe imports $dll, which is not on every Windows" && result=1 ;;
    esac
  done < <(x86_64-w64-mingw32-objdump -p "$folder/kivra.exe" | sed -n 's/^\tDLL Name: //p' | tr '[:upper:]' '[:lower:]')
  for file in kivra.exe resources/strings/en-US.txt resources/strings/ja-JP.txt patterns; do
    [ -e "$folder/$file" ] || { say "missing: $file" && result=1; }
  done
  resources=$(x86_64-w64-mingw32-windres -J coff -O rc "$folder/kivra.exe")
  for resource in "101 14" "1 24" "1 VERSIONINFO"; do
    grep -q "^$resource" <<<"$resources" || { say "kivra.exe has no resource: $resource" && result=1; }
  done
  return "$result"
}
