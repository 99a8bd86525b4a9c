# Sourced by demo.sh, test.sh and scripts/aarch64_root.sh: sees to the Debian or Ubuntu packages that a build
# needs.

library_packages=(libopenexr-dev libimath-dev libcli11-dev libfmt-dev nlohmann-json3-dev libpng-dev)
build_packages=(g++ cmake ninja-build "${library_packages[@]}")
test_packages=(libgtest-dev libbenchmark-dev)
farm_packages=(slurmctld slurmd slurm-client munge)

# Prints those of the named packages that are not installed.
missing_packages() {
  local package
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$' ||
      echo "$package"
  done
}

# need_packages INSTALL PACKAGE...: installs what is missing (INSTALL=yes), or names it and stops.
need_packages() {
  local install=$1 missing as_root=()
  shift
  if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
    echo "$(basename "$0"): this is no Debian or Ubuntu; please install what these packages hold, then" >&2
    echo "build with cmake --preset release && cmake --build --preset release: $*" >&2
    exit 1
  fi
  mapfile -t missing < <(missing_packages "$@")
  [ ${#missing[@]} -eq 0 ] && return
  if [ "$install" != yes ]; then
    echo "$(basename "$0"): these packages are missing: ${missing[*]}" >&2
    echo "Install them, or run again without --no-install." >&2
    exit 1
  fi
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || {
      echo "$(basename "$0"): installing needs root or sudo; missing: ${missing[*]}" >&2
      exit 1
    }
    as_root=(sudo)
  fi
  echo "Installing: ${missing[*]}"
  "${as_root[@]}" apt-get update -q
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -q -y --no-install-recommends "${missing[@]}"
}
