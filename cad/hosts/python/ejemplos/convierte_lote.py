"""Converts every drawing (*.cad) of a folder to DXF.

    python3 convierte_lote.py CARPETA [--salida CARPETA]

Each DXF goes beside its drawing, or into --salida. One line per file; a file that fails is
reported and skipped, and the exit status is then 1.
"""

import argparse
import sys
from pathlib import Path

import tarvelo


def main():
    ap = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    ap.add_argument("carpeta", type=Path, help="carpeta con los dibujos .cad")
    ap.add_argument("--salida", type=Path, help="carpeta de los DXF (por omisión, la misma)")
    args = ap.parse_args()
    if not args.carpeta.is_dir():
        ap.error(f"{args.carpeta} no es una carpeta")
    destino = args.salida or args.carpeta
    destino.mkdir(parents=True, exist_ok=True)

    ficheros = sorted(args.carpeta.glob("*.cad"))
    fallidos = 0
    for cad in ficheros:
        dxf = destino / (cad.stem + ".dxf")
        try:
            # A fresh drawing per file: a failed read leaves a drawing as it was, and that
            # must not be the previous file's.
            with tarvelo.Dibujo() as d:
                danadas = d.abre(cad)
                d.exporta_dxf(dxf)
                n = len(d.entidades())
                aviso = f", {danadas} dañadas sin leer" if danadas else ""
                print(f"{cad.name} -> {dxf} ({n} {'entidad' if n == 1 else 'entidades'}{aviso})")
        except tarvelo.TarveloError as e:
            fallidos += 1
            print(f"{cad.name}: ERROR {e.nombre}: {e}")
        except (OSError, ValueError) as e:
            # A name the library refuses (not UTF-8) or a folder that went away.
            fallidos += 1
            print(f"{cad.name}: ERROR: {e}")
    print(f"{len(ficheros) - fallidos} convertidos, {fallidos} con error")
    return 1 if fallidos else 0


if __name__ == "__main__":
    sys.exit(main())
