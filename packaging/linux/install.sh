#!/usr/bin/env bash
# install.sh [PREFIX]: installs Velor Voice Setup into a Wine prefix (WINEPREFIX, or ~/.wine), beside
# the maker's Windows programs there, and adds an entry to your menu.
#
#   install.sh --remove [PREFIX]   removes both again; settings, and voices that wait, stay
#
# SPDX-License-Identifier: MIT
set -euo pipefail
umask 022
here=$(dirname "$(readlink -f "$0")")

usage() {
  echo "usage: ./install.sh [--remove] [PREFIX]" >&2
  exit 2
}

action=install_all
if [ "${1:-}" = --remove ]; then
  action=remove_all
  shift
fi
[ $# -le 1 ] || usage
case ${1:-} in -*) usage ;; esac

prefix=${1:-${WINEPREFIX:-$HOME/.wine}}
[ -d "$prefix/drive_c" ] || {
  echo "install.sh: $prefix is no Wine prefix, it has no drive_c" >&2
  exit 1
}
prefix=$(readlink -f "$prefix")
case $prefix in
  # No desktop entry can name it.
  *[[:cntrl:]]*) echo "install.sh: the prefix has a control character in its path" >&2 && exit 1 ;;
esac
maker_folder="$prefix/drive_c/Program Files/Velor Software"
program_folder="$maker_folder/Velor Voice Setup"
data_folder="$prefix/drive_c/ProgramData/Velor Software"
share=${XDG_DATA_HOME:-$HOME/.local/share}
application=com.velorsoftware.VoiceSetup
entry="$share/applications/$application.desktop"

# Inside the quotes of an Exec line four characters need a backslash, which is doubled since the line is
# a string of the file's; and a percent sign needs another. (Desktops built on GLib hide an entry whose
# program has a percent sign in its path, however it is written.)
exec_text() {
  local text=$1
  text=${text//\\/\\\\\\\\}
  text=${text//\"/\\\\\"}
  text=${text//\`/\\\\\`}
  text=${text//\$/\\\\\$}
  printf '%s' "${text//%/%%}"
}

write_entry() {
  local line exec_folder
  exec_folder=$(exec_text "$program_folder")
  while IFS= read -r line; do
    # In quotes, so that no letter of the path has a meaning.
    printf '%s\n' "${line//@VELOR_PROGRAM_FOLDER@/"$exec_folder"}"
  done <"$here/share/applications/$application.desktop.in"
}

# The files of share/ that go to the same place, as paths.
shared_files() { (cd "$here/share" && find icons metainfo -type f); }

install_all() {
  local file
  mkdir -p "$data_folder" "$share/applications"
  install -D -t "$program_folder" -m 755 "$here/program/VelorVoiceSetup"
  install -t "$program_folder" -m 644 \
    "$here"/program/{wait.htm,Languages.xml,VelorVoiceSetup.Language.xml}
  while IFS= read -r file; do install -D -m 644 "$here/share/$file" "$share/$file"; done < <(shared_files)
  write_entry >"$entry.new"
  mv "$entry.new" "$entry"
  echo "Installed in $program_folder"
}

# Only where nothing is left in it.
remove_folder() { rmdir "$1" 2>/dev/null || true; }

remove_all() {
  local file
  rm -f "$program_folder/VelorVoiceSetup"
  # The Windows program reads the same texts, where it lies in the same folder.
  if [ ! -e "$program_folder/VelorVoiceSetup.exe" ]; then
    rm -f "$program_folder"/{wait.htm,Languages.xml,VelorVoiceSetup.Language.xml}
  fi
  remove_folder "$program_folder"
  remove_folder "$maker_folder"
  remove_folder "$data_folder"
  # The entry may be that of another prefix.
  if [ -f "$entry" ] && [ "$(cat "$entry")" = "$(write_entry)" ]; then
    rm "$entry"
    while IFS= read -r file; do rm -f "$share/$file"; done < <(shared_files)
  fi
  echo "Removed from $program_folder"
}

"$action"
