#!/usr/bin/env bash
# Installs the Debian packages the build and the tests need, only those missing.
# With package names as arguments it installs those instead (other scripts
# use it for their own tools).
set -euo pipefail

packages=(
  build-essential cmake pkg-config
  libgtest-dev libgmock-dev libbenchmark-dev
  libgl-dev libosmesa6-dev
  libopenimageio-dev libcli11-dev
  slurm-wlm slurm-client munge
  libglfw3-dev libimgui-dev libgl1-mesa-dri xvfb xauth xdotool
)
[ $# -eq 0 ] || packages=("$@")

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  echo "install-deps: everything is installed"
  exit 0
fi

# apt-get runs as root: directly when we are root, otherwise through sudo,
# which clears the environment, so the variable is passed on its command line.
apt=(env DEBIAN_FRONTEND=noninteractive apt-get)
if [ "$(id -u)" -ne 0 ]; then
  if ! command -v sudo >/dev/null 2>&1; then
    echo "install-deps: missing packages: ${missing[*]}" >&2
    echo "install-deps: installing them needs root, and sudo is not installed; run as root:" >&2
    echo "  su -c 'apt-get update && apt-get install -y --no-install-recommends ${missing[*]}'" >&2
    exit 1
  fi
  apt=(sudo DEBIAN_FRONTEND=noninteractive apt-get)
fi
echo "install-deps: installing ${missing[*]}"
"${apt[@]}" update -qq
"${apt[@]}" install -y -qq --no-install-recommends "${missing[@]}"
