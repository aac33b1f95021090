"""Loading of libtarvelo_c and the prototypes of the tv_ functions that the package calls.

Every function is declared with its argument and result types, so that ctypes converts and
checks the arguments instead of guessing int for everything.
"""

import ctypes
import ctypes.util
import os
from pathlib import Path
from types import SimpleNamespace

_NOMBRE = "libtarvelo_c.so"


def _candidatos():
    """Where the library may be, in the order it is looked for."""
    paquete = Path(__file__).resolve().parent
    # Installed: <prefix>/lib/python3/dist-packages/tarvelo beside <prefix>/lib/libtarvelo_c.so.
    yield paquete.parent.parent.parent / _NOMBRE
    # In the repository: cad/hosts/python/tarvelo, with the build trees at its root.
    raiz = paquete.parents[3]
    for arbol in ("default", "mio"):
        yield raiz / "build" / arbol / "cad" / "hosts" / "c" / _NOMBRE


def _carga():
    intentos = []
    forzada = os.environ.get("TARVELO_C_LIB")
    if forzada:
        # A library named by the user is the one wanted: falling back to another copy would
        # hide a wrong path.
        try:
            return ctypes.CDLL(forzada)
        except OSError as e:
            raise ImportError(f"tarvelo: no se pudo cargar TARVELO_C_LIB={forzada}: {e}") from e
    for ruta in _candidatos():
        if not ruta.exists():
            intentos.append(f"{ruta} (no existe)")
            continue
        try:
            return ctypes.CDLL(str(ruta))
        except OSError as e:
            intentos.append(f"{ruta} ({e})")
    encontrada = ctypes.util.find_library("tarvelo_c")
    if encontrada:
        try:
            return ctypes.CDLL(encontrada)
        except OSError as e:
            intentos.append(f"{encontrada} ({e})")
    else:
        intentos.append("find_library('tarvelo_c') (no la encuentra)")
    raise ImportError("tarvelo: no se encuentra libtarvelo_c.so; TARVELO_C_LIB no está definida y "
                      "se buscó en:\n  " + "\n  ".join(intentos))


lib = _carga()

# Argument types, short so that the table below reads like the header.
P = ctypes.c_void_p
S = ctypes.c_char_p
OS = ctypes.POINTER(ctypes.c_char_p)
F = ctypes.c_double
PF = ctypes.POINTER(ctypes.c_double)
I = ctypes.c_int
PI = ctypes.POINTER(ctypes.c_int)
I32 = ctypes.c_int32
PI32 = ctypes.POINTER(ctypes.c_int32)
I64 = ctypes.c_int64
PI64 = ctypes.POINTER(ctypes.c_int64)
U32 = ctypes.c_uint32
PU32 = ctypes.POINTER(ctypes.c_uint32)
SZ = ctypes.c_size_t
PSZ = ctypes.POINTER(ctypes.c_size_t)
PP = ctypes.POINTER(ctypes.c_void_p)

PROGRESO = ctypes.CFUNCTYPE(None, ctypes.c_double, ctypes.c_void_p)

_TEXTOS = {
    "version": [],
    "mensaje": [P],
    "ultimo_mensaje": [],
    "nombre_estado": [I],
}

_ESTADOS = {
    "pantalla_nueva": [I32, I32, PP],
    "pantalla_libera": [P],
    "pantalla_camara": [P, PF, PF, PF],
    "pantalla_estado": [P, PI32, PI32, PSZ],
    "dibujo_nuevo": [P, PP],
    "dibujo_libera": [P],
    "dibujo_vacia": [P],
    "dibujo_abre": [P, S, PI64],
    "dibujo_guarda": [P, S],
    "dibujo_exporta_dxf": [P, S],
    "dibujo_importa": [P, S, PROGRESO, P, OS],
    "dibujo_hay_cambios": [P, PI],
    "dibujo_ejecuta": [P, S, OS],
    "dibujo_numero_capas": [P, PI32],
    "dibujo_capa": [P, I32, OS],
    "dibujo_nueva_capa": [P, S, I32, I32, I32, I],
    "dibujo_capa_actual": [P, OS],
    "dibujo_set_capa_actual": [P, S],
    "dibujo_datos_capa": [P, S, PI32, PI, PI],
    "dibujo_color_capa": [P, S, I32, I32, I32],
    "dibujo_visibilidad_capa": [P, S, I],
    "dibujo_bloquea_capa": [P, S, I],
    "dibujo_renombra_capa": [P, S, S],
    "dibujo_borra_capa": [P, S],
    "dibujo_numero_materiales": [P, PI32],
    "dibujo_nuevo_material": [P, I32, U32, F, S, PI32],
    "dibujo_material": [P, I32, PI32, PI32, PU32, PF, OS],
    "dibujo_borra_material": [P, I32],
    "dibujo_set_variable_texto": [P, S, S],
    "dibujo_set_variable_entero": [P, S, I32],
    "dibujo_set_variable_real": [P, S, F],
    "dibujo_set_variable_punto": [P, S, F, F, F],
    "dibujo_variable": [P, S, OS],
    "dibujo_borra_variable": [P, S],
    "dibujo_numero_vistas": [P, PI32],
    "dibujo_vista": [P, I32, OS],
    "dibujo_guarda_vista": [P, S],
    "dibujo_activa_vista": [P, S],
    "dibujo_borra_vista": [P, S],
    "dibujo_zoom_extension": [P],
    "dibujo_punto": [P, F, F, F, PI64],
    "dibujo_grupo_puntos": [P, PF, SZ, PU32, SZ, PI64],
    "dibujo_punto_control": [P, S, S, F, F, F, PI64],
    "dibujo_texto": [P, S, F, F, F, F, F, I32, PI64],
    "dibujo_linea": [P, PF, PF, PI64],
    "dibujo_polilinea": [P, PF, SZ, I, PI64],
    "dibujo_poligono": [P, PF, SZ, PI64],
    "dibujo_cara": [P, PF, SZ, PI64],
    "dibujo_plano": [P, PF, SZ, PI64],
    "dibujo_cubo": [P, PF, PF, PI64],
    "dibujo_cilindro": [P, PF, F, F, PI64],
    "dibujo_esfera": [P, PF, F, PI64],
    "dibujo_toma_camara": [P, PF, S, PI64],
    "dibujo_foto360": [P, PF, F, I32, I32, PF, S, PI64],
    "dibujo_sistema_local": [P, S, PF, PF, PF, PF, PI64],
    "dibujo_entidades": [P, PI64, SZ, PSZ],
    "dibujo_tipo": [P, I64, OS],
    "dibujo_capa_entidad": [P, I64, OS],
    "dibujo_coordenadas": [P, I64, PF, SZ, PSZ],
    "dibujo_colores": [P, I64, PU32, SZ, PSZ],
    "dibujo_extension": [P, I64, PF, PF],
    "dibujo_datos_punto_control": [P, I64, OS, OS, PF],
    "dibujo_longitud": [P, I64, PF],
    "dibujo_superficie": [P, I64, PF, PI32, PI32],
    "dibujo_numero_categorias": [P, I64, PI32],
    "dibujo_categoria": [P, I64, I32, OS],
    "dibujo_numero_propiedades": [P, I64, I32, PI32],
    "dibujo_propiedad": [P, I64, I32, I32, OS, OS, PI32, PI],
    "dibujo_set_propiedad": [P, I64, I32, I32, S],
    "dibujo_selecciona": [P, I64],
    "dibujo_deselecciona": [P, I64],
    "dibujo_seleccionadas": [P, PI64, SZ, PSZ],
    "dibujo_borra": [P, I64],
    "dibujo_deshacer": [P],
    "dibujo_rehacer": [P],
    "dibujo_puede_deshacer": [P, PI, PI],
}


def _declara():
    funciones = {}
    for tabla, resultado in ((_TEXTOS, S), (_ESTADOS, I)):
        for nombre, argumentos in tabla.items():
            try:
                f = getattr(lib, "tv_" + nombre)
            except AttributeError:
                raise ImportError(f"tarvelo: {lib._name} no exporta tv_{nombre}") from None
            f.argtypes = argumentos
            f.restype = resultado
            funciones[nombre] = f
    return SimpleNamespace(**funciones)


C = _declara()
