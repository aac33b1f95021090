#!/usr/bin/env bash
# The main job: builds and installs the library, builds the command-line host against the
# installed package, and runs its demo.
set -euo pipefail
cd "$(dirname "$0")/.."

./scripts/setup.sh

prefijo="$PWD/build/instalado"
cmake -S . -B build/biblioteca -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DCAD_BUILD_TESTS=OFF -DCAD_BUILD_BENCH=OFF -DCAD_BUILD_VISOR=OFF -DCAD_WERROR=OFF >/dev/null
cmake --build build/biblioteca >/dev/null
cmake --install build/biblioteca --prefix "$prefijo" >/dev/null

# The Python package, installed beside the C interface it loads, made importable as
# `tarvelo` by this user's python3 through a path file in the user's site folder.
paquete="$(find "$prefijo" -path '*/dist-packages/tarvelo/__init__.py' -print -quit)"
sitio="$(/usr/bin/python3 -m site --user-site)"
mkdir -p "$sitio"
dirname "$(dirname "$paquete")" > "$sitio/tarvelo.pth"

cmake -S cad/hosts/tarvelo -B build/tarvelo -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DCMAKE_PREFIX_PATH="$prefijo" >/dev/null
cmake --build build/tarvelo >/dev/null

if [ "${1:-}" = visor ]; then
    # The desktop viewer, built against the same installed package.
    cmake -S cad/hosts/visor -B build/visor -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
        -DCMAKE_PREFIX_PATH="$prefijo" >/dev/null
    cmake --build build/visor >/dev/null
    shift
    exec build/visor/tarvelo-visor "$@"
fi
if [ $# -eq 0 ]; then
    set -- demo
fi
if [ "$*" = demo ]; then
    # The demo's drawing, rendered beside its files; the first failure ends the job.
    build/tarvelo/tarvelo demo
    exec build/tarvelo/tarvelo dibuja salida/demo.cad salida/demo.png --vista iso
fi
exec build/tarvelo/tarvelo "$@"
