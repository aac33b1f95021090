"""The shipped examples run as a surveyor runs them: as programs, on their own files."""

import subprocess
import sys

import tarvelo
from conftest import EJEMPLOS


def ejecuta(*args):
    return subprocess.run([sys.executable, *map(str, args)], capture_output=True, text=True,
                          timeout=120)


def test_levantamiento(salida, dxf):
    cad, salida_dxf = salida / "levantamiento.cad", dxf / "python_levantamiento.dxf"
    r = ejecuta(EJEMPLOS / "levantamiento.py", EJEMPLOS / "puntos.csv", cad, "--dxf", salida_dxf)
    assert r.returncode == 0, r.stderr
    assert r.stderr == ""
    assert "38 puntos leídos" in r.stdout and salida_dxf.stat().st_size > 0
    with tarvelo.Dibujo(cad) as d:
        assert d.capas() == ["0", "ARBOL", "BORDE", "ESTACION", "FAROLA"]
        assert d.capa_actual == "0"
        tipos = [d.tipo(h) for h in d.entidades()]
        assert tipos.count("GrupoPuntos") == 4 and len(tipos) == 38 + 4
        colores = {d.datos_capa(c).color for c in d.capas()[1:]}
        assert len(colores) == 4
        (e1,) = [h for h in d.entidades() if d.tipo(h) != "GrupoPuntos"
                 and d.datos_punto_control(h).nombre == "E1"]
        assert d.datos_punto_control(e1)[:2] == ("E1", "ESTACION")
        assert d.datos_punto_control(e1).xyz.tolist() == [431200.123, 4581300.456, 612.345]
        assert d.capa_entidad(e1) == "ESTACION"
        grupo = next(h for h in d.entidades() if d.capa_entidad(h) == "BORDE"
                     and d.tipo(h) == "GrupoPuntos")
        assert d.coordenadas(grupo).shape == (16, 3)
        r, g, b = d.datos_capa("BORDE").color
        assert set(d.colores(grupo).tolist()) == {r | g << 8 | b << 16}


def test_levantamiento_con_filas_malas(salida):
    csv = salida / "campo.csv"
    csv.write_text("id;x;y;z;codigo\n\n1;431200,5;4581300,25;612,0;BORDE\n"
                   "2;431201,5;abc;612,1;BORDE\n3;431202;4581301\n"
                   "4;431203,5;4581303,25;612,2;ARBOL\n")
    r = ejecuta(EJEMPLOS / "levantamiento.py", csv, salida / "campo.cad")
    assert r.returncode == 0, r.stderr
    assert r.stderr.splitlines() == [
        f"{csv}:4: fila descartada: coordenadas que no son números",
        f"{csv}:5: fila descartada: 3 campos en vez de 5"]
    with tarvelo.Dibujo(salida / "campo.cad") as d:
        assert len(d.entidades()) == 4
        (pc,) = [h for h in d.entidades() if d.capa_entidad(h) == "ARBOL" and d.tipo(h) != "GrupoPuntos"]
        assert d.datos_punto_control(pc).xyz.tolist() == [431203.5, 4581303.25, 612.2]


def test_convierte_lote(salida, dxf):
    for n in range(2):
        with tarvelo.Dibujo() as d:
            for i in range(n + 1):
                d.linea((0, i, 0), (10, i, 0))
            d.guarda(salida / f"python_lote_{n}.cad")
    (salida / "python_lote_roto.cad").write_text("no es un dibujo")
    r = ejecuta(EJEMPLOS / "convierte_lote.py", salida, "--salida", dxf)
    assert r.returncode == 1
    lineas = r.stdout.splitlines()
    assert lineas[0] == f"python_lote_0.cad -> {dxf / 'python_lote_0.dxf'} (1 entidad)"
    assert lineas[1] == f"python_lote_1.cad -> {dxf / 'python_lote_1.dxf'} (2 entidades)"
    assert lineas[2].startswith("python_lote_roto.cad: ERROR TV_ERROR_FICHERO: ")
    assert lineas[3] == "2 convertidos, 1 con error"
    assert not (dxf / "python_lote_roto.dxf").exists()
    with tarvelo.Dibujo() as d:
        d.importa(dxf / "python_lote_1.dxf")
        assert [d.coordenadas(h).tolist() for h in d.entidades()] == [
            [[0, 0, 0], [10, 0, 0]], [[0, 1, 0], [10, 1, 0]]]
