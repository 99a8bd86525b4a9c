#!/usr/bin/env bash
# Builds the fuzz targets and runs them, two at a time.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

usage() {
  cat <<'EOF'
usage: fuzz/run.sh [SECONDS] [TARGET...]

Runs each target (default: all of them) for SECONDS (default: 60). What is found is left in
build/fuzz/found and makes this fail; what a run learns stays in build/fuzz/corpus for the next one.
DREVIN_TEST_DATA names a folder of real pictures (default: ../shared/data), whose small files are seeds
too. Needs clang.
EOF
}

case ${1:-} in -h | --help) usage; exit 0 ;; esac
seconds=${1:-60}
[[ $seconds =~ ^[0-9]+$ ]] || { usage >&2; exit 2; }
shift $(($# > 0))
targets=("$@")
[ ${#targets[@]} -gt 0 ] ||
  targets=(FlatReader DeepReader NodeScript ScriptControls CameraFile ControlText FrameList SampleMerge)
command -v clang++ >/dev/null || { echo "fuzz/run.sh: no clang++ here; install clang" >&2; exit 1; }

cmake -S . -B build/fuzz -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DDREVIN_FUZZ=ON -DDREVIN_TESTS=OFF \
  -DDREVIN_SANITIZE=address,undefined -DCMAKE_BUILD_TYPE=RelWithDebInfo -DDREVIN_PRECOMPILED_HEADERS=ON \
  -DDREVIN_JOIN_SOURCES=ON >/dev/null
cmake --build build/fuzz --target "${targets[@]/%/_fuzz}"

# Where the tests look for them too.
data=${DREVIN_TEST_DATA:-../shared/data}
[ -d "$data" ] || echo "fuzz/run.sh: no real pictures in $data: FlatReader and DeepReader begin without seeds" >&2

# Small files say as much as large ones, and more of them are tried in a second.
real_seeds() {
  [ -d "$data" ] || return 0
  case $1 in
    FlatReader) find "$data"/{layers,windows,damaged} -type f -size -24k ;;
    DeepReader) find "$data"/{deep,damaged} -type f -size -150k ;;
  esac
}

run_target() {
  local target=$1 corpus=build/fuzz/corpus/$1 seeds=build/fuzz/seeds/$1 log=build/fuzz/$1.log
  mkdir -p "$corpus" "$seeds" build/fuzz/found
  local texts=fuzz/seeds/$target
  [ "$target" = ScriptControls ] && texts=fuzz/seeds/NodeScript
  [ -d "$texts" ] && cp "$texts"/* "$seeds"
  real_seeds "$target" | xargs -r cp --no-preserve=mode -t "$seeds"
  local length=4000
  case $target in FlatReader) length=24000 ;; DeepReader) length=150000 ;; SampleMerge) length=600 ;; esac
  if ! build/fuzz/bin/"${target}"_fuzz -seed=1 -max_total_time="$seconds" -max_len=$length -timeout=60 \
    -rss_limit_mb=2500 -artifact_prefix="build/fuzz/found/$target-" "$corpus" "$seeds" >"$log" 2>&1; then
    grep -v '^#' "$log" | tail -40
    echo "$target: a finding, see $log and build/fuzz/found"
    return 1
  fi
  echo "$target: $(grep '^Done' "$log")"
}
export -f run_target real_seeds
export seconds data

# A time of 0 would be none at all to the fuzzer.
[ "$seconds" -gt 0 ] || { echo "Built, but not run: 0 seconds"; exit 0; }
printf '%s\n' "${targets[@]}" | xargs -P 2 -I TARGET bash -euo pipefail -c 'run_target TARGET'
