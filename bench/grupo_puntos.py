"""Times a point group of 1,000,000 points through the Python package: made from NumPy, saved,
opened into a second drawing and read back into NumPy. Best of 5, in milliseconds.

    TARVELO_C_LIB=.../libtarvelo_c.so PYTHONPATH=cad/hosts/python python3 bench/grupo_puntos.py
"""

import argparse
import tempfile
import time
from pathlib import Path

import numpy

import tarvelo

FASES = ("crea", "guarda", "abre", "lee")


def una_vuelta(xyz, colores, fichero):
    t = {}
    inicio = time.perf_counter()
    with tarvelo.Dibujo() as d:
        d.grupo_puntos(xyz, colores)
        t["crea"] = time.perf_counter()
        d.guarda(fichero)
        t["guarda"] = time.perf_counter()
    with tarvelo.Dibujo() as d:
        d.abre(fichero)
        t["abre"] = time.perf_counter()
        (h,) = d.entidades()
        leidos, leidos_col = d.coordenadas(h), d.colores(h)
        t["lee"] = time.perf_counter()
    if not (numpy.array_equal(leidos, xyz) and numpy.array_equal(leidos_col, colores)):
        raise SystemExit("los puntos leídos no son los escritos")
    fases, anterior = {}, inicio
    for f in FASES:
        fases[f] = (t[f] - anterior) * 1000.0
        anterior = t[f]
    fases["total"] = (anterior - inicio) * 1000.0
    return fases


def main():
    ap = argparse.ArgumentParser(description="grupo de puntos de NumPy a disco y de vuelta")
    ap.add_argument("-n", type=int, default=1_000_000, help="puntos (1.000.000)")
    ap.add_argument("--vueltas", type=int, default=5)
    args = ap.parse_args()

    rng = numpy.random.default_rng(20240611)
    # Survey magnitudes: national-grid eastings and northings, heights of a few hundred metres.
    xyz = numpy.column_stack([rng.uniform(431000.0, 432000.0, args.n),
                              rng.uniform(4581000.0, 4582000.0, args.n),
                              rng.uniform(600.0, 650.0, args.n)])
    colores = rng.integers(0, 2**24, args.n, dtype=numpy.uint32)

    with tempfile.TemporaryDirectory() as carpeta:
        fichero = Path(carpeta) / "grupo.cad"
        vueltas = [una_vuelta(xyz, colores, fichero) for _ in range(args.vueltas)]
        tamano = fichero.stat().st_size

    mejor = min(vueltas, key=lambda v: v["total"])
    print(f"tarvelo {tarvelo.version()}: grupo de {args.n} puntos con color, "
          f"fichero de {tamano / 2**20:.1f} MiB, mejor de {args.vueltas}")
    for f in FASES:
        print(f"  {f:<7} {mejor[f]:9.1f} ms  (mínimo {min(v[f] for v in vueltas):9.1f} ms)")
    print(f"  {'total':<7} {mejor['total']:9.1f} ms")
    # The first round also pays for the memory the process touches for the first time.
    print(f"  primera vuelta: {vueltas[0]['total']:.1f} ms")


if __name__ == "__main__":
    main()
