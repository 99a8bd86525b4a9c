#!/usr/bin/env bash
# Installs what is missing, builds, renders the demo scene, names the pictures it made.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
# shellcheck source=scripts/packages.sh
source scripts/packages.sh

usage() {
  cat <<'EOF'
usage: ./demo.sh [--no-install] [FOLDER]

  FOLDER          where the scene and the pictures go (default: out/demo)
  --no-install    name the packages that are missing and stop, instead of installing them
EOF
}

install=yes
folder=out/demo
for argument in "$@"; do
  case $argument in
    --no-install) install=no ;;
    -h | --help) usage; exit 0 ;;
    -*) usage >&2; exit 2 ;;
    *) folder=$argument ;;
  esac
done

need_packages "$install" "${build_packages[@]}"
cmake --preset release
cmake --build --preset release --target drevin Drevin
