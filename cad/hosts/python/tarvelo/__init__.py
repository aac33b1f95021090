"""Tarvelo from Python: drawings, their editor and their files, over libtarvelo_c.

    import numpy, tarvelo
    with tarvelo.Dibujo() as d:
        d.nueva_capa("BORDE", (255, 0, 0), actual=True)
        d.grupo_puntos(numpy.random.rand(1000, 3) * 100)
        d.guarda("levantamiento.cad")

Every call that the kernel refuses raises TarveloError with the kernel's own message. Bulk
data (point groups, coordinates, colours, handles) travels as NumPy arrays, never point by
point.
"""

import ctypes
import enum
import os
from collections import namedtuple

import numpy

from ._c import C, PROGRESO

__all__ = ["Dibujo", "Pantalla", "TarveloError", "Estado", "guion", "version"]


class Estado(enum.IntEnum):
    OK = 0
    ERROR_MANEJADOR = 1
    ERROR_ARGUMENTO = 2
    ERROR_LONGITUD = 3
    ERROR_ENTIDAD = 4
    ERROR_NO_ENCONTRADO = 5
    ERROR_FICHERO = 6
    ERROR_RECHAZADO = 7
    ERROR_GUION = 8
    ERROR_OCUPADO = 9
    ERROR_INTERNO = 10


class TarveloError(Exception):
    """A call refused by the kernel: `estado` is the tv_estado, `nombre` its name, and str()
    the kernel's message."""

    def __init__(self, estado, mensaje):
        self.estado = Estado(estado) if estado in Estado._value2member_map_ else estado
        self.nombre = C.nombre_estado(int(estado)).decode("utf-8", errors="replace")
        self.mensaje = mensaje or self.nombre
        super().__init__(self.mensaje)


DatosCapa = namedtuple("DatosCapa", "color visible bloqueada")
Material = namedtuple("Material", "id id_externo color brillo textura")
PuntoControl = namedtuple("PuntoControl", "nombre codigo xyz")
Superficie = namedtuple("Superficie", "area vertices caras")
Categoria = namedtuple("Categoria", "nombre propiedades")
Propiedad = namedtuple("Propiedad", "nombre valor tipo solo_lectura")
EstadoPantalla = namedtuple("EstadoPantalla", "ancho alto primitivas")

_PD = ctypes.POINTER(ctypes.c_double)
_PU32 = ctypes.POINTER(ctypes.c_uint32)
_PI64 = ctypes.POINTER(ctypes.c_int64)


def version():
    """The library's "MAJOR.MINOR.PATCH"."""
    return C.version().decode("utf-8", errors="replace")


def guion(lineas, fichero=None):
    """Runs order lines on a fresh drawing, or on the drawing file given, and returns the
    transcript."""
    with Dibujo(fichero) as d:
        return d.ejecuta(lineas)


# --- conversions ---------------------------------------------------------------------------

def _sin_nulo(b):
    # A C string ends at its first zero byte: what follows would be dropped without a word.
    if b"\0" in b:
        raise ValueError("un texto para la biblioteca no puede contener el carácter nulo")
    return b


def _texto(s):
    return _sin_nulo(s if isinstance(s, bytes) else str(s).encode("utf-8"))


def _ruta(p):
    # A file name that is not UTF-8 comes back as the bytes the system gave.
    return _sin_nulo(os.fsencode(p))


def _decodifica(b):
    return b.decode("utf-8", errors="replace")


def _sale(p):
    return _decodifica(p.value) if p.value is not None else ""


def _i32(v):
    v = int(v)
    if not -2**31 <= v < 2**31:
        raise OverflowError(f"{v} no cabe en un entero de 32 bits")
    return v


def _vector(v, n=3):
    """A contiguous float64 array of exactly n values; the caller keeps it alive during the call."""
    a = numpy.ascontiguousarray(v, dtype=numpy.float64)
    if a.shape != (n,):
        raise ValueError(f"se esperaban {n} números, no forma {a.shape}")
    return a


def _puntos(xyz):
    a = numpy.ascontiguousarray(xyz, dtype=numpy.float64)
    if a.ndim != 2 or a.shape[1] != 3:
        raise ValueError(f"los puntos deben tener forma (N, 3), no {a.shape}")
    return a


def _pd(a):
    return a.ctypes.data_as(_PD)


def _rgb(color):
    r, g, b = (_i32(c) for c in color)
    return r, g, b


# --- displays ------------------------------------------------------------------------------

class Pantalla:
    """A display of ancho by alto pixels that retains what a drawing paints on it."""

    def __init__(self, ancho=800, alto=600):
        self._p = None
        p = ctypes.c_void_p()
        self._comprueba(C.pantalla_nueva(_i32(ancho), _i32(alto), ctypes.byref(p)))
        self._p = p.value

    @staticmethod
    def _comprueba(estado):
        if estado != 0:
            raise TarveloError(estado, C.ultimo_mensaje().decode("utf-8", errors="replace"))

    def camara(self, posicion, objetivo, arriba):
        a, b, c = _vector(posicion), _vector(objetivo), _vector(arriba)
        self._comprueba(C.pantalla_camara(self._p, _pd(a), _pd(b), _pd(c)))

    def estado(self):
        ancho, alto, prim = ctypes.c_int32(), ctypes.c_int32(), ctypes.c_size_t()
        self._comprueba(C.pantalla_estado(self._p, ctypes.byref(ancho), ctypes.byref(alto),
                                          ctypes.byref(prim)))
        return EstadoPantalla(ancho.value, alto.value, prim.value)

    def cierra(self):
        """Frees the display; a second call does nothing. Later calls are refused by the
        library, since the handle passed from then on is null."""
        if self._p is not None:
            self._comprueba(C.pantalla_libera(self._p))
            self._p = None

    def __enter__(self):
        return self

    def __exit__(self, *exc):
        self.cierra()

    def __del__(self):
        if getattr(self, "_p", None) is not None:
            self.cierra()


# --- drawings ------------------------------------------------------------------------------

class Dibujo:
    """A drawing with its editor. Dibujo(fichero) opens that file; use it in a `with` block,
    or call cierra(), to free it."""

    def __init__(self, fichero=None, pantalla=None):
        self._d = None
        if pantalla is not None and pantalla._p is None:
            raise TarveloError(Estado.ERROR_MANEJADOR, "La pantalla está cerrada")
        d = ctypes.c_void_p()
        estado = C.dibujo_nuevo(pantalla._p if pantalla is not None else None, ctypes.byref(d))
        if estado != 0:
            raise TarveloError(estado, C.ultimo_mensaje().decode("utf-8", errors="replace"))
        self._d = d.value
        if fichero is not None:
            try:
                self.abre(fichero)
            except BaseException:
                self.cierra()
                raise

    # After cierra() _d is None, which reaches the library as a null handle: it is refused
    # there with TV_ERROR_MANEJADOR, like any handle that is not live.
    def _falla(self, estado):
        # A call refused because the drawing is inside another one leaves that call's message
        # on the drawing; its own reason is the thread's.
        mensaje = C.mensaje(self._d) if estado != Estado.ERROR_OCUPADO else b""
        mensaje = mensaje or C.ultimo_mensaje()
        raise TarveloError(estado, mensaje.decode("utf-8", errors="replace"))

    def _llama(self, funcion, *args):
        estado = funcion(self._d, *args)
        if estado != 0:
            self._falla(estado)

    def _entidad(self, funcion, *args):
        h = ctypes.c_int64()
        self._llama(funcion, *args, ctypes.byref(h))
        return h.value

    def _cadena(self, funcion, *args):
        s = ctypes.c_char_p()
        self._llama(funcion, *args, ctypes.byref(s))
        return _sale(s)

    def _valor(self, funcion, *args, tipo=ctypes.c_int32):
        v = tipo()
        self._llama(funcion, *args, ctypes.byref(v))
        return v.value

    def _array(self, funcion, dtype, puntero, *args):
        """An out array: the count first (capacity 0), then the filling."""
        n = ctypes.c_size_t(0)
        estado = funcion(self._d, *args, None, 0, ctypes.byref(n))
        if estado == 0:
            return numpy.empty(0, dtype=dtype)
        if estado != Estado.ERROR_LONGITUD:
            self._falla(estado)
        a = numpy.empty(n.value, dtype=dtype)
        self._llama(funcion, *args, a.ctypes.data_as(puntero), a.size, ctypes.byref(n))
        return a[:n.value]

    # --- life and files --------------------------------------------------------------------

    def cierra(self):
        """Frees the drawing, losing unsaved changes; a second call does nothing."""
        if self._d is not None:
            estado = C.dibujo_libera(self._d)
            if estado != 0:
                # Still open (freed from inside its own call): a later cierra frees it.
                raise TarveloError(estado, C.mensaje(None).decode("utf-8", errors="replace"))
            self._d = None

    @property
    def cerrado(self):
        return self._d is None

    def __enter__(self):
        return self

    def __exit__(self, *exc):
        self.cierra()

    def __del__(self):
        if getattr(self, "_d", None) is not None:
            self.cierra()

    def vacia(self):
        self._llama(C.dibujo_vacia)

    def abre(self, fichero):
        """Reads a drawing file in place of this one; returns how many damaged entities were
        kept unread."""
        return self._valor(C.dibujo_abre, _ruta(fichero), tipo=ctypes.c_int64)

    def guarda(self, fichero):
        self._llama(C.dibujo_guarda, _ruta(fichero))

    def exporta_dxf(self, fichero):
        self._llama(C.dibujo_exporta_dxf, _ruta(fichero))

    def importa(self, fichero, progreso=None):
        """Adds a DXF or OBJ file to the drawing and returns the reader's report.
        `progreso(fraccion)` hears how far the reading has gone."""
        fallo = []

        def oye(fraccion, _usuario):
            # An exception cannot cross the C frames: keep the first one and raise it after.
            if not fallo:
                try:
                    progreso(fraccion)
                except BaseException as e:
                    fallo.append(e)

        retrollamada = PROGRESO(oye) if progreso is not None else PROGRESO()
        informe = self._cadena(C.dibujo_importa, _ruta(fichero), retrollamada, None)
        if fallo:
            raise fallo[0]
        return informe

    @property
    def hay_cambios(self):
        return bool(self._valor(C.dibujo_hay_cambios, tipo=ctypes.c_int))

    def ejecuta(self, lineas):
        """Runs order lines (a str, or a list of lines) and returns the transcript. A failing
        order raises TarveloError carrying the transcript in `.transcripcion`."""
        if not isinstance(lineas, (str, bytes)):
            lineas = "\n".join(lineas)
        t = ctypes.c_char_p()
        estado = C.dibujo_ejecuta(self._d, _texto(lineas), ctypes.byref(t))
        if estado == 0:
            return _sale(t)
        transcripcion = t.value.decode("utf-8", errors="replace") if t.value is not None else None
        mensaje = C.mensaje(self._d).decode("utf-8", errors="replace")
        if transcripcion:
            # The kernel's message usually quotes the transcript's end already.
            cola = transcripcion.rstrip("\n").split("\n")[-6:]
            if cola[-1] not in mensaje:
                mensaje = "\n".join([mensaje] + cola) if mensaje else "\n".join(cola)
        e = TarveloError(estado, mensaje)
        e.transcripcion = transcripcion
        raise e

    # --- layers ----------------------------------------------------------------------------

    def capas(self):
        n = self._valor(C.dibujo_numero_capas)
        return [self._cadena(C.dibujo_capa, i) for i in range(n)]

    def nueva_capa(self, nombre, color=(255, 255, 255), actual=False):
        self._llama(C.dibujo_nueva_capa, _texto(nombre), *_rgb(color), int(bool(actual)))

    @property
    def capa_actual(self):
        return self._cadena(C.dibujo_capa_actual)

    @capa_actual.setter
    def capa_actual(self, nombre):
        self._llama(C.dibujo_set_capa_actual, _texto(nombre))

    def datos_capa(self, nombre):
        rgb = (ctypes.c_int32 * 3)()
        visible, bloqueada = ctypes.c_int(), ctypes.c_int()
        self._llama(C.dibujo_datos_capa, _texto(nombre), rgb, ctypes.byref(visible),
                    ctypes.byref(bloqueada))
        return DatosCapa(tuple(rgb), bool(visible.value), bool(bloqueada.value))

    def color_capa(self, nombre, color):
        self._llama(C.dibujo_color_capa, _texto(nombre), *_rgb(color))

    def visibilidad_capa(self, nombre, visible):
        self._llama(C.dibujo_visibilidad_capa, _texto(nombre), int(bool(visible)))

    def bloquea_capa(self, nombre, bloqueada=True):
        self._llama(C.dibujo_bloquea_capa, _texto(nombre), int(bool(bloqueada)))

    def renombra_capa(self, nombre, nuevo):
        self._llama(C.dibujo_renombra_capa, _texto(nombre), _texto(nuevo))

    def borra_capa(self, nombre):
        self._llama(C.dibujo_borra_capa, _texto(nombre))

    # --- materials -------------------------------------------------------------------------

    def materiales(self):
        n = self._valor(C.dibujo_numero_materiales)
        lista = []
        for i in range(n):
            id_, ext, color = ctypes.c_int32(), ctypes.c_int32(), ctypes.c_uint32()
            brillo, textura = ctypes.c_double(), ctypes.c_char_p()
            self._llama(C.dibujo_material, i, ctypes.byref(id_), ctypes.byref(ext),
                        ctypes.byref(color), ctypes.byref(brillo), ctypes.byref(textura))
            lista.append(Material(id_.value, ext.value, color.value, brillo.value, _sale(textura)))
        return lista

    def nuevo_material(self, color, brillo=0.0, textura=None, id_externo=0):
        """A material of colour 0xAARRGGBB; returns its id."""
        color = int(color)
        if not 0 <= color < 2**32:
            raise OverflowError(f"el color {color:#x} no cabe en 32 bits")
        return self._valor(C.dibujo_nuevo_material, _i32(id_externo), color, float(brillo),
                            None if textura is None else _ruta(textura))

    def borra_material(self, id):
        self._llama(C.dibujo_borra_material, _i32(id))

    # --- variables and views ---------------------------------------------------------------

    def set_variable(self, nombre, valor):
        """Sets a text, integer, real or point (three numbers) variable, by the value's kind."""
        nombre = _texto(nombre)
        if isinstance(valor, (str, bytes)):
            self._llama(C.dibujo_set_variable_texto, nombre, _texto(valor))
        elif isinstance(valor, (int, numpy.integer)):
            self._llama(C.dibujo_set_variable_entero, nombre, _i32(valor))
        elif isinstance(valor, (float, numpy.floating)):
            self._llama(C.dibujo_set_variable_real, nombre, float(valor))
        else:
            x, y, z = _vector(valor)
            self._llama(C.dibujo_set_variable_punto, nombre, x, y, z)

    def variable(self, nombre):
        """The variable's value as the kernel writes it (a point as "x,y,z")."""
        return self._cadena(C.dibujo_variable, _texto(nombre))

    def borra_variable(self, nombre):
        self._llama(C.dibujo_borra_variable, _texto(nombre))

    def vistas(self):
        n = self._valor(C.dibujo_numero_vistas)
        return [self._cadena(C.dibujo_vista, i) for i in range(n)]

    def guarda_vista(self, nombre):
        self._llama(C.dibujo_guarda_vista, _texto(nombre))

    def activa_vista(self, nombre):
        self._llama(C.dibujo_activa_vista, _texto(nombre))

    def borra_vista(self, nombre):
        self._llama(C.dibujo_borra_vista, _texto(nombre))

    def zoom_extension(self):
        self._llama(C.dibujo_zoom_extension)

    # --- creation: each returns the new entity's handle ------------------------------------

    def punto(self, x, y, z=0.0):
        return self._entidad(C.dibujo_punto, float(x), float(y), float(z))

    def grupo_puntos(self, xyz, colores=None):
        """A point group from an (N, 3) array of coordinates and, optionally, N colours
        (red in the low byte)."""
        a = _puntos(xyz)
        if colores is None:
            c, pc = None, None
            nc = 0
        else:
            origen = numpy.asarray(colores)
            # A conversion to uint32 would wrap negative or larger values without a word.
            if origen.size and (origen.dtype.kind not in "ui" or origen.min() < 0
                                or origen.max() > 0xFFFFFFFF):
                raise ValueError("los colores han de ser enteros de 0 a 0xFFFFFFFF")
            c = numpy.ascontiguousarray(origen, dtype=numpy.uint32)
            if c.ndim != 1:
                raise ValueError(f"los colores deben ser una lista de N valores, no forma {c.shape}")
            pc, nc = c.ctypes.data_as(_PU32), c.size
        return self._entidad(C.dibujo_grupo_puntos, _pd(a), a.size, pc, nc)

    def punto_control(self, nombre, codigo, x, y, z=0.0):
        return self._entidad(C.dibujo_punto_control, _texto(nombre), _texto(codigo),
                             float(x), float(y), float(z))

    def texto(self, texto, x, y, z=0.0, altura=1.0, rotacion=0.0, alineacion=0):
        return self._entidad(C.dibujo_texto, _texto(texto), float(x), float(y), float(z),
                             float(altura), float(rotacion), _i32(alineacion))

    def linea(self, a, b):
        a, b = _vector(a), _vector(b)
        return self._entidad(C.dibujo_linea, _pd(a), _pd(b))

    def polilinea(self, xyz, cerrada=False):
        a = _puntos(xyz)
        return self._entidad(C.dibujo_polilinea, _pd(a), a.size, int(bool(cerrada)))

    def poligono(self, xyz):
        a = _puntos(xyz)
        return self._entidad(C.dibujo_poligono, _pd(a), a.size)

    def cara(self, xyz):
        a = _puntos(xyz)
        return self._entidad(C.dibujo_cara, _pd(a), a.size)

    def plano(self, xyz):
        a = _puntos(xyz)
        return self._entidad(C.dibujo_plano, _pd(a), a.size)

    def cubo(self, minimo, maximo):
        a, b = _vector(minimo), _vector(maximo)
        return self._entidad(C.dibujo_cubo, _pd(a), _pd(b))

    def cilindro(self, base, radio, altura):
        a = _vector(base)
        return self._entidad(C.dibujo_cilindro, _pd(a), float(radio), float(altura))

    def esfera(self, centro, radio):
        a = _vector(centro)
        return self._entidad(C.dibujo_esfera, _pd(a), float(radio))

    def toma_camara(self, datos, nombre):
        """datos: x, y, z, omega, phi, kappa (radians), focal distance, image width, height."""
        a = _vector(datos, 9)
        return self._entidad(C.dibujo_toma_camara, _pd(a), _texto(nombre))

    def foto360(self, posicion, radio, meridianos, paralelos, giros, foto):
        a, g = _vector(posicion), _vector(giros)
        return self._entidad(C.dibujo_foto360, _pd(a), float(radio), _i32(meridianos),
                             _i32(paralelos), _pd(g), _ruta(foto))

    def sistema_local(self, nombre, origen, eje_x, eje_y, eje_z):
        o, x, y, z = (_vector(v) for v in (origen, eje_x, eje_y, eje_z))
        return self._entidad(C.dibujo_sistema_local, _texto(nombre), _pd(o), _pd(x), _pd(y),
                             _pd(z))

    # --- queries ---------------------------------------------------------------------------

    def entidades(self):
        return self._array(C.dibujo_entidades, numpy.int64, _PI64)

    def tipo(self, h):
        return self._cadena(C.dibujo_tipo, int(h))

    def capa_entidad(self, h):
        return self._cadena(C.dibujo_capa_entidad, int(h))

    def coordenadas(self, h):
        return self._array(C.dibujo_coordenadas, numpy.float64, _PD, int(h)).reshape(-1, 3)

    def colores(self, h):
        return self._array(C.dibujo_colores, numpy.uint32, _PU32, int(h))

    def extension(self, h=0):
        """(minimo, maximo) of the entity, or of the whole drawing with h 0."""
        minimo, maximo = numpy.empty(3), numpy.empty(3)
        self._llama(C.dibujo_extension, int(h), _pd(minimo), _pd(maximo))
        return minimo, maximo

    def datos_punto_control(self, h):
        nombre, codigo, xyz = ctypes.c_char_p(), ctypes.c_char_p(), numpy.empty(3)
        self._llama(C.dibujo_datos_punto_control, int(h), ctypes.byref(nombre),
                    ctypes.byref(codigo), _pd(xyz))
        return PuntoControl(_sale(nombre), _sale(codigo), xyz)

    def longitud(self, h):
        return self._valor(C.dibujo_longitud, int(h), tipo=ctypes.c_double)

    def superficie(self, h):
        area, vertices, caras = ctypes.c_double(), ctypes.c_int32(), ctypes.c_int32()
        self._llama(C.dibujo_superficie, int(h), ctypes.byref(area), ctypes.byref(vertices),
                    ctypes.byref(caras))
        return Superficie(area.value, vertices.value, caras.value)

    # --- property sheet (h 0: the editor's own) --------------------------------------------

    def propiedad(self, h, categoria, indice):
        nombre, valor = ctypes.c_char_p(), ctypes.c_char_p()
        tipo, solo = ctypes.c_int32(), ctypes.c_int()
        self._llama(C.dibujo_propiedad, int(h), _i32(categoria), _i32(indice),
                    ctypes.byref(nombre), ctypes.byref(valor), ctypes.byref(tipo),
                    ctypes.byref(solo))
        return Propiedad(_sale(nombre), _sale(valor), tipo.value, bool(solo.value))

    def propiedades(self, h=0):
        """The whole sheet: a list of Categoria(nombre, [Propiedad, ...])."""
        h = int(h)
        hoja = []
        for c in range(self._valor(C.dibujo_numero_categorias, h)):
            nombre = self._cadena(C.dibujo_categoria, h, c)
            n = self._valor(C.dibujo_numero_propiedades, h, c)
            hoja.append(Categoria(nombre, [self.propiedad(h, c, i) for i in range(n)]))
        return hoja

    def set_propiedad(self, h, categoria, indice, valor):
        """Writes a row from its text, as a user types it."""
        self._llama(C.dibujo_set_propiedad, int(h), _i32(categoria), _i32(indice),
                    _texto(valor))

    # --- selection, deletion, undo ---------------------------------------------------------

    def selecciona(self, h):
        self._llama(C.dibujo_selecciona, int(h))

    def deselecciona(self, h=0):
        self._llama(C.dibujo_deselecciona, int(h))

    def seleccionadas(self):
        return self._array(C.dibujo_seleccionadas, numpy.int64, _PI64)

    def borra(self, h):
        self._llama(C.dibujo_borra, int(h))

    def deshacer(self):
        self._llama(C.dibujo_deshacer)

    def rehacer(self):
        self._llama(C.dibujo_rehacer)

    def puede_deshacer(self):
        """(whether there is something to undo, whether there is something to redo)."""
        deshacer, rehacer = ctypes.c_int(), ctypes.c_int()
        self._llama(C.dibujo_puede_deshacer, ctypes.byref(deshacer), ctypes.byref(rehacer))
        return bool(deshacer.value), bool(rehacer.value)
