#!/usr/bin/env bash
# Installs the Debian packages that building and testing Quellton need; quiet when all are present.
# A line "a | b" is satisfied by either; when neither is there, the first the archive offers is installed.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
mapfile -t wanted < <(grep -vE '^\s*(#|$)' "$here/packages.txt" | tr -d ' ')

installed() { [[ "$(dpkg-query -W -f='${Status}' "$1" 2>/dev/null || true)" == "install ok installed" ]]; }
offered() { apt-cache policy "$1" 2>/dev/null | grep -q 'Candidate: [^(]'; }

unmet=()
for line in "${wanted[@]}"; do
  IFS='|' read -ra choices <<< "$line"
  met=false
  for pkg in "${choices[@]}"; do installed "$pkg" && met=true && break; done
  $met || unmet+=("$line")
done
[[ ${#unmet[@]} -eq 0 ]] && exit 0

if [[ $(id -u) -eq 0 ]]; then
  sudo=()
elif command -v sudo >/dev/null; then
  sudo=(sudo)
else
  echo "Bitte als root installieren: apt-get install ${unmet[*]//|/ oder }" >&2
  exit 1
fi
export DEBIAN_FRONTEND=noninteractive
"${sudo[@]}" apt-get update -qq
missing=()
for line in "${unmet[@]}"; do
  IFS='|' read -ra choices <<< "$line"
  pick=${choices[0]}
  for pkg in "${choices[@]}"; do offered "$pkg" && pick=$pkg && break; done
  missing+=("$pick")
done
echo "Quellton braucht noch diese Pakete: ${missing[*]}"
"${sudo[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
