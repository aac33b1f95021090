// Writes the fuzz target's seed corpus: small documents that the project itself saves.
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "Fendrix/Fendrix.h"
#include "PantallaReferencia.h"
#include "base/SerializadorBinarioEscritura.h"
#include "documento/Dibujo.h"
#include "entidades/entidades.h"
#include "modelo/Modelo3D.h"

namespace
{

std::vector<char> bytesDe(const std::string& ruta)
{
    std::ifstream f(ruta, std::ios::binary);
    return {std::istreambuf_iterator<char>(f), std::istreambuf_iterator<char>()};
}

// Layers with palette and true colours, a hidden and a locked one, plain and textured
// materials, text styles, variables of every kind, a view and a few entities at survey
// coordinates.
void llena(Fendrix::WrapDibujoCAD& dibujo, cad::PantallaReferencia& pantalla)
{
    dibujo.nuevoDocumento();
    dibujo.nuevaCapa("Topografia", true);
    dibujo.nuevaCapa("Edificios", false);
    dibujo.nuevaCapa("Ortofoto", false);
    dibujo.colorCapa("Edificios", 200, 40, 10);
    dibujo.visibilidadCapa("Ortofoto", false);
    dibujo.bloqueaCapa("Edificios", true);
    dibujo.setGrosorLineaCapa("Topografia", 2.0);
    dibujo.nuevoMaterial(101, 0xFF808080U, 0.25);
    dibujo.nuevoMaterial(102, "texturas/fachada.jpg");
    dibujo.nuevoEstiloTexto("Rotulos", "Sans", 12, true);
    dibujo.nuevoEstiloTexto("Cotas", "Mono", 8, false);
    dibujo.setVariable("PROYECTO", std::string("Parcela 27"));
    dibujo.setVariable("ESCALA", 500);
    dibujo.setVariable("FACTOR", 0.9996);
    dibujo.setVariable("ORIGEN", 431250.0, 4581320.0, 612.5);
    pantalla.setCamara({431250.0, 4581320.0, 1000.0}, {431250.0, 4581320.0, 0.0}, {0, 1, 0}, 2.5,
                       0.0);
    dibujo.guardaVistaActual("Planta");

    const cad::Punto3<double> esquina{431250.0, 4581320.0, 612.5};
    const cad::Punto3<double> contorno[] = {
        esquina, {431260.0, 4581320.0, 612.5}, {431260.0, 4581331.0, 613.0}};
    cad::Dibujo& d = *dibujo.mDibujo;
    d.nuevaEntidad(new cad::Punto(esquina.x, esquina.y, esquina.z));
    d.nuevaEntidad(new cad::Linea(esquina, {431270.0, 4581325.0, 612.0}));
    d.nuevaEntidad(new cad::Polilinea(3, contorno));
}

// One small entity of every kind the file knows, so that each body reader is reached.
void todasLasClases(Fendrix::WrapDibujoCAD& dibujo)
{
    dibujo.nuevoDocumento();
    cad::Dibujo& d = *dibujo.mDibujo;
    const cad::Punto3<double> p[5] = {{0, 0, 0}, {2, 0, 0.5}, {2, 1, 1}, {0, 1, 0.5}, {1, 2, 2}};
    const uint32_t colores[5] = {0xFF0000FFU, 0xFF00FF00U, 0xFFFF0000U, 0xFFFFFFFFU, 0xFF808080U};
    d.nuevaEntidad(new cad::Punto(1, 2, 3));
    d.nuevaEntidad(new cad::GrupoPuntos(5, p, colores));
    d.nuevaEntidad(new cad::Cara3D(4, p));
    auto* policara = new cad::Policara();
    policara->puntos.assign(p, p + 5);
    for (int32_t i : {0, 1, 4, 0, 1, 2, 3})
    {
        cad::esquina_t e;
        e.indice = i;
        e.uv = {0.25 * i, 0.5};
        e.normal = {0, 0, 1};
        e.material = i < 4 ? 1 : 2;
        policara->esquinas.push_back(e);
    }
    policara->triangulos = {0};
    policara->cuadrilateros = {3};
    policara->cambiosMaterial = {0, 0, 1, 0};
    d.nuevaEntidad(policara);
    auto* superficie = new cad::Superficie();
    superficie->modelo().nuevaCara(4, p, nullptr, false, 1);
    d.nuevaEntidad(superficie);
    d.nuevaEntidad(new cad::Cubo(p[0], p[2]));
    d.nuevaEntidad(new cad::Prisma(p[0], p[4], 1));
    d.nuevaEntidad(new cad::Cilindro(p[1], 0.5, 2.0, 1));
    d.nuevaEntidad(new cad::Esfera(p[2], 1.5, 1));
    auto* modelo = new cad::Modelo3D();
    modelo->nuevaCara(4, p, nullptr, false, 1);
    modelo->nuevaCara(3, p + 2, nullptr, false, 2);
    d.nuevaEntidad(new cad::Objeto3D(modelo));
    dibujo.nuevaTomaCamara(1, 1, 10, 0.1, 0.2, 0.3, 0.035, 6000, 4000, "IMG_1.JPG", "", 1, 24.0);
    dibujo.nuevaFoto360(0, 0, 2, 3.0, 8, 4, 0.1, 0.2, 0.3, "esfera.jpg");
}

// The mesh reader's seed: a body as escribe writes it, of a cube on shared corners and a
// pentagon of its own.
bool escribeMalla(const std::string& ruta)
{
    cad::Modelo3D m;
    for (int i = 0; i < 8; ++i)
    {
        m.nuevoVertice({static_cast<double>(i & 1), static_cast<double>((i >> 1) & 1),
                        static_cast<double>((i >> 2) & 1)});
    }
    const int32_t caras[6][4] = {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4},
                                 {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}};
    for (const auto& c : caras)
    {
        m.nuevaCara(4, c, false, 0);
    }
    const cad::Punto3<double> pentagono[5] = {
        {3, 0, 0}, {5, 0, 0}, {5, 2, 0}, {4, 1, 0}, {3, 2, 0}};
    m.nuevaCara(5, pentagono, nullptr, false, 2);
    cad::SerializadorBinarioEscritura w;
    m.escribe(w);
    const std::vector<uint8_t> b = w.bytes();
    std::ofstream f(ruta, std::ios::binary);
    f.write(reinterpret_cast<const char*>(b.data()), static_cast<std::streamsize>(b.size()));
    return static_cast<bool>(f);
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 2)
    {
        std::fprintf(stderr, "uso: %s carpeta\n", argv[0]);
        return 2;
    }
    const std::string carpeta = std::string(argv[1]) + "/";
    {
        Fendrix::WrapDibujoCAD dibujo(nullptr, nullptr);
        dibujo.nuevoDocumento();
        dibujo.guarda(carpeta + "vacio.tcad");
    }
    cad::PantallaReferencia pantalla;
    pantalla.grabando = false;
    Fendrix::WrapPantallaCAD visor;
    visor.setPantalla(&pantalla);
    Fendrix::WrapDibujoCAD dibujo(nullptr, nullptr);
    dibujo.setPantalla(&visor);
    llena(dibujo, pantalla);
    dibujo.guarda(carpeta + "completo.tcad");
    {
        Fendrix::WrapDibujoCAD todas(nullptr, nullptr);
        todasLasClases(todas);
        todas.guarda(carpeta + "todas.tcad");
    }

    // Cut inside the blocks, so that lengths promise more than the file holds.
    const std::vector<char> completo = bytesDe(carpeta + "completo.tcad");
    if (completo.size() < 2)
    {
        std::fprintf(stderr, "completo.tcad was not written\n");
        return 1;
    }
    std::ofstream truncado(carpeta + "truncado.tcad", std::ios::binary);
    truncado.write(completo.data(), static_cast<std::streamsize>(completo.size() / 2));
    return truncado && escribeMalla(carpeta + "cubo.malla") ? 0 : 1;
}
