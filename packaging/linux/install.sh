#!/usr/bin/env bash
# Installs Velor Voice Setup into a Wine prefix, beside the maker's Windows programs there, and adds an
# entry to your menu. README.txt says more.
#
# SPDX-License-Identifier: MIT
set -euo pipefail
umask 022
here=$(dirname "$(readlink -f "$0")")

usage() {
  cat <<'END'
usage: ./install.sh [PREFIX]            installs, or upgrades
       ./install.sh --remove [PREFIX]   removes; settings and queued voices are kept
PREFIX is a Wine prefix. Default: $WINEPREFIX, or ~/.wine.
END
}

fail() {
  printf 'install.sh: %s\n' "$@" >&2
  exit 1
}

action=install_all
case ${1:-} in
  --help) usage && exit 0 ;;
  --remove) action=remove_all && shift ;;
esac
if [ $# -gt 1 ] || [[ ${1:-} = -* ]]; then
  usage >&2
  exit 2
fi

# Also of a prefix that was deleted.
prefix=$(readlink -m "${1:-${WINEPREFIX:-$HOME/.wine}}")
maker_folder="$prefix/drive_c/Program Files/Velor Software"
program_folder="$maker_folder/Velor Voice Setup"
data_folder="$prefix/drive_c/ProgramData/Velor Software"
share=${XDG_DATA_HOME:-$HOME/.local/share}
application=com.velorsoftware.VoiceSetup
entry="$share/applications/$application.desktop"
texts=(wait.htm Languages.xml VelorVoiceSetup.Language.xml)

# Inside the quotes of an Exec line four characters need a backslash, which is doubled since the line is
# a string of the file's; and a percent sign needs another.
exec_text() {
  local text=$1
  text=${text//\\/\\\\\\\\}
  text=${text//\"/\\\\\"}
  text=${text//\`/\\\\\`}
  text=${text//\$/\\\\\$}
  printf '%s' "${text//%/%%}"
}

# The program uses the prefix of its environment, which need not be the one that it is installed in.
exec_line() {
  printf 'Exec=env "WINEPREFIX=%s" "%s/VelorVoiceSetup"\n' "$(exec_text "$prefix")" "$(exec_text "$program_folder")"
}

write_entry() {
  local line
  while IFS= read -r line; do
    case $line in
      Exec=*) exec_line ;;
      *) printf '%s\n' "$line" ;;
    esac
  done <"$here/share/applications/$application.desktop.in"
}

# The files of share/ that go to the same place, as paths.
shared_files() { (cd "$here/share" && find icons metainfo -type f); }

check_prefix() {
  [ -d "$prefix/drive_c" ] || fail "$prefix is no Wine prefix, it has no drive_c"
  case $prefix in
    *[[:cntrl:]]*) fail "the prefix has a control character in its path, which no desktop entry can name" ;;
  esac
}

check_libraries() {
  local found missing
  command -v ldd >/dev/null || return 0
  found=$(LC_ALL=C ldd "$here/program/VelorVoiceSetup" 2>&1) ||
    fail "the program is for another kind of system than this one:" "$found"
  missing=$(grep 'not found' <<<"$found" | sed 's/^[[:space:]]*//' || true)
  [ -z "$missing" ] || fail "this system lacks libraries (README.txt says which packages have them):" "$missing"
}

install_all() {
  local file
  check_prefix
  check_libraries
  mkdir -p "$data_folder" "$share/applications"
  install -D -t "$program_folder" -m 755 "$here/program/VelorVoiceSetup"
  install -t "$program_folder" -m 644 "${texts[@]/#/"$here/program/"}"
  while IFS= read -r file; do install -D -m 644 "$here/share/$file" "$share/$file"; done < <(shared_files)
  write_entry >"$entry.new"
  mv "$entry.new" "$entry"
  echo "Installed in $program_folder"
  [ -n "$(find "$program_folder" -maxdepth 1 -iname VelorVoiceInstaller.exe)" ] ||
    echo "VelorVoiceInstaller.exe is not in this folder yet. Without it no voice can be installed."
}

# Only where nothing is left in it.
remove_folder() { rmdir "$1" 2>/dev/null || true; }

remove_all() {
  local file
  rm -f "$program_folder/VelorVoiceSetup"
  # The Windows program reads the same texts, if it is in the same folder.
  [ -e "$program_folder/VelorVoiceSetup.exe" ] || rm -f "${texts[@]/#/"$program_folder/"}"
  remove_folder "$program_folder"
  remove_folder "$maker_folder"
  remove_folder "$data_folder"
  # The entry may be that of another prefix.
  if [ -f "$entry" ] && grep -qxF "$(exec_line)" "$entry"; then
    rm "$entry"
    while IFS= read -r file; do rm -f "$share/$file"; done < <(shared_files)
  fi
  echo "Removed from $program_folder"
}

"$action"
