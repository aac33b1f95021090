#!/usr/bin/env bash
# Renders a DXF in a real client with no display (the CAD program's dxf2pdf mode), turns the
# page into a grey image and fails when the page is blank: the client could not make sense
# of the file, or drew nothing of it.
# Usage: renderiza_dxf.sh LIBRECAD PDFTOPPM FILE.dxf [MINIMUM_PER_MILLE]
set -uo pipefail

if [ $# -lt 3 ] || [ $# -gt 4 ]; then
    echo "usage: $0 LIBRECAD PDFTOPPM FILE.dxf [MINIMUM_PER_MILLE]" >&2
    exit 2
fi
librecad=$1
pdftoppm=$2
dxf=$3
# Share of the page's pixels that must be drawn, in thousandths: an empty drawing gives 0.
minimo=${4:-5}

if [ ! -s "$dxf" ]; then
    echo "no DXF to render: $dxf" >&2
    exit 1
fi

trabajo=$(mktemp -d "${TMPDIR:-/tmp}/renderiza_dxf.XXXXXX") || exit 1
trap 'rm -rf "$trabajo"' EXIT
# The client keeps settings and caches under the user's folders: a private, writable set,
# so that it neither needs nor touches the real ones.
export HOME="$trabajo/home"
export XDG_CONFIG_HOME="$HOME/.config" XDG_DATA_HOME="$HOME/.local/share"
export XDG_CACHE_HOME="$HOME/.cache" XDG_RUNTIME_DIR="$HOME/run"
mkdir -p "$XDG_CONFIG_HOME" "$XDG_DATA_HOME" "$XDG_CACHE_HOME" "$XDG_RUNTIME_DIR"
chmod 700 "$XDG_RUNTIME_DIR"
export QT_QPA_PLATFORM=offscreen

# The PDF takes the DXF's name; a link of a known name keeps it predictable.
ln -s "$(realpath "$dxf")" "$trabajo/plano.dxf"
inicio=${EPOCHREALTIME/./}
timeout 240 "$librecad" dxf2pdf -a -t "$trabajo/pdf" "$trabajo/plano.dxf" >"$trabajo/registro" 2>&1
rc=$?
fin=${EPOCHREALTIME/./}
echo "render took $(((fin - inicio) / 1000)) ms (exit $rc)"
if [ $rc -ne 0 ] || [ ! -s "$trabajo/pdf/plano.pdf" ]; then
    echo "the client wrote no PDF (exit $rc):" >&2
    tail -20 "$trabajo/registro" >&2
    exit 1
fi

# 8-bit grey at 50 dpi: a header of three lines, then one byte per pixel, 255 for white.
"$pdftoppm" -gray -r 50 -singlefile "$trabajo/pdf/plano.pdf" "$trabajo/pagina" || exit 1
pgm="$trabajo/pagina.pgm"
if [ "$(head -c 2 "$pgm")" != "P5" ]; then
    echo "not a binary grey image: $pgm" >&2
    exit 1
fi
cabecera=$(head -n 3 "$pgm" | wc -c)
read -r total dibujados < <(tail -c +$((cabecera + 1)) "$pgm" | od -An -v -tu1 |
    awk '{ for (i = 1; i <= NF; i++) { n++; if ($i < 250) d++ } } END { print n + 0, d + 0 }')
echo "page: $total pixels, $dibujados drawn"
if [ "$total" -eq 0 ] || [ $((dibujados * 1000)) -lt $((total * minimo)) ]; then
    echo "the page is blank (fewer than $minimo per mille of its pixels drawn)" >&2
    exit 1
fi
