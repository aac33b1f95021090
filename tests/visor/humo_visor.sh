#!/usr/bin/env bash
# The viewer under a virtual X server: a script typed into its command line draws a point and
# a line by two clicks, the second a few pixels off the point so that the snap moves it there;
# the saved drawing must hold that line ending exactly on the point.
# Usage: humo_visor.sh TARVELO-VISOR COMPRUEBA_ENGANCHE
# Exit 77 (skipped) when xvfb-run is missing.
set -euo pipefail
visor=$1
comprueba=$2
if ! command -v xvfb-run >/dev/null; then
    echo "humo_visor: xvfb-run no está instalado; se omite"
    exit 77
fi
carpeta=$(mktemp -d)
trap 'rm -rf "$carpeta"' EXIT

cat >"$carpeta/guion.txt" <<FIN
# With the view at 800x600, pixel (X, Y) of a new drawing shows point (X, Y, 0).
punto
100,50

referencia on 8
linea
clic 300 200
clic 103 52

guarda $carpeta/dibujo.cad
FIN

# The window's own screenshot is taken after the script, before --sal quits.
codigo=0
timeout 120 xvfb-run -a -s "-screen 0 1600x1200x24" "$visor" --tamano 800x600 \
    --guion "$carpeta/guion.txt" --captura "$carpeta/ventana.png" --sal \
    >"$carpeta/salida.txt" 2>"$carpeta/errores.txt" || codigo=$?
if [ "$codigo" -ne 0 ]; then
    echo "humo_visor: el visor terminó con código $codigo"
    cat "$carpeta/salida.txt" "$carpeta/errores.txt"
    exit 1
fi
for esperado in "1 punto creado" "1 línea creada" "Dibujo guardado en $carpeta/dibujo.cad (2 entidades)"; do
    if ! grep -qxF "$esperado" "$carpeta/salida.txt"; then
        echo "humo_visor: falta \"$esperado\" en la salida:"
        cat "$carpeta/salida.txt"
        exit 1
    fi
done
if [ "$(head -c 8 "$carpeta/ventana.png" | od -An -tx1 | tr -d ' \n')" != "89504e470d0a1a0a" ]; then
    echo "humo_visor: la captura no es un PNG"
    exit 1
fi
"$comprueba" "$carpeta/dibujo.cad"
