"""Turns a field survey's points into a drawing.

    python3 levantamiento.py PUNTOS.csv SALIDA.cad [--dxf SALIDA.dxf] [--anade]

PUNTOS.csv has the header `id,x,y,z,codigo` (comma or semicolon separated; with semicolons a
decimal comma is taken too). Each row becomes a control point named by its id with its code,
and the points of each code a point group, both on a layer named after the code, each code in
its own colour. Rows that cannot be read are reported with their line number and skipped.
"""

import argparse
import csv
import math
import sys
from pathlib import Path

import numpy

import tarvelo

# Well-separated colours for the codes, in the order the codes sort; past the end they repeat.
PALETA = [(230, 25, 75), (60, 180, 75), (255, 225, 25), (0, 130, 200), (245, 130, 48),
          (145, 30, 180), (70, 240, 240), (240, 50, 230), (210, 245, 60), (0, 128, 128),
          (170, 110, 40), (128, 0, 0)]
CABECERA = ["id", "x", "y", "z", "codigo"]


def lee_puntos(ruta):
    """The CSV's ids, (N, 3) coordinates and codes, and the list of rows skipped."""
    try:
        texto = Path(ruta).read_text(encoding="utf-8-sig")
    except UnicodeDecodeError:
        # Field software often writes Windows-1252; every byte means something there.
        texto = Path(ruta).read_text(encoding="cp1252", errors="replace")
    except OSError as e:
        raise SystemExit(f"{ruta}: no se puede leer: {e.strerror}")
    lineas = texto.splitlines()
    primera = next((l for l in lineas if l.strip()), "")
    separador = ";" if primera.count(";") > primera.count(",") else ","
    ids, xyz, codigos, malas = [], [], [], []
    vistos = set()
    cabecera = None
    for numero, fila in enumerate(csv.reader(lineas, delimiter=separador), start=1):
        campos = [c.strip() for c in fila]
        if not any(campos):
            continue
        if cabecera is None:
            cabecera = [c.lower() for c in campos]
            if cabecera != CABECERA:
                raise SystemExit(f"{ruta}:{numero}: la cabecera debe ser {','.join(CABECERA)}")
            continue
        if len(campos) != 5:
            malas.append((numero, f"{len(campos)} campos en vez de 5"))
            continue
        ident, x, y, z, codigo = campos
        try:
            if separador == ";":
                x, y, z = (v.replace(",", ".") for v in (x, y, z))
            p = [float(x), float(y), float(z)]
            if not all(math.isfinite(v) for v in p):
                raise ValueError
        except ValueError:
            malas.append((numero, "coordenadas que no son números"))
            continue
        if not ident or not codigo:
            malas.append((numero, "falta el id o el código"))
            continue
        if ident in vistos:
            malas.append((numero, f"id {ident} repetido"))
            continue
        vistos.add(ident)
        ids.append(ident)
        xyz.append(p)
        codigos.append(codigo)
    return ids, numpy.array(xyz, dtype=numpy.float64).reshape(-1, 3), numpy.array(codigos), malas


def main():
    ap = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    ap.add_argument("puntos", help="CSV de puntos: id,x,y,z,codigo")
    ap.add_argument("salida", help="dibujo .cad que se escribe")
    ap.add_argument("--dxf", help="además, el dibujo en DXF")
    ap.add_argument("--anade", action="store_true",
                    help="añade los puntos al dibujo SALIDA si ya existe")
    args = ap.parse_args()

    ids, xyz, codigos, malas = lee_puntos(args.puntos)
    for numero, motivo in malas:
        print(f"{args.puntos}:{numero}: fila descartada: {motivo}", file=sys.stderr)
    if len(ids) == 0:
        print(f"{args.puntos}: no hay ningún punto que leer", file=sys.stderr)
        return 1

    abrir = args.anade and Path(args.salida).exists()
    with tarvelo.Dibujo(args.salida if abrir else None) as d:
        previa = d.capa_actual
        existentes = set(d.capas())
        unicos, indice = numpy.unique(codigos, return_inverse=True)
        print(f"{len(ids)} puntos leídos de {args.puntos}, {len(malas)} filas descartadas")
        for k, codigo in enumerate(unicos):
            r, g, b = PALETA[k % len(PALETA)]
            if codigo in existentes:
                d.capa_actual = codigo
            else:
                d.nueva_capa(codigo, (r, g, b), actual=True)
            filas = numpy.flatnonzero(indice == k)
            for i in filas:
                d.punto_control(ids[i], codigo, *xyz[i])
            color = numpy.full(len(filas), r | (g << 8) | (b << 16), dtype=numpy.uint32)
            d.grupo_puntos(xyz[filas], color)
            z = xyz[filas, 2]
            print(f"  {codigo:<12} {len(filas):5d} puntos  capa {codigo}  "
                  f"cota {z.min():.3f} a {z.max():.3f}")
        d.capa_actual = previa
        d.guarda(args.salida)
        print(f"Guardado {args.salida} ({len(d.entidades())} entidades, {len(unicos)} códigos)")
        if args.dxf:
            d.exporta_dxf(args.dxf)
            print(f"Exportado {args.dxf}")
    return 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except tarvelo.TarveloError as e:
        print(f"levantamiento: {e}", file=sys.stderr)
        sys.exit(1)
