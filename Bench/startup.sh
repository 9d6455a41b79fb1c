#!/bin/bash
# How long pvxhost takes from its start to its end with next to nothing to do: the median of many runs, for the bare
# program, for one that loads the module, and for the export of a scene of one triangle.
#
#   Bench/startup.sh [RUNS]      default: 200

# shellcheck source=scripts/common.sh
. "$(dirname "$0")/../scripts/common.sh"

runs=${1:-200}
host=$root/build/release/bin/pvxhost
[[ -x $host ]] || fail "$host is missing; build it with scripts/build"
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# Three points at the corners of a triangle, in a buffer inside the text.
cat >"$folder/triangle.gltf" <<'SCENE'
{"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0]}],"nodes":[{"name":"Triangle","mesh":0}],
"meshes":[{"primitives":[{"attributes":{"POSITION":0}}]}],
"accessors":[{"bufferView":0,"componentType":5126,"count":3,"type":"VEC3","min":[0,0,0],"max":[1,1,0]}],
"bufferViews":[{"buffer":0,"byteLength":36}],
"buffers":[{"byteLength":36,"uri":"data:application/octet-stream;base64,AAAAAAAAAAAAAAAAAACAPwAAAAAAAAAAAAAAAAAAgD8AAAAA"}]}
SCENE

median() {
    local start end i
    for ((i = 0; i < runs; ++i)); do
        start=${EPOCHREALTIME/[.,]/}
        "$@" >/dev/null 2>&1
        end=${EPOCHREALTIME/[.,]/}
        printf '%d\n' "$((end - start))"
    done | sort -n | awk '{ all[NR] = $1 } END { printf "%.2f ms", all[int((NR + 1) / 2)] / 1000 }'
}

say "a program that does nothing   $(median /bin/true)"
say "pvxhost --help                $(median "$host" --help)"
say "pvxhost commands              $(median "$host" commands)"
say "pvxhost export TRIANGLE       $(median "$host" export "$folder/triangle.gltf" "$folder/out.pvx")"
