#!/usr/bin/env bash
# Installs what is missing, builds, runs every test.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
# shellcheck source=scripts/packages.sh
source scripts/packages.sh

usage() {
  cat <<'EOF'
usage: ./test.sh [--preset NAME] [--no-install]

  --preset NAME   release (default), debug, asan or tsan
  --no-install    name the packages that are missing and stop, instead of installing them

DREVIN_TEST_DATA names a folder of real pictures; tests on them are skipped without it.
EOF
}

preset=release
install=yes
while [ $# -gt 0 ]; do
  case $1 in
    --preset) preset=${2:?--preset wants a name}; shift 2 ;;
    --no-install) install=no; shift ;;
    -h | --help) usage; exit 0 ;;
    *) usage >&2; exit 2 ;;
  esac
done

need_packages "$install" "${build_packages[@]}" "${test_packages[@]}"
options=(-DDREVIN_TESTS=ON -DDREVIN_PRECOMPILED_HEADERS=ON)
# Each file but the parser's is compiled alone once, which the plain build does, with the benchmarks.
case $preset in
  release) options+=(-DDREVIN_BENCHMARKS=ON) ;;
  asan | tsan) options+=(-DDREVIN_JOIN_SOURCES=ON) ;;
esac
[ -n "${DREVIN_WERROR:-}" ] && options+=("-DDREVIN_WERROR=$DREVIN_WERROR")
cmake --preset "$preset" "${options[@]}"
cmake --build --preset "$preset"
ctest --preset "$preset" -j "$(nproc)"
