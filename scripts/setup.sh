#!/usr/bin/env bash
# Installs what a fresh Debian machine lacks to build, test and run the project.
# Idempotent: packages already present are left alone, and apt is not touched at all then.
set -euo pipefail

paquetes=(cmake ninja-build g++ make libgtest-dev libgmock-dev libbenchmark-dev python3
    clang libclang-rt-14-dev python3-ezdxf libtinyobjloader-dev libdxflib-dev librecad
    poppler-utils libgl-dev libegl-dev libgl1-mesa-dri libegl-mesa0 libpng-dev libjpeg-dev
    libfreetype-dev fonts-dejavu-core qtbase5-dev xvfb xauth python3-numpy python3-pytest)
faltan=()
for p in "${paquetes[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
        faltan+=("$p")
    fi
done

if [ ${#faltan[@]} -eq 0 ]; then
    exit 0
fi

sudo_cmd=()
if [ "$(id -u)" -ne 0 ]; then
    sudo_cmd=(sudo)
fi
echo "Installing: ${faltan[*]}"
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get update -q
"${sudo_cmd[@]}" apt-get install -y -q --no-install-recommends "${faltan[@]}"
