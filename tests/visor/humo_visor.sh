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

# The first run makes the drawing: a point, saved with the view of a new drawing, where at
# 800x600 pixel (X, Y) shows point (X, Y, 0).
cat >"$carpeta/punto.txt" <<FIN
punto
100,50

guarda $carpeta/punto.cad
FIN
# The second opens it and draws a line by two clicks, the second snapped onto the point.
cat >"$carpeta/guion.txt" <<FIN
referencia on 8
linea
clic 300 200
clic 103 52

guarda $carpeta/dibujo.cad
FIN

# Runs the viewer on a script under a virtual X server; the window's own screenshot is
# taken after the script, before --sal quits. Checks the lines the output must hold.
ejecuta() {
    local guion=$1
    shift
    local codigo=0
    timeout 120 xvfb-run -a -s "-screen 0 1600x1200x24" "$visor" --tamano 800x600 \
        --guion "$carpeta/$guion.txt" --captura "$carpeta/ventana.png" --sal "$@" \
        >"$carpeta/salida.txt" 2>"$carpeta/errores.txt" || codigo=$?
    if [ "$codigo" -ne 0 ]; then
        echo "humo_visor: el visor terminó con código $codigo en $guion"
        cat "$carpeta/salida.txt" "$carpeta/errores.txt"
        exit 1
    fi
}
esperado() {
    for linea in "$@"; do
        if ! grep -qxF "$linea" "$carpeta/salida.txt"; then
            echo "humo_visor: falta \"$linea\" en la salida:"
            cat "$carpeta/salida.txt"
            exit 1
        fi
    done
}

ejecuta punto
esperado "1 punto creado" "Dibujo guardado en $carpeta/punto.cad (1 entidad)"
ejecuta guion "$carpeta/punto.cad"
esperado "1 línea creada" "Dibujo guardado en $carpeta/dibujo.cad (2 entidades)"
if [ "$(head -c 8 "$carpeta/ventana.png" | od -An -tx1 | tr -d ' \n')" != "89504e470d0a1a0a" ]; then
    echo "humo_visor: la captura no es un PNG"
    exit 1
fi
"$comprueba" "$carpeta/dibujo.cad"
