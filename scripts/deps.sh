#!/bin/bash
# Installs what the build and the tests need, from Debian's packages.
set -eu
packages="cmake ninja-build g++ libgtest-dev libgmock-dev libbenchmark-dev qt6-base-dev python3-segyio python3-numpy"
missing=""
for p in $packages; do dpkg -s "$p" >/dev/null 2>&1 || missing="$missing $p"; done
if [ -n "$missing" ]; then
  SUDO=""; [ "$(id -u)" -ne 0 ] && SUDO=sudo
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq $missing
fi
