/*
 * The C interface driven from C, as a host in another language drives it: every function on
 * its way to success, and the ways it must refuse (handles, arguments, lengths, entities,
 * files, scripts, re-entry) without crashing and with a message for the user.
 *
 * Usage: test_c <folder for its files> [<folder of the DXF audit>]
 * Built as C11 so that the header is proved to be C. Runs under AddressSanitizer with leak
 * detection: everything it takes it frees.
 */
#define _POSIX_C_SOURCE 200809L

#include <errno.h>
#include <math.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/types.h>

#include "tarvelo.h"

static int fallos = 0;
static int comprobaciones = 0;

#define CHECK(expr)                                                                          \
    do                                                                                       \
    {                                                                                        \
        ++comprobaciones;                                                                    \
        if (!(expr))                                                                         \
        {                                                                                    \
            ++fallos;                                                                        \
            fprintf(stderr, "%s:%d: falla CHECK(%s); ultimo mensaje: \"%s\"\n", __FILE__,    \
                    __LINE__, #expr, tv_ultimo_mensaje());                                   \
        }                                                                                    \
    } while (0)

/* A call and the exact status it must give; on a mismatch both names are printed. */
#define CHECK_ESTADO(llamada, esperado)                                                      \
    do                                                                                       \
    {                                                                                        \
        const tv_estado e_ = (llamada);                                                      \
        ++comprobaciones;                                                                    \
        if (e_ != (esperado))                                                                \
        {                                                                                    \
            ++fallos;                                                                        \
            fprintf(stderr, "%s:%d: %s da %s, se esperaba %s; ultimo mensaje: \"%s\"\n",     \
                    __FILE__, __LINE__, #llamada, tv_nombre_estado(e_),                      \
                    tv_nombre_estado(esperado), tv_ultimo_mensaje());                        \
        }                                                                                    \
    } while (0)

#define OK(llamada) CHECK_ESTADO(llamada, TV_OK)

static char carpeta[1024];
static const char* carpetaDxf = NULL;

/* ---------------------------------------------------------------------------------------- */
/* helpers                                                                                  */

static void ruta(char* salida, size_t capacidad, const char* nombre)
{
    snprintf(salida, capacidad, "%s/%s", carpeta, nombre);
}

/* mkdir -p: the folders the test run names may not exist yet. */
static int creaCarpeta(const char* camino)
{
    char tmp[1024];
    size_t i;
    snprintf(tmp, sizeof tmp, "%s", camino);
    for (i = 1; tmp[i] != '\0'; ++i)
    {
        if (tmp[i] == '/')
        {
            tmp[i] = '\0';
            if (mkdir(tmp, 0777) != 0 && errno != EEXIST)
            {
                return 0;
            }
            tmp[i] = '/';
        }
    }
    return mkdir(tmp, 0777) == 0 || errno == EEXIST;
}

static int escribeFichero(const char* camino, const void* datos, size_t n)
{
    FILE* f = fopen(camino, "wb");
    int bien;
    if (f == NULL)
    {
        return 0;
    }
    bien = fwrite(datos, 1, n, f) == n;
    return fclose(f) == 0 && bien;
}

/* The whole file in a buffer of the caller's to free (with a terminating zero); NULL if it
 * can't be read. */
static char* leeFichero(const char* camino, size_t* n)
{
    FILE* f = fopen(camino, "rb");
    char* datos;
    long tam;
    if (f == NULL)
    {
        return NULL;
    }
    if (fseek(f, 0, SEEK_END) != 0 || (tam = ftell(f)) < 0 || fseek(f, 0, SEEK_SET) != 0)
    {
        fclose(f);
        return NULL;
    }
    datos = malloc((size_t)tam + 1);
    if (datos != NULL && fread(datos, 1, (size_t)tam, f) != (size_t)tam)
    {
        free(datos);
        datos = NULL;
    }
    fclose(f);
    if (datos != NULL)
    {
        datos[tam] = '\0';
        *n = (size_t)tam;
    }
    return datos;
}

static void copia(char* destino, size_t capacidad, const char* s)
{
    snprintf(destino, capacidad, "%s", s != NULL ? s : "(null)");
}

static int contiene(const char* texto, const char* parte)
{
    return texto != NULL && strstr(texto, parte) != NULL;
}

static size_t numeroEntidades(tv_dibujo* d)
{
    int64_t nada = 0;
    size_t n = 0;
    const tv_estado e = tv_dibujo_entidades(d, &nada, 0, &n);
    return e == TV_OK || e == TV_ERROR_LONGITUD ? n : (size_t)-1;
}

/* All handles in a buffer of the caller's to free, through the two calls a host makes. */
static int64_t* entidades(tv_dibujo* d, size_t* n)
{
    int64_t nada = 0;
    int64_t* h;
    const tv_estado e = tv_dibujo_entidades(d, &nada, 0, n);
    if (e == TV_OK)
    {
        return calloc(1, sizeof(int64_t));
    }
    if (e != TV_ERROR_LONGITUD)
    {
        return NULL;
    }
    h = malloc(*n * sizeof(int64_t));
    if (h != NULL && tv_dibujo_entidades(d, h, *n, n) != TV_OK)
    {
        free(h);
        h = NULL;
    }
    return h;
}

/* An entity's coordinates the same way; n receives the count of doubles. */
static double* coordenadas(tv_dibujo* d, int64_t h, size_t* n)
{
    double nada = 0;
    double* xyz;
    const tv_estado e = tv_dibujo_coordenadas(d, h, &nada, 0, n);
    if (e == TV_OK)
    {
        return calloc(1, sizeof(double));
    }
    if (e != TV_ERROR_LONGITUD)
    {
        return NULL;
    }
    xyz = malloc(*n * sizeof(double));
    if (xyz != NULL && tv_dibujo_coordenadas(d, h, xyz, *n, n) != TV_OK)
    {
        free(xyz);
        xyz = NULL;
    }
    return xyz;
}

/* The row of that name in a category of the sheet, or -1. */
static int32_t buscaPropiedad(tv_dibujo* d, int64_t h, int32_t categoria, const char* nombre)
{
    int32_t n = 0;
    int32_t i;
    if (tv_dibujo_numero_propiedades(d, h, categoria, &n) != TV_OK)
    {
        return -1;
    }
    for (i = 0; i < n; ++i)
    {
        const char* s = NULL;
        if (tv_dibujo_propiedad(d, h, categoria, i, &s, NULL, NULL, NULL) == TV_OK && s != NULL &&
            strcmp(s, nombre) == 0)
        {
            return i;
        }
    }
    return -1;
}

/* A tiny deterministic generator, so that a failure repeats. */
static uint32_t semilla = 12345u;
static uint32_t aleatorio(void)
{
    semilla = semilla * 1664525u + 1013904223u;
    return semilla;
}

/* ---------------------------------------------------------------------------------------- */
/* the library                                                                              */

static void pruebaBiblioteca(void)
{
    const char* v = tv_version();
    int mayor = -1, menor = -1, parche = -1;
    CHECK(v != NULL && sscanf(v, "%d.%d.%d", &mayor, &menor, &parche) == 3);
    CHECK(mayor >= 0 && menor >= 0 && parche >= 0);
    CHECK(strcmp(tv_nombre_estado(TV_OK), "TV_OK") == 0);
    CHECK(strcmp(tv_nombre_estado(TV_ERROR_LONGITUD), "TV_ERROR_LONGITUD") == 0);
    CHECK(strcmp(tv_nombre_estado(TV_ERROR_INTERNO), "TV_ERROR_INTERNO") == 0);
    CHECK(tv_nombre_estado((tv_estado)99) != NULL);
    CHECK(tv_ultimo_mensaje() != NULL);
}

/* ---------------------------------------------------------------------------------------- */
/* handles                                                                                  */

static void pruebaManejadores(void)
{
    struct
    {
        unsigned char relleno[256];
    } falso;
    tv_dibujo* dFalso = (tv_dibujo*)(void*)&falso;
    tv_pantalla* pFalsa = (tv_pantalla*)(void*)&falso;
    tv_dibujo* d = NULL;
    tv_dibujo* vivo = NULL;
    tv_pantalla* p = NULL;
    int32_t n = -1;
    int64_t h = -7;
    char hilo[512];

    memset(&falso, 0x5A, sizeof falso);

    CHECK_ESTADO(tv_dibujo_numero_capas(NULL, &n), TV_ERROR_MANEJADOR);
    copia(hilo, sizeof hilo, tv_ultimo_mensaje());
    CHECK(hilo[0] != '\0');
    CHECK(strcmp(tv_mensaje(NULL), hilo) == 0);
    CHECK(n == -1);

    CHECK_ESTADO(tv_dibujo_punto(dFalso, 1, 2, 3, &h), TV_ERROR_MANEJADOR);
    CHECK(h == -7);
    copia(hilo, sizeof hilo, tv_ultimo_mensaje());
    CHECK(hilo[0] != '\0');
    CHECK(strcmp(tv_mensaje(dFalso), hilo) == 0);
    CHECK_ESTADO(tv_dibujo_libera(dFalso), TV_ERROR_MANEJADOR);
    CHECK_ESTADO(tv_pantalla_estado(pFalsa, NULL, NULL, NULL), TV_ERROR_MANEJADOR);
    CHECK_ESTADO(tv_pantalla_libera(pFalsa), TV_ERROR_MANEJADOR);
    CHECK_ESTADO(tv_pantalla_estado(NULL, NULL, NULL, NULL), TV_ERROR_MANEJADOR);

    OK(tv_dibujo_nuevo(NULL, &vivo));
    OK(tv_pantalla_nueva(64, 48, &p));
    /* A live drawing without errors says nothing; another's error does not reach it. */
    CHECK(strcmp(tv_mensaje(vivo), "") == 0);

    /* A freed drawing and a freed display: refused, never touched. */
    OK(tv_dibujo_nuevo(NULL, &d));
    OK(tv_dibujo_libera(d));
    CHECK_ESTADO(tv_dibujo_punto(d, 1, 2, 3, &h), TV_ERROR_MANEJADOR);
    CHECK(h == -7);
    copia(hilo, sizeof hilo, tv_ultimo_mensaje());
    CHECK(hilo[0] != '\0');
    CHECK(strcmp(tv_mensaje(d), hilo) == 0);
    CHECK_ESTADO(tv_dibujo_libera(d), TV_ERROR_MANEJADOR);
    OK(tv_dibujo_libera(NULL));
    /* A handle is never given twice: a new drawing, likely made where the freed one was, does
     * not answer to the old handle. */
    {
        tv_dibujo* otro = NULL;
        OK(tv_dibujo_nuevo(NULL, &otro));
        CHECK(otro != d);
        CHECK_ESTADO(tv_dibujo_punto(d, 1, 2, 3, &h), TV_ERROR_MANEJADOR);
        CHECK(numeroEntidades(otro) == 0);
        OK(tv_dibujo_libera(otro));
    }
    OK(tv_pantalla_libera(p));
    CHECK_ESTADO(tv_pantalla_libera(p), TV_ERROR_MANEJADOR);
    CHECK_ESTADO(tv_pantalla_estado(p, NULL, NULL, NULL), TV_ERROR_MANEJADOR);
    OK(tv_pantalla_libera(NULL));

    /* The live drawing still works after all that. */
    OK(tv_dibujo_punto(vivo, 1, 2, 3, &h));
    CHECK(numeroEntidades(vivo) == 1);
    OK(tv_dibujo_libera(vivo));
}

/* One kind of handle is not taken for the other. Run last: a library that reads a drawing as
 * a display crashes here, and by then everything else has been reported. */
static void pruebaManejadoresCruzados(void)
{
    tv_dibujo* d = NULL;
    tv_pantalla* p = NULL;
    tv_dibujo* enPantalla = (tv_dibujo*)(void*)&p;
    int32_t ancho = -1, alto = -1, n = -1;
    size_t prim = 0;
    const double pos[3] = {0, 0, 10};
    const double obj[3] = {0, 0, 0};
    const double arriba[3] = {0, 1, 0};

    OK(tv_dibujo_nuevo(NULL, &d));
    OK(tv_pantalla_nueva(64, 48, &p));
    fflush(stdout);
    fflush(stderr);
    CHECK_ESTADO(tv_dibujo_numero_capas((tv_dibujo*)(void*)p, &n), TV_ERROR_MANEJADOR);
    CHECK_ESTADO(tv_pantalla_estado((tv_pantalla*)(void*)d, &ancho, &alto, &prim),
                 TV_ERROR_MANEJADOR);
    CHECK_ESTADO(tv_pantalla_camara((tv_pantalla*)(void*)d, pos, obj, arriba),
                 TV_ERROR_MANEJADOR);
    CHECK_ESTADO(tv_dibujo_nuevo((tv_pantalla*)(void*)d, &enPantalla), TV_ERROR_MANEJADOR);
    CHECK(n == -1 && ancho == -1 && enPantalla == (tv_dibujo*)(void*)&p);
    CHECK_ESTADO(tv_dibujo_libera((tv_dibujo*)(void*)p), TV_ERROR_MANEJADOR);
    CHECK_ESTADO(tv_pantalla_libera((tv_pantalla*)(void*)d), TV_ERROR_MANEJADOR);
    OK(tv_pantalla_libera(p));
    OK(tv_dibujo_libera(d));
}

/* ---------------------------------------------------------------------------------------- */
/* arguments: null pointers, numbers that are not finite                                     */

static void pruebaArgumentos(void)
{
    tv_dibujo* d = NULL;
    tv_dibujo* otro = NULL;
    const double a[3] = {1, 2, 3};
    const double b[3] = {4, 5, 6};
    const double malo[3] = {1, NAN, 3};
    const double infinito[3] = {INFINITY, 0, 0};
    const double tres[9] = {0, 0, 0, 1, 0, 0, 1, 1, NAN};
    const uint32_t colores[3] = {1, 2, 3};
    int64_t h = -7;
    int32_t n = -1;
    char mensaje[512];

    CHECK_ESTADO(tv_dibujo_nuevo(NULL, NULL), TV_ERROR_ARGUMENTO);
    CHECK_ESTADO(tv_pantalla_nueva(10, 10, NULL), TV_ERROR_ARGUMENTO);
    OK(tv_dibujo_nuevo(NULL, &d));
    OK(tv_dibujo_nuevo(NULL, &otro));

    CHECK_ESTADO(tv_dibujo_numero_capas(d, NULL), TV_ERROR_ARGUMENTO);
    CHECK(tv_mensaje(d)[0] != '\0');
    CHECK_ESTADO(tv_dibujo_capa_actual(d, NULL), TV_ERROR_ARGUMENTO);
    CHECK_ESTADO(tv_dibujo_nueva_capa(d, NULL, 1, 2, 3, 0), TV_ERROR_ARGUMENTO);
    CHECK_ESTADO(tv_dibujo_set_capa_actual(d, NULL), TV_ERROR_ARGUMENTO);
    CHECK_ESTADO(tv_dibujo_renombra_capa(d, "0", NULL), TV_ERROR_ARGUMENTO);
    CHECK_ESTADO(tv_dibujo_abre(d, NULL, NULL), TV_ERROR_ARGUMENTO);
    CHECK_ESTADO(tv_dibujo_guarda(d, NULL), TV_ERROR_ARGUMENTO);
    CHECK_ESTADO(tv_dibujo_exporta_dxf(d, NULL), TV_ERROR_ARGUMENTO);
    CHECK_ESTADO(tv_dibujo_importa(d, NULL, NULL, NULL, NULL), TV_ERROR_ARGUMENTO);
    CHECK_ESTADO(tv_dibujo_ejecuta(d, NULL, NULL), TV_ERROR_ARGUMENTO);
    CHECK_ESTADO(tv_dibujo_hay_cambios(d, NULL), TV_ERROR_ARGUMENTO);
    CHECK_ESTADO(tv_dibujo_set_variable_texto(d, "v", NULL), TV_ERROR_ARGUMENTO);
    CHECK_ESTADO(tv_dibujo_variable(d, NULL, NULL), TV_ERROR_ARGUMENTO);
    CHECK_ESTADO(tv_dibujo_linea(d, NULL, b, &h), TV_ERROR_ARGUMENTO);
    CHECK_ESTADO(tv_dibujo_polilinea(d, NULL, 6, 0, &h), TV_ERROR_ARGUMENTO);
    CHECK_ESTADO(tv_dibujo_punto_control(d, NULL, "c", 0, 0, 0, &h), TV_ERROR_ARGUMENTO);
    CHECK_ESTADO(tv_dibujo_texto(d, NULL, 0, 0, 0, 1, 0, 0, &h), TV_ERROR_ARGUMENTO);
    CHECK_ESTADO(tv_dibujo_entidades(d, NULL, 4, NULL), TV_ERROR_ARGUMENTO);
    CHECK(h == -7);

    /* Not finite: refused, nothing made, the out handle untouched. */
    CHECK_ESTADO(tv_dibujo_punto(d, NAN, 0, 0, &h), TV_ERROR_ARGUMENTO);
    copia(mensaje, sizeof mensaje, tv_mensaje(d));
    CHECK(mensaje[0] != '\0');
    CHECK_ESTADO(tv_dibujo_punto(d, 0, 0, INFINITY, &h), TV_ERROR_ARGUMENTO);
    CHECK_ESTADO(tv_dibujo_linea(d, a, malo, &h), TV_ERROR_ARGUMENTO);
    CHECK_ESTADO(tv_dibujo_linea(d, infinito, b, &h), TV_ERROR_ARGUMENTO);
    CHECK_ESTADO(tv_dibujo_grupo_puntos(d, tres, 9, colores, 3, &h), TV_ERROR_ARGUMENTO);
    CHECK_ESTADO(tv_dibujo_polilinea(d, tres, 9, 0, &h), TV_ERROR_ARGUMENTO);
    CHECK_ESTADO(tv_dibujo_esfera(d, a, -INFINITY, &h), TV_ERROR_ARGUMENTO);
    CHECK_ESTADO(tv_dibujo_texto(d, "t", 0, 0, 0, NAN, 0, 0, &h), TV_ERROR_ARGUMENTO);
    CHECK_ESTADO(tv_dibujo_set_variable_real(d, "r", NAN), TV_ERROR_ARGUMENTO);
    CHECK_ESTADO(tv_dibujo_set_variable_punto(d, "p", 0, INFINITY, 0), TV_ERROR_ARGUMENTO);
    OK(tv_dibujo_set_variable_real(d, "r", 2.5));
    CHECK_ESTADO(tv_dibujo_set_variable_real(d, "r", -INFINITY), TV_ERROR_ARGUMENTO);
    CHECK_ESTADO(tv_dibujo_variable(d, "r", NULL), TV_ERROR_ARGUMENTO);
    {
        const char* s = NULL;
        OK(tv_dibujo_variable(d, "r", &s));
        CHECK(s != NULL && strcmp(s, "2.5") == 0);
    }
    /* Values outside their range. */
    CHECK_ESTADO(tv_dibujo_nueva_capa(d, "Roja", 256, 0, 0, 0), TV_ERROR_ARGUMENTO);
    CHECK_ESTADO(tv_dibujo_texto(d, "t", 0, 0, 0, 1, 0, 11, &h), TV_ERROR_ARGUMENTO);
    CHECK(h == -7);
    CHECK(numeroEntidades(d) == 0);
    OK(tv_dibujo_numero_capas(d, &n));
    CHECK(n == 1);

    /* Each drawing keeps its own last message; the thread's is the latest of all. */
    CHECK_ESTADO(tv_dibujo_set_capa_actual(d, "SoloEnEste"), TV_ERROR_NO_ENCONTRADO);
    copia(mensaje, sizeof mensaje, tv_mensaje(d));
    CHECK(contiene(mensaje, "SoloEnEste"));
    CHECK_ESTADO(tv_dibujo_set_capa_actual(otro, "SoloEnOtro"), TV_ERROR_NO_ENCONTRADO);
    CHECK(contiene(tv_mensaje(otro), "SoloEnOtro"));
    CHECK(strcmp(tv_mensaje(d), mensaje) == 0);
    CHECK(contiene(tv_ultimo_mensaje(), "SoloEnOtro"));

    OK(tv_dibujo_libera(otro));
    OK(tv_dibujo_libera(d));
}

/* ---------------------------------------------------------------------------------------- */
/* lengths                                                                                  */

static void pruebaLongitudes(void)
{
    tv_dibujo* d = NULL;
    const double seis[18] = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0.5, 0.5, 0, 2, 2, 0};
    const uint32_t colores[2] = {0xFF, 0xFF00};
    int64_t h = -7;
    int64_t hs[4] = {0, 0, 0, 0};
    double xyz[12];
    uint32_t cols[4];
    size_t n = 0;
    int i;

    OK(tv_dibujo_nuevo(NULL, &d));
    /* 3 points, 2 colours; 7 doubles; one vertex; five corners; a polygon of two points. */
    CHECK_ESTADO(tv_dibujo_grupo_puntos(d, seis, 9, colores, 2, &h), TV_ERROR_LONGITUD);
    CHECK_ESTADO(tv_dibujo_grupo_puntos(d, seis, 7, NULL, 0, &h), TV_ERROR_LONGITUD);
    CHECK_ESTADO(tv_dibujo_polilinea(d, seis, 3, 0, &h), TV_ERROR_LONGITUD);
    CHECK_ESTADO(tv_dibujo_polilinea(d, seis, 8, 0, &h), TV_ERROR_LONGITUD);
    CHECK_ESTADO(tv_dibujo_cara(d, seis, 15, &h), TV_ERROR_LONGITUD);
    CHECK(tv_mensaje(d)[0] != '\0');
    CHECK_ESTADO(tv_dibujo_cara(d, seis, 6, &h), TV_ERROR_LONGITUD);
    CHECK_ESTADO(tv_dibujo_poligono(d, seis, 6, &h), TV_ERROR_LONGITUD);
    CHECK_ESTADO(tv_dibujo_plano(d, seis, 6, &h), TV_ERROR_LONGITUD);
    CHECK(h == -7);
    CHECK(numeroEntidades(d) == 0);

    /* An out array too short tells the count it needs, then that capacity is enough. */
    for (i = 0; i < 3; ++i)
    {
        OK(tv_dibujo_punto(d, i, 10 + i, 20 + i, &hs[i]));
    }
    n = 0;
    CHECK_ESTADO(tv_dibujo_entidades(d, hs + 3, 1, &n), TV_ERROR_LONGITUD);
    CHECK(n == 3);
    {
        int64_t todas[3] = {0, 0, 0};
        OK(tv_dibujo_entidades(d, todas, n, &n));
        CHECK(n == 3 && todas[0] == hs[0] && todas[1] == hs[1] && todas[2] == hs[2]);
    }
    OK(tv_dibujo_polilinea(d, seis, 12, 1, &h));
    n = 0;
    CHECK_ESTADO(tv_dibujo_coordenadas(d, h, xyz, 5, &n), TV_ERROR_LONGITUD);
    CHECK(n == 12);
    OK(tv_dibujo_coordenadas(d, h, xyz, n, &n));
    CHECK(n == 12 && memcmp(xyz, seis, 12 * sizeof(double)) == 0);

    OK(tv_dibujo_grupo_puntos(d, seis, 6, colores, 2, &h));
    n = 0;
    CHECK_ESTADO(tv_dibujo_colores(d, h, cols, 1, &n), TV_ERROR_LONGITUD);
    CHECK(n == 2);
    OK(tv_dibujo_colores(d, h, cols, 2, &n));
    CHECK(n == 2 && cols[0] == 0xFF && cols[1] == 0xFF00);

    OK(tv_dibujo_selecciona(d, hs[0]));
    OK(tv_dibujo_selecciona(d, hs[1]));
    n = 0;
    CHECK_ESTADO(tv_dibujo_seleccionadas(d, hs + 3, 1, &n), TV_ERROR_LONGITUD);
    CHECK(n == 2);
    OK(tv_dibujo_libera(d));
}

/* ---------------------------------------------------------------------------------------- */
/* entities that are not there, names that are not there                                   */

static void pruebaDesconocidos(void)
{
    tv_dibujo* d = NULL;
    const double a[3] = {0, 0, 0};
    const double b[3] = {3, 4, 0};
    const char* s = NULL;
    int64_t linea = 0, punto = 0;
    double mn[3], mx[3];
    double longitud = -1;
    double area = 0;
    int32_t v = 0, c = 0;
    size_t n = 0;
    double xyz[3];

    OK(tv_dibujo_nuevo(NULL, &d));
    CHECK_ESTADO(tv_dibujo_extension(d, 0, mn, mx), TV_ERROR_NO_ENCONTRADO);
    CHECK_ESTADO(tv_dibujo_tipo(d, 12345, &s), TV_ERROR_ENTIDAD);
    CHECK(s == NULL);
    CHECK(contiene(tv_mensaje(d), "12345"));
    CHECK_ESTADO(tv_dibujo_coordenadas(d, 12345, xyz, 3, &n), TV_ERROR_ENTIDAD);
    CHECK_ESTADO(tv_dibujo_borra(d, 12345), TV_ERROR_ENTIDAD);
    CHECK_ESTADO(tv_dibujo_selecciona(d, 12345), TV_ERROR_ENTIDAD);
    CHECK_ESTADO(tv_dibujo_numero_categorias(d, 12345, &c), TV_ERROR_ENTIDAD);

    OK(tv_dibujo_linea(d, a, b, &linea));
    OK(tv_dibujo_punto(d, 1, 1, 1, &punto));
    /* A handle of the wrong kind for the question. */
    CHECK_ESTADO(tv_dibujo_datos_punto_control(d, linea, &s, &s, xyz), TV_ERROR_ENTIDAD);
    {
        uint32_t cols[2];
        CHECK_ESTADO(tv_dibujo_colores(d, linea, cols, 2, &n), TV_ERROR_ENTIDAD);
    }
    CHECK_ESTADO(tv_dibujo_superficie(d, linea, &area, &v, &c), TV_ERROR_ENTIDAD);
    CHECK_ESTADO(tv_dibujo_longitud(d, punto, &longitud), TV_ERROR_ENTIDAD);
    CHECK(longitud == -1);

    /* A deleted entity's handle names nothing any more. */
    OK(tv_dibujo_borra(d, punto));
    CHECK_ESTADO(tv_dibujo_tipo(d, punto, &s), TV_ERROR_ENTIDAD);
    CHECK_ESTADO(tv_dibujo_borra(d, punto), TV_ERROR_ENTIDAD);
    CHECK(numeroEntidades(d) == 1);

    {
        int32_t rgb[3];
        int vis = 0, bloq = 0;
        CHECK_ESTADO(tv_dibujo_datos_capa(d, "Inexistente", rgb, &vis, &bloq),
                     TV_ERROR_NO_ENCONTRADO);
        CHECK(contiene(tv_mensaje(d), "Inexistente"));
    }
    CHECK_ESTADO(tv_dibujo_set_capa_actual(d, "Inexistente"), TV_ERROR_NO_ENCONTRADO);
    CHECK_ESTADO(tv_dibujo_color_capa(d, "Inexistente", 1, 2, 3), TV_ERROR_NO_ENCONTRADO);
    CHECK_ESTADO(tv_dibujo_borra_capa(d, "Inexistente"), TV_ERROR_NO_ENCONTRADO);
    CHECK_ESTADO(tv_dibujo_renombra_capa(d, "Inexistente", "Otra"), TV_ERROR_NO_ENCONTRADO);
    CHECK_ESTADO(tv_dibujo_activa_vista(d, "Alzado"), TV_ERROR_NO_ENCONTRADO);
    CHECK(contiene(tv_mensaje(d), "Alzado"));
    CHECK_ESTADO(tv_dibujo_borra_vista(d, "Alzado"), TV_ERROR_NO_ENCONTRADO);
    CHECK_ESTADO(tv_dibujo_borra_material(d, 4321), TV_ERROR_NO_ENCONTRADO);
    CHECK_ESTADO(tv_dibujo_variable(d, "NoDefinida", &s), TV_ERROR_NO_ENCONTRADO);
    CHECK(contiene(tv_mensaje(d), "NoDefinida"));
    CHECK_ESTADO(tv_dibujo_borra_variable(d, "NoDefinida"), TV_ERROR_NO_ENCONTRADO);
    OK(tv_dibujo_libera(d));
}

/* ---------------------------------------------------------------------------------------- */
/* layers, materials, variables, views                                                       */

static void pruebaCapas(void)
{
    tv_dibujo* d = NULL;
    const char* s = NULL;
    int32_t n = 0;
    int32_t rgb[3] = {-1, -1, -1};
    int visible = -1, bloqueada = -1;
    int64_t h = 0;

    OK(tv_dibujo_nuevo(NULL, &d));
    OK(tv_dibujo_numero_capas(d, &n));
    CHECK(n == 1);
    OK(tv_dibujo_capa(d, 0, &s));
    CHECK(s != NULL && strcmp(s, "0") == 0);
    s = NULL;
    CHECK_ESTADO(tv_dibujo_capa(d, 1, &s), TV_ERROR_NO_ENCONTRADO);
    CHECK_ESTADO(tv_dibujo_capa(d, -1, &s), TV_ERROR_NO_ENCONTRADO);
    CHECK(s == NULL);
    OK(tv_dibujo_capa_actual(d, &s));
    CHECK(s != NULL && strcmp(s, "0") == 0);

    OK(tv_dibujo_nueva_capa(d, "Muros", 10, 20, 30, 0));
    OK(tv_dibujo_nueva_capa(d, "Cotas", 200, 100, 0, 1));
    CHECK_ESTADO(tv_dibujo_nueva_capa(d, "Muros", 1, 1, 1, 0), TV_ERROR_RECHAZADO);
    CHECK(contiene(tv_mensaje(d), "Muros"));
    OK(tv_dibujo_numero_capas(d, &n));
    CHECK(n == 3);
    OK(tv_dibujo_capa(d, 1, &s));
    CHECK(s != NULL && strcmp(s, "Muros") == 0);
    OK(tv_dibujo_capa_actual(d, &s));
    CHECK(s != NULL && strcmp(s, "Cotas") == 0);
    OK(tv_dibujo_set_capa_actual(d, "Muros"));
    OK(tv_dibujo_capa_actual(d, &s));
    CHECK(s != NULL && strcmp(s, "Muros") == 0);

    OK(tv_dibujo_datos_capa(d, "Muros", rgb, &visible, &bloqueada));
    CHECK(rgb[0] == 10 && rgb[1] == 20 && rgb[2] == 30 && visible == 1 && bloqueada == 0);
    OK(tv_dibujo_color_capa(d, "Muros", 255, 0, 128));
    OK(tv_dibujo_visibilidad_capa(d, "Cotas", 0));
    OK(tv_dibujo_bloquea_capa(d, "Cotas", 1));
    OK(tv_dibujo_datos_capa(d, "Muros", rgb, &visible, &bloqueada));
    CHECK(rgb[0] == 255 && rgb[1] == 0 && rgb[2] == 128);
    OK(tv_dibujo_datos_capa(d, "Cotas", rgb, &visible, &bloqueada));
    CHECK(visible == 0 && bloqueada == 1);
    OK(tv_dibujo_bloquea_capa(d, "Cotas", 0));
    OK(tv_dibujo_visibilidad_capa(d, "Cotas", 1));
    CHECK_ESTADO(tv_dibujo_color_capa(d, "Muros", 0, -1, 0), TV_ERROR_ARGUMENTO);

    /* A new entity goes to the current layer. */
    OK(tv_dibujo_punto(d, 1, 2, 3, &h));
    OK(tv_dibujo_capa_entidad(d, h, &s));
    CHECK(s != NULL && strcmp(s, "Muros") == 0);

    OK(tv_dibujo_renombra_capa(d, "Cotas", "Rotulos"));
    CHECK_ESTADO(tv_dibujo_renombra_capa(d, "Rotulos", "Muros"), TV_ERROR_RECHAZADO);
    CHECK_ESTADO(tv_dibujo_datos_capa(d, "Cotas", rgb, &visible, &bloqueada),
                 TV_ERROR_NO_ENCONTRADO);
    OK(tv_dibujo_datos_capa(d, "Rotulos", rgb, &visible, &bloqueada));
    CHECK(rgb[0] == 200 && rgb[1] == 100 && rgb[2] == 0);

    /* Layer 0, the current layer and a layer with entities stay; an empty one goes. */
    CHECK_ESTADO(tv_dibujo_borra_capa(d, "0"), TV_ERROR_RECHAZADO);
    CHECK(tv_mensaje(d)[0] != '\0');
    CHECK_ESTADO(tv_dibujo_borra_capa(d, "Muros"), TV_ERROR_RECHAZADO);
    OK(tv_dibujo_set_capa_actual(d, "0"));
    CHECK_ESTADO(tv_dibujo_borra_capa(d, "Muros"), TV_ERROR_RECHAZADO);
    CHECK(numeroEntidades(d) == 1);
    OK(tv_dibujo_borra_capa(d, "Rotulos"));
    OK(tv_dibujo_numero_capas(d, &n));
    CHECK(n == 2);

    /* Emptying the drawing leaves only layer 0 and no entity. */
    OK(tv_dibujo_vacia(d));
    CHECK(numeroEntidades(d) == 0);
    OK(tv_dibujo_numero_capas(d, &n));
    CHECK(n == 1);
    OK(tv_dibujo_libera(d));
}

static void pruebaMaterialesVariablesVistas(void)
{
    tv_dibujo* d = NULL;
    const char* s = NULL;
    int32_t n0 = 0, n = 0, id = -1, idLeido = -1, externo = -1;
    uint32_t color = 0;
    double brillo = -1;

    OK(tv_dibujo_nuevo(NULL, &d));
    OK(tv_dibujo_numero_materiales(d, &n0));
    CHECK_ESTADO(tv_dibujo_material(d, n0, NULL, NULL, NULL, NULL, NULL), TV_ERROR_NO_ENCONTRADO);
    OK(tv_dibujo_nuevo_material(d, 77, 0xFF102030u, 0.5, "ladrillo.png", &id));
    OK(tv_dibujo_nuevo_material(d, 78, 0x80FFFFFFu, 0.25, NULL, NULL));
    OK(tv_dibujo_numero_materiales(d, &n));
    CHECK(n == n0 + 2);
    OK(tv_dibujo_material(d, n - 2, &idLeido, &externo, &color, &brillo, &s));
    CHECK(idLeido == id && externo == 77 && color == 0xFF102030u && brillo == 0.5);
    CHECK(s != NULL && strcmp(s, "ladrillo.png") == 0);
    OK(tv_dibujo_material(d, n - 1, NULL, &externo, NULL, NULL, &s));
    CHECK(externo == 78 && s != NULL && strcmp(s, "") == 0);
    OK(tv_dibujo_borra_material(d, id));
    CHECK_ESTADO(tv_dibujo_borra_material(d, id), TV_ERROR_NO_ENCONTRADO);
    OK(tv_dibujo_numero_materiales(d, &n));
    CHECK(n == n0 + 1);

    /* Every kind reads back as the documented text. */
    OK(tv_dibujo_set_variable_texto(d, "Proyecto", "Parcela 12, término de Ávila"));
    OK(tv_dibujo_set_variable_entero(d, "Hoja", -42));
    OK(tv_dibujo_set_variable_real(d, "Escala", 0.1));
    OK(tv_dibujo_set_variable_punto(d, "Origen", 431200.5, -4581000.25, 612));
    OK(tv_dibujo_variable(d, "Proyecto", &s));
    CHECK(s != NULL && strcmp(s, "Parcela 12, término de Ávila") == 0);
    OK(tv_dibujo_variable(d, "Hoja", &s));
    CHECK(s != NULL && strcmp(s, "-42") == 0);
    OK(tv_dibujo_variable(d, "Escala", &s));
    CHECK(s != NULL && strcmp(s, "0.1") == 0);
    OK(tv_dibujo_variable(d, "Origen", &s));
    CHECK(s != NULL && strcmp(s, "431200.5,-4581000.25,612") == 0);
    /* A variable set again takes the new kind and value. */
    OK(tv_dibujo_set_variable_texto(d, "Hoja", "siete"));
    OK(tv_dibujo_variable(d, "Hoja", &s));
    CHECK(s != NULL && strcmp(s, "siete") == 0);
    OK(tv_dibujo_borra_variable(d, "Hoja"));
    CHECK_ESTADO(tv_dibujo_variable(d, "Hoja", &s), TV_ERROR_NO_ENCONTRADO);

    OK(tv_dibujo_numero_vistas(d, &n));
    CHECK(n == 0);
    CHECK_ESTADO(tv_dibujo_vista(d, 0, &s), TV_ERROR_NO_ENCONTRADO);
    OK(tv_dibujo_guarda_vista(d, "Planta"));
    OK(tv_dibujo_guarda_vista(d, "Detalle"));
    OK(tv_dibujo_guarda_vista(d, "Planta"));
    OK(tv_dibujo_numero_vistas(d, &n));
    CHECK(n == 2);
    OK(tv_dibujo_vista(d, 0, &s));
    CHECK(s != NULL && (strcmp(s, "Planta") == 0 || strcmp(s, "Detalle") == 0));
    OK(tv_dibujo_activa_vista(d, "Detalle"));
    OK(tv_dibujo_borra_vista(d, "Detalle"));
    OK(tv_dibujo_numero_vistas(d, &n));
    CHECK(n == 1);
    OK(tv_dibujo_vista(d, 0, &s));
    CHECK(s != NULL && strcmp(s, "Planta") == 0);
    OK(tv_dibujo_libera(d));
}

/* ---------------------------------------------------------------------------------------- */
/* files that can't be read or written                                                       */

static void pruebaFicheros(void)
{
    tv_dibujo* d = NULL;
    char bueno[1200], falta[1200], basura[1200], sinCarpeta[1200];
    char *antes = NULL, *despues = NULL;
    size_t nAntes = 0, nDespues = 0;
    int64_t danadas = -1;
    int cambios = -1;
    unsigned char ruido[4096];
    size_t i;

    ruta(bueno, sizeof bueno, "bueno.cad");
    ruta(falta, sizeof falta, "no_existe.cad");
    ruta(basura, sizeof basura, "basura.cad");
    ruta(sinCarpeta, sizeof sinCarpeta, "carpeta_que_falta/dentro.cad");
    remove(falta);
    for (i = 0; i < sizeof ruido; ++i)
    {
        ruido[i] = (unsigned char)(aleatorio() >> 24);
    }
    CHECK(escribeFichero(basura, ruido, sizeof ruido));

    OK(tv_dibujo_nuevo(NULL, &d));
    OK(tv_dibujo_hay_cambios(d, &cambios));
    CHECK(cambios == 0);
    OK(tv_dibujo_punto(d, 1, 2, 3, NULL));
    OK(tv_dibujo_punto(d, 4, 5, 6, NULL));
    OK(tv_dibujo_hay_cambios(d, &cambios));
    CHECK(cambios == 1);
    OK(tv_dibujo_guarda(d, bueno));
    OK(tv_dibujo_hay_cambios(d, &cambios));
    CHECK(cambios == 0);

    CHECK_ESTADO(tv_dibujo_abre(d, falta, &danadas), TV_ERROR_FICHERO);
    CHECK(contiene(tv_mensaje(d), "no_existe.cad"));
    CHECK(danadas == -1);
    CHECK(numeroEntidades(d) == 2);
    CHECK_ESTADO(tv_dibujo_abre(d, basura, NULL), TV_ERROR_FICHERO);
    CHECK(tv_mensaje(d)[0] != '\0');
    CHECK(numeroEntidades(d) == 2);

    /* A failed save leaves the good file byte for byte. */
    antes = leeFichero(bueno, &nAntes);
    CHECK(antes != NULL && nAntes > 0);
    OK(tv_dibujo_punto(d, 7, 8, 9, NULL));
    CHECK_ESTADO(tv_dibujo_guarda(d, sinCarpeta), TV_ERROR_FICHERO);
    CHECK(tv_mensaje(d)[0] != '\0');
    CHECK_ESTADO(tv_dibujo_exporta_dxf(d, sinCarpeta), TV_ERROR_FICHERO);
    CHECK(tv_mensaje(d)[0] != '\0');
    /* A save onto a folder's own name fails too. */
    CHECK_ESTADO(tv_dibujo_guarda(d, carpeta), TV_ERROR_FICHERO);
    despues = leeFichero(bueno, &nDespues);
    CHECK(despues != NULL && nDespues == nAntes && memcmp(antes, despues, nAntes) == 0);
    OK(tv_dibujo_hay_cambios(d, &cambios));
    CHECK(cambios == 1);

    /* Reading the good file replaces the drawing. */
    OK(tv_dibujo_abre(d, bueno, &danadas));
    CHECK(danadas == 0);
    CHECK(numeroEntidades(d) == 2);
    OK(tv_dibujo_hay_cambios(d, &cambios));
    CHECK(cambios == 0);

    free(antes);
    free(despues);
    OK(tv_dibujo_libera(d));
}

/* ---------------------------------------------------------------------------------------- */
/* scripts                                                                                  */

static void pruebaGuion(void)
{
    tv_dibujo* d = NULL;
    const char* t = NULL;

    OK(tv_dibujo_nuevo(NULL, &d));
    OK(tv_dibujo_ejecuta(d, "# una linea\nlinea\n0,0\n10,0\n\nlista\n", &t));
    CHECK(contiene(t, "> linea\n"));
    CHECK(contiene(t, "Seleccione coordenada inicial de la linea:"));
    CHECK(contiene(t, "> 10,0\n"));
    CHECK(contiene(t, "1 línea creada"));
    CHECK(contiene(t, "Entidades (1):"));
    CHECK(contiene(t, "Linea (0,0,0)-(10,0,0)"));
    CHECK(numeroEntidades(d) == 1);

    /* A command still waiting at the end is cancelled: nothing more is drawn. */
    OK(tv_dibujo_ejecuta(d, "linea\n5,5\n", NULL));
    CHECK(numeroEntidades(d) == 1);

    /* An unknown order stops the script there, the transcript still given. */
    t = NULL;
    CHECK_ESTADO(tv_dibujo_ejecuta(d, "punto\n1,1\n\nnoexiste 3\nlista\n", &t),
                 TV_ERROR_GUION);
    CHECK(contiene(t, "Orden desconocida: noexiste"));
    CHECK(!contiene(t, "Entidades ("));
    CHECK(tv_mensaje(d)[0] != '\0');
    CHECK(numeroEntidades(d) == 2);

    /* An undo from the script is one undo of the drawing's. */
    OK(tv_dibujo_ejecuta(d, "deshacer\n", &t));
    CHECK(contiene(t, "Deshecho"));
    CHECK(numeroEntidades(d) == 1);

    /* `sal` ends the script at once, unsaved changes or not; the drawing stays. */
    OK(tv_dibujo_ejecuta(d, "punto\n2,2\n\nsal\npunto\n3,3\n\n", &t));
    CHECK(!contiene(t, "sal otra vez"));
    CHECK(!contiene(t, "> 3,3"));
    CHECK(numeroEntidades(d) == 2);
    OK(tv_dibujo_ejecuta(d, "lista\n", &t));
    CHECK(contiene(t, "Entidades (2):"));

    /* A plane whose first point is repeated still fits; a sphere past the kernel's limits is
     * refused with them. */
    {
        const double repetido[12] = {0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0};
        const double centro[3] = {0, 0, 0};
        const double giros[3] = {0, 0, 0};
        int64_t h = 0;
        OK(tv_dibujo_plano(d, repetido, 12, &h));
        CHECK_ESTADO(tv_dibujo_foto360(d, centro, 1, 256, 256, giros, "f.jpg", &h),
                     TV_ERROR_ARGUMENTO);
        CHECK(contiene(tv_mensaje(d), "1024 meridianos"));
    }
    OK(tv_dibujo_libera(d));
}

/* ---------------------------------------------------------------------------------------- */
/* undo, redo, selection, property sheets                                                    */

static void pruebaDeshacer(void)
{
    tv_dibujo* d = NULL;
    const char* s = NULL;
    int deshacer = -1, rehacer = -1;
    int64_t h = 0;
    int64_t todas[2];
    size_t n = 0;
    double xyz[3];

    OK(tv_dibujo_nuevo(NULL, &d));
    OK(tv_dibujo_puede_deshacer(d, &deshacer, &rehacer));
    CHECK(deshacer == 0 && rehacer == 0);
    CHECK_ESTADO(tv_dibujo_deshacer(d), TV_ERROR_RECHAZADO);
    CHECK(tv_mensaje(d)[0] != '\0');
    CHECK_ESTADO(tv_dibujo_rehacer(d), TV_ERROR_RECHAZADO);

    OK(tv_dibujo_punto(d, 431200.125, 4581000.5, 612.75, &h));
    OK(tv_dibujo_puede_deshacer(d, &deshacer, &rehacer));
    CHECK(deshacer == 1 && rehacer == 0);
    OK(tv_dibujo_deshacer(d));
    CHECK(numeroEntidades(d) == 0);
    CHECK_ESTADO(tv_dibujo_tipo(d, h, &s), TV_ERROR_ENTIDAD);
    OK(tv_dibujo_puede_deshacer(d, &deshacer, &rehacer));
    CHECK(deshacer == 0 && rehacer == 1);
    OK(tv_dibujo_rehacer(d));
    OK(tv_dibujo_entidades(d, todas, 2, &n));
    CHECK(n == 1);
    OK(tv_dibujo_coordenadas(d, todas[0], xyz, 3, &n));
    CHECK(n == 3 && xyz[0] == 431200.125 && xyz[1] == 4581000.5 && xyz[2] == 612.75);
    CHECK_ESTADO(tv_dibujo_rehacer(d), TV_ERROR_RECHAZADO);

    /* A deletion is undone with the entity as it was. */
    OK(tv_dibujo_borra(d, todas[0]));
    CHECK(numeroEntidades(d) == 0);
    OK(tv_dibujo_deshacer(d));
    OK(tv_dibujo_entidades(d, todas, 2, &n));
    CHECK(n == 1);
    OK(tv_dibujo_coordenadas(d, todas[0], xyz, 3, &n));
    CHECK(n == 3 && xyz[0] == 431200.125 && xyz[1] == 4581000.5 && xyz[2] == 612.75);
    OK(tv_dibujo_libera(d));
}

static int tieneHandle(const int64_t* hs, size_t n, int64_t h)
{
    size_t i;
    for (i = 0; i < n; ++i)
    {
        if (hs[i] == h)
        {
            return 1;
        }
    }
    return 0;
}

static void pruebaSeleccion(void)
{
    tv_dibujo* d = NULL;
    int64_t a = 0, b = 0, c = 0;
    int64_t sel[4];
    size_t n = 99;

    OK(tv_dibujo_nuevo(NULL, &d));
    OK(tv_dibujo_punto(d, 1, 1, 0, &a));
    OK(tv_dibujo_punto(d, 2, 2, 0, &b));
    OK(tv_dibujo_punto(d, 3, 3, 0, &c));
    OK(tv_dibujo_seleccionadas(d, sel, 4, &n));
    CHECK(n == 0);
    OK(tv_dibujo_selecciona(d, a));
    OK(tv_dibujo_selecciona(d, c));
    OK(tv_dibujo_seleccionadas(d, sel, 4, &n));
    CHECK(n == 2 && tieneHandle(sel, n, a) && tieneHandle(sel, n, c));
    OK(tv_dibujo_deselecciona(d, a));
    OK(tv_dibujo_seleccionadas(d, sel, 4, &n));
    CHECK(n == 1 && sel[0] == c);
    CHECK_ESTADO(tv_dibujo_deselecciona(d, 12345), TV_ERROR_ENTIDAD);
    OK(tv_dibujo_selecciona(d, b));
    OK(tv_dibujo_deselecciona(d, 0));
    OK(tv_dibujo_seleccionadas(d, sel, 4, &n));
    CHECK(n == 0);
    OK(tv_dibujo_libera(d));
}

static void pruebaPropiedades(void)
{
    tv_dibujo* d = NULL;
    const double a[3] = {1, 2, 3};
    const double b[3] = {4, 6, 3};
    int64_t h = 0;
    int32_t categorias = 0, filas = 0, tipo = -1, fila;
    int soloLectura = -1;
    const char* nombre = NULL;
    const char* valor = NULL;
    const char* s = NULL;
    double xyz[6];
    size_t n = 0;

    OK(tv_dibujo_nuevo(NULL, &d));
    OK(tv_dibujo_nueva_capa(d, "Ejes", 0, 0, 255, 0));
    OK(tv_dibujo_linea(d, a, b, &h));
    OK(tv_dibujo_numero_categorias(d, h, &categorias));
    CHECK(categorias >= 2);
    OK(tv_dibujo_categoria(d, h, 0, &s));
    CHECK(s != NULL && s[0] != '\0');
    OK(tv_dibujo_numero_propiedades(d, h, 0, &filas));
    CHECK(filas >= 2);
    OK(tv_dibujo_propiedad(d, h, 0, 0, &nombre, &valor, &tipo, &soloLectura));
    CHECK(nombre != NULL && nombre[0] != '\0' && valor != NULL);
    CHECK(tipo >= 0 && tipo <= 13 && (soloLectura == 0 || soloLectura == 1));
    /* An index past the end names nothing, as a missing name does. */
    CHECK_ESTADO(tv_dibujo_propiedad(d, h, 0, filas, &nombre, NULL, NULL, NULL),
                 TV_ERROR_NO_ENCONTRADO);
    CHECK_ESTADO(tv_dibujo_categoria(d, h, categorias, &s), TV_ERROR_NO_ENCONTRADO);
    CHECK_ESTADO(tv_dibujo_categoria(d, h, -1, &s), TV_ERROR_NO_ENCONTRADO);

    /* The layer row moves the line to another layer. */
    fila = buscaPropiedad(d, h, 0, "Capa");
    CHECK(fila >= 0);
    if (fila >= 0)
    {
        OK(tv_dibujo_propiedad(d, h, 0, fila, NULL, &valor, NULL, NULL));
        CHECK(valor != NULL && strcmp(valor, "0") == 0);
        OK(tv_dibujo_set_propiedad(d, h, 0, fila, "Ejes"));
        OK(tv_dibujo_propiedad(d, h, 0, fila, NULL, &valor, NULL, NULL));
        CHECK(valor != NULL && strcmp(valor, "Ejes") == 0);
        OK(tv_dibujo_capa_entidad(d, h, &s));
        CHECK(s != NULL && strcmp(s, "Ejes") == 0);
    }

    /* The end point, typed as a user types it, moves the line's end. */
    fila = buscaPropiedad(d, h, 1, "Fin");
    CHECK(fila >= 0);
    if (fila >= 0)
    {
        OK(tv_dibujo_propiedad(d, h, 1, fila, NULL, &valor, &tipo, &soloLectura));
        CHECK(tipo == 9 && soloLectura == 0);
        OK(tv_dibujo_set_propiedad(d, h, 1, fila, "10.5,-20.25,30"));
        OK(tv_dibujo_coordenadas(d, h, xyz, 6, &n));
        CHECK(n == 6 && xyz[0] == 1 && xyz[1] == 2 && xyz[2] == 3);
        CHECK(xyz[3] == 10.5 && xyz[4] == -20.25 && xyz[5] == 30);
        OK(tv_dibujo_propiedad(d, h, 1, fila, NULL, &valor, NULL, NULL));
        CHECK(contiene(valor, "10.5") && contiene(valor, "-20.25") && contiene(valor, "30"));
    }
    /* The length is derived and read-only. */
    fila = buscaPropiedad(d, h, 1, "Longitud");
    CHECK(fila >= 0);
    if (fila >= 0)
    {
        OK(tv_dibujo_propiedad(d, h, 1, fila, NULL, NULL, NULL, &soloLectura));
        CHECK(soloLectura == 1);
        CHECK_ESTADO(tv_dibujo_set_propiedad(d, h, 1, fila, "5"), TV_ERROR_RECHAZADO);
    }

    /* The editor's own sheet answers too, with nothing selected. */
    OK(tv_dibujo_numero_categorias(d, 0, &categorias));
    CHECK(categorias >= 1);
    nombre = NULL;
    OK(tv_dibujo_propiedad(d, 0, 0, 0, &nombre, NULL, NULL, NULL));
    CHECK(nombre != NULL && nombre[0] != '\0');
    OK(tv_dibujo_libera(d));
}

/* ---------------------------------------------------------------------------------------- */
/* imports, with progress and re-entry                                                      */

struct avance
{
    tv_dibujo* d;
    tv_dibujo* otro;
    double fracciones[256];
    int n;
    int decrece;
    int reentradas;
    tv_estado interior;
    tv_estado interiorOtro;
};

static void registraAvance(double f, void* usuario)
{
    struct avance* a = usuario;
    if (a->n > 0 && f < a->fracciones[a->n - 1 < 255 ? a->n - 1 : 255])
    {
        a->decrece = 1;
    }
    a->fracciones[a->n < 255 ? a->n : 255] = f;
    ++a->n;
}

/* Calls back into the drawing being read (refused) and into another one (served). */
static void reentraAvance(double f, void* usuario)
{
    struct avance* a = usuario;
    int32_t n = 0;
    registraAvance(f, usuario);
    if (a->reentradas++ == 0)
    {
        a->interior = tv_dibujo_numero_capas(a->d, &n);
        a->interiorOtro = tv_dibujo_numero_capas(a->otro, &n);
    }
}

static const char kDxf[] = "  0\nSECTION\n  2\nHEADER\n  9\n$ACADVER\n  1\nAC1009\n  0\nENDSEC\n"
                           "  0\nSECTION\n  2\nENTITIES\n"
                           "  0\nLINE\n  8\nTopografia\n 10\n431200.5\n 20\n4581000.25\n 30\n"
                           "612.0\n 11\n431210.5\n 21\n4581005.25\n 31\n613.5\n"
                           "  0\nPOINT\n  8\nTopografia\n 10\n431205.0\n 20\n4581002.0\n 30\n"
                           "612.75\n"
                           "  0\nENDSEC\n  0\nEOF\n";

static const char kObj[] = "# one triangle\nv 0 0 0\nv 10 0 0\nv 0 10 2\nf 1 2 3\n";

static void pruebaImporta(void)
{
    tv_dibujo* d = NULL;
    tv_dibujo* otro = NULL;
    char dxf[1200], obj[1200], txt[1200], falta[1200];
    const char* informe = NULL;
    struct avance a;
    int32_t rgb[3];
    int visible = 0, bloqueada = 0;
    int i;

    ruta(dxf, sizeof dxf, "plano.DXF");
    ruta(obj, sizeof obj, "triangulo.obj");
    ruta(txt, sizeof txt, "nota.txt");
    ruta(falta, sizeof falta, "falta.obj");
    remove(falta);
    CHECK(escribeFichero(dxf, kDxf, sizeof kDxf - 1));
    CHECK(escribeFichero(obj, kObj, sizeof kObj - 1));
    CHECK(escribeFichero(txt, "hola\n", 5));

    OK(tv_dibujo_nuevo(NULL, &d));
    OK(tv_dibujo_nuevo(NULL, &otro));
    OK(tv_dibujo_punto(d, 0, 0, 0, NULL));

    memset(&a, 0, sizeof a);
    OK(tv_dibujo_importa(d, dxf, registraAvance, &a, &informe));
    CHECK(contiene(informe, "Lineas: 1"));
    CHECK(contiene(informe, "Puntos: 1"));
    CHECK(contiene(informe, "Topografia"));
    CHECK(numeroEntidades(d) == 3);
    CHECK(a.n >= 1 && !a.decrece && a.fracciones[a.n - 1 < 255 ? a.n - 1 : 255] == 1.0);
    OK(tv_dibujo_datos_capa(d, "Topografia", rgb, &visible, &bloqueada));

    /* The OBJ import, its progress calling back into both drawings. */
    memset(&a, 0, sizeof a);
    a.d = d;
    a.otro = otro;
    a.interior = TV_OK;
    a.interiorOtro = TV_ERROR_INTERNO;
    informe = NULL;
    OK(tv_dibujo_importa(d, obj, reentraAvance, &a, &informe));
    CHECK(a.reentradas >= 1);
    CHECK(a.interior == TV_ERROR_OCUPADO);
    CHECK(a.interiorOtro == TV_OK);
    /* The refused inner call told only the thread: the import's own message is clean. */
    CHECK(strcmp(tv_mensaje(d), "") == 0);
    CHECK(contiene(informe, "Vertices: 3"));
    CHECK(contiene(informe, "1 triangulos"));
    CHECK(numeroEntidades(d) == 4);
    CHECK(a.n >= 1 && !a.decrece && a.fracciones[a.n - 1 < 255 ? a.n - 1 : 255] == 1.0);
    for (i = 0; i < a.n && i < 256; ++i)
    {
        CHECK(a.fracciones[i] >= 0.0 && a.fracciones[i] <= 1.0);
    }

    /* No progress and no report asked for. */
    OK(tv_dibujo_importa(otro, obj, NULL, NULL, NULL));
    CHECK(numeroEntidades(otro) == 1);

    CHECK_ESTADO(tv_dibujo_importa(d, txt, NULL, NULL, &informe), TV_ERROR_ARGUMENTO);
    CHECK(contiene(tv_mensaje(d), "nota.txt"));
    CHECK_ESTADO(tv_dibujo_importa(d, falta, NULL, NULL, NULL), TV_ERROR_FICHERO);
    CHECK(tv_mensaje(d)[0] != '\0');
    CHECK(numeroEntidades(d) == 4);

    OK(tv_dibujo_libera(otro));
    OK(tv_dibujo_libera(d));
}

/* ---------------------------------------------------------------------------------------- */
/* displays                                                                                 */

static void pruebaPantallas(void)
{
    tv_pantalla* p = NULL;
    tv_pantalla* sinUsar = (tv_pantalla*)(void*)&p;
    tv_dibujo* d = NULL;
    const double pos[3] = {100, 100, 500};
    const double obj[3] = {100, 100, 0};
    const double arriba[3] = {0, 1, 0};
    const double malo[3] = {NAN, 0, 0};
    const double a[3] = {0, 0, 0};
    const double b[3] = {200, 150, 0};
    int32_t ancho = 0, alto = 0;
    size_t primitivas = 0;
    double mn[3], mx[3];

    p = sinUsar;
    CHECK_ESTADO(tv_pantalla_nueva(0, 480, &p), TV_ERROR_ARGUMENTO);
    CHECK_ESTADO(tv_pantalla_nueva(640, 16385, &p), TV_ERROR_ARGUMENTO);
    CHECK_ESTADO(tv_pantalla_nueva(-5, -5, &p), TV_ERROR_ARGUMENTO);
    CHECK(tv_ultimo_mensaje()[0] != '\0');
    CHECK(p == sinUsar);

    OK(tv_pantalla_nueva(640, 480, &p));
    OK(tv_pantalla_camara(p, pos, obj, arriba));
    CHECK_ESTADO(tv_pantalla_camara(p, malo, obj, arriba), TV_ERROR_ARGUMENTO);
    CHECK_ESTADO(tv_pantalla_camara(p, pos, NULL, arriba), TV_ERROR_ARGUMENTO);
    OK(tv_pantalla_estado(p, &ancho, &alto, NULL));
    CHECK(ancho == 640 && alto == 480);

    OK(tv_dibujo_nuevo(p, &d));
    OK(tv_dibujo_linea(d, a, b, NULL));
    OK(tv_dibujo_punto(d, 50, 50, 0, NULL));
    OK(tv_dibujo_zoom_extension(d));
    OK(tv_pantalla_estado(p, &ancho, &alto, &primitivas));
    CHECK(ancho == 640 && alto == 480 && primitivas >= 2);
    OK(tv_dibujo_extension(d, 0, mn, mx));
    CHECK(mn[0] == 0 && mn[1] == 0 && mx[0] == 200 && mx[1] == 150);

    /* The drawing keeps its display alive after the handle goes. */
    OK(tv_pantalla_libera(p));
    CHECK_ESTADO(tv_pantalla_estado(p, &ancho, &alto, &primitivas), TV_ERROR_MANEJADOR);
    OK(tv_dibujo_punto(d, 60, 60, 0, NULL));
    OK(tv_dibujo_zoom_extension(d));
    OK(tv_dibujo_guarda_vista(d, "Todo"));
    OK(tv_dibujo_activa_vista(d, "Todo"));
    CHECK(numeroEntidades(d) == 3);
    OK(tv_dibujo_libera(d));

    /* A drawing on its own display zooms too. */
    OK(tv_dibujo_nuevo(NULL, &d));
    OK(tv_dibujo_zoom_extension(d));
    OK(tv_dibujo_linea(d, a, b, NULL));
    OK(tv_dibujo_zoom_extension(d));
    OK(tv_dibujo_libera(d));
}

/* ---------------------------------------------------------------------------------------- */
/* a drawing of every kind there, saved, read back, exported                                 */

#define PUNTOS_GRUPO 1000

static void comparaCapa(tv_dibujo* d, const char* nombre, int32_t r, int32_t g, int32_t b,
                        int visible, int bloqueada)
{
    int32_t rgb[3] = {-1, -1, -1};
    int v = -1, l = -1;
    OK(tv_dibujo_datos_capa(d, nombre, rgb, &v, &l));
    CHECK(rgb[0] == r && rgb[1] == g && rgb[2] == b && v == visible && l == bloqueada);
}

static void comparaVariable(tv_dibujo* d, const char* nombre, const char* esperado)
{
    const char* s = NULL;
    OK(tv_dibujo_variable(d, nombre, &s));
    CHECK(s != NULL && strcmp(s, esperado) == 0);
    if (s != NULL && strcmp(s, esperado) != 0)
    {
        fprintf(stderr, "  variable %s: \"%s\", se esperaba \"%s\"\n", nombre, s, esperado);
    }
}

static void pruebaIdaYVuelta(void)
{
    tv_dibujo* d = NULL;
    tv_dibujo* leido = NULL;
    double* xyz = malloc(3 * PUNTOS_GRUPO * sizeof(double));
    uint32_t* colores = malloc(PUNTOS_GRUPO * sizeof(uint32_t));
    double* xyzLeido = malloc(3 * PUNTOS_GRUPO * sizeof(double));
    uint32_t* coloresLeidos = malloc(PUNTOS_GRUPO * sizeof(uint32_t));
    const double polilinea[12] = {431200, 4581000, 600, 431203, 4581000, 600,
                                  431203, 4581004, 600, 431210, 4581004, 601};
    const double poligono[12] = {0, 0, 5, 20, 0, 5, 20, 10, 5, 0, 10, 5};
    const double cara[12] = {0, 0, 0, 10, 0, 0, 10, 10, 1, 0, 10, 1};
    const double plano[15] = {50, 50, 0, 60, 50, 1, 60, 60, 2, 50, 60, 1, 55, 55, 1};
    const double caja[2][3] = {{0, 0, 0}, {2, 3, 4}};
    const double base[3] = {30, 30, 0};
    const double centro[3] = {40, 40, 10};
    const double toma[9] = {431250.5, 4581010.25, 650, 0.01, -0.02, 1.5, 0.035, 6000, 4000};
    const double estacion[3] = {431260, 4581020, 602};
    const double giros[3] = {0.1, 0.2, 0.3};
    const double origen[3] = {431200, 4581000, 600};
    const double ejeX[3] = {2, 0, 0};
    const double ejeY[3] = {0, 3, 0};
    const double ejeZ[3] = {0, 0, 0.5};
    const double la[3] = {431190.125, 4580990.375, 599.5};
    const double lb[3] = {431290.625, 4581090.875, 640.25};
    char fichero[1200], dxf[1200], foto[1200];
    int64_t *hs = NULL, *hsLeido = NULL;
    size_t n = 0, nLeido = 0, k, i;
    int64_t hGrupo = 0, hControl = 0, hPolilinea = 0, hCubo = 0;
    int32_t materiales = 0, vistas = 0, capas = 0, capasLeidas = 0, id = 0;
    int64_t danadas = -1;
    int cambios = -1;
    const char* s = NULL;
    double longitud = 0, area = 0;
    int32_t vertices = 0, caras = 0;
    double mn[3], mx[3], mnLeido[3], mxLeido[3];

    CHECK(xyz != NULL && colores != NULL && xyzLeido != NULL && coloresLeidos != NULL);
    if (xyz == NULL || colores == NULL || xyzLeido == NULL || coloresLeidos == NULL)
    {
        free(xyz);
        free(colores);
        free(xyzLeido);
        free(coloresLeidos);
        return;
    }
    for (k = 0; k < PUNTOS_GRUPO; ++k)
    {
        xyz[3 * k] = 431200.0 + (aleatorio() / 4294967296.0) * 500.0;
        xyz[3 * k + 1] = 4581000.0 + (aleatorio() / 4294967296.0) * 500.0;
        xyz[3 * k + 2] = 600.0 + (aleatorio() / 4294967296.0) * 50.0;
        colores[k] = aleatorio() & 0xFFFFFFu;
    }
    ruta(fichero, sizeof fichero, "ida_y_vuelta.cad");
    ruta(foto, sizeof foto, "estacion_360.jpg");
    if (carpetaDxf != NULL)
    {
        snprintf(dxf, sizeof dxf, "%s/interfaz_c.dxf", carpetaDxf);
    }
    else
    {
        ruta(dxf, sizeof dxf, "interfaz_c.dxf");
    }

    OK(tv_dibujo_nuevo(NULL, &d));
    OK(tv_dibujo_nueva_capa(d, "Edificios", 12, 34, 56, 1));
    OK(tv_dibujo_nueva_capa(d, "Oculta", 250, 251, 252, 0));
    OK(tv_dibujo_nueva_capa(d, "Cerrada", 1, 2, 3, 0));
    OK(tv_dibujo_nuevo_material(d, 501, 0xC0A0B0D0u, 0.75, "teja.jpg", &id));
    OK(tv_dibujo_set_variable_texto(d, "Cliente", "Ayuntamiento"));
    OK(tv_dibujo_set_variable_entero(d, "Huso", 30));
    OK(tv_dibujo_set_variable_real(d, "FactorEscala", 0.9996));
    OK(tv_dibujo_set_variable_punto(d, "Base", 431200.25, 4581000.5, 612.125));

    OK(tv_dibujo_punto(d, 431000.5, 4581000.25, 612.125, NULL));
    OK(tv_dibujo_grupo_puntos(d, xyz, 3 * PUNTOS_GRUPO, colores, PUNTOS_GRUPO, &hGrupo));
    OK(tv_dibujo_punto_control(d, "PC-7", "BASE GPS", 431222.125, 4581011.5, 613.25,
                               &hControl));
    OK(tv_dibujo_texto(d, "Cota 612,5", 431230, 4581030, 612.5, 2.5, 0.5, 5, NULL));
    OK(tv_dibujo_linea(d, la, lb, NULL));
    OK(tv_dibujo_polilinea(d, polilinea, 12, 0, &hPolilinea));
    OK(tv_dibujo_poligono(d, poligono, 12, NULL));
    OK(tv_dibujo_cara(d, cara, 12, NULL));
    OK(tv_dibujo_cara(d, cara, 9, NULL));
    OK(tv_dibujo_plano(d, plano, 15, NULL));
    OK(tv_dibujo_cubo(d, caja[0], caja[1], &hCubo));
    OK(tv_dibujo_cilindro(d, base, 2.5, 8, NULL));
    OK(tv_dibujo_esfera(d, centro, 3, NULL));
    OK(tv_dibujo_toma_camara(d, toma, "IMG_0001", NULL));
    OK(tv_dibujo_foto360(d, estacion, 2, 24, 12, giros, foto, NULL));
    OK(tv_dibujo_sistema_local(d, "Obra", origen, ejeX, ejeY, ejeZ, NULL));
    OK(tv_dibujo_set_capa_actual(d, "0"));
    OK(tv_dibujo_visibilidad_capa(d, "Oculta", 0));
    OK(tv_dibujo_bloquea_capa(d, "Cerrada", 1));
    OK(tv_dibujo_guarda_vista(d, "General"));
    OK(tv_dibujo_zoom_extension(d));
    OK(tv_dibujo_guarda_vista(d, "Extension"));

    /* Queries on what was made. */
    OK(tv_dibujo_longitud(d, hPolilinea, &longitud));
    CHECK(fabs(longitud - (7.0 + sqrt(50.0))) < 1e-9);
    OK(tv_dibujo_superficie(d, hCubo, &area, &vertices, &caras));
    CHECK(fabs(area - 52.0) < 1e-9 && vertices == 8 && caras >= 6);
    /* The kernel measures a box by its defining point, its first corner. */
    OK(tv_dibujo_extension(d, hCubo, mn, mx));
    CHECK(mn[0] == 0 && mn[1] == 0 && mn[2] == 0 && mx[0] == 0 && mx[1] == 0 && mx[2] == 0);
    OK(tv_dibujo_tipo(d, hGrupo, &s));
    CHECK(s != NULL && strcmp(s, "GrupoPuntos") == 0);
    OK(tv_dibujo_capa_entidad(d, hGrupo, &s));
    CHECK(s != NULL && strcmp(s, "Edificios") == 0);
    OK(tv_dibujo_numero_materiales(d, &materiales));
    OK(tv_dibujo_numero_capas(d, &capas));
    CHECK(capas == 4);

    OK(tv_dibujo_hay_cambios(d, &cambios));
    CHECK(cambios == 1);
    OK(tv_dibujo_guarda(d, fichero));
    OK(tv_dibujo_hay_cambios(d, &cambios));
    CHECK(cambios == 0);

    OK(tv_dibujo_nuevo(NULL, &leido));
    OK(tv_dibujo_abre(leido, fichero, &danadas));
    CHECK(danadas == 0);
    OK(tv_dibujo_hay_cambios(leido, &cambios));
    CHECK(cambios == 0);
    /* A solid's points are those of its mesh, made when it is painted. */
    OK(tv_dibujo_zoom_extension(leido));

    hs = entidades(d, &n);
    hsLeido = entidades(leido, &nLeido);
    CHECK(hs != NULL && hsLeido != NULL);
    CHECK(n == 16 && nLeido == n);
    for (i = 0; hs != NULL && hsLeido != NULL && i < n && i < nLeido; ++i)
    {
        char tipo[128], tipoLeido[128];
        size_t nc = 0, ncLeido = 0;
        double* c;
        double* cLeido;
        OK(tv_dibujo_tipo(d, hs[i], &s));
        copia(tipo, sizeof tipo, s);
        OK(tv_dibujo_tipo(leido, hsLeido[i], &s));
        copia(tipoLeido, sizeof tipoLeido, s);
        CHECK(strcmp(tipo, tipoLeido) == 0);
        c = coordenadas(d, hs[i], &nc);
        cLeido = coordenadas(leido, hsLeido[i], &ncLeido);
        CHECK(c != NULL && cLeido != NULL && nc == ncLeido && nc % 3 == 0);
        if (c != NULL && cLeido != NULL && nc == ncLeido)
        {
            CHECK(memcmp(c, cLeido, nc * sizeof(double)) == 0);
        }
        if (c == NULL || cLeido == NULL || nc != ncLeido)
        {
            fprintf(stderr, "  entidad %u (%s): %u coordenadas, leidas %u\n", (unsigned)i, tipo,
                    (unsigned)nc, (unsigned)ncLeido);
        }
        free(c);
        free(cLeido);
    }
    if (hs != NULL && hsLeido != NULL && n == 16 && nLeido == 16)
    {
        /* The order of creation is the drawing's order. */
        static const char* const kTipos[] = {"Punto",  "GrupoPuntos", "PuntoControl", NULL,
                                              "Linea",  "Polilinea",   NULL,           NULL,
                                              NULL,     NULL,          "Cubo",         "Cilindro",
                                              "Esfera", "TomaCamara",  NULL,           NULL};
        for (i = 0; i < 16; ++i)
        {
            if (kTipos[i] != NULL)
            {
                OK(tv_dibujo_tipo(leido, hsLeido[i], &s));
                CHECK(s != NULL && strcmp(s, kTipos[i]) == 0);
            }
        }
        OK(tv_dibujo_coordenadas(leido, hsLeido[1], xyzLeido, 3 * PUNTOS_GRUPO, &k));
        CHECK(k == 3 * PUNTOS_GRUPO &&
              memcmp(xyz, xyzLeido, 3 * PUNTOS_GRUPO * sizeof(double)) == 0);
        OK(tv_dibujo_colores(leido, hsLeido[1], coloresLeidos, PUNTOS_GRUPO, &k));
        CHECK(k == PUNTOS_GRUPO &&
              memcmp(colores, coloresLeidos, PUNTOS_GRUPO * sizeof(uint32_t)) == 0);
        {
            const char* nombre = NULL;
            const char* codigo = NULL;
            double p[3] = {0, 0, 0};
            char copiaNombre[64];
            OK(tv_dibujo_datos_punto_control(leido, hsLeido[2], &nombre, &codigo, p));
            copia(copiaNombre, sizeof copiaNombre, nombre);
            CHECK(strcmp(copiaNombre, "PC-7") == 0 && codigo != NULL &&
                  strcmp(codigo, "BASE GPS") == 0);
            CHECK(p[0] == 431222.125 && p[1] == 4581011.5 && p[2] == 613.25);
        }
        OK(tv_dibujo_capa_entidad(leido, hsLeido[1], &s));
        CHECK(s != NULL && strcmp(s, "Edificios") == 0);
        OK(tv_dibujo_longitud(leido, hsLeido[5], &longitud));
        CHECK(fabs(longitud - (7.0 + sqrt(50.0))) < 1e-9);
    }
    OK(tv_dibujo_extension(d, 0, mn, mx));
    OK(tv_dibujo_extension(leido, 0, mnLeido, mxLeido));
    CHECK(memcmp(mn, mnLeido, sizeof mn) == 0 && memcmp(mx, mxLeido, sizeof mx) == 0);

    /* Layers, materials, variables and views came too. */
    OK(tv_dibujo_numero_capas(leido, &capasLeidas));
    CHECK(capasLeidas == capas);
    for (i = 0; (int32_t)i < capas && (int32_t)i < capasLeidas; ++i)
    {
        char nombre[128];
        OK(tv_dibujo_capa(d, (int32_t)i, &s));
        copia(nombre, sizeof nombre, s);
        OK(tv_dibujo_capa(leido, (int32_t)i, &s));
        CHECK(s != NULL && strcmp(s, nombre) == 0);
    }
    comparaCapa(leido, "Edificios", 12, 34, 56, 1, 0);
    comparaCapa(leido, "Oculta", 250, 251, 252, 0, 0);
    comparaCapa(leido, "Cerrada", 1, 2, 3, 1, 1);
    {
        int32_t nm = 0, j, externo = 0, idm = 0;
        uint32_t color = 0;
        double brillo = 0;
        int hallado = 0, conFoto = 0;
        OK(tv_dibujo_numero_materiales(leido, &nm));
        CHECK(nm == materiales);
        for (j = 0; j < nm; ++j)
        {
            OK(tv_dibujo_material(leido, j, &idm, &externo, &color, &brillo, &s));
            if (externo == 501)
            {
                hallado = 1;
                CHECK(idm == id && color == 0xC0A0B0D0u && brillo == 0.75);
                CHECK(s != NULL && strcmp(s, "teja.jpg") == 0);
            }
            conFoto += s != NULL && strcmp(s, foto) == 0;
        }
        CHECK(hallado);
        CHECK(conFoto == 1);
    }
    comparaVariable(leido, "Cliente", "Ayuntamiento");
    comparaVariable(leido, "Huso", "30");
    comparaVariable(leido, "FactorEscala", "0.9996");
    comparaVariable(leido, "Base", "431200.25,4581000.5,612.125");
    OK(tv_dibujo_numero_vistas(leido, &vistas));
    CHECK(vistas == 2);
    {
        int general = 0, extension = 0;
        int32_t j;
        for (j = 0; j < vistas; ++j)
        {
            OK(tv_dibujo_vista(leido, j, &s));
            general += s != NULL && strcmp(s, "General") == 0;
            extension += s != NULL && strcmp(s, "Extension") == 0;
        }
        CHECK(general == 1 && extension == 1);
    }
    OK(tv_dibujo_activa_vista(leido, "Extension"));

    /* The DXF the independent audit reads. */
    remove(dxf);
    OK(tv_dibujo_exporta_dxf(leido, dxf));
    {
        size_t nd = 0;
        char* texto = leeFichero(dxf, &nd);
        CHECK(texto != NULL && nd > 0);
        CHECK(contiene(texto, "AC1009"));
        CHECK(contiene(texto, "Edificios"));
        CHECK(nd > 4 && contiene(texto + nd - (nd < 16 ? nd : 16), "EOF"));
        free(texto);
    }

    free(hs);
    free(hsLeido);
    free(xyz);
    free(colores);
    free(xyzLeido);
    free(coloresLeidos);
    OK(tv_dibujo_libera(leido));
    OK(tv_dibujo_libera(d));
}

/* ---------------------------------------------------------------------------------------- */

int main(int argc, char** argv)
{
    if (argc < 2)
    {
        fprintf(stderr, "uso: %s <carpeta de ficheros> [<carpeta del DXF>]\n", argv[0]);
        return 2;
    }
    snprintf(carpeta, sizeof carpeta, "%s", argv[1]);
    if (!creaCarpeta(carpeta))
    {
        fprintf(stderr, "no se puede crear %s\n", carpeta);
        return 2;
    }
    if (argc >= 3)
    {
        carpetaDxf = argv[2];
        if (!creaCarpeta(carpetaDxf))
        {
            fprintf(stderr, "no se puede crear %s\n", carpetaDxf);
            return 2;
        }
    }

    pruebaBiblioteca();
    pruebaManejadores();
    pruebaArgumentos();
    pruebaLongitudes();
    pruebaDesconocidos();
    pruebaCapas();
    pruebaMaterialesVariablesVistas();
    pruebaFicheros();
    pruebaGuion();
    pruebaDeshacer();
    pruebaSeleccion();
    pruebaPropiedades();
    pruebaImporta();
    pruebaPantallas();
    pruebaIdaYVuelta();
    pruebaManejadoresCruzados();

    printf("interfaz C: %d comprobaciones, %d fallos\n", comprobaciones, fallos);
    return fallos != 0 ? 1 : 0;
}
