#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "SoporteRender.h"
#include "documento/Dibujo.h"

// The software GL driver keeps allocations it never frees (its compiler, the dispatch
// tables) until the process ends; they are not ours to fix.
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libEGL_mesa\n"
           "leak:libEGL\n"
           "leak:swrast_dri\n"
           "leak:libgallium\n"
           "leak:libLLVM\n"
           "leak:libGLX\n"
           "leak:libGLdispatch\n"
           "leak:libglapi\n"
           "leak:libdrm\n"
           "leak:libexpat\n";
}

namespace cad::prueba
{

EscenaGL::EscenaGL(int ancho, int alto)
{
    if (!contexto.crea(ancho, alto, error))
    {
        return;
    }
    pantalla.grabando = false;
    pantalla.setTamano(ancho, alto);
    if (!pantalla.iniciaGL(error))
    {
        return;
    }
    dibujo.nuevoDocumento();
    envoltorio.setPantalla(&pantalla);
    dibujo.setPantalla(&envoltorio);
}

EscenaGL::~EscenaGL()
{
    dibujo.setPantalla(nullptr);
    contexto.hazActual();
    pantalla.liberaGL();
}

void EscenaGL::encuadra(vista_t vista)
{
    const Rect3<double>& caja = dibujo.mDibujo->extension;
    const Punto3<double> c = caja.centro();
    const bool planta = vista == vista_t::kPlanta;
    const Vector3D<double> dir = planta                   ? Vector3D<double>(0, 0, 1)
                                 : vista == vista_t::kIso ? Vector3D<double>(1, -1, 1).unit()
                                                          : Vector3D<double>(0, -1, 0);
    pantalla.setCamara(c + dir * 1000.0, c,
                       planta ? Vector3D<double>(0, 1, 0) : Vector3D<double>(0, 0, 1), 1.0, 0.0);
    pantalla.zoomExtension(caja);
    pantalla.zoomEscala(0.95);
}

void EscenaGL::camara(const Punto3<double>& posicion, const Punto3<double>& objetivo,
                      const Vector3D<double>& arriba, double zoom)
{
    pantalla.setCamara(posicion, objetivo, arriba, zoom, 0.0);
}

void EscenaGL::dibuja()
{
    contexto.hazActual();
    dibujo.guardaVistaActual();
    dibujo.dibuja(&envoltorio);
    pantalla.pinta();
}

imagen_t EscenaGL::imagen()
{
    dibuja();
    return contexto.lee();
}

Entidad* EscenaGL::entidad(int64_t handle) const
{
    return dibujo.mDibujo->buscaEntidad(handle);
}

std::string rutaSalidaRender(const std::string& nombre)
{
    const char* salida = std::getenv("CAD_TEST_SALIDA");
    const std::filesystem::path base = salida != nullptr && *salida != '\0'
                                           ? std::filesystem::path(salida)
                                           : std::filesystem::temp_directory_path() / "tarvelo";
    std::filesystem::create_directories(base / "render");
    return (base / "render" / nombre).string();
}

diferencias_t comparaImagenes(const imagen_t& a, const imagen_t& b, int umbral)
{
    diferencias_t d;
    if (a.ancho != b.ancho || a.alto != b.alto)
    {
        d.pixeles = d.peorTesela = std::max(a.ancho * a.alto, b.ancho * b.alto);
        return d;
    }
    const int teselasX = (a.ancho + 7) / 8;
    std::vector<int> teselas(static_cast<size_t>(teselasX * ((a.alto + 7) / 8)), 0);
    for (int y = 0; y < a.alto; ++y)
    {
        for (int x = 0; x < a.ancho; ++x)
        {
            const size_t i = (static_cast<size_t>(y) * a.ancho + x) * 4;
            bool difiere = false;
            for (size_t c = 0; c < 3; ++c)
            {
                difiere = difiere || std::abs(a.rgba[i + c] - b.rgba[i + c]) > umbral;
            }
            if (difiere)
            {
                ++d.pixeles;
                int& t = teselas[static_cast<size_t>((y / 8) * teselasX + x / 8)];
                d.peorTesela = std::max(d.peorTesela, ++t);
            }
        }
    }
    return d;
}

namespace
{

// The render darkened, its differing pixels red.
imagen_t mapaDiferencias(const imagen_t& actual, const imagen_t& dorado)
{
    imagen_t mapa = actual;
    for (size_t i = 0; i + 3 < mapa.rgba.size(); i += 4)
    {
        bool difiere = false;
        for (size_t c = 0; c < 3; ++c)
        {
            difiere = difiere || std::abs(actual.rgba[i + c] - dorado.rgba[i + c]) > 48;
        }
        for (size_t c = 0; c < 3; ++c)
        {
            mapa.rgba[i + c] = difiere ? (c == 0 ? 255 : 0) : actual.rgba[i + c] / 4;
        }
        mapa.rgba[i + 3] = 255;
    }
    return mapa;
}

}  // namespace

::testing::AssertionResult comparaConDorado(const std::string& nombre, const imagen_t& imagen)
{
    const std::string ruta = std::string(CAD_TEST_DATOS) + "/render/" + nombre + ".png";
    std::string error;
    if (std::getenv("CAD_REGENERA_DORADOS") != nullptr && !guardaPNG(ruta, imagen, error))
    {
        return ::testing::AssertionFailure() << "cannot write " << ruta << ": " << error;
    }
    imagen_t dorado;
    if (!cargaImagen(ruta, dorado, error))
    {
        return ::testing::AssertionFailure()
               << ruta << ": " << error << " (CAD_REGENERA_DORADOS=1 writes it)";
    }
    const diferencias_t d = comparaImagenes(imagen, dorado);
    if (d.peorTesela <= 3 && dorado.ancho == imagen.ancho && dorado.alto == imagen.alto)
    {
        return ::testing::AssertionSuccess();
    }
    const std::string actual = rutaSalidaRender(nombre + ".png");
    const std::string mapa = rutaSalidaRender(nombre + ".diferencias.png");
    guardaPNG(actual, imagen, error);
    if (dorado.ancho == imagen.ancho && dorado.alto == imagen.alto)
    {
        guardaPNG(mapa, mapaDiferencias(imagen, dorado), error);
    }
    return ::testing::AssertionFailure()
           << nombre << ": " << d.pixeles << " pixels differ, up to " << d.peorTesela
           << " in one 8x8 tile (size " << imagen.ancho << "x" << imagen.alto << " against "
           << dorado.ancho << "x" << dorado.alto << "); render " << actual << ", differences "
           << mapa;
}

uint32_t pixel(const imagen_t& imagen, int x, int y)
{
    const size_t fila = static_cast<size_t>(imagen.alto - 1 - y);
    const size_t i = (fila * imagen.ancho + x) * 4;
    return imagen.rgba[i] | (imagen.rgba[i + 1] << 8U) | (imagen.rgba[i + 2] << 16U);
}

}  // namespace cad::prueba
