#!/usr/bin/env bash
# Unpacks the AArch64 packages of Debian that a build needs into build/aarch64-root, installing none of them:
# what cmake/Aarch64.cmake builds against, and what runs under qemu. Installs the cross compiler and qemu.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/packages.sh
source scripts/packages.sh

need_packages yes cmake ninja-build g++-aarch64-linux-gnu qemu-user mmdebstrap

root=build/aarch64-root
mkdir -p build
rm -rf "$root"
packages=("${library_packages[@]}" "${test_packages[@]}")
mmdebstrap --quiet --variant=extract --arch=arm64 --include="${packages[*]}" bookworm "$root"
# Links from the top of a root lead out of the folder.
find "$root/usr/lib" -type l -lname '/*' -printf '%p %l\n' | while read -r link target; do
  ln -sfr "$root$target" "$link"
done
