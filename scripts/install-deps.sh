#!/usr/bin/env bash
# Installs the Debian packages that building and testing Quellton need; quiet when all are present.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
mapfile -t wanted < <(grep -vE '^\s*(#|$)' "$here/packages.txt")

missing=()
for pkg in "${wanted[@]}"; do
  status=$(dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null || true)
  [[ "$status" == "install ok installed" ]] || missing+=("$pkg")
done
[[ ${#missing[@]} -eq 0 ]] && exit 0

echo "Quellton braucht noch diese Pakete: ${missing[*]}"
if [[ $(id -u) -eq 0 ]]; then
  sudo=()
elif command -v sudo >/dev/null; then
  sudo=(sudo)
else
  echo "Bitte als root installieren: apt-get install ${missing[*]}" >&2
  exit 1
fi
export DEBIAN_FRONTEND=noninteractive
"${sudo[@]}" apt-get update -qq
"${sudo[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
