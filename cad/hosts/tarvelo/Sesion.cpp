// The session's frame: input, the dispatch of orders, the display and the drawing it opens.
// The orders themselves are in SesionOrdenes.cpp.
#include "Sesion.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <stdexcept>

#include "base/ColaMensajes.h"
#include "base/Excepcion.h"
#include "documento/Dibujo.h"

namespace tarvelo
{

namespace
{

constexpr int kAncho = 800;
constexpr int kAlto = 600;
// A command that still asks after this many cancels would hold the session for ever.
constexpr int kMaximoCancelaciones = 10000;

std::string recorta(const std::string& texto)
{
    const char* blancos = " \t\r\n";
    const size_t inicio = texto.find_first_not_of(blancos);
    if (inicio == std::string::npos)
    {
        return "";
    }
    return texto.substr(inicio, texto.find_last_not_of(blancos) - inicio + 1);
}

std::vector<std::string> divide(const std::string& texto)
{
    std::vector<std::string> palabras;
    size_t i = 0;
    while (i < texto.size())
    {
        const size_t inicio = texto.find_first_not_of(" \t", i);
        if (inicio == std::string::npos)
        {
            break;
        }
        const size_t fin = texto.find_first_of(" \t", inicio);
        palabras.push_back(texto.substr(inicio, fin - inicio));
        i = fin == std::string::npos ? texto.size() : fin;
    }
    return palabras;
}

// Removes the queue's external step however the run ends: the queue outlives the session.
struct PasoInstalado
{
    explicit PasoInstalado(std::function<void()> paso)
    {
        cad::ColaMensajes::delHilo().setPasoExterno(std::move(paso));
    }
    ~PasoInstalado() { cad::ColaMensajes::delHilo().setPasoExterno(nullptr); }
    PasoInstalado(const PasoInstalado&) = delete;
    PasoInstalado& operator=(const PasoInstalado&) = delete;
};

}  // namespace

Sesion::Sesion(std::istream& entrada_, std::ostream& salida_, opciones_t opciones_)
    : Sesion(std::make_unique<cad::PantallaReferencia>(), nullptr, salida_, opciones_)
{
    entrada = &entrada_;
}

Sesion::Sesion(cad::PantallaReferencia& pantalla_, std::ostream& salida_, opciones_t opciones_)
    : Sesion(nullptr, &pantalla_, salida_, opciones_)
{
}

Sesion::Sesion(std::unique_ptr<cad::PantallaReferencia> propia_, cad::PantallaReferencia* ajena,
               std::ostream& salida_, opciones_t opciones_)
    : salida(salida_),
      opciones(opciones_),
      propia(std::move(propia_)),
      pantalla(ajena != nullptr ? *ajena : *propia),
      camaraFija(ajena == nullptr),
      dibujo(nullptr, nullptr)
{
    if (camaraFija)
    {
        // Nothing reads the call record, which would otherwise grow with every repaint.
        pantalla.grabando = false;
        pantalla.setTamano(kAncho, kAlto);
    }
    envoltorio.setPantalla(&pantalla);
    dibujo.setSalidaTexto(
        [this](const std::string& texto)
        {
            // The editor sends an empty text to clear its prompt line when a wait ends.
            if (!texto.empty())
            {
                salida << texto << '\n';
            }
        });
    reiniciaEditor();
    dibujo.nuevoDocumento();
    fijaCamara();
    creaOrdenes();
}

Sesion::~Sesion() = default;

bool Sesion::abreInicial(const std::string& fichero)
{
    return abreDibujo(fichero);
}

void Sesion::recorre()
{
    cad::ColaMensajes& cola = cad::ColaMensajes::delHilo();
    const PasoInstalado instalado([this]() { paso(); });
    while (!salir)
    {
        cola.ejecutaUno();
    }
}

int Sesion::ejecutaGuion(std::istream& lineas)
{
    // The session's own input comes back however the run ends: `lineas` dies with the caller.
    struct Entrada
    {
        std::istream*& actual;
        std::istream* anterior;
        ~Entrada() { actual = anterior; }
    } restaura{entrada, entrada};
    entrada = &lineas;
    terminando = salir = fallada = false;
    cancelacionesAlTerminar = 0;
    numeroLinea = 0;
    // Nothing runs between scripts; an order cut short by an exception left no count behind.
    profundidad = 0;
    // The drawing outlives the script: `sal` ends the script, with nothing to warn of.
    avisoCambiosDado = true;
    recorre();
    salida << std::flush;
    return codigo();
}

int Sesion::ejecuta()
{
    recorre();
    if (dibujo.hayCambios())
    {
        salida << "Se descartan los cambios sin guardar\n";
    }
    salida << std::flush;
    return codigo();
}

// ---------------------------------------------------------------------------------------
// Input

void Sesion::paso()
{
    if (terminando)
    {
        pasoAlTerminar();
        return;
    }
    // The display keeps every prompt it is shown; the session has printed them already.
    pantalla.textos.clear();
    std::string linea;
    if (!leeLinea(linea))
    {
        if (!opciones.eco)
        {
            salida << '\n';  // ends the line the last marker started
        }
        terminando = true;
        return;
    }
    cad::ColaMensajes::delHilo().publica([this, linea]() { atiende(linea); });
}

bool Sesion::pasoAlTerminar()
{
    if (!dibujo.dentroComandoInteractivo() && profundidad == 0)
    {
        salir = true;
        return true;
    }
    if (++cancelacionesAlTerminar > kMaximoCancelaciones)
    {
        salida << std::flush;
        std::cerr << "tarvelo: la orden en curso no atiende la cancelación\n";
        std::_Exit(3);
    }
    cad::ColaMensajes::delHilo().publica([this]() { dibujo.cancelaComando(); });
    return false;
}

void Sesion::entraLinea(const std::string& texto)
{
    pantalla.textos.clear();
    std::string linea = texto;
    if (terminando || !admiteLinea(linea))
    {
        return;
    }
    cad::ColaMensajes& cola = cad::ColaMensajes::delHilo();
    cola.publica([this, linea]() { atiende(linea); });
    if (profundidad == 0)
    {
        cola.ejecutaPendientes();
    }
}

void Sesion::ejecutaOrden(const std::vector<std::string>& palabras)
{
    std::string texto;
    for (const std::string& p : palabras)
    {
        texto += (texto.empty() ? "" : " ") + p;
    }
    if (opciones.eco)
    {
        salida << marcador() << ' ' << texto << '\n';
    }
    ejecutaPalabras(palabras, dibujo.dentroComandoInteractivo());
}

bool Sesion::leeLinea(std::string& linea)
{
    for (;;)
    {
        if (!opciones.eco)
        {
            salida << marcador() << ' ' << std::flush;
        }
        if (!std::getline(*entrada, linea))
        {
            return false;
        }
        if (admiteLinea(linea))
        {
            return true;
        }
    }
}

bool Sesion::admiteLinea(std::string& linea)
{
    ++numeroLinea;
    linea = recorta(linea);
    if (!linea.empty() && linea[0] == '#')
    {
        if (opciones.eco)
        {
            salida << linea << '\n';
        }
        return false;
    }
    // Enter means something only to a command that waits; a transcript keeps the blank
    // line that separates a script's parts.
    if (linea.empty() && !dibujo.dentroComandoInteractivo())
    {
        if (opciones.eco)
        {
            salida << '\n';
        }
        return false;
    }
    if (opciones.eco)
    {
        salida << marcador() << (linea.empty() ? "" : " " + linea) << '\n';
    }
    return true;
}

std::string Sesion::marcador()
{
    const std::vector<std::string> lista = dibujo.listaOpciones();
    if (lista.empty() || !dibujo.dentroComandoInteractivo())
    {
        return ">";
    }
    std::string texto = "[";
    for (size_t i = 0; i < lista.size(); ++i)
    {
        texto += (i == 0 ? "" : "/") + lista[i];
    }
    return texto + "]>";
}

void Sesion::atiende(const std::string& linea)
{
    if (dibujo.dentroComandoInteractivo())
    {
        atiendeEnEspera(linea);
        return;
    }
    if (linea.empty())
    {
        return;
    }
    const std::vector<std::string> palabras = divide(linea);
    if (palabras[0] == "clic")
    {
        int x = 0;
        int y = 0;
        int boton = 0;
        if (!leeClic(palabras, x, y, boton))
        {
            falla();
        }
        else if (boton == cad::PantallaCAD::kBotonDerecho)
        {
            // The right button only ends a prompt for entities.
            salida << "No hay ninguna orden en curso\n";
        }
        else if (!clicSinOrden(x, y))
        {
            falla();
        }
        return;
    }
    if (palabras[0] == "esc")
    {
        salida << "No hay ninguna orden en curso\n";
        return;
    }
    ejecutaOrden(linea[0] == '/' ? linea.substr(1) : linea, false);
}

void Sesion::atiendeEnEspera(const std::string& linea)
{
    if (linea.empty())
    {
        dibujo.introPulsado("");
        return;
    }
    if (linea == "esc")
    {
        dibujo.cancelaComando();
        return;
    }
    const std::vector<std::string> palabras = divide(linea);
    if (palabras[0] == "clic")
    {
        int x = 0;
        int y = 0;
        int boton = 0;
        if (!leeClic(palabras, x, y, boton))
        {
            falla();
            return;
        }
        repinta();
        pantalla.clic(x, y, boton);
        return;
    }
    if (linea[0] == '/')
    {
        ejecutaOrden(linea.substr(1), true);
        return;
    }
    dibujo.introPulsado(linea);
}

void Sesion::ejecutaOrden(const std::string& texto, bool desdeEspera)
{
    ejecutaPalabras(divide(texto), desdeEspera);
}

void Sesion::ejecutaPalabras(const std::vector<std::string>& palabras, bool desdeEspera)
{
    if (palabras.empty())
    {
        salida << "Falta el nombre de la orden\n";
        falla();
        return;
    }
    const orden_t* orden = nullptr;
    for (const orden_t& o : ordenes)
    {
        if (o.nombre == palabras[0])
        {
            orden = &o;
        }
    }
    if (orden == nullptr)
    {
        salida << "Orden desconocida: " << palabras[0] << " (ayuda lista las órdenes)\n";
        falla();
        return;
    }
    const std::vector<std::string> argumentos(palabras.begin() + 1, palabras.end());
    if (argumentos.size() < orden->minimo || argumentos.size() > orden->maximo)
    {
        salida << "Uso: " << orden->nombre
               << (orden->argumentos.empty() ? "" : " " + orden->argumentos) << '\n';
        falla();
        return;
    }
    if (desdeEspera && orden->soloSinOrden)
    {
        salida << orden->nombre << ": no con una orden en curso (esc la cancela)\n";
        falla();
        return;
    }
    ++profundidad;
    bool hecha = false;
    // A failure of the kernel's own ends the order, never the session: the drawing and its
    // unsaved work stay.
    try
    {
        hecha = orden->ejecuta(argumentos);
    }
    catch (const cad::Excepcion&)
    {
        salida << orden->nombre << ": error interno del núcleo; el dibujo sigue como estaba\n";
    }
    catch (const std::exception& e)
    {
        salida << orden->nombre << ": " << e.what() << '\n';
    }
    --profundidad;
    if (!hecha)
    {
        falla();
    }
}

bool Sesion::entero(const std::string& texto, long& valor)
{
    if (texto.empty())
    {
        return false;
    }
    errno = 0;
    char* fin = nullptr;
    valor = std::strtol(texto.c_str(), &fin, 10);
    return errno == 0 && fin != nullptr && *fin == '\0';
}

bool Sesion::leeClic(const std::vector<std::string>& palabras, int& x, int& y, int& boton)
{
    long lx = 0;
    long ly = 0;
    const bool derecho = palabras.size() == 4 && palabras[3] == "derecho";
    if ((palabras.size() != 3 && !derecho) || !entero(palabras[1], lx) || !entero(palabras[2], ly))
    {
        salida << "Uso: clic X Y [derecho] (un pixel de la vista, y hacia arriba)\n";
        return false;
    }
    boton = derecho ? cad::PantallaCAD::kBotonDerecho : cad::PantallaCAD::kBotonIzquierdo;
    if (lx < 0 || lx >= pantalla.ancho || ly < 0 || ly >= pantalla.alto)
    {
        salida << "clic: el pixel (" << lx << "," << ly << ") cae fuera de la vista de "
               << pantalla.ancho << "x" << pantalla.alto << '\n';
        return false;
    }
    x = static_cast<int>(lx);
    y = static_cast<int>(ly);
    return true;
}

void Sesion::falla()
{
    fallada = true;
    if (opciones.detieneAlFallar && !terminando)
    {
        salida << "El guion se detiene en la línea " << numeroLinea << '\n';
        terminando = true;
    }
}

// ---------------------------------------------------------------------------------------
// Display and drawing

void Sesion::repinta()
{
    // Nothing else needs the scene, and the scene only goes stale when the drawing says so.
    const cad::Dibujo& d = *dibujo.mDibujo;
    if (d.redibujar || !d.vistaAplicada)
    {
        dibujo.dibuja(&envoltorio);
    }
}

void Sesion::fijaCamara()
{
    if (!camaraFija)
    {
        if (alCambiarDibujo)
        {
            alCambiarDibujo();
        }
        return;
    }
    pantalla.setCamara(cad::Punto3<double>(kAncho / 2.0, kAlto / 2.0, 100.0),
                       cad::Punto3<double>(kAncho / 2.0, kAlto / 2.0, 0.0),
                       cad::Vector3D<double>(0, 1, 0), 1.0, 0.0);
    // Each paint pass places the drawing's stored view on the display when the drawing has
    // marked it unapplied (a new document, a read, every edit): storing the display's camera
    // as that view is what keeps it.
    dibujo.guardaVistaActual();
}

void Sesion::reiniciaEditor()
{
    // The facade makes a new editor here and re-attaches the text output.
    dibujo.setPantalla(&envoltorio);
}

void Sesion::nuevo()
{
    reiniciaEditor();
    dibujo.nuevoDocumento();
    fijaCamara();
    ficheroActual.clear();
    avisoCambiosDado = false;
}

bool Sesion::abre(const std::string& fichero, std::string& mensaje, int64_t& danadas)
{
    // One read only: a drawing of millions of points is not read twice. The checked read
    // leaves the drawing as it was when it fails; the undo history goes in any case, as the
    // read activates the file's local system on the editor that exists then.
    reiniciaEditor();
    danadas = 0;
    if (!dibujo.leeComprobado(fichero, mensaje, danadas))
    {
        return false;
    }
    fijaCamara();
    dibujo.borraMarcaCambios();
    ficheroActual = fichero;
    avisoCambiosDado = false;
    return true;
}

bool Sesion::abreDibujo(const std::string& fichero)
{
    // The file is tried on a scratch drawing first, so that the open one, and its undo
    // history, survive a file that can't be read; the kernel says why.
    std::string aviso;
    {
        Fendrix::WrapDibujoCAD prueba(nullptr, nullptr);
        prueba.nuevoDocumento();
        int64_t danadas = 0;
        if (!prueba.leeComprobado(fichero, aviso, danadas))
        {
            salida << "No se pudo leer el dibujo: " << aviso << '\n';
            return false;
        }
    }
    // A new editor first: the old undo history speaks of the old drawing's entities, and
    // the read activates the file's local system on the editor that exists then.
    reiniciaEditor();
    dibujo.nuevoDocumento();
    if (!dibujo.lee(fichero))
    {
        // The same bytes read a moment ago: only a file changed in between gets here.
        salida << "No se pudo leer el dibujo " << fichero << '\n';
        dibujo.nuevoDocumento();
        fijaCamara();
        return false;
    }
    if (!aviso.empty())
    {
        salida << "Aviso: " << aviso << '\n';
    }
    // The file's own view would move what the pixels show; the session's camera is fixed.
    fijaCamara();
    // The read marks the drawing changed; it holds what the file holds.
    dibujo.borraMarcaCambios();
    ficheroActual = fichero;
    avisoCambiosDado = false;
    return true;
}

}  // namespace tarvelo
