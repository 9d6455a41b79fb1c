#!/bin/bash
# The image library's benchmarks beside ImageMagick's time for the same work, on one picture of a megapixel.
# ImageMagick's times hold the start of its program and the reading of the picture, which "load" shows by itself.
#
#   Bench/compare-images.sh [BUILD]      default: build/release; needs the package imagemagick

# shellcheck source=scripts/common.sh
. "$(dirname "$0")/../scripts/common.sh"

command -v identify >/dev/null || fail "ImageMagick is missing; as root, apt-get install imagemagick"
bench=${1:-$root/build/release}/bin/Bench_RenderAnimImage
[[ -x $bench ]] || fail "$bench is missing; build it with scripts/build"

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
picture=$folder/picture.tga
# Bottom row first, as the library takes it.
convert -size 1024x1024 -seed 7 plasma: -blur 0x1 -attenuate 0.2 +noise Gaussian -depth 8 -type TrueColorAlpha \
    -orient BottomLeft -compress None "$picture"

# The user and system time of one run, the least of five, in milliseconds.
measure() {
    local least="" times milliseconds
    for _ in 1 2 3 4 5; do
        times=$({ TIMEFORMAT='%U %S'; time "${@:2}" >/dev/null; } 2>&1 | tail -n 1)
        milliseconds=$(awk '{ printf "%d", ($1 + $2) * 1000 }' <<<"$times")
        ((${least:-999999} > milliseconds)) && least=$milliseconds
    done
    printf '%-28s %8d ms\n' "$1" "$least"
}

say "== ImageMagick, time of the processor"
export MAGICK_THREAD_LIMIT=1
measure "load" convert "$picture" null:
measure "half the size, one level" convert "$picture" -scale 50% null:
measure "256 colours" convert "$picture" +dither -colors 256 null:
measure "DXT1, one level" convert "$picture" -define dds:compression=dxt1 -define dds:mipmaps=0 "$folder/1.dds"
measure "DXT5, one level" convert "$picture" -define dds:compression=dxt5 -define dds:mipmaps=0 "$folder/5.dds"
measure "DXT1, eleven levels" convert "$picture" -define dds:compression=dxt1 -define dds:mipmaps=10 "$folder/m.dds"
psnr=$(compare -metric PSNR "$picture" "$folder/1.dds" null: 2>&1 || true)
printf '%-28s %8s dB\n' "DXT1's likeness" "$psnr"

say "== this library"
PVX_BENCH_PICTURE=$picture "$bench"
