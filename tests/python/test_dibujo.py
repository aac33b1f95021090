"""The package over the library: a drawing built through every call, saved and read back value
by value; bulk point groups; undo; order lines; the property sheet."""

import numpy
import pytest

import tarvelo


SOLIDOS = ("Cubo", "Cilindro", "Esfera")


def retrato(d):
    """Everything the file keeps, as plain values that compare with ==."""
    capas = {c: d.datos_capa(c) for c in d.capas()}
    variables = {v: d.variable(v) for v in ("PROYECTO", "HUSO", "ESCALA", "ORIGEN")}
    entidades = []
    for h in d.entidades():
        tipo = d.tipo(h)
        if tipo in SOLIDOS:
            # A solid's points and box follow its mesh, which only painting builds: the
            # mesh's own measures are compared instead.
            forma = d.superficie(h)
        else:
            forma = d.coordenadas(h).tolist(), [a.tolist() for a in d.extension(h)]
        entidades.append((tipo, d.capa_entidad(h), forma))
    return capas, d.materiales(), variables, d.vistas(), entidades


def test_dibujo_mixto_ida_y_vuelta(salida, dxf):
    fichero = salida / "mixto.cad"
    with tarvelo.Dibujo() as d:
        assert d.capas() == ["0"] and not d.hay_cambios
        d.nueva_capa("Cañada", (10, 20, 30), actual=True)
        d.nueva_capa("temporal", (200, 0, 0))
        d.renombra_capa("temporal", "Oculta")
        d.color_capa("Oculta", (1, 2, 3))
        d.visibilidad_capa("Oculta", False)
        d.bloquea_capa("Oculta", True)
        d.nueva_capa("Sobra")
        d.borra_capa("Sobra")
        mat = d.nuevo_material(0xFF336699, 0.25, id_externo=42)
        d.nuevo_material(0x80FFFFFF)
        d.borra_material(d.materiales()[-1].id)
        d.set_variable("PROYECTO", "Ribera, año 2024")
        d.set_variable("HUSO", 30)
        d.set_variable("ESCALA", 0.9996)
        d.set_variable("ORIGEN", (431200.5, 4581300.25, 612.0))
        d.set_variable("BORRAR", 1)
        d.borra_variable("BORRAR")
        d.guarda_vista("Planta")
        d.guarda_vista("Sobra")
        d.borra_vista("Sobra")
        pl = d.polilinea([[0, 0, 0], [3, 0, 0], [3, 4, 0]], cerrada=True)
        pc = d.punto_control("E1", "ESTACION", 431200.123, 4581300.456, 612.345)
        cubo = d.cubo((0, 0, 0), (1, 2, 3))
        d.punto(1, 2, 3)
        d.grupo_puntos([[1, 1, 1], [2, 2, 2]], [0x0000FF, 0x00FF00])
        d.texto("Cañada del Río", 5, 6, 0, altura=2.5, rotacion=0.5, alineacion=4)
        d.linea((0, 0, 0), (10, 0, 0))
        d.poligono([[0, 0, 0], [1, 0, 0], [1, 1, 0], [0, 1, 0]])
        d.cara([[0, 0, 1], [1, 0, 1], [1, 1, 1]])
        d.plano([[0, 0, 0], [10, 0, 0], [0, 10, 1], [10, 10, 1]])
        d.cilindro((20, 0, 0), 1.5, 4.0)
        d.esfera((30, 0, 0), 2.0)
        d.toma_camara([100, 200, 50, 0.01, -0.02, 1.5, 0.035, 6000, 4000], "IMG_0001")
        d.sistema_local("Obra", (431000, 4581000, 600), (1, 1, 0), (-1, 1, 0), (0, 0, 1))
        d.zoom_extension()
        d.activa_vista("Planta")

        assert d.datos_capa("Oculta") == ((1, 2, 3), False, True)
        assert d.materiales()[-1][1:] == (42, 0xFF336699, 0.25, "") and d.materiales()[-1].id == mat
        assert d.variable("HUSO") == "30" and d.variable("ORIGEN") == "431200.5,4581300.25,612"
        assert d.longitud(pl) == 12.0
        assert d.datos_punto_control(pc)[:2] == ("E1", "ESTACION")
        assert d.datos_punto_control(pc).xyz.tolist() == [431200.123, 4581300.456, 612.345]
        assert d.superficie(cubo).area == pytest.approx(22.0)
        assert d.capa_entidad(pc) == "Cañada"
        assert len(d.entidades()) == 14 and d.hay_cambios
        d.guarda(fichero)
        d.exporta_dxf(dxf / "python_mixto.dxf")
        assert not d.hay_cambios
        antes = retrato(d)

    with tarvelo.Dibujo(fichero) as e:
        assert retrato(e) == antes
        assert not e.hay_cambios
    assert tarvelo.guion("lista", fichero).count("\n  ") == 14


def test_grupo_de_cien_mil_puntos_con_color(salida):
    rng = numpy.random.default_rng(5)
    xyz = rng.uniform((431000, 4581000, 600), (432000, 4582000, 650), (100_000, 3))
    colores = rng.integers(0, 2**24, 100_000, dtype=numpy.uint32)
    fichero = salida / "grupo.cad"
    with tarvelo.Dibujo() as d:
        # A Fortran-ordered array is made contiguous on the way in.
        h = d.grupo_puntos(numpy.asfortranarray(xyz), colores)
        assert d.tipo(h) == "GrupoPuntos"
        d.guarda(fichero)
    with tarvelo.Dibujo(fichero) as d:
        (h,) = d.entidades()
        leidos, leidos_col = d.coordenadas(h), d.colores(h)
    assert leidos.dtype == numpy.float64 and leidos.shape == (100_000, 3)
    assert numpy.array_equal(leidos, xyz) and numpy.array_equal(leidos_col, colores)


def test_deshacer_y_rehacer_reponen_las_entidades():
    with tarvelo.Dibujo() as d:
        assert d.puede_deshacer() == (False, False)
        d.punto(0, 0, 0)
        d.grupo_puntos(numpy.zeros((1000, 3)))
        d.linea((0, 0, 0), (1, 1, 1))
        d.deshacer()
        assert [d.tipo(h) for h in d.entidades()] == ["Punto", "GrupoPuntos"]
        d.deshacer()
        d.deshacer()
        assert len(d.entidades()) == 0 and d.puede_deshacer() == (False, True)
        with pytest.raises(tarvelo.TarveloError, match="^no hay nada que deshacer$") as e:
            d.deshacer()
        assert e.value.estado == tarvelo.Estado.ERROR_RECHAZADO
        d.rehacer()
        d.rehacer()
        assert [d.tipo(h) for h in d.entidades()] == ["Punto", "GrupoPuntos"]
        assert d.puede_deshacer() == (True, True)
        assert d.coordenadas(d.entidades()[1]).shape == (1000, 3)


def test_borrar_es_un_paso_de_deshacer():
    with tarvelo.Dibujo() as d:
        a = d.punto(0, 0, 0)
        d.linea((0, 0, 0), (1, 1, 1))
        d.borra(a)
        assert [d.tipo(h) for h in d.entidades()] == ["Linea"]
        d.deshacer()
        assert sorted(d.tipo(h) for h in d.entidades()) == ["Linea", "Punto"]


def test_fila_de_coordenadas_de_la_hoja():
    with tarvelo.Dibujo() as d:
        h = d.punto(1, 2, 3)
        assert d.propiedad(h, 1, 0)[:3] == ("Posición", "1,2,3", 9)
        d.set_propiedad(h, 1, 0, "7,8,9")
        assert d.coordenadas(h).tolist() == [[7, 8, 9]]


def test_seleccion():
    with tarvelo.Dibujo() as d:
        a, b, c = (d.punto(i, 0, 0) for i in range(3))
        d.selecciona(a)
        d.selecciona(c)
        assert d.seleccionadas().tolist() == [a, c]
        d.deselecciona(a)
        assert d.seleccionadas().tolist() == [c]
        d.deselecciona()
        assert d.seleccionadas().size == 0


def test_ordenes_y_su_transcripcion():
    with tarvelo.Dibujo() as d:
        t = d.ejecuta(["linea", "0,0", "10,0", "", "lista"])
        assert t.splitlines() == [
            "> linea",
            "Seleccione coordenada inicial de la linea:",
            "> 0,0",
            "Seleccione coordenada final de la linea:",
            "> 10,0",
            "Seleccione coordenada final de la linea:",
            ">",
            "1 línea creada",
            "> lista",
            "Entidades (1):",
            "  Linea (0,0,0)-(10,0,0)",
        ]
        # Each call has its own transcript; the drawing keeps what the orders made.
        assert d.ejecuta("# nada\ndeshacer\n").splitlines()[-1].startswith("Deshecho: se quita Linea")
        assert len(d.entidades()) == 0

        with pytest.raises(tarvelo.TarveloError) as e:
            d.ejecuta("punto\n1,1\n\nzumba\npunto\n2,2\n")
        assert e.value.estado == tarvelo.Estado.ERROR_GUION
        assert e.value.nombre == "TV_ERROR_GUION"
        assert "Orden desconocida: zumba" in str(e.value)
        assert "El guion se detiene en la línea 4" in str(e.value)
        assert e.value.transcripcion.splitlines()[-2:] == [
            "Orden desconocida: zumba (ayuda lista las órdenes)",
            "El guion se detiene en la línea 4"]
        # The order before the failing one stays; the ones after never ran.
        assert [d.tipo(h) for h in d.entidades()] == ["Punto"]


def test_hoja_de_propiedades():
    with tarvelo.Dibujo() as d:
        pl = d.polilinea([[0, 0, 0], [3, 0, 0], [3, 4, 0]])
        hoja = d.propiedades(pl)
        assert [c.nombre for c in hoja] == ["General", "Geometría", "Varios"]
        assert hoja[0].propiedades[0] == ("Entidad", "Polilinea", 4, True)
        assert hoja[2].propiedades[0] == ("Cerrada", "0", 0, False)
        # Closing it through the sheet adds the closing side to the length.
        d.set_propiedad(pl, 2, 0, "1")
        assert d.propiedad(pl, 2, 0).valor == "1" and d.longitud(pl) == 12.0
        d.nueva_capa("Bordes")
        d.set_propiedad(pl, 0, 1, "Bordes")
        assert d.capa_entidad(pl) == "Bordes"
        with pytest.raises(tarvelo.TarveloError, match="^la propiedad no admite ese valor$"):
            d.set_propiedad(pl, 0, 0, "Otra")
        with pytest.raises(tarvelo.TarveloError) as e:
            d.propiedad(pl, len(hoja), 0)
        assert e.value.estado == tarvelo.Estado.ERROR_NO_ENCONTRADO
        assert d.propiedades(0)[0].propiedades[0].valor == "Sin selección"
