// The catalogue's spheres and photogrammetry kinds: Esfera, Foto360 and TomaCamara.
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "base/geometria/Matriz4.h"
#include "entidades/Esfera.h"
#include "entidades/Foto360.h"
#include "entidades/TomaCamara.h"
#include "modelo/Modelo3D.h"
#include "soporte/CatalogoEntidades.h"
#include "soporte/CatalogoPiezas.h"

namespace cad::prueba
{

namespace
{

using M4 = Matriz4<double>;

// The sphere's vertices as the tessellation steps give them: the pole at +z, the pole at -z,
// then meridian i = 0..m at angle i pi / m - pi / 2, each with its rings j = 1..p-1 at the
// angle j pi / p from +z; each vertex then carried by `giro`.
std::vector<P> verticesEsfera(const P& c, double r, int m, int p, const M4& giro)
{
    std::vector<P> v = {giro * (c + Vector3D<double>(0, 0, r)),
                        giro * (c + Vector3D<double>(0, 0, -r))};
    for (int i = 0; i <= m; ++i)
    {
        const double a = i * 3.1415926535897 / m - 1.57079632679485;
        for (int j = 1; j < p; ++j)
        {
            const double b = j * 3.1415926535897 / p;
            const Vector3D<double> u(std::sin(b) * std::cos(a), std::sin(b) * std::sin(a),
                                     std::cos(b));
            v.push_back(giro * (c + u * r));
        }
    }
    return v;
}

// The 3DFACE records of a mesh on "Ejes" in colour index 3: each face as the mesh triangulates
// it, a triangle's last corner written twice.
std::string carasDXF(const Modelo3D& m)
{
    std::string s;
    std::vector<int32_t> t;
    for (size_t c = 0; c < m.caras().size(); ++c)
    {
        t.clear();
        m.triangulaCara(static_cast<int32_t>(c), t);
        for (size_t k = 0; k + 2 < t.size(); k += 3)
        {
            s += caraDXF(m.getVertice(t[k]).punto, m.getVertice(t[k + 1]).punto,
                         m.getVertice(t[k + 2]).punto, 3);
        }
    }
    return s;
}

// A sphere and a photograph share the snap of the centre under bit 8 alone and the sheet:
// radius 2 gives an area of 4 pi 4 and a volume of 4 pi 8 / 3.
void comoEsfera(TipoEntidad& t, int material)
{
    t.referencias = {{1, 2, kTodo, -1, {}, 0},
                     {1, 2.5, kPuntosInsercion, kPuntosInsercion, {1, 2, 3}, 0.5}};
    t.hoja = {"Geometría/Centro:Coordenada=(1,2,3)", "Geometría/Radio:DoblePositivo=           2",
              "Geometría/Área:DoblePositivo!=        50.3",
              "Geometría/Volumen:DoblePositivo!=        33.5",
              "Varios/Material:Material=" + std::to_string(material)};
}

// Green, material 3. Never painted, it has no mesh and so no coordinates; the paint makes the
// 60 by 20 mesh (1161 vertices, 120 triangles and 1080 quadrilaterals) and shades it. The DXF
// writes a fresh tessellation, 2280 triangles.
TipoEntidad tipoEsfera()
{
    const auto crea = []
    {
        Esfera e({1, 2, 3}, 2.0, 3);
        e.color.setIndiceColor(3);
        return muestra(std::move(e));
    };
    TipoEntidad t{"Esfera", "Esfera", crea, vacia<Esfera>};
    // the prefix alone, no transform: centre, radius, material
    t.fichero = bloque16(
        "Es1", prefijo(3, {0xFF, 0, 0xFF, 0}) + xyz({{1, 2, 3}}) + f64(2.0) + entero(3, 2));
    t.llamadas =
        "iniciaObjeto FF00FF00 1\nvertices 1161\nsetColorMaterial FF00FF00 0.8 1\n"
        "caras 5880\nfinObjeto pick\n";
    Modelo3D modelo;
    Esfera({1, 2, 3}, 2.0, 3).generaModelo(modelo);
    t.dxf = carasDXF(modelo);
    comoEsfera(t, 3);
    return t;
}

// Three meridians and two parallels: two poles and one ring of four, six triangles. Turned by
// roll 0.5, pitch 1 (so 3.1415926535897 - 1 about Y) and yaw -0.25 about the centre, roll
// applied first. Built with its mesh; the material set afterwards (as the host does) reaches
// the faces at the first paint, which shows the photograph. Read or moved, its coordinates
// are those of a mesh made again for the new parameters. The transform is stored, not used.
TipoEntidad tipoFoto360()
{
    const auto crea = []
    {
        Foto360 f({1, 2, 3}, 2.0, 3, 2, 0.5, 1.0, -0.25);
        f.setMaterial(5);
        f.transformacion = M4::traslacion({7, 8, 9});
        return muestra(std::move(f));
    };
    TipoEntidad t{"Foto360", "Desconocida", crea, vacia<Foto360>};
    // prefix, the transform's three rows and translation, centre, radius, material,
    // meridians, parallels, roll, pitch, yaw
    t.fichero = bloque16("F3D", prefijo() + xyz({{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {7, 8, 9}}) +
                                    xyz({{1, 2, 3}}) + f64(2.0) + entero(5, 2) + entero(3, 4) +
                                    entero(2, 4) + f64(0.5) + f64(1.0) + f64(-0.25));
    // the turn about a centre c, roll first
    const auto giro = [](const P& c)
    {
        return M4::traslacion(c) * M4::rotacionZ(-0.25) * M4::rotacionY(3.1415926535897 - 1.0) *
               M4::rotacionX(0.5) * M4::traslacion(-c);
    };
    t.coordenadas = verticesEsfera({1, 2, 3}, 2.0, 3, 2, giro({1, 2, 3}));
    t.movidas = verticesEsfera({2, 0, 3.5}, 2.0, 3, 2, giro({2, 0, 3.5}));
    t.llamadas =
        "setMaterial 5\niniciaObjeto FFFF0000 5\nvertices 6\ncoordenadasUV 6\ncaras 24\n"
        "finObjeto pick\n";
    // the three triangles at the first pole, then the three at the second, each from its pole,
    // on the ring's four vertices 2..5
    const std::vector<P>& v = t.coordenadas;
    for (size_t i = 2; i < 5; ++i)
    {
        t.dxf += caraDXF(v[0], v[i], v[i + 1]);
    }
    for (size_t i = 2; i < 5; ++i)
    {
        t.dxf += caraDXF(v[1], v[i + 1], v[i]);
    }
    comoEsfera(t, 5);
    return t;
}

// What both camera samples share: one coordinate at the station for any index, no hot
// element, no snap, no DXF record, the two read-only rows (the orientation's value lies in
// x, y, z, not in the text).
TipoEntidad camara(const char* nombre, Fabrica crea)
{
    TipoEntidad t{nombre, "TomaCamara", std::move(crea), vacia<TomaCamara>};
    t.coordenadas = {{1, 2, 3}};
    t.cualquierIndice = true;
    t.referencias = {{1, 2, 0xFF, -1, {}, 0}};
    t.hoja = {"Geometría/Posición:Coordenada!=(1,2,3)", "Geometría/Orientación:Orientacion!="};
    // the image name's length, padded to even
    t.posCuenta = 6 + 32 + 24 + 24 + 24;
    t.anchoCuenta = 2;
    return t;
}

// With the "Rotulos" style (id 42) and kept at 24 pixels: both objects scaled about the
// station, the image plane with material 7, then the name centred in white.
TipoEntidad tipoTomaCamara()
{
    const auto crea = []
    {
        TomaCamara c = conEstilo(TomaCamara({1, 2, 3}, {0.1, 0.2, 0.3}, 35, 36, 24));
        c.setImagen("IMG_0001.jpg", 7);
        c.asignaEscalaConstante({1, 2, 3}, 1.0, 24.9);  // 24 pixels
        return muestra(std::move(c));
    };
    TipoEntidad t = camara("TomaCamara", crea);
    // station, omega phi kappa, distance, width, height, name, image id, style id, then the
    // mix-in's position, scale and pixels
    t.fichero = bloque16(
        "TC1", prefijo() + xyz({{1, 2, 3}, {0.1, 0.2, 0.3}, {35, 36, 24}}) +
                   Bytes{12, 0, 'I', 'M', 'G', '_', '0', '0', '0', '1', '.', 'j', 'p', 'g'} +
                   entero(7, 2) + entero(42, 8) + xyz({{1, 2, 3}}) + f64(1.0) + entero(24, 4));
    t.llamadas =
        "iniciaObjeto FFFF0000 0\nvertices 7\naristas 18\nescalaConstante (1,2,3)\n"
        "finObjeto pick\nsetMaterial 7\niniciaObjeto FFFFFFFF 5\nvertices 4\n"
        "coordenadasUV 4\ncaras 5\nescalaConstante (1,2,3)\nfinObjeto pick\n"
        "dibujaTexto (1,2,3) \"IMG_0001.jpg\" FFFFFFFF pick\n";
    return t;
}

// Red, label hidden (bit 4), no style, no constant scale, no image: the wire in red, the image
// plane still painted with material 0, no text.
TipoEntidad tipoTomaCamaraSinEtiqueta()
{
    const auto crea = []
    {
        TomaCamara c({1, 2, 3}, {0, 0, 0}, 1, 1, 1);
        c.setImagen("F2", 0);
        c.color.setIndiceColor(1);
        c.setTextoVisible(false);
        return muestra(std::move(c));
    };
    TipoEntidad t = camara("TomaCamaraSinEtiqueta", crea);
    t.fichero =
        bloque16("TC1", prefijo(1, {0xFF, 0, 0, 0xFF}) + xyz({{1, 2, 3}, {0, 0, 0}, {1, 1, 1}}) +
                            Bytes{2, 0, 'F', '2', 0, 0} + entero(0, 8) + xyz({{0, 0, 0}}) +
                            f64(0.0) + entero(0, 4));
    t.llamadas =
        "iniciaObjeto FF0000FF 0\nvertices 7\naristas 18\nfinObjeto pick\nsetMaterial 0\n"
        "iniciaObjeto FFFFFFFF 5\nvertices 4\ncoordenadasUV 4\ncaras 5\nfinObjeto pick\n";
    return t;
}

}  // namespace

std::vector<TipoEntidad> tiposCamaras()
{
    return {tipoEsfera(), tipoFoto360(), tipoTomaCamara(), tipoTomaCamaraSinEtiqueta()};
}

}  // namespace cad::prueba
