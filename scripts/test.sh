#!/usr/bin/env bash
# Builds and runs every test: the optimised build, then the AddressSanitizer + UBSan build,
# then a minute of fuzzing of each reader: the document, its round trip, the mesh body, DXF
# and OBJ.
set -euo pipefail
cd "$(dirname "$0")/.."

./scripts/setup.sh

for preset in default asan; do
    echo "=== ${preset}: configure, build, test ==="
    cmake --preset "${preset}" -DCAD_WERROR=ON
    cmake --build --preset "${preset}"
    ctest --preset "${preset}" -j 2
done

echo "=== fuzz: the document reader, its round trip, the mesh body, DXF and OBJ, 60 s each ==="
./scripts/fuzz.sh 60
