"""Bad input, closed handles and files that other programs wrote: every refusal surfaces as
TarveloError (or ValueError before the call), never as a crash or a silent success."""

import numpy
import pytest

import tarvelo
from tarvelo import Estado, TarveloError


def falla(estado, funcion, *args):
    with pytest.raises(TarveloError) as e:
        funcion(*args)
    assert e.value.estado == estado, str(e.value)
    assert e.value.nombre == "TV_" + estado.name
    return str(e.value)


def test_entradas_malas():
    with tarvelo.Dibujo() as d:
        with pytest.raises(ValueError, match=r"forma \(N, 3\)"):
            d.grupo_puntos(numpy.zeros((10, 2)))
        with pytest.raises(ValueError):
            d.grupo_puntos(numpy.zeros(30))
        with pytest.raises(ValueError):
            d.linea((0, 0), (1, 1, 1))
        assert falla(Estado.ERROR_LONGITUD, d.grupo_puntos, numpy.zeros((10, 3)),
                     numpy.zeros(9, numpy.uint32)) == "hay 10 puntos y 9 colores"
        falla(Estado.ERROR_LONGITUD, d.polilinea, [[0, 0, 0]])
        falla(Estado.ERROR_LONGITUD, d.cara, numpy.zeros((5, 3)))
        falla(Estado.ERROR_ARGUMENTO, d.punto, float("nan"), 0, 0)
        assert len(d.entidades()) == 0

        h = d.punto(0, 0, 0)
        assert falla(Estado.ERROR_ENTIDAD, d.tipo, h + 1000) == \
            f"ninguna entidad del dibujo tiene el manejador {h + 1000}"
        falla(Estado.ERROR_ENTIDAD, d.borra, 0)
        falla(Estado.ERROR_ENTIDAD, d.longitud, h)
        falla(Estado.ERROR_ENTIDAD, d.colores, h)

        falla(Estado.ERROR_NO_ENCONTRADO, d.datos_capa, "Inexistente")
        falla(Estado.ERROR_NO_ENCONTRADO, setattr, d, "capa_actual", "Inexistente")
        falla(Estado.ERROR_NO_ENCONTRADO, d.variable, "NINGUNA")
        falla(Estado.ERROR_NO_ENCONTRADO, d.activa_vista, "Ninguna")
        falla(Estado.ERROR_RECHAZADO, d.nueva_capa, "0")
        falla(Estado.ERROR_RECHAZADO, d.borra_capa, "0")
        with pytest.raises(OverflowError):
            d.set_variable("GRANDE", 2**40)
        # What C would cut or wrap without a word is refused before the call.
        with pytest.raises(ValueError, match="nulo"):
            d.guarda("obra.cad\0.bak")
        with pytest.raises(ValueError, match="0xFFFFFFFF"):
            d.grupo_puntos(numpy.zeros((2, 3)), numpy.array([-1, 5]))


def test_ficheros_malos(salida):
    falso = salida / "no_es_dibujo.cad"
    falso.write_text("esto no es un dibujo\n")
    with tarvelo.Dibujo() as d:
        d.punto(1, 1, 1)
        mensaje = falla(Estado.ERROR_FICHERO, d.abre, falso)
        assert "no_es_dibujo.cad" in mensaje
        assert len(d.entidades()) == 1, "un fallo al abrir deja el dibujo como estaba"

        bueno = salida / "bueno.cad"
        d.guarda(bueno)
        antes = bueno.read_bytes()
        d.punto(2, 2, 2)
        falla(Estado.ERROR_FICHERO, d.guarda, salida / "no_hay_carpeta" / "x.cad")
        # A save that cannot take the place of what is there leaves no partial file behind.
        (salida / "carpeta.cad").mkdir()
        listado = sorted(salida.iterdir())
        falla(Estado.ERROR_FICHERO, d.guarda, salida / "carpeta.cad")
        assert sorted(salida.iterdir()) == listado
        assert bueno.read_bytes() == antes
    with pytest.raises(TarveloError, match="no_es_dibujo.cad"):
        tarvelo.Dibujo(falso)


def test_uso_tras_cerrar():
    d = tarvelo.Dibujo()
    d.punto(0, 0, 0)
    d.cierra()
    d.cierra()
    assert d.cerrado
    falla(Estado.ERROR_MANEJADOR, d.entidades)
    falla(Estado.ERROR_MANEJADOR, d.punto, 0, 0, 0)
    with pytest.raises(RuntimeError):
        with tarvelo.Dibujo() as e:
            raise RuntimeError("fallo del que llama")
    assert e.cerrado
    p = tarvelo.Pantalla(320, 200)
    assert p.estado()[:2] == (320, 200)
    with tarvelo.Dibujo(pantalla=p) as d:
        d.punto(1, 1, 0)
        p.camara((0, 0, 10), (0, 0, 0), (0, 1, 0))
    p.cierra()
    falla(Estado.ERROR_MANEJADOR, p.estado)
    falla(Estado.ERROR_MANEJADOR, tarvelo.Dibujo, None, p)


def test_importa_dxf_y_obj_con_progreso(datos):
    # The counts are those that independent readers see in these files (datos/*_reference.tsv).
    casos = [(datos / "dxf" / "ezdxf" / "4_world.dxf", "Lineas: 2872\n", 2872),
             (datos / "obj" / "assimp_wuson" / "WusonOBJ.obj",
              "Vertices: 2117, coordenadas UV: 1, normales: 2076\nCaras: 3732 triangulos", 1)]
    for fichero, dicho, entidades in casos:
        fracciones = []
        with tarvelo.Dibujo() as d:
            informe = d.importa(fichero, fracciones.append)
            assert len(d.entidades()) == entidades
        assert dicho in informe, informe
        assert fracciones and fracciones[-1] == 1.0
        assert all(0.0 <= a <= b <= 1.0 for a, b in zip(fracciones, fracciones[1:])), fracciones


def test_progreso_que_llama_al_dibujo_o_falla(datos):
    fichero = datos / "obj" / "assimp_wuson" / "WusonOBJ.obj"
    with tarvelo.Dibujo() as d:
        # A call on the drawing from inside its own callback is refused by the library.
        assert "dentro de otra llamada" in falla(Estado.ERROR_OCUPADO, d.importa, fichero,
                                                 lambda f: d.entidades())

        def corta(f):
            raise KeyError("del progreso")
        with pytest.raises(KeyError, match="del progreso"):
            d.importa(fichero, corta)
        falla(Estado.ERROR_FICHERO, d.importa, datos / "no_existe.obj")
        # Closing from inside the call is refused, and the drawing stays open and usable.
        with pytest.raises(TarveloError):
            d.importa(fichero, lambda f: d.cierra())
        assert not d.cerrado and len(d.entidades()) >= 1
