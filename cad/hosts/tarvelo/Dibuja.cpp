// The `dibuja` order: a drawing rendered with OpenGL, without a window, into a PNG file.
#include "Dibuja.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <ostream>

#include "ContextoEGL.h"
#include "Fendrix/Fendrix.h"
#include "Imagen.h"
#include "PantallaGL.h"
#include "documento/Dibujo.h"

namespace tarvelo
{

namespace
{

constexpr int kLadoMinimo = 16;
constexpr int kLadoMaximo = 8192;
// What the fitted drawing leaves free around it.
constexpr double kMargen = 0.95;

struct opciones_t
{
    std::string fichero;
    std::string destino;
    std::string vista = "planta";
    int ancho = 1600;
    int alto = 1200;
    bool conModo = false;
    int modo = 0;
};

// A whole number in decimal digits only; false when it is not one or does not fit.
bool entero(const std::string& texto, int& valor)
{
    if (texto.empty() || texto.size() > 9 ||
        !std::all_of(texto.begin(), texto.end(), [](char c) { return c >= '0' && c <= '9'; }))
    {
        return false;
    }
    valor = std::stoi(texto);
    return true;
}

// Reads the order's arguments; false, with the reason, when they are wrong.
bool leeOpciones(const std::vector<std::string>& argumentos, opciones_t& o, std::string& error)
{
    std::vector<std::string> posicionales;
    for (size_t i = 0; i < argumentos.size(); ++i)
    {
        const std::string& a = argumentos[i];
        if (a != "--vista" && a != "--tamano" && a != "--modo")
        {
            if (a.size() > 2 && a.compare(0, 2, "--") == 0)
            {
                error = "opción desconocida: " + a;
                return false;
            }
            posicionales.push_back(a);
            continue;
        }
        if (i + 1 == argumentos.size())
        {
            error = "falta el valor de " + a;
            return false;
        }
        const std::string& valor = argumentos[++i];
        if (a == "--vista")
        {
            o.vista = valor;
        }
        else if (a == "--tamano")
        {
            const size_t x = valor.find('x');
            if (x == std::string::npos || !entero(valor.substr(0, x), o.ancho) ||
                !entero(valor.substr(x + 1), o.alto))
            {
                error = "el tamaño debe escribirse ANCHOxALTO, como 1600x1200, no " + valor;
                return false;
            }
            if (o.ancho < kLadoMinimo || o.ancho > kLadoMaximo || o.alto < kLadoMinimo ||
                o.alto > kLadoMaximo)
            {
                error = "el tamaño " + valor + " no vale: cada lado debe medir de " +
                        std::to_string(kLadoMinimo) + " a " + std::to_string(kLadoMaximo) +
                        " píxeles";
                return false;
            }
        }
        else
        {
            if (!entero(valor, o.modo) || o.modo > 5)
            {
                error = "el modo debe ser un número de 0 a 5, no " + valor;
                return false;
            }
            o.conModo = true;
        }
    }
    if (posicionales.size() != 2)
    {
        error =
            "uso: tarvelo dibuja FICHERO.cad SALIDA.png [--vista planta|iso|NOMBRE] "
            "[--tamano ANCHOxALTO] [--modo 0..5]";
        return false;
    }
    o.fichero = posicionales[0];
    o.destino = posicionales[1];
    return true;
}

// The drawing's named views as "a, b, c".
std::string listaVistas(Fendrix::WrapDibujoCAD& dibujo)
{
    std::string lista;
    for (int32_t i = 0; i < dibujo.numeroVistas(); ++i)
    {
        lista += (i == 0 ? "" : ", ") + dibujo.nombreVista(i);
    }
    return lista;
}

// Looks at the drawing's extent from above (+Y up) or from (1,-1,1) (+Z up), fitted to the
// image with a margin. An empty drawing is looked at around the origin.
void encuadra(cad::PantallaGL& pantalla, const cad::Rect3<double>& caja, bool iso)
{
    const bool valida = caja.esValido();
    const cad::Punto3<double> centro = valida ? caja.centro() : cad::Punto3<double>(0, 0, 0);
    // The camera stands outside the box, so that nothing of it is behind the eye.
    const double distancia = valida ? std::max((caja.maximo - caja.minimo).modulo(), 1.0) : 1.0;
    cad::Vector3D<double> direccion(0, 0, 1);
    cad::Vector3D<double> arriba(0, 1, 0);
    if (iso)
    {
        direccion = cad::Vector3D<double>(1, -1, 1) / std::sqrt(3.0);
        arriba = cad::Vector3D<double>(0, 0, 1);
    }
    pantalla.setCamara(centro + direccion * distancia, centro, arriba, 1.0, 0.0);
    if (valida)
    {
        pantalla.zoomExtension(caja);
        pantalla.zoomEscala(kMargen);
    }
}

}  // namespace

int dibuja(const std::vector<std::string>& argumentos, std::ostream& salida, std::ostream& errores)
{
    opciones_t o;
    std::string error;
    if (!leeOpciones(argumentos, o, error))
    {
        errores << "tarvelo: " << error << "\n";
        return 1;
    }

    // Destroyed in reverse: the editor refers to the display, and the display's GL objects
    // go while the context is current.
    cad::ContextoEGL contexto;
    cad::PantallaGL pantalla;
    Fendrix::WrapPantallaCAD envoltorio;
    Fendrix::WrapDibujoCAD dibujo(nullptr, nullptr);
    struct liberaGL_t
    {
        cad::ContextoEGL& contexto;
        cad::PantallaGL& pantalla;
        ~liberaGL_t()
        {
            contexto.hazActual();
            pantalla.liberaGL();
        }
    } liberaGL{contexto, pantalla};

    // The drawing first: a file that can't be read needs no OpenGL.
    dibujo.nuevoDocumento();
    std::string aviso;
    int64_t danadas = 0;
    if (!dibujo.leeComprobado(o.fichero, aviso, danadas))
    {
        errores << "tarvelo: no se pudo leer el dibujo: " << aviso << "\n";
        return 1;
    }
    if (!aviso.empty())
    {
        errores << "tarvelo: aviso: " << aviso << "\n";
    }
    if (o.conModo)
    {
        dibujo.setRepresentacionModelos(
            static_cast<Fendrix::WrapDibujoCAD::representacion_modelos>(o.modo));
    }

    if (!contexto.crea(o.ancho, o.alto, error))
    {
        errores << "tarvelo: no se pudo preparar OpenGL: " << error << "\n";
        return 1;
    }
    pantalla.grabando = false;
    pantalla.setTamano(o.ancho, o.alto);
    const std::filesystem::path carpeta = std::filesystem::path(o.fichero).parent_path();
    pantalla.carpetaTexturas = carpeta.empty() ? "." : carpeta.string();
    if (!pantalla.iniciaGL(error))
    {
        errores << "tarvelo: no se pudo preparar OpenGL: " << error << "\n";
        return 1;
    }
    envoltorio.setPantalla(&pantalla);
    dibujo.setPantalla(&envoltorio);

    if (o.vista == "planta" || o.vista == "iso")
    {
        encuadra(pantalla, dibujo.mDibujo->extension, o.vista == "iso");
    }
    else
    {
        bool existe = false;
        for (int32_t i = 0; i < dibujo.numeroVistas() && !existe; ++i)
        {
            existe = dibujo.nombreVista(i) == o.vista;
        }
        if (!existe)
        {
            const std::string vistas = listaVistas(dibujo);
            errores << "tarvelo: el dibujo no tiene la vista " << o.vista << "; "
                    << (vistas.empty() ? "no tiene vistas con nombre" : "sus vistas son: " + vistas)
                    << " (o planta, iso)\n";
            return 1;
        }
        dibujo.activaVista(o.vista);
    }
    // Each paint pass puts the drawing's stored view on the display: storing the camera just
    // placed is what keeps it.
    dibujo.guardaVistaActual();
    // The whole drawing is described afresh, whatever the read left marked.
    dibujo.redibuja();
    dibujo.dibuja(&envoltorio);

    contexto.hazActual();
    pantalla.pinta();
    const cad::imagen_t imagen = contexto.lee();
    if (!cad::guardaPNG(o.destino, imagen, error))
    {
        errores << "tarvelo: " << error << "\n";
        return 1;
    }
    salida << "PNG escrito en " << o.destino << " (" << imagen.ancho << "x" << imagen.alto << ", "
           << contexto.renderizador() << ")\n";
    return 0;
}

}  // namespace tarvelo
