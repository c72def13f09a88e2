#!/usr/bin/env bash
# Installs every Debian package Tunedesk needs to build, run, test and benchmark.
# Idempotent: when everything is present it only checks and says nothing.
set -euo pipefail

packages=(
  build-essential cmake ccache pkg-config
  qt6-base-dev qt6-qpa-plugins libicu-dev libsqlite3-dev sqlite3 libpq-dev postgresql
  libmpv-dev libavformat-dev libavcodec-dev libswresample-dev libavutil-dev espeak-ng mdbtools-dev mdbtools libxlsxwriter-dev libasound2-dev pulseaudio libasound2-plugins
  googletest libgtest-dev libgmock-dev clang libclang-rt-14-dev
  xvfb xauth ffmpeg poppler-utils fonts-wqy-microhei libgl-dev xdotool libgl1-mesa-dri xorriso unzip
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo_cmd=()
[ "$(id -u)" -ne 0 ] && sudo_cmd=(sudo)
echo "Installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get update -qq
"${sudo_cmd[@]}" apt-get install -y -qq "${missing[@]}" >/dev/null
