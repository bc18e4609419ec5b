#!/usr/bin/env bash
# Renders every visualization with --snapshots and tiles the pictures with their ids into one PNG.
# usage: scripts/contact-sheet.sh [out.png] [time]   (needs ImageMagick's montage)
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
out=${1:-contact-sheet.png}
time=${2:-6.3}
command -v montage >/dev/null || { echo "contact-sheet.sh braucht ImageMagick: apt-get install imagemagick" >&2; exit 1; }
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
"$top/build/quellton" --snapshots "$dir" "$time" || true
ids=$(grep -oE '^\s*\{"[a-z0-9]+"' "$top/src/catalog/Catalog.cpp" | grep -oE '[a-z0-9]+')
files=()
for id in $ids; do
  [[ -f "$dir/$id.png" ]] && files+=(-label "$id" "$dir/$id.png")
done
montage "${files[@]}" -tile 8x -geometry 320x180+4+4 -background '#202020' -fill white -pointsize 14 "$out"
echo "$out"
