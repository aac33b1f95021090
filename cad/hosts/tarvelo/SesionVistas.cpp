// The session's measuring, view, plane and local-system orders, and the survey ones: files
// imported into the open drawing and control points by their coordinates.
#include <iomanip>
#include <sstream>
#include <string>
#include <vector>

#include "Importa.h"
#include "Sesion.h"
#include "documento/Dibujo.h"
#include "editor/EditorDibujo.h"
#include "entidades/SistemaLocal.h"

namespace tarvelo
{

namespace
{

std::string vector3(double x, double y, double z)
{
    // -0 reads as 0: a cross product of axes gives it, and it means nothing to a user.
    x += 0.0;
    y += 0.0;
    z += 0.0;
    std::ostringstream s;
    s << std::setprecision(12) << "(" << x << "," << y << "," << z << ")";
    return s.str();
}

std::string vector3(const cad::Punto3<double>& p)
{
    return vector3(p.x, p.y, p.z);
}

std::string vector3(const cad::Vector3D<double>& v)
{
    return vector3(v.x, v.y, v.z);
}

}  // namespace

void Sesion::creaOrdenesVistas()
{
    using args_t = std::vector<std::string>;
    // The measure commands print their own figures: the order adds nothing.
    const auto medida = [this](const char* nombre, const char* ayuda, auto ejecuta)
    {
        return orden_t{nombre,
                       "",
                       ayuda,
                       0,
                       0,
                       false,
                       [ejecuta](const args_t&)
                       {
                           ejecuta();
                           return true;
                       }};
    };
    agregaGrupo(
        "Medir",
        {
            medida("distancia", "distancia 3D, en planta y cota entre dos puntos, rotuladas",
                   [this]() { dibujo.comandoDistancia(); }),
            medida("distanciapolilinea", "longitud de una polilínea que se dibuja, lado a lado",
                   [this]() { dibujo.comandoDistanciaPolilinea(); }),
            medida("area", "doble del área en planta de una polilínea cerrada, con signo",
                   [this]() { dibujo.comandoArea(); }),
            medida("angulo", "ángulos en gonios de un triángulo que se dibuja",
                   [this]() { dibujo.comandoAngulo(); }),
        });
    agregaGrupo(
        "Vista",
        {
            {"encuadre", "", "desplaza la vista con el ratón hasta Intro o esc", 0, 0, false,
             [this](const args_t&)
             {
                 dibujo.comandoEncuadre();
                 return informaVista();
             }},
            {"rotacion", "", "gira la vista con el ratón hasta Intro o esc", 0, 0, false,
             [this](const args_t&)
             {
                 dibujo.comandoRotacion();
                 return informaVista();
             }},
            {"zoomventana", "", "amplía una ventana de dos clics", 0, 0, false,
             [this](const args_t&)
             {
                 dibujo.comandoZoomVentana();
                 return informaVista();
             }},
            {"zoomescala", "FACTOR", "amplía (más de 1) o reduce la vista", 1, 1, false,
             [this](const args_t& a) { return ordenZoomEscala(a); }},
            {"zoomextension", "", "todo el dibujo en la vista", 0, 0, false,
             [this](const args_t&)
             {
                 dibujo.comandoZoomExtension();
                 return informaVista();
             }},
            {"vistainicial", "", "la vista de la sesión: el pixel (x, y) muestra (x, y, 0)", 0, 0,
             false,
             [this](const args_t&)
             {
                 fijaCamara();
                 return informaVista();
             }},
            {"centrorotacion", "", "el punto alrededor del que gira la vista", 0, 0, false,
             [this](const args_t&)
             {
                 return informaSiNo(dibujo.comandoCentroRotacion(), "Centro de rotación fijado",
                                    "Centro de rotación sin cambios");
             }},
            {"posicioncamara", "", "la vista desde una toma de cámara o una foto 360", 0, 0, false,
             [this](const args_t&)
             {
                 dibujo.comandoPosicionCamara();
                 return informaVista();
             }},
        });
    agregaGrupo(
        "Planos y sistemas locales",
        {
            {"planoreferencia", "", "el plano de trabajo: planta, vista o el de una entidad", 0, 0,
             false, [this](const args_t&) { return ordenPlanoReferencia(); }},
            {"interseccionplanos", "", "un punto donde se cortan tres planos", 0, 0, false,
             [this](const args_t&)
             {
                 return informaSiNo(dibujo.comandoInterseccionPlanos(), "Punto de intersección",
                                    "Sin punto de intersección");
             }},
            // Only a named system stays active: the drawing keeps it by its name.
            {"sistemalocal", "NOMBRE", "origen y ejes de un sistema local, que queda activo", 1, 1,
             false, [this](const args_t& a) { return ordenSistemaLocal(a); }},
            {"sinsistemalocal", "", "vuelve a las coordenadas del dibujo", 0, 0, false,
             [this](const args_t&)
             {
                 dibujo.quitaSistemaLocal();
                 salida << "Sin sistema local\n";
                 return true;
             }},
        });
    agregaGrupo(
        "Topografía",
        {
            {"importa", "FICHERO.dxf|FICHERO.obj", "añade al dibujo un plano DXF o un modelo OBJ",
             1, 1, false, [this](const args_t& a) { return ordenImporta(a); }},
            {"puntocontrol", "NOMBRE CODIGO X Y Z", "un punto de control en esas coordenadas", 5, 5,
             false, [this](const args_t& a) { return ordenPuntoControl(a); }},
            {"tomacamara", "NOMBRE X Y Z O P K F AN AL",
             "toma de cámara: posición, giros omega, phi y kappa en radianes, focal, ancho y alto "
             "de la imagen",
             10, 10, false, [this](const args_t& a) { return ordenTomaCamara(a); }},
        });
}

bool Sesion::informaVista()
{
    cad::Punto3<double> objetivo;
    dibujo.getObjetivoCamara(objetivo.x, objetivo.y, objetivo.z);
    double pixel = 0.0;
    pantalla.tamanoPixel(pixel);
    std::ostringstream s;
    s << std::setprecision(6) << pixel;
    salida << "Vista: objetivo " << vector3(objetivo) << ", " << s.str() << " unidades por pixel\n";
    return true;
}

bool Sesion::ordenZoomEscala(const std::vector<std::string>& argumentos)
{
    double factor = 0.0;
    if (!real(argumentos[0], factor) || factor <= 0.0)
    {
        salida << "zoomescala: el factor es un número mayor que 0\n";
        return false;
    }
    dibujo.zoomEscala(factor);
    return informaVista();
}

bool Sesion::ordenPlanoReferencia()
{
    if (!dibujo.comandoPlanoReferencia())
    {
        salida << "Plano de referencia sin cambios\n";
        return true;
    }
    cad::Punto3<double> origen;
    cad::Vector3D<double> normal;
    cad::Plano3D<double> plano;
    dibujo.mDibujo->getPlanoReferencia(origen, normal, plano);
    salida << "Plano de referencia: origen " << vector3(origen) << ", normal " << vector3(normal)
           << '\n';
    return true;
}

bool Sesion::ordenSistemaLocal(const std::vector<std::string>& argumentos)
{
    if (dibujo.existeSistemaLocal(argumentos[0]))
    {
        salida << "sistemalocal: ya hay un sistema local " << argumentos[0] << '\n';
        return false;
    }
    if (!dibujo.comandoSistemaLocal(argumentos[0]))
    {
        salida << "Sistema local sin cambios\n";
        return true;
    }
    const cad::SistemaLocal s = dibujo.mEditor->sistemaLocalActual();
    salida << "Sistema local " << s.nombre << ": origen " << vector3(s.origen) << ", ejes "
           << vector3(s.getEjeX()) << " " << vector3(s.getEjeY()) << " " << vector3(s.getEjeZ())
           << '\n';
    return true;
}

bool Sesion::ordenImporta(const std::vector<std::string>& argumentos)
{
    const std::string& fichero = argumentos[0];
    if (!esImportable(fichero))
    {
        salida << "importa: " << fichero << " no es .dxf ni .obj\n";
        return false;
    }
    const size_t antes = dibujo.mDibujo->entidades.size();
    std::string error;
    if (!importaFichero(*dibujo.mDibujo, fichero, salida, salida, error))
    {
        salida << "importa: no se pudo importar " << fichero << ": " << error << '\n';
        return false;
    }
    dibujo.redibuja();
    return informa(static_cast<long>(dibujo.mDibujo->entidades.size() - antes), "entidad importada",
                   "entidades importadas");
}

bool Sesion::numeros(const char* orden, const std::vector<std::string>& argumentos, size_t desde,
                     double* valores)
{
    for (size_t i = desde; i < argumentos.size(); ++i)
    {
        if (!real(argumentos[i], valores[i - desde]))
        {
            salida << orden << ": " << argumentos[i] << " no es un número\n";
            return false;
        }
    }
    return true;
}

bool Sesion::ordenPuntoControl(const std::vector<std::string>& argumentos)
{
    double v[3] = {};
    if (!numeros("puntocontrol", argumentos, 2, v))
    {
        return false;
    }
    if (dibujo.nuevoPuntoControl(argumentos[0], argumentos[1], v[0], v[1], v[2]) == 0)
    {
        salida << "puntocontrol: no se creó el punto " << argumentos[0] << '\n';
        return false;
    }
    salida << "Punto de control " << argumentos[0] << " en " << vector3(v[0], v[1], v[2]) << '\n';
    return true;
}

bool Sesion::ordenTomaCamara(const std::vector<std::string>& argumentos)
{
    double v[9] = {};
    if (!numeros("tomacamara", argumentos, 1, v))
    {
        return false;
    }
    // The photograph is the host's to load: the shot refers to no material.
    if (dibujo.nuevaTomaCamara(v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7], v[8], argumentos[0],
                               "", 0) == 0)
    {
        salida << "tomacamara: no se creó la toma " << argumentos[0] << '\n';
        return false;
    }
    salida << "Toma de cámara " << argumentos[0] << " en " << vector3(v[0], v[1], v[2]) << '\n';
    return true;
}

}  // namespace tarvelo
