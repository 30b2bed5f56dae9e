#!/usr/bin/env bash
# render_icons.sh FOLDER DRAWING.svg… — draws each icon into FOLDER as NAME_SIZE.png (RGBA) in the ribbon's four sizes,
# with the palette.css beside the drawing.
set -eu
folder=$1
shift
mkdir -p "$folder"
for drawing in "$@"; do
  name=$(basename "$drawing" .svg)
  for size in 32 48 64 96; do
    rsvg-convert --stylesheet "$(dirname "$drawing")/palette.css" --width "$size" --height "$size" \
      --output "$folder/${name}_$size.png" "$drawing"
  done
done
