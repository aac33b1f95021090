// The C interface: entities made, asked about, selected, deleted; undo and redo.
#include <charconv>
#include <climits>
#include <cstring>
#include <vector>

#include "TarveloC.h"
#include "documento/Dibujo.h"
#include "editor/EditorDibujo.h"
#include "entidades/Cilindro.h"
#include "entidades/Entidad.h"
#include "entidades/Esfera.h"
#include "entidades/Firmas.h"
#include "entidades/GrupoPuntos.h"
#include "entidades/Plano.h"

using Fendrix::WrapDibujoCAD;
using tarvelo_c::enDibujo;
using tarvelo_c::falla;

namespace
{

// The handle of what the facade made, or TV_ERROR_RECHAZADO with what the kernel said (an
// insertion vetoed, a coordinate refused).
tv_estado creada(tv_dibujo& d, int64_t handle, int64_t* h, const char* que)
{
    if (handle == 0)
    {
        return falla(&d, TV_ERROR_RECHAZADO,
                     tarvelo_c::loDicho(d, (std::string("el dibujo no admite ") + que).c_str()));
    }
    if (h != nullptr)
    {
        *h = handle;
    }
    return TV_OK;
}

// A list of points: a multiple of three doubles, at least `minimo` points and at most
// `maximo`, all finite. TV_OK, or the failure recorded.
tv_estado puntos(tv_dibujo& d, const double* xyz, size_t nxyz, size_t minimo, size_t maximo,
                 const char* que)
{
    if (nxyz % 3 != 0 || nxyz / 3 < minimo || nxyz / 3 > maximo)
    {
        std::string cuantos = maximo == minimo ? std::to_string(minimo)
                              : maximo >= static_cast<size_t>(INT_MAX)
                                  ? "al menos " + std::to_string(minimo)
                                  : "de " + std::to_string(minimo) + " a " + std::to_string(maximo);
        return falla(&d, TV_ERROR_LONGITUD,
                     std::string(que) + " necesita " + cuantos +
                         " puntos de tres coordenadas cada uno; llegaron " + std::to_string(nxyz) +
                         " números");
    }
    return tarvelo_c::finitos(d, xyz, nxyz) ? TV_OK : TV_ERROR_ARGUMENTO;
}

std::vector<cad::Punto3<double>> comoPuntos(const double* xyz, size_t nxyz)
{
    std::vector<cad::Punto3<double>> p;
    p.reserve(nxyz / 3);
    for (size_t i = 0; i + 2 < nxyz; i += 3)
    {
        p.emplace_back(xyz[i], xyz[i + 1], xyz[i + 2]);
    }
    return p;
}

bool positivo(tv_dibujo& d, double v, const char* que)
{
    // Some of these are kept in single precision: a larger number would become infinite.
    if (!(std::isfinite(v) && v > 0.0 && v <= 1e30))
    {
        falla(&d, TV_ERROR_ARGUMENTO,
              std::string(que) + " ha de ser un número positivo (hasta 1e30)");
        return false;
    }
    return true;
}

// The kind's name as the drawing's table gives it, with the kinds that table leaves out (texts
// and 360 photos) named. A polygon is a "Polilinea", as the file, which gives both one tag,
// reads it back.
std::string nombreDeTipo(const cad::Entidad& e)
{
    if (std::strcmp(e.etiqueta(), cad::kFirmaEntidadTexto) == 0)
    {
        return "Texto";
    }
    if (std::strcmp(e.etiqueta(), cad::kFirmaEntidadFoto360) == 0)
    {
        return "Foto360";
    }
    return cad::nombreTipo(e.etiqueta());
}

// Rows whose value is three numbers.
bool esTerna(WrapDibujoCAD::tipoPropiedad t)
{
    using T = WrapDibujoCAD::tipoPropiedad;
    return t == T::Coordenada || t == T::Vector || t == T::Orientacion;
}

// "x,y,z" in the shortest digits that read back to the same doubles.
std::string terna(const std::vector<double>& v)
{
    std::string s;
    for (size_t i = 0; i < 3; ++i)
    {
        char b[32];
        const auto r = std::to_chars(b, b + sizeof b, v[i]);
        s.append(i > 0 ? "," : "").append(b, r.ptr);
    }
    return s;
}

// Three finite numbers separated by commas (blanks around them allowed).
bool leeTerna(const std::string& texto, std::vector<double>& v)
{
    v.clear();
    size_t i = 0;
    while (v.size() < 3)
    {
        while (i < texto.size() && texto[i] == ' ')
        {
            ++i;
        }
        double x = 0.0;
        const auto r = std::from_chars(texto.data() + i, texto.data() + texto.size(), x);
        if (r.ec != std::errc() || !std::isfinite(x))
        {
            return false;
        }
        v.push_back(x);
        i = static_cast<size_t>(r.ptr - texto.data());
        while (i < texto.size() && texto[i] == ' ')
        {
            ++i;
        }
        if (v.size() < 3 && (i >= texto.size() || texto[i++] != ','))
        {
            return false;
        }
    }
    return i == texto.size();
}

// A sheet's handle: 0 for the editor's own, or an entity of the drawing.
bool hoja(tv_dibujo& d, int64_t h)
{
    return h == 0 || tarvelo_c::entidad(d, h) != nullptr;
}

// A category of the sheet `h`: a live sheet, and a category it has. TV_OK, or the failure
// recorded.
tv_estado categoriaDe(tv_dibujo& d, int64_t h, int32_t categoria)
{
    if (!hoja(d, h))
    {
        return TV_ERROR_ENTIDAD;
    }
    if (categoria < 0 || categoria >= d.fachada().numeroCategorias(h))
    {
        return falla(&d, TV_ERROR_NO_ENCONTRADO, "no hay categoría " + std::to_string(categoria));
    }
    return TV_OK;
}

// The sheet's row (categoria, indice): a live sheet, a category it has and a row of it.
// TV_OK, or the failure recorded.
tv_estado fila(tv_dibujo& d, int64_t h, int32_t categoria, int32_t indice)
{
    if (const tv_estado e = categoriaDe(d, h, categoria); e != TV_OK)
    {
        return e;
    }
    if (indice < 0 || indice >= d.fachada().numeroPropiedadesCategoria(h, categoria))
    {
        return falla(&d, TV_ERROR_NO_ENCONTRADO,
                     "no hay propiedad " + std::to_string(indice) + " en la categoría " +
                         std::to_string(categoria));
    }
    return TV_OK;
}

}  // namespace

namespace tarvelo_c
{

cad::Entidad* entidad(tv_dibujo& d, int64_t h)
{
    cad::Entidad* e = h != 0 ? d.dibujo().buscaEntidad(h) : nullptr;
    if (e == nullptr)
    {
        falla(&d, TV_ERROR_ENTIDAD,
              "ninguna entidad del dibujo tiene el manejador " + std::to_string(h));
    }
    return e;
}

}  // namespace tarvelo_c

// The functions keep the C linkage of their declarations in tarvelo.h.
// --- creation ----------------------------------------------------------------------------

tv_estado tv_dibujo_punto(tv_dibujo* d, double x, double y, double z, int64_t* h)
{
    return enDibujo(d,
                    [&](tv_dibujo& s)
                    {
                        const double v[3] = {x, y, z};
                        if (!tarvelo_c::finitos(s, v, 3))
                        {
                            return TV_ERROR_ARGUMENTO;
                        }
                        return creada(s, s.fachada().nuevoPunto(x, y, z), h, "el punto");
                    });
}

tv_estado tv_dibujo_grupo_puntos(tv_dibujo* d, const double* xyz, size_t nxyz,
                                 const uint32_t* colores, size_t ncolores, int64_t* h)
{
    return enDibujo(
        d,
        [&](tv_dibujo& s)
        {
            if (colores == nullptr && ncolores != 0)
            {
                return falla(&s, TV_ERROR_ARGUMENTO, "faltan los colores que se anuncian");
            }
            if (const tv_estado e = puntos(s, xyz, nxyz, 1, INT_MAX, "un grupo de puntos");
                e != TV_OK)
            {
                return e;
            }
            if (colores != nullptr && ncolores != nxyz / 3)
            {
                return falla(&s, TV_ERROR_LONGITUD,
                             "hay " + std::to_string(nxyz / 3) + " puntos y " +
                                 std::to_string(ncolores) + " colores");
            }
            // The caller's doubles are the points as they lie: the group copies them once.
            static_assert(sizeof(cad::Punto3<double>) == 3 * sizeof(double));
            auto* grupo =
                new cad::GrupoPuntos(static_cast<int>(nxyz / 3),
                                     reinterpret_cast<const cad::Punto3<double>*>(xyz), colores);
            return creada(s, s.fachada().insertaEntidadGetHandle(grupo), h, "el grupo de puntos");
        });
}

tv_estado tv_dibujo_punto_control(tv_dibujo* d, const char* nombre, const char* codigo, double x,
                                  double y, double z, int64_t* h)
{
    return enDibujo(d,
                    [&](tv_dibujo& s)
                    {
                        std::string n;
                        std::string c;
                        const double v[3] = {x, y, z};
                        if (!tarvelo_c::texto(s, nombre, "el nombre del punto", n) ||
                            !tarvelo_c::texto(s, codigo, "el código del punto", c) ||
                            !tarvelo_c::finitos(s, v, 3))
                        {
                            return TV_ERROR_ARGUMENTO;
                        }
                        return creada(s, s.fachada().nuevoPuntoControl(n, c, x, y, z), h,
                                      "el punto de control");
                    });
}

tv_estado tv_dibujo_texto(tv_dibujo* d, const char* texto, double x, double y, double z,
                          double altura, double rotacion, int32_t alineacion, int64_t* h)
{
    return enDibujo(
        d,
        [&](tv_dibujo& s)
        {
            std::string t;
            const double v[4] = {x, y, z, rotacion};
            if (!tarvelo_c::texto(s, texto, "el texto", t) || !tarvelo_c::finitos(s, v, 4) ||
                !positivo(s, altura, "la altura del texto"))
            {
                return TV_ERROR_ARGUMENTO;
            }
            // Horizontal 0, 1 or 2 plus vertical 0, 4 or 8.
            if (alineacion < 0 || alineacion > 10 || alineacion % 4 == 3)
            {
                return falla(&s, TV_ERROR_ARGUMENTO,
                             "la alineación " + std::to_string(alineacion) + " no existe");
            }
            return creada(s,
                          s.fachada().nuevoTexto(
                              t, x, y, z, static_cast<WrapDibujoCAD::alineacionTexto>(alineacion),
                              altura, rotacion),
                          h, "el texto");
        });
}

tv_estado tv_dibujo_linea(tv_dibujo* d, const double a[3], const double b[3], int64_t* h)
{
    return enDibujo(d,
                    [&](tv_dibujo& s)
                    {
                        if (!tarvelo_c::finitos(s, a, 3) || !tarvelo_c::finitos(s, b, 3))
                        {
                            return TV_ERROR_ARGUMENTO;
                        }
                        return creada(s, s.fachada().nuevaLinea(a[0], a[1], a[2], b[0], b[1], b[2]),
                                      h, "la línea");
                    });
}

tv_estado tv_dibujo_polilinea(tv_dibujo* d, const double* xyz, size_t nxyz, int cerrada, int64_t* h)
{
    return enDibujo(
        d,
        [&](tv_dibujo& s)
        {
            if (const tv_estado e = puntos(s, xyz, nxyz, 2, INT_MAX, "una polilínea"); e != TV_OK)
            {
                return e;
            }
            return creada(
                s, s.fachada().nuevaPolilinea3D(std::vector<double>(xyz, xyz + nxyz), cerrada != 0),
                h, "la polilínea");
        });
}

tv_estado tv_dibujo_poligono(tv_dibujo* d, const double* xyz, size_t nxyz, int64_t* h)
{
    return enDibujo(
        d,
        [&](tv_dibujo& s)
        {
            if (const tv_estado e = puntos(s, xyz, nxyz, 3, INT_MAX, "un polígono"); e != TV_OK)
            {
                return e;
            }
            return creada(s, s.fachada().nuevoPoligono(std::vector<double>(xyz, xyz + nxyz)), h,
                          "el polígono");
        });
}

tv_estado tv_dibujo_cara(tv_dibujo* d, const double* xyz, size_t nxyz, int64_t* h)
{
    return enDibujo(d,
                    [&](tv_dibujo& s)
                    {
                        if (const tv_estado e = puntos(s, xyz, nxyz, 3, 4, "una cara"); e != TV_OK)
                        {
                            return e;
                        }
                        return creada(s,
                                      s.fachada().nuevaCara3D(static_cast<int32_t>(nxyz / 3), xyz),
                                      h, "la cara");
                    });
}

tv_estado tv_dibujo_plano(tv_dibujo* d, const double* xyz, size_t nxyz, int64_t* h)
{
    return enDibujo(
        d,
        [&](tv_dibujo& s)
        {
            if (const tv_estado e = puntos(s, xyz, nxyz, 3, INT_MAX, "un plano"); e != TV_OK)
            {
                return e;
            }
            const std::vector<cad::Punto3<double>> p = comoPuntos(xyz, nxyz);
            // Points all in one line fit no plane: measured against the point farthest from
            // the first, so that a repeated first point does not hide the others.
            size_t lejano = 0;
            double distancia = 0.0;
            for (size_t i = 1; i < p.size(); ++i)
            {
                const cad::Vector3D<double> u(p[i].x - p[0].x, p[i].y - p[0].y, p[i].z - p[0].z);
                if (u.modulo() > distancia)
                {
                    distancia = u.modulo();
                    lejano = i;
                }
            }
            const cad::Vector3D<double> u(p[lejano].x - p[0].x, p[lejano].y - p[0].y,
                                          p[lejano].z - p[0].z);
            bool enLinea = true;
            for (size_t i = 1; i < p.size() && enLinea && distancia > 0.0; ++i)
            {
                const cad::Vector3D<double> w(p[i].x - p[0].x, p[i].y - p[0].y, p[i].z - p[0].z);
                enLinea = u.cross(w).modulo() <= 1e-12 * (u.modulo() * w.modulo());
            }
            if (enLinea)
            {
                return falla(&s, TV_ERROR_ARGUMENTO, "los puntos del plano están en una recta");
            }
            return creada(s,
                          s.fachada().insertaEntidadGetHandle(
                              new cad::Plano(static_cast<int>(p.size()), p.data())),
                          h, "el plano");
        });
}

tv_estado tv_dibujo_cubo(tv_dibujo* d, const double minimo[3], const double maximo[3], int64_t* h)
{
    return enDibujo(d,
                    [&](tv_dibujo& s)
                    {
                        if (!tarvelo_c::finitos(s, minimo, 3) || !tarvelo_c::finitos(s, maximo, 3))
                        {
                            return TV_ERROR_ARGUMENTO;
                        }
                        const double esquinas[6] = {minimo[0], minimo[1], minimo[2],
                                                    maximo[0], maximo[1], maximo[2]};
                        return creada(s, s.fachada().nuevoCubo(esquinas), h, "la caja");
                    });
}

tv_estado tv_dibujo_cilindro(tv_dibujo* d, const double base[3], double radio, double altura,
                             int64_t* h)
{
    return enDibujo(d,
                    [&](tv_dibujo& s)
                    {
                        if (!tarvelo_c::finitos(s, base, 3) || !positivo(s, radio, "el radio") ||
                            !positivo(s, altura, "la altura"))
                        {
                            return TV_ERROR_ARGUMENTO;
                        }
                        return creada(s,
                                      s.fachada().insertaEntidadGetHandle(new cad::Cilindro(
                                          {base[0], base[1], base[2]}, radio, altura)),
                                      h, "el cilindro");
                    });
}

tv_estado tv_dibujo_esfera(tv_dibujo* d, const double centro[3], double radio, int64_t* h)
{
    return enDibujo(d,
                    [&](tv_dibujo& s)
                    {
                        if (!tarvelo_c::finitos(s, centro, 3) || !positivo(s, radio, "el radio"))
                        {
                            return TV_ERROR_ARGUMENTO;
                        }
                        return creada(s,
                                      s.fachada().insertaEntidadGetHandle(new cad::Esfera(
                                          {centro[0], centro[1], centro[2]}, radio)),
                                      h, "la esfera");
                    });
}

tv_estado tv_dibujo_toma_camara(tv_dibujo* d, const double datos[9], const char* nombre, int64_t* h)
{
    return enDibujo(d,
                    [&](tv_dibujo& s)
                    {
                        std::string n;
                        if (!tarvelo_c::texto(s, nombre, "el nombre de la toma", n) ||
                            !tarvelo_c::finitos(s, datos, 9) ||
                            !positivo(s, datos[6], "la distancia focal") ||
                            !positivo(s, datos[7], "el ancho de la imagen") ||
                            !positivo(s, datos[8], "el alto de la imagen"))
                        {
                            return TV_ERROR_ARGUMENTO;
                        }
                        const double* v = datos;
                        return creada(s,
                                      s.fachada().nuevaTomaCamara(v[0], v[1], v[2], v[3], v[4],
                                                                  v[5], v[6], v[7], v[8], n, "", 0),
                                      h, "la toma de cámara");
                    });
}

tv_estado tv_dibujo_foto360(tv_dibujo* d, const double posicion[3], double radio,
                            int32_t meridianos, int32_t paralelos, const double giros[3],
                            const char* foto, int64_t* h)
{
    return enDibujo(d,
                    [&](tv_dibujo& s)
                    {
                        std::string f;
                        if (!tarvelo_c::texto(s, foto, "el nombre de la foto", f) ||
                            !tarvelo_c::finitos(s, posicion, 3) ||
                            !tarvelo_c::finitos(s, giros, 3) || !positivo(s, radio, "el radio"))
                        {
                            return TV_ERROR_ARGUMENTO;
                        }
                        if (!cad::divisionesAdmisibles(meridianos, paralelos))
                        {
                            return falla(&s, TV_ERROR_ARGUMENTO,
                                         "la esfera de la foto admite de 3 a " +
                                             std::to_string(cad::kMaximoMeridianos) +
                                             " meridianos, al menos 2 paralelos y no más de " +
                                             std::to_string(cad::kMaximoCarasEsfera) + " caras");
                        }
                        return creada(s,
                                      s.fachada().nuevaFoto360(
                                          posicion[0], posicion[1], posicion[2], radio, meridianos,
                                          paralelos, giros[0], giros[1], giros[2], f),
                                      h, "la foto 360");
                    });
}

tv_estado tv_dibujo_sistema_local(tv_dibujo* d, const char* nombre, const double origen[3],
                                  const double ejeX[3], const double ejeY[3], const double ejeZ[3],
                                  int64_t* h)
{
    return enDibujo(d,
                    [&](tv_dibujo& s)
                    {
                        std::string n;
                        if (!tarvelo_c::texto(s, nombre, "el nombre del sistema", n) ||
                            !tarvelo_c::finitos(s, origen, 3) || !tarvelo_c::finitos(s, ejeX, 3) ||
                            !tarvelo_c::finitos(s, ejeY, 3) || !tarvelo_c::finitos(s, ejeZ, 3))
                        {
                            return TV_ERROR_ARGUMENTO;
                        }
                        for (const double* e : {ejeX, ejeY, ejeZ})
                        {
                            if (e[0] == 0.0 && e[1] == 0.0 && e[2] == 0.0)
                            {
                                return falla(&s, TV_ERROR_ARGUMENTO, "un eje del sistema es nulo");
                            }
                        }
                        if (n.empty() || s.fachada().existeSistemaLocal(n))
                        {
                            return falla(&s, TV_ERROR_RECHAZADO,
                                         "el sistema necesita un nombre que no tenga otro");
                        }
                        return creada(
                            s,
                            s.fachada().nuevoSistemaLocal(
                                n, {origen[0], origen[1], origen[2]}, {ejeX[0], ejeX[1], ejeX[2]},
                                {ejeY[0], ejeY[1], ejeY[2]}, {ejeZ[0], ejeZ[1], ejeZ[2]}),
                            h, "el sistema local");
                    });
}

// --- queries ------------------------------------------------------------------------------

tv_estado tv_dibujo_entidades(tv_dibujo* d, int64_t* handles, size_t capacidad, size_t* n)
{
    return enDibujo(d,
                    [&](tv_dibujo& s)
                    {
                        std::vector<int64_t> v;
                        s.fachada().getEntidades(v);
                        return tarvelo_c::copia(s, v.data(), v.size(), handles, capacidad, n);
                    });
}

tv_estado tv_dibujo_tipo(tv_dibujo* d, int64_t h, const char** tipo)
{
    return enDibujo(d,
                    [&](tv_dibujo& s)
                    {
                        if (!tarvelo_c::salidaNoNula(s, tipo))
                        {
                            return TV_ERROR_ARGUMENTO;
                        }
                        const cad::Entidad* e = tarvelo_c::entidad(s, h);
                        if (e == nullptr)
                        {
                            return TV_ERROR_ENTIDAD;
                        }
                        *tipo = s.guarda(nombreDeTipo(*e));
                        return TV_OK;
                    });
}

tv_estado tv_dibujo_capa_entidad(tv_dibujo* d, int64_t h, const char** capa)
{
    return enDibujo(d,
                    [&](tv_dibujo& s)
                    {
                        std::string nombre;
                        if (!tarvelo_c::salidaNoNula(s, capa))
                        {
                            return TV_ERROR_ARGUMENTO;
                        }
                        if (tarvelo_c::entidad(s, h) == nullptr)
                        {
                            return TV_ERROR_ENTIDAD;
                        }
                        s.fachada().getNombreCapa(h, nombre);
                        *capa = s.guarda(nombre);
                        return TV_OK;
                    });
}

tv_estado tv_dibujo_coordenadas(tv_dibujo* d, int64_t h, double* xyz, size_t capacidad, size_t* n)
{
    return enDibujo(d,
                    [&](tv_dibujo& s)
                    {
                        const cad::Entidad* e = tarvelo_c::entidad(s, h);
                        if (e == nullptr)
                        {
                            return TV_ERROR_ENTIDAD;
                        }
                        // A point group's points are copied as they lie, without a call per
                        // point.
                        if (const auto* g = dynamic_cast<const cad::GrupoPuntos*>(e))
                        {
                            static_assert(sizeof(cad::Punto3<double>) == 3 * sizeof(double));
                            return tarvelo_c::copia(
                                s, reinterpret_cast<const double*>(g->puntos.data()),
                                3 * g->puntos.size(), xyz, capacidad, n);
                        }
                        std::vector<double> v;
                        const int cuantas = e->numCoordenadas();
                        v.reserve(3 * static_cast<size_t>(std::max(cuantas, 0)));
                        for (int i = 0; i < cuantas; ++i)
                        {
                            if (const cad::Punto3<double>* p = e->coordenada(i))
                            {
                                v.insert(v.end(), {p->x, p->y, p->z});
                            }
                        }
                        return tarvelo_c::copia(s, v.data(), v.size(), xyz, capacidad, n);
                    });
}

tv_estado tv_dibujo_colores(tv_dibujo* d, int64_t h, uint32_t* colores, size_t capacidad, size_t* n)
{
    return enDibujo(
        d,
        [&](tv_dibujo& s)
        {
            const cad::Entidad* e = tarvelo_c::entidad(s, h);
            if (e == nullptr)
            {
                return TV_ERROR_ENTIDAD;
            }
            const auto* g = dynamic_cast<const cad::GrupoPuntos*>(e);
            if (g == nullptr)
            {
                return falla(&s, TV_ERROR_ENTIDAD, "la entidad no es un grupo de puntos");
            }
            return tarvelo_c::copia(s, g->colores.data(), g->colores.size(), colores, capacidad, n);
        });
}

tv_estado tv_dibujo_extension(tv_dibujo* d, int64_t h, double minimo[3], double maximo[3])
{
    return enDibujo(
        d,
        [&](tv_dibujo& s)
        {
            if (!tarvelo_c::salidaNoNula(s, minimo) || !tarvelo_c::salidaNoNula(s, maximo))
            {
                return TV_ERROR_ARGUMENTO;
            }
            cad::Rect3<double> caja;
            if (h != 0)
            {
                const cad::Entidad* e = tarvelo_c::entidad(s, h);
                if (e == nullptr)
                {
                    return TV_ERROR_ENTIDAD;
                }
                caja = e->extension();
            }
            else
            {
                // The drawing's own box never shrinks; this one is what is there.
                for (const cad::Entidad* e : s.dibujo().entidades)
                {
                    caja.une(e->extension());
                }
            }
            if (!caja.esValido())
            {
                return falla(&s, TV_ERROR_NO_ENCONTRADO, "no hay nada que medir");
            }
            minimo[0] = caja.minimo.x;
            minimo[1] = caja.minimo.y;
            minimo[2] = caja.minimo.z;
            maximo[0] = caja.maximo.x;
            maximo[1] = caja.maximo.y;
            maximo[2] = caja.maximo.z;
            return TV_OK;
        });
}

tv_estado tv_dibujo_datos_punto_control(tv_dibujo* d, int64_t h, const char** nombre,
                                        const char** codigo, double xyz[3])
{
    return enDibujo(d,
                    [&](tv_dibujo& s)
                    {
                        std::string n;
                        std::string c;
                        double p[3] = {0.0, 0.0, 0.0};
                        if (tarvelo_c::entidad(s, h) == nullptr)
                        {
                            return TV_ERROR_ENTIDAD;
                        }
                        if (!s.fachada().getPuntoControl(h, n, c, p[0], p[1], p[2]))
                        {
                            return falla(&s, TV_ERROR_ENTIDAD,
                                         "la entidad no es un punto de control");
                        }
                        if (nombre != nullptr)
                        {
                            *nombre = s.guarda(n);
                        }
                        if (codigo != nullptr)
                        {
                            *codigo = s.guarda(c);
                        }
                        if (xyz != nullptr)
                        {
                            xyz[0] = p[0];
                            xyz[1] = p[1];
                            xyz[2] = p[2];
                        }
                        return TV_OK;
                    });
}

tv_estado tv_dibujo_longitud(tv_dibujo* d, int64_t h, double* longitud)
{
    return enDibujo(d,
                    [&](tv_dibujo& s)
                    {
                        if (!tarvelo_c::salidaNoNula(s, longitud))
                        {
                            return TV_ERROR_ARGUMENTO;
                        }
                        const cad::Entidad* e = tarvelo_c::entidad(s, h);
                        if (e == nullptr)
                        {
                            return TV_ERROR_ENTIDAD;
                        }
                        if (!e->esTipo("Polilinea"))
                        {
                            return falla(&s, TV_ERROR_ENTIDAD, "la entidad no es una polilínea");
                        }
                        *longitud = s.fachada().longitud(h);
                        return TV_OK;
                    });
}

tv_estado tv_dibujo_superficie(tv_dibujo* d, int64_t h, double* area, int32_t* vertices,
                               int32_t* caras)
{
    return enDibujo(d,
                    [&](tv_dibujo& s)
                    {
                        double a = 0.0;
                        int32_t v = 0;
                        int32_t c = 0;
                        int32_t aristas = 0;
                        int32_t materiales = 0;
                        if (tarvelo_c::entidad(s, h) == nullptr)
                        {
                            return TV_ERROR_ENTIDAD;
                        }
                        if (!s.fachada().propiedadesSuperficie(h, a, v, c, aristas, materiales))
                        {
                            return falla(&s, TV_ERROR_ENTIDAD,
                                         "la entidad no es una superficie ni un sólido");
                        }
                        if (area != nullptr)
                        {
                            *area = a;
                        }
                        if (vertices != nullptr)
                        {
                            *vertices = v;
                        }
                        if (caras != nullptr)
                        {
                            *caras = c;
                        }
                        return TV_OK;
                    });
}

// --- property sheets ---------------------------------------------------------------------

tv_estado tv_dibujo_numero_categorias(tv_dibujo* d, int64_t h, int32_t* n)
{
    return enDibujo(d,
                    [&](tv_dibujo& s)
                    {
                        if (!tarvelo_c::salidaNoNula(s, n))
                        {
                            return TV_ERROR_ARGUMENTO;
                        }
                        if (!hoja(s, h))
                        {
                            return TV_ERROR_ENTIDAD;
                        }
                        *n = s.fachada().numeroCategorias(h);
                        return TV_OK;
                    });
}

tv_estado tv_dibujo_categoria(tv_dibujo* d, int64_t h, int32_t categoria, const char** nombre)
{
    return enDibujo(d,
                    [&](tv_dibujo& s)
                    {
                        if (!tarvelo_c::salidaNoNula(s, nombre))
                        {
                            return TV_ERROR_ARGUMENTO;
                        }
                        if (const tv_estado e = categoriaDe(s, h, categoria); e != TV_OK)
                        {
                            return e;
                        }
                        *nombre = s.guarda(s.fachada().nombreCategoria(h, categoria));
                        return TV_OK;
                    });
}

tv_estado tv_dibujo_numero_propiedades(tv_dibujo* d, int64_t h, int32_t categoria, int32_t* n)
{
    return enDibujo(d,
                    [&](tv_dibujo& s)
                    {
                        if (!tarvelo_c::salidaNoNula(s, n))
                        {
                            return TV_ERROR_ARGUMENTO;
                        }
                        if (const tv_estado e = categoriaDe(s, h, categoria); e != TV_OK)
                        {
                            return e;
                        }
                        *n = s.fachada().numeroPropiedadesCategoria(h, categoria);
                        return TV_OK;
                    });
}

tv_estado tv_dibujo_propiedad(tv_dibujo* d, int64_t h, int32_t categoria, int32_t indice,
                              const char** nombre, const char** valor, int32_t* tipo,
                              int* soloLectura)
{
    return enDibujo(d,
                    [&](tv_dibujo& s)
                    {
                        if (const tv_estado e = fila(s, h, categoria, indice); e != TV_OK)
                        {
                            return e;
                        }
                        std::string n;
                        std::string v;
                        WrapDibujoCAD::tipoPropiedad t{};
                        bool lectura = false;
                        std::vector<double> xyz;
                        if (!s.fachada().getPropiedad(h, categoria, indice, n, t, v, lectura, xyz))
                        {
                            return falla(&s, TV_ERROR_NO_ENCONTRADO,
                                         "la propiedad no se puede leer");
                        }
                        // A point or a direction has no text of its own: "x,y,z", exact.
                        if (esTerna(t) && xyz.size() == 3)
                        {
                            v = terna(xyz);
                        }
                        if (nombre != nullptr)
                        {
                            *nombre = s.guarda(n);
                        }
                        if (valor != nullptr)
                        {
                            *valor = s.guarda(v);
                        }
                        if (tipo != nullptr)
                        {
                            *tipo = static_cast<int32_t>(t);
                        }
                        if (soloLectura != nullptr)
                        {
                            *soloLectura = lectura ? 1 : 0;
                        }
                        return TV_OK;
                    });
}

tv_estado tv_dibujo_set_propiedad(tv_dibujo* d, int64_t h, int32_t categoria, int32_t indice,
                                  const char* valor)
{
    return enDibujo(d,
                    [&](tv_dibujo& s)
                    {
                        std::string v;
                        if (!tarvelo_c::texto(s, valor, "el valor", v))
                        {
                            return TV_ERROR_ARGUMENTO;
                        }
                        if (const tv_estado e = fila(s, h, categoria, indice); e != TV_OK)
                        {
                            return e;
                        }
                        std::string nombre;
                        std::string actual;
                        WrapDibujoCAD::tipoPropiedad t{};
                        bool lectura = false;
                        s.fachada().getPropiedad(h, categoria, indice, nombre, t, actual, lectura);
                        if (esTerna(t))
                        {
                            std::vector<double> xyz;
                            if (!leeTerna(v, xyz))
                            {
                                return falla(&s, TV_ERROR_ARGUMENTO,
                                             "\"" + v + "\" no son tres números x,y,z");
                            }
                            if (!s.fachada().setPropiedad(h, categoria, indice, xyz))
                            {
                                return falla(&s, TV_ERROR_RECHAZADO,
                                             tarvelo_c::loDicho(s,
                                                                "la propiedad no admite ese "
                                                                "valor"));
                            }
                            return TV_OK;
                        }
                        if (!s.fachada().setPropiedad(h, categoria, indice, v))
                        {
                            return falla(&s, TV_ERROR_RECHAZADO,
                                         tarvelo_c::loDicho(s, "la propiedad no admite ese valor"));
                        }
                        return TV_OK;
                    });
}

// --- selection, deletion, undo -------------------------------------------------------------

tv_estado tv_dibujo_selecciona(tv_dibujo* d, int64_t h)
{
    return enDibujo(d,
                    [&](tv_dibujo& s)
                    {
                        if (tarvelo_c::entidad(s, h) == nullptr)
                        {
                            return TV_ERROR_ENTIDAD;
                        }
                        return s.fachada().seleccionaEntidad(h)
                                   ? TV_OK
                                   : falla(&s, TV_ERROR_RECHAZADO,
                                           tarvelo_c::loDicho(s,
                                                              "la entidad no se puede "
                                                              "seleccionar"));
                    });
}

tv_estado tv_dibujo_deselecciona(tv_dibujo* d, int64_t h)
{
    return enDibujo(d,
                    [&](tv_dibujo& s)
                    {
                        if (h == 0)
                        {
                            s.fachada().deselecciona();
                            return TV_OK;
                        }
                        if (tarvelo_c::entidad(s, h) == nullptr)
                        {
                            return TV_ERROR_ENTIDAD;
                        }
                        s.fachada().deselecciona(h);
                        return TV_OK;
                    });
}

tv_estado tv_dibujo_seleccionadas(tv_dibujo* d, int64_t* handles, size_t capacidad, size_t* n)
{
    return enDibujo(d,
                    [&](tv_dibujo& s)
                    {
                        std::vector<int64_t> v;
                        s.fachada().getEntidadesSeleccionadas(v);
                        return tarvelo_c::copia(s, v.data(), v.size(), handles, capacidad, n);
                    });
}

tv_estado tv_dibujo_borra(tv_dibujo* d, int64_t h)
{
    return enDibujo(d,
                    [&](tv_dibujo& s)
                    {
                        if (tarvelo_c::entidad(s, h) == nullptr)
                        {
                            return TV_ERROR_ENTIDAD;
                        }
                        // Through the editor, as one undo step: the facade's own deletion
                        // keeps none, and an earlier step could still name the entity.
                        cad::EditorDibujo* editor = s.fachada().mEditor;
                        cad::Entidad* e = s.dibujo().buscaEntidad(h);
                        if (editor == nullptr || !editor->borraEntidad(e))
                        {
                            return falla(&s, TV_ERROR_RECHAZADO,
                                         tarvelo_c::loDicho(s, "la entidad no se puede borrar"));
                        }
                        s.fachada().comandoRegen();
                        return TV_OK;
                    });
}

tv_estado tv_dibujo_deshacer(tv_dibujo* d)
{
    return enDibujo(d,
                    [](tv_dibujo& s)
                    {
                        if (!s.fachada().puedeDeshacer())
                        {
                            return falla(&s, TV_ERROR_RECHAZADO, "no hay nada que deshacer");
                        }
                        s.fachada().deshacer();
                        return TV_OK;
                    });
}

tv_estado tv_dibujo_rehacer(tv_dibujo* d)
{
    return enDibujo(d,
                    [](tv_dibujo& s)
                    {
                        if (!s.fachada().puedeRehacer())
                        {
                            return falla(&s, TV_ERROR_RECHAZADO, "no hay nada que rehacer");
                        }
                        s.fachada().rehacer();
                        return TV_OK;
                    });
}

tv_estado tv_dibujo_puede_deshacer(tv_dibujo* d, int* deshacer, int* rehacer)
{
    return enDibujo(d,
                    [&](tv_dibujo& s)
                    {
                        if (deshacer != nullptr)
                        {
                            *deshacer = s.fachada().puedeDeshacer() ? 1 : 0;
                        }
                        if (rehacer != nullptr)
                        {
                            *rehacer = s.fachada().puedeRehacer() ? 1 : 0;
                        }
                        return TV_OK;
                    });
}
