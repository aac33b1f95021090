/*
 * Tarvelo's C interface: a drawing, its editor and its files driven from any language.
 *
 * Conventions, the same for every function:
 *  - Every function returns a tv_estado. TV_OK is success; anything else is an error whose
 *    text, in words for the user, tv_mensaje gives for that drawing (tv_ultimo_mensaje for
 *    calls with no valid drawing, and for displays).
 *  - Handles (tv_dibujo, tv_pantalla) are opaque. A handle that this library did not make, or
 *    that was already freed, is refused with TV_ERROR_MANEJADOR: it is never dereferenced.
 *  - Strings are UTF-8 and null-terminated, both ways. A string given back (const char**) is
 *    held by the drawing and stays valid until the next call on that drawing; copy it to keep
 *    it.
 *  - Arrays in come with their element count; arrays out are the caller's, with their
 *    capacity in elements: when it falls short the call gives TV_ERROR_LONGITUD and still
 *    tells in *n how many elements it needs (a null array of capacity 0 asks for the count).
 *    Counts are in elements of the array's type (an array of points holds three doubles per
 *    point).
 *  - The library copies what it keeps: nothing of the caller's memory is held after a call
 *    returns. Out arguments are written only on TV_OK, except *n on TV_ERROR_LONGITUD and the
 *    transcript of a script that stopped (TV_ERROR_GUION).
 *  - No exception of the kernel's crosses this interface; an unexpected one is
 *    TV_ERROR_INTERNO with its text.
 *  - Entity handles (int64_t) name an entity while it lives in its drawing; they are not
 *    kept in the file, so fetch them again after tv_dibujo_abre.
 *  - A drawing is used by one thread at a time. A call made on a drawing from inside one of
 *    its own callbacks (the progress of an import) is refused with TV_ERROR_OCUPADO.
 */
#ifndef TARVELO_H
#define TARVELO_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#if defined(__GNUC__)
#define TV_API __attribute__((visibility("default")))
#else
#define TV_API
#endif

typedef enum tv_estado
{
    TV_OK = 0,
    TV_ERROR_MANEJADOR = 1,     /* not a live drawing or display of this library */
    TV_ERROR_ARGUMENTO = 2,     /* a null pointer, a number that is not finite, an unknown value */
    TV_ERROR_LONGITUD = 3,      /* an array of the wrong length, or an out array too short */
    TV_ERROR_ENTIDAD = 4,       /* the entity handle names no entity of the right kind */
    TV_ERROR_NO_ENCONTRADO = 5, /* no layer, material, variable, view, category or row of that
                                   name or number */
    TV_ERROR_FICHERO = 6,       /* a file that could not be read or written */
    TV_ERROR_RECHAZADO = 7,     /* the drawing refused the change (a name already taken...) */
    TV_ERROR_GUION = 8,         /* an order line failed; the transcript tells where */
    TV_ERROR_OCUPADO = 9,       /* the drawing is inside a call already */
    TV_ERROR_INTERNO = 10       /* anything else the kernel raised */
} tv_estado;

typedef struct tv_dibujo tv_dibujo;
typedef struct tv_pantalla tv_pantalla;

/* Progress of a long operation, from 0 to 1, with the pointer given beside it. */
typedef void (*tv_progreso)(double fraccion, void* usuario);

/* --- the library -------------------------------------------------------------------- */

/* "MAJOR.MINOR.PATCH" of this library; a static string. */
TV_API const char* tv_version(void);
/* What the last call on this drawing said: why it failed, or "" when it succeeded (a damaged
 * file read in part leaves its warning). A call refused with TV_ERROR_OCUPADO leaves the
 * message of the call the drawing is in; its own reason, like that of a handle that is not a
 * live drawing, is the thread's (tv_ultimo_mensaje). Never null; valid until the next call on
 * the drawing. */
TV_API const char* tv_mensaje(const tv_dibujo* d);
/* The text of the last error of any call on this thread. */
TV_API const char* tv_ultimo_mensaje(void);
/* The name of a status ("TV_ERROR_LONGITUD"); a static string. */
TV_API const char* tv_nombre_estado(tv_estado e);

/* --- displays ------------------------------------------------------------------------ */

/* A display that retains what the drawing paints and picks by projection, of ancho by alto
 * pixels (1 to 16384 each), looking down the Z axis. */
TV_API tv_estado tv_pantalla_nueva(int32_t ancho, int32_t alto, tv_pantalla** p);
/* Frees the handle; a drawing made on the display keeps it alive while it needs it. A null
 * p is nothing to free. */
TV_API tv_estado tv_pantalla_libera(tv_pantalla* p);
/* Places the camera: its position, the point it looks at and its up direction. */
TV_API tv_estado tv_pantalla_camara(tv_pantalla* p, const double posicion[3],
                                    const double objetivo[3], const double arriba[3]);
/* Size in pixels, and the number of primitives retained by the last painting. */
TV_API tv_estado tv_pantalla_estado(const tv_pantalla* p, int32_t* ancho, int32_t* alto,
                                    size_t* primitivas);

/* --- drawings ------------------------------------------------------------------------ */

/* A new drawing, with an empty document (layer "0", the default material and style) and an
 * editor. With a display p the drawing paints on it; with null it has its own, of 800 by 600
 * pixels whose pixel (x, y) shows drawing point (x, y, 0). */
TV_API tv_estado tv_dibujo_nuevo(tv_pantalla* p, tv_dibujo** d);
/* Frees the drawing and all it holds; unsaved changes are lost. A null d is nothing. */
TV_API tv_estado tv_dibujo_libera(tv_dibujo* d);
/* Replaces the document by an empty one. */
TV_API tv_estado tv_dibujo_vacia(tv_dibujo* d);
/* Reads a drawing file in place of the drawing. On failure the drawing stays as it was; its
 * undo history goes in any case. `danadas` (may be null) counts the entities of a damaged file
 * that were kept unread; the message then says so. */
TV_API tv_estado tv_dibujo_abre(tv_dibujo* d, const char* fichero, int64_t* danadas);
/* Saves the drawing. The file is written whole or not at all: on failure the previous file is
 * untouched and the message says why. */
TV_API tv_estado tv_dibujo_guarda(tv_dibujo* d, const char* fichero);
/* Writes the drawing as a DXF file (AC1009), whole or not at all. */
TV_API tv_estado tv_dibujo_exporta_dxf(tv_dibujo* d, const char* fichero);
/* Adds a DXF plan or an OBJ model (by the name's extension, any case; any other name is
 * TV_ERROR_ARGUMENTO) to the drawing, with no undo step. A DXF that fails part way leaves what
 * was read before the failure.
 * `informe` (may be null) receives the reader's report of what came in; `progreso` (may be
 * null) hears how far the reading has gone. */
TV_API tv_estado tv_dibujo_importa(tv_dibujo* d, const char* fichero, tv_progreso progreso,
                                   void* usuario, const char** informe);
/* Whether the drawing changed since it was read, saved or made. */
TV_API tv_estado tv_dibujo_hay_cambios(tv_dibujo* d, int* cambios);

/* Runs lines of the command language of `tarvelo guion` (one order or answer per line,
 * `#` comments) on this drawing, as a script: a command still waiting at the end is cancelled,
 * a failing order stops the rest (TV_ERROR_GUION), and `sal` ends the script (the drawing
 * stays). `transcripcion` (may be null) receives
 * the transcript, each line after its marker, as the command-line tool prints it. */
TV_API tv_estado tv_dibujo_ejecuta(tv_dibujo* d, const char* lineas, const char** transcripcion);

/* --- layers -------------------------------------------------------------------------- */

TV_API tv_estado tv_dibujo_numero_capas(tv_dibujo* d, int32_t* n);
TV_API tv_estado tv_dibujo_capa(tv_dibujo* d, int32_t indice, const char** nombre);
/* A new layer of colour r, g, b (0 to 255); `actual` makes it the current layer. A layer of
 * that name already there is refused. */
TV_API tv_estado tv_dibujo_nueva_capa(tv_dibujo* d, const char* nombre, int32_t r, int32_t g,
                                      int32_t b, int actual);
TV_API tv_estado tv_dibujo_capa_actual(tv_dibujo* d, const char** nombre);
TV_API tv_estado tv_dibujo_set_capa_actual(tv_dibujo* d, const char* nombre);
/* Colour (0 to 255 each), visible, locked. */
TV_API tv_estado tv_dibujo_datos_capa(tv_dibujo* d, const char* nombre, int32_t rgb[3],
                                      int* visible, int* bloqueada);
TV_API tv_estado tv_dibujo_color_capa(tv_dibujo* d, const char* nombre, int32_t r, int32_t g,
                                      int32_t b);
TV_API tv_estado tv_dibujo_visibilidad_capa(tv_dibujo* d, const char* nombre, int visible);
TV_API tv_estado tv_dibujo_bloquea_capa(tv_dibujo* d, const char* nombre, int bloqueada);
TV_API tv_estado tv_dibujo_renombra_capa(tv_dibujo* d, const char* nombre, const char* nuevo);
/* Refused for layer "0", the current layer and a layer that holds entities. */
TV_API tv_estado tv_dibujo_borra_capa(tv_dibujo* d, const char* nombre);

/* --- materials ------------------------------------------------------------------------ */

TV_API tv_estado tv_dibujo_numero_materiales(tv_dibujo* d, int32_t* n);
/* A material of colour `color` (alpha, red, green, blue from high to low byte) and shine;
 * `textura` (may be null) names its image. `id` receives the material's id. `idExterno` is the
 * host's own number for it. */
TV_API tv_estado tv_dibujo_nuevo_material(tv_dibujo* d, int32_t idExterno, uint32_t color,
                                          double brillo, const char* textura, int32_t* id);
/* Material number `indice` (0 to n - 1): its id, host's id, colour, shine and texture ("" for
 * none). Any out pointer may be null. */
TV_API tv_estado tv_dibujo_material(tv_dibujo* d, int32_t indice, int32_t* id, int32_t* idExterno,
                                    uint32_t* color, double* brillo, const char** textura);
TV_API tv_estado tv_dibujo_borra_material(tv_dibujo* d, int32_t id);

/* --- variables and views --------------------------------------------------------------- */

TV_API tv_estado tv_dibujo_set_variable_texto(tv_dibujo* d, const char* nombre, const char* valor);
TV_API tv_estado tv_dibujo_set_variable_entero(tv_dibujo* d, const char* nombre, int32_t valor);
TV_API tv_estado tv_dibujo_set_variable_real(tv_dibujo* d, const char* nombre, double valor);
TV_API tv_estado tv_dibujo_set_variable_punto(tv_dibujo* d, const char* nombre, double x, double y,
                                              double z);
/* The variable as a text, whatever its kind: a real with 15 significant digits, a point as
 * "x,y,z". A missing one is TV_ERROR_NO_ENCONTRADO. */
TV_API tv_estado tv_dibujo_variable(tv_dibujo* d, const char* nombre, const char** valor);
TV_API tv_estado tv_dibujo_borra_variable(tv_dibujo* d, const char* nombre);
TV_API tv_estado tv_dibujo_numero_vistas(tv_dibujo* d, int32_t* n);
TV_API tv_estado tv_dibujo_vista(tv_dibujo* d, int32_t indice, const char** nombre);
/* Keeps the display's present view under that name (replacing one of the same name). */
TV_API tv_estado tv_dibujo_guarda_vista(tv_dibujo* d, const char* nombre);
TV_API tv_estado tv_dibujo_activa_vista(tv_dibujo* d, const char* nombre);
TV_API tv_estado tv_dibujo_borra_vista(tv_dibujo* d, const char* nombre);
/* The display shows the whole drawing. */
TV_API tv_estado tv_dibujo_zoom_extension(tv_dibujo* d);

/* --- entity creation: each is one undo step; `h` (may be null) receives its handle ------- */

TV_API tv_estado tv_dibujo_punto(tv_dibujo* d, double x, double y, double z, int64_t* h);
/* A point group of n points: `xyz` holds 3n doubles (nxyz of them), `colores` n colours (red
 * in the low byte, then green, blue), or null for none (then ncolores is 0). */
TV_API tv_estado tv_dibujo_grupo_puntos(tv_dibujo* d, const double* xyz, size_t nxyz,
                                        const uint32_t* colores, size_t ncolores, int64_t* h);
TV_API tv_estado tv_dibujo_punto_control(tv_dibujo* d, const char* nombre, const char* codigo,
                                         double x, double y, double z, int64_t* h);
/* `alineacion` as the drawing's texts take it (0 to 10: horizontal 0, 1, 2 plus vertical 0, 4,
 * 8); rotation in radians. */
TV_API tv_estado tv_dibujo_texto(tv_dibujo* d, const char* texto, double x, double y, double z,
                                 double altura, double rotacion, int32_t alineacion, int64_t* h);
TV_API tv_estado tv_dibujo_linea(tv_dibujo* d, const double a[3], const double b[3], int64_t* h);
/* At least two points, three doubles each. */
TV_API tv_estado tv_dibujo_polilinea(tv_dibujo* d, const double* xyz, size_t nxyz, int cerrada,
                                     int64_t* h);
/* At least three points in one plane. */
TV_API tv_estado tv_dibujo_poligono(tv_dibujo* d, const double* xyz, size_t nxyz, int64_t* h);
/* Three or four corners. */
TV_API tv_estado tv_dibujo_cara(tv_dibujo* d, const double* xyz, size_t nxyz, int64_t* h);
/* A bounded plane fitted to three or more points, bounded by their hull on it. */
TV_API tv_estado tv_dibujo_plano(tv_dibujo* d, const double* xyz, size_t nxyz, int64_t* h);
/* Solids: a box between two corners; a cylinder standing on `base`; a sphere. */
TV_API tv_estado tv_dibujo_cubo(tv_dibujo* d, const double minimo[3], const double maximo[3],
                                int64_t* h);
TV_API tv_estado tv_dibujo_cilindro(tv_dibujo* d, const double base[3], double radio,
                                    double altura, int64_t* h);
TV_API tv_estado tv_dibujo_esfera(tv_dibujo* d, const double centro[3], double radio, int64_t* h);
/* A camera shot: x, y, z, omega, phi, kappa (radians), focal distance, image width and height
 * (nine doubles), labelled `nombre`. */
TV_API tv_estado tv_dibujo_toma_camara(tv_dibujo* d, const double datos[9], const char* nombre,
                                       int64_t* h);
/* A 360 photograph at x, y, z of radius `radio`, its sphere of `meridianos` by `paralelos`,
 * turned by roll, pitch and yaw (`giros`, radians); the image `foto` becomes its material. */
TV_API tv_estado tv_dibujo_foto360(tv_dibujo* d, const double posicion[3], double radio,
                                   int32_t meridianos, int32_t paralelos, const double giros[3],
                                   const char* foto, int64_t* h);
/* A named local system: origin and three axes (made unit). */
TV_API tv_estado tv_dibujo_sistema_local(tv_dibujo* d, const char* nombre, const double origen[3],
                                         const double ejeX[3], const double ejeY[3],
                                         const double ejeZ[3], int64_t* h);

/* --- queries --------------------------------------------------------------------------- */

/* Handles of all entities in the drawing's order. */
TV_API tv_estado tv_dibujo_entidades(tv_dibujo* d, int64_t* handles, size_t capacidad, size_t* n);
/* The kind of the entity: "Punto", "GrupoPuntos", "PuntoControl", "Texto", "Linea",
 * "Polilinea" (a polygon too: the file keeps them as one kind), "Cara3D", "Plano3D", "Cubo", "Cilindro", "Esfera", "PoliCara3D",
 * "Objeto3D", "TomaCamara", "Foto360", "Sistema Local"...; "Desconocida" for an entity the
 * kernel keeps unread. */
TV_API tv_estado tv_dibujo_tipo(tv_dibujo* d, int64_t h, const char** tipo);
TV_API tv_estado tv_dibujo_capa_entidad(tv_dibujo* d, int64_t h, const char** capa);
/* The entity's defining points (a point group's points, a polyline's vertices), three doubles
 * each: n receives the number of doubles. A cylinder's or a sphere's are those of its mesh,
 * which is made when the drawing is painted (tv_dibujo_zoom_extension paints it): none
 * before. */
TV_API tv_estado tv_dibujo_coordenadas(tv_dibujo* d, int64_t h, double* xyz, size_t capacidad,
                                       size_t* n);
/* The colours of a point group's points (red in the low byte). */
TV_API tv_estado tv_dibujo_colores(tv_dibujo* d, int64_t h, uint32_t* colores, size_t capacidad,
                                   size_t* n);
/* The box of the entity, or of the whole drawing with h 0, as the drawing measures its
 * entities (a box by its first corner). An empty drawing has none: TV_ERROR_NO_ENCONTRADO. */
TV_API tv_estado tv_dibujo_extension(tv_dibujo* d, int64_t h, double minimo[3], double maximo[3]);
/* Name, code and position of a control point. */
TV_API tv_estado tv_dibujo_datos_punto_control(tv_dibujo* d, int64_t h, const char** nombre,
                                               const char** codigo, double xyz[3]);
/* Length of a polyline. */
TV_API tv_estado tv_dibujo_longitud(tv_dibujo* d, int64_t h, double* longitud);
/* Area, vertices and faces of a Superficie or a solid (Objeto3D, box, cylinder, sphere);
 * anything else, an imported PoliCara3D included, is TV_ERROR_ENTIDAD. */
TV_API tv_estado tv_dibujo_superficie(tv_dibujo* d, int64_t h, double* area, int32_t* vertices,
                                      int32_t* caras);

/* The entity's property sheet (h 0: the editor's own sheet): categories, rows. */
TV_API tv_estado tv_dibujo_numero_categorias(tv_dibujo* d, int64_t h, int32_t* n);
TV_API tv_estado tv_dibujo_categoria(tv_dibujo* d, int64_t h, int32_t categoria,
                                     const char** nombre);
TV_API tv_estado tv_dibujo_numero_propiedades(tv_dibujo* d, int64_t h, int32_t categoria,
                                              int32_t* n);
/* A row: its name, its value as text, its kind (0 boolean, 1 integer, 2 double, 3 positive
 * double, 4 text, 5 colour, 6 palette colour, 7 material, 8 enumeration, 9 coordinate,
 * 10 vector, 11 orientation, 12 list of coordinates, 13 legend), and whether it is read-only.
 * Any out pointer may be null. */
TV_API tv_estado tv_dibujo_propiedad(tv_dibujo* d, int64_t h, int32_t categoria, int32_t indice,
                                     const char** nombre, const char** valor, int32_t* tipo,
                                     int* soloLectura);
/* Writes a row from its text, as a user types it. */
TV_API tv_estado tv_dibujo_set_propiedad(tv_dibujo* d, int64_t h, int32_t categoria,
                                         int32_t indice, const char* valor);

/* --- selection, deletion, undo ----------------------------------------------------------- */

TV_API tv_estado tv_dibujo_selecciona(tv_dibujo* d, int64_t h);
/* Takes one entity out of the selection, or all of them with h 0. */
TV_API tv_estado tv_dibujo_deselecciona(tv_dibujo* d, int64_t h);
TV_API tv_estado tv_dibujo_seleccionadas(tv_dibujo* d, int64_t* handles, size_t capacidad,
                                         size_t* n);
/* Deletes the entity (one undo step). */
TV_API tv_estado tv_dibujo_borra(tv_dibujo* d, int64_t h);
/* Nothing to undo (redo) is TV_ERROR_RECHAZADO. */
TV_API tv_estado tv_dibujo_deshacer(tv_dibujo* d);
TV_API tv_estado tv_dibujo_rehacer(tv_dibujo* d);
TV_API tv_estado tv_dibujo_puede_deshacer(tv_dibujo* d, int* deshacer, int* rehacer);

#ifdef __cplusplus
}
#endif

#endif /* TARVELO_H */
