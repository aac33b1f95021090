#!/usr/bin/env bash
# Reads back every DXF the interchange tests wrote with the DXF audit script; any failure fails.
# Usage: audita_dxf.sh PYTHON AUDIT_SCRIPT FOLDER
set -uo pipefail

if [ $# -ne 3 ]; then
    echo "usage: $0 PYTHON AUDIT_SCRIPT FOLDER" >&2
    exit 2
fi
python=$1
auditor=$2
carpeta=$3

shopt -s nullglob
ficheros=("$carpeta"/*.dxf)
# No file means the writer's tests did not run or wrote elsewhere: nothing was checked.
if [ ${#ficheros[@]} -eq 0 ]; then
    echo "no .dxf file in $carpeta" >&2
    exit 1
fi

fallos=0
for f in "${ficheros[@]}"; do
    echo "=== $f"
    "$python" "$auditor" "$f"
    rc=$?
    if [ $rc -ne 0 ]; then
        echo "AUDIT FAILED (exit $rc): $f"
        fallos=$((fallos + 1))
    fi
done
echo "${#ficheros[@]} file(s) audited, ${fallos} failed"
[ "$fallos" -eq 0 ]
