#!/usr/bin/env bash
# Makes packaging/kivra.ico from the drawings beside it. Run by hand after a drawing has changed; the
# result is committed. Needs rsvg-convert (librsvg2-bin) and ImageMagick.
set -euo pipefail
cd "$(dirname "$0")/../packaging"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# 16 pixels has a drawing of its own: strokes on whole pixels stay sharp in the title bar.
rsvg-convert -w 16 -h 16 kivra_small.svg -o "$work/016.png"
for size in 20 24 32 48 64 256; do
  rsvg-convert -w "$size" -h "$size" kivra.svg -o "$work/$(printf %03d "$size").png"
done
convert "$work"/*.png kivra.ico
identify kivra.ico
