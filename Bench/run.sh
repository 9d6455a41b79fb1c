#!/bin/bash
# Runs the project's benchmarks, all or those whose name holds a word, from the release build.
#
#   Bench/run.sh [WORD] [-- OPTION ...]      options go to Google Benchmark, such as --benchmark_filter=BM_Chunky

# shellcheck source=scripts/common.sh
. "$(dirname "$0")/../scripts/common.sh"

word=
if (($# > 0)) && [[ $1 != -- ]]; then
    word=$1
    shift
fi
[[ "${1:-}" == -- ]] && shift

bin=$root/build/release/bin
shopt -s nullglob
programs=("$bin"/Bench_*"$word"*)
((${#programs[@]} > 0)) || fail "no benchmark \"$word\" in $bin; build them with scripts/build"
for program in "${programs[@]}"; do
    say "== ${program##*/}"
    "$program" "$@"
done
