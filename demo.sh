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

drevin=build/release/bin/drevin
"$drevin" demo "$folder" > /dev/null
camera=$(cat "$folder/camera.txt")
lens=(--input "$folder/street.exr" --set realWorldLens=1 --set worldScale=m
      --set correctiveSlices=3 --set overrideNearAndFarForSlices=1
      --set "depthSlicesNearAndFar=2.2,5.8")

# picture NAME OPTION...: renders one picture of the street as $camera sees it.
pictures=()
picture() {
  local name=$1
  shift
  echo "Rendering $folder/$name.png"
  "$drevin" render "${lens[@]}" --camera "$camera" "$@" --quiet --output "$folder/$name.png"
  pictures+=("$folder/$name.png")
}

picture before --set realWorldLens=0 --set multiplier=0
picture after
picture blades --set "kernelType=Aperture Blades" --set kNumSides=5 --set kCurvature=0 \
  --set kSphAbb=0.9
picture hearts --kernel "$folder/kernel.exr" --set kernelType=Input
picture artifacts --mattes "$folder/mattes.exr" --set kChrAbb=6 \
  --set chromicAberrationMatteChannel=matte.chromatic --set bloom=1 \
  --set bloomMatteChannel=matte.bloom
picture focus --set "outputType=Focal Distance Visualization"

# Thick samples, which the steam is made of, are cut in depth order from the far end only.
deep=(--deep "$folder/street.deep.exr" --deep-order far-first)
picture deep-lens "${deep[@]}"
camera=${camera/focalPlane=3.85/focalPlane=5.6}
picture deep-glass "${deep[@]}" --set depthSlicesNearAndFar=4.4,6.8

echo
echo "The scene is in $folder/street.exr and street.deep.exr; the pictures made of it:"
printf '  %s\n' "${pictures[@]}"
echo "More to try: $drevin demo $folder prints commands, $drevin controls lists every control."
