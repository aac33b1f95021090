#include "Sesion.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <set>
#include <stdexcept>
#include <system_error>
#include <unordered_map>

#include "Demo.h"
#include "base/ColaMensajes.h"
#include "base/Excepcion.h"
#include "documento/Dibujo.h"
#include "documento/SeleccionEntidades.h"
#include "entidades/Entidad.h"
#include "entidades/Poligono.h"
#include "entidades/Polilinea.h"

namespace tarvelo
{

namespace
{

constexpr int kAncho = 800;
constexpr int kAlto = 600;
// Beyond this many vertices an entity's line ends in "...".
constexpr size_t kVerticesListados = 6;
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

// A whole decimal integer, or false.
bool entero(const std::string& texto, long& valor)
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

// Millimetres at survey coordinates, without trailing zeros: "431200.5", "0", "-2.25".
std::string numero(double v)
{
    char texto[64];
    std::snprintf(texto, sizeof texto, "%.3f", v);
    std::string s = texto;
    if (s.find('.') != std::string::npos)
    {
        while (s.back() == '0')
        {
            s.pop_back();
        }
        if (s.back() == '.')
        {
            s.pop_back();
        }
    }
    return s == "-0" ? "0" : s;
}

std::string cuenta(long n, const char* singular, const char* plural)
{
    return std::to_string(n) + " " + (n == 1 ? singular : plural);
}

int64_t handleDe(const cad::Entidad* e)
{
    return static_cast<int64_t>(reinterpret_cast<intptr_t>(e));
}

// The entity, its points as the facade's getVertices gives them; "?" for null.
std::string describeEntidad(const cad::Entidad* e)
{
    if (e == nullptr)
    {
        return "?";
    }
    // A polygon and a polyline share their file tag, so the tag alone names both "Polilinea".
    std::string texto = dynamic_cast<const cad::Poligono*>(e) != nullptr
                            ? "Poligono"
                            : cad::nombreTipo(e->etiqueta());
    // The kernel's table of names lacks some kinds (texts among them): the tag says more. A
    // damaged block kept raw has no tag to trust.
    if (e->tamanoBloque() == cad::kBloqueCrudo)
    {
        return "Dañada, sin leer";
    }
    if (texto == "Desconocida")
    {
        texto = e->etiqueta();
    }
    std::vector<cad::Punto3<double>> c;
    e->coordenadas(c);
    const size_t n = c.size();
    for (size_t i = 0; i < n && i < kVerticesListados; ++i)
    {
        texto += (i == 0 ? " (" : "-(") + numero(c[i].x) + "," + numero(c[i].y) + "," +
                 numero(c[i].z) + ")";
    }
    if (n == 0)
    {
        texto += " (sin vértices)";
    }
    if (n > kVerticesListados)
    {
        texto += "-... (" + std::to_string(n) + " vértices)";
    }
    const auto* polilinea = dynamic_cast<const cad::Polilinea*>(e);
    if (polilinea != nullptr && polilinea->cerrada)
    {
        texto += " cerrada";
    }
    return texto;
}

// One entity by handle. The search runs from the newest entity, which is the one a creating
// order describes, so that describing each new entity is no search of the whole drawing.
std::string describeEntidad(Fendrix::WrapDibujoCAD& dibujo, int64_t handle)
{
    const cad::ListaEntidades& lista = dibujo.mDibujo->entidades;
    const auto it = std::find_if(lista.rbegin(), lista.rend(),
                                 [handle](const cad::Entidad* e) { return handleDe(e) == handle; });
    return describeEntidad(it != lista.rend() ? *it : nullptr);
}

// The drawing's entities by handle, to describe a set of handles with one pass over the list.
std::unordered_map<int64_t, const cad::Entidad*> porHandle(const cad::Dibujo& d)
{
    std::unordered_map<int64_t, const cad::Entidad*> indice;
    indice.reserve(d.entidades.size());
    for (const cad::Entidad* e : d.entidades)
    {
        indice.emplace(handleDe(e), e);
    }
    return indice;
}

// Creates the missing folders of `destino`, and nothing outside them: the kernel writes the
// file itself, whole or not at all.
bool creaCarpetas(const std::string& destino, std::string& error)
{
    namespace fs = std::filesystem;
    std::error_code ec;
    const fs::path ruta(destino);
    if (ruta.has_parent_path())
    {
        fs::create_directories(ruta.parent_path(), ec);
        if (ec)
        {
            error = "no se pudo crear la carpeta " + ruta.parent_path().string();
            return false;
        }
    }
    return true;
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

int Sesion::ejecuta()
{
    cad::ColaMensajes& cola = cad::ColaMensajes::delHilo();
    const PasoInstalado instalado([this]() { paso(); });
    while (!salir)
    {
        cola.ejecutaUno();
    }
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
    ultimaRespuesta = respuesta_e::kCancela;
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
    const bool enEspera = dibujo.dentroComandoInteractivo();
    ejecutaPalabras(palabras, enEspera);
    if (enEspera)
    {
        ultimaRespuesta = respuesta_e::kOrden;
    }
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
        if (!leeClic(palabras, x, y) || !clicSinOrden(x, y))
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
        ultimaRespuesta = respuesta_e::kIntro;
        dibujo.introPulsado("");
        return;
    }
    if (linea == "esc")
    {
        ultimaRespuesta = respuesta_e::kCancela;
        dibujo.cancelaComando();
        return;
    }
    const std::vector<std::string> palabras = divide(linea);
    if (palabras[0] == "clic")
    {
        int x = 0;
        int y = 0;
        if (!leeClic(palabras, x, y))
        {
            falla();
            return;
        }
        ultimaRespuesta = respuesta_e::kOtra;
        repinta();
        pantalla.clic(x, y);
        return;
    }
    if (linea[0] == '/')
    {
        ejecutaOrden(linea.substr(1), true);
        // Set after the order: an interactive one has displaced the wait, which ends next.
        ultimaRespuesta = respuesta_e::kOrden;
        return;
    }
    ultimaRespuesta = respuesta_e::kOtra;
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

bool Sesion::leeClic(const std::vector<std::string>& palabras, int& x, int& y)
{
    long lx = 0;
    long ly = 0;
    if (palabras.size() != 3 || !entero(palabras[1], lx) || !entero(palabras[2], ly))
    {
        salida << "Uso: clic X Y (un pixel de la vista, y hacia arriba)\n";
        return false;
    }
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

std::vector<std::pair<int64_t, std::string>> Sesion::describeEntidades()
{
    // The set getEntidades gives, taken as entities rather than looked up handle by handle.
    const cad::SeleccionEntidades todas =
        dibujo.mDibujo->nuevaSeleccion(cad::Dibujo::kSeleccionTodas);
    std::vector<std::pair<int64_t, std::string>> lista;
    lista.reserve(todas.entidades.size());
    for (const cad::Entidad* e : todas.entidades)
    {
        lista.emplace_back(handleDe(e), describeEntidad(e));
    }
    return lista;
}

void Sesion::cuentaCambios(const char* que,
                           const std::vector<std::pair<int64_t, std::string>>& antes)
{
    const std::vector<std::pair<int64_t, std::string>> despues = describeEntidades();
    std::set<int64_t> enAntes;
    std::set<int64_t> enDespues;
    for (const auto& [h, d] : antes)
    {
        enAntes.insert(h);
    }
    for (const auto& [h, d] : despues)
    {
        enDespues.insert(h);
    }
    bool alguno = false;
    for (const auto& [h, d] : antes)
    {
        if (enDespues.count(h) == 0)
        {
            salida << que << ": se quita " << d << '\n';
            alguno = true;
        }
    }
    for (const auto& [h, d] : despues)
    {
        if (enAntes.count(h) == 0)
        {
            salida << que << ": se repone " << d << '\n';
            alguno = true;
        }
    }
    if (!alguno)
    {
        salida << que << ", sin cambios en las entidades\n";
    }
}

// ---------------------------------------------------------------------------------------
// Orders

void Sesion::creaOrdenes()
{
    using args_t = std::vector<std::string>;
    ordenes = {
        {"punto", "", "puntos hasta Intro o esc", 0, 0, false,
         [this](const args_t&) { return ordenPunto(); }},
        {"linea", "", "líneas encadenadas hasta Intro o esc", 0, 0, false,
         [this](const args_t&) { return ordenLinea(); }},
        {"polilinea", "", "una polilínea; opciones Cerrar y Deshacer, Intro la termina", 0, 0,
         false, [this](const args_t&) { return ordenPolilinea(); }},
        {"selecciona", "", "selecciona lo que cae en una ventana de dos clics", 0, 0, false,
         [this](const args_t&) { return ordenSelecciona(); }},
        {"deselecciona", "", "vacía la selección", 0, 0, false,
         [this](const args_t&)
         {
             dibujo.deselecciona();
             salida << "Selección vacía\n";
             return true;
         }},
        {"deshacer", "", "deshace el último paso", 0, 0, false,
         [this](const args_t&) { return ordenDeshacer(false); }},
        {"rehacer", "", "rehace el último paso deshecho", 0, 0, false,
         [this](const args_t&) { return ordenDeshacer(true); }},
        {"referencia", "[on [MASCARA] | off]",
         "referencia a entidades: 1 extremos, 2 medios, 8 inserción, 16 cercano", 0, 2, false,
         [this](const args_t& a) { return ordenReferencia(a); }},
        {"lista", "", "una línea por entidad", 0, 0, false,
         [this](const args_t&) { return ordenLista(); }},
        {"info", "", "capas, entidades por tipo y extensión", 0, 0, false,
         [this](const args_t&)
         {
             imprimeInfo(dibujo, salida);
             return true;
         }},
        {"guarda", "[FICHERO.cad]", "guarda el dibujo (por defecto, en el fichero abierto)", 0, 1,
         false, [this](const args_t& a) { return ordenGuarda(a); }},
        {"abre", "FICHERO.cad", "abre un dibujo en lugar del actual", 1, 1, true,
         [this](const args_t& a) { return ordenAbre(a); }},
        {"nuevo", "", "empieza un dibujo vacío", 0, 0, true,
         [this](const args_t&)
         {
             reiniciaEditor();
             dibujo.nuevoDocumento();
             fijaCamara();
             ficheroActual.clear();
             avisoCambiosDado = false;
             salida << "Dibujo nuevo\n";
             return true;
         }},
        {"dxf", "FICHERO.dxf", "exporta el dibujo a DXF", 1, 1, false,
         [this](const args_t& a) { return ordenDXF(a); }},
        {"ayuda", "", "esta lista", 0, 0, false, [this](const args_t&) { return ordenAyuda(); }},
        {"sal", "", "termina la sesión", 0, 0, false, [this](const args_t&) { return ordenSal(); }},
    };
}

bool Sesion::ordenPunto()
{
    const int n = dibujo.comandoPunto();
    salida << cuenta(n, "punto creado", "puntos creados") << '\n';
    return true;
}

bool Sesion::ordenLinea()
{
    const int n = dibujo.comandoLinea();
    salida << cuenta(n, "línea creada", "líneas creadas") << '\n';
    return true;
}

bool Sesion::ordenPolilinea()
{
    const std::vector<std::string> conOpciones = {"Cerrar", "Deshacer"};
    std::vector<double> vertices;
    bool cerrada = false;
    bool aceptada = false;
    for (;;)
    {
        const size_t n = vertices.size() / 3;
        int32_t opcion = -1;
        double x = 0.0;
        double y = 0.0;
        double z = 0.0;
        ultimaRespuesta = respuesta_e::kOtra;
        if (!dibujo.getPunto(
                n == 0 ? "Primer vértice de la polilínea:" : "Siguiente vértice de la polilínea:",
                n == 0 ? std::vector<std::string>() : conOpciones, opcion, x, y, z))
        {
            // Only Enter ends it well; a cancel or another order drops it.
            aceptada = ultimaRespuesta == respuesta_e::kIntro;
            break;
        }
        if (opcion == 0)
        {
            if (n >= 3)
            {
                cerrada = true;
                aceptada = true;
                break;
            }
            salida << "Para cerrar hacen falta tres vértices\n";
        }
        else if (opcion == 1)
        {
            vertices.resize(vertices.size() - 3);
            salida << "Vértice quitado, quedan " << vertices.size() / 3 << '\n';
        }
        else
        {
            vertices.insert(vertices.end(), {x, y, z});
        }
    }
    const size_t n = vertices.size() / 3;
    if (!aceptada || n < 2)
    {
        salida << "Polilínea anulada\n";
        return true;
    }
    const int64_t h = dibujo.nuevaPolilinea3D(vertices, cerrada);
    if (h == 0)
    {
        salida << "No se pudo crear la polilínea\n";
        return false;
    }
    salida << "Polilínea creada: " << describeEntidad(dibujo, h) << '\n';
    return true;
}

bool Sesion::ordenSelecciona()
{
    dibujo.comandoSeleccionaEntidades("", "", Fendrix::WrapDibujoCAD::tipoSeleccion::kVentana);
    std::vector<int64_t> handles;
    const int n = dibujo.getEntidadesSeleccionadas(handles);
    salida << "Selección: " << cuenta(n, "entidad", "entidades") << '\n';
    const auto indice = porHandle(*dibujo.mDibujo);
    for (const int64_t h : handles)
    {
        const auto it = indice.find(h);
        salida << "  " << describeEntidad(it != indice.end() ? it->second : nullptr) << '\n';
    }
    return true;
}

bool Sesion::ordenDeshacer(bool rehacer)
{
    if (rehacer ? !dibujo.puedeRehacer() : !dibujo.puedeDeshacer())
    {
        salida << (rehacer ? "Nada que rehacer\n" : "Nada que deshacer\n");
        return true;
    }
    const auto antes = describeEntidades();
    if (rehacer)
    {
        dibujo.rehacer();
    }
    else
    {
        dibujo.deshacer();
    }
    cuentaCambios(rehacer ? "Rehecho" : "Deshecho", antes);
    return true;
}

bool Sesion::ordenGuarda(const std::vector<std::string>& argumentos)
{
    const std::string fichero = argumentos.empty() ? ficheroActual : argumentos[0];
    if (fichero.empty())
    {
        salida << "guarda: falta el fichero (el dibujo no viene de ninguno)\n";
        return false;
    }
    std::string error;
    if (!creaCarpetas(fichero, error) || !dibujo.guardaComprobado(fichero, error))
    {
        salida << "guarda: " << error << '\n';
        return false;
    }
    // Writing the file does not clear the drawing's change mark.
    dibujo.borraMarcaCambios();
    ficheroActual = fichero;
    avisoCambiosDado = false;
    std::vector<int64_t> handles;
    salida << "Dibujo guardado en " << fichero << " ("
           << cuenta(dibujo.getEntidades(handles), "entidad", "entidades") << ")\n";
    return true;
}

bool Sesion::ordenAbre(const std::vector<std::string>& argumentos)
{
    if (!abreDibujo(argumentos[0]))
    {
        return false;
    }
    std::vector<int64_t> handles;
    salida << "Dibujo abierto: " << argumentos[0] << " ("
           << cuenta(dibujo.getEntidades(handles), "entidad", "entidades") << ")\n";
    return true;
}

bool Sesion::ordenDXF(const std::vector<std::string>& argumentos)
{
    std::string error;
    if (!creaCarpetas(argumentos[0], error) || !dibujo.exportaDXFComprobado(argumentos[0], error))
    {
        salida << "dxf: " << error << '\n';
        return false;
    }
    salida << "DXF escrito en " << argumentos[0] << '\n';
    return true;
}

bool Sesion::ordenReferencia(const std::vector<std::string>& argumentos)
{
    bool activa = false;
    int32_t mascara = 0;
    dibujo.getReferenciaEntidades(activa, mascara);
    if (!argumentos.empty())
    {
        const bool on = argumentos[0] == "on";
        if (!on && (argumentos[0] != "off" || argumentos.size() > 1))
        {
            salida << "Uso: referencia [on [MASCARA] | off]\n";
            return false;
        }
        // "on" alone keeps the mask there is, or takes the end points.
        long nueva = mascara != 0 ? mascara : 1;
        if (argumentos.size() == 2 && (!entero(argumentos[1], nueva) || nueva < 1 || nueva > 63))
        {
            salida << "referencia: la máscara es un entero de 1 a 63\n";
            return false;
        }
        activa = on;
        if (on)
        {
            mascara = static_cast<int32_t>(nueva);
        }
        dibujo.setReferenciaEntidades(activa, mascara);
    }
    if (!activa)
    {
        salida << "Referencia a entidades: no\n";
        return true;
    }
    static const std::pair<int32_t, const char*> kNombres[] = {
        {1, "extremos"},  {2, "medios"},   {4, "sin uso"},
        {8, "inserción"}, {16, "cercano"}, {32, "sin referencia"}};
    std::string nombres;
    for (const auto& [bit, nombre] : kNombres)
    {
        if ((mascara & bit) != 0)
        {
            nombres += (nombres.empty() ? "" : ", ") + std::string(nombre);
        }
    }
    salida << "Referencia a entidades: sí, máscara " << mascara << " (" << nombres << ")\n";
    return true;
}

bool Sesion::ordenLista()
{
    std::vector<int64_t> seleccionadas;
    dibujo.getEntidadesSeleccionadas(seleccionadas);
    const std::set<int64_t> enSeleccion(seleccionadas.begin(), seleccionadas.end());
    const auto lista = describeEntidades();
    salida << "Entidades (" << lista.size() << "):\n";
    for (const auto& [h, d] : lista)
    {
        salida << "  " << d << (enSeleccion.count(h) != 0 ? "  [seleccionada]" : "") << '\n';
    }
    return true;
}

bool Sesion::ordenAyuda()
{
    const auto uso = [](const orden_t& o)
    { return o.nombre + (o.argumentos.empty() ? "" : " " + o.argumentos); };
    size_t columna = 0;
    for (const orden_t& o : ordenes)
    {
        columna = std::max(columna, uso(o).size() + 2);
    }
    salida << "Órdenes (con una orden en curso, /nombre):\n";
    for (const orden_t& o : ordenes)
    {
        salida << "  " << uso(o) << std::string(columna - uso(o).size(), ' ') << o.ayuda << '\n';
    }
    salida << "Con una orden en curso, cada línea responde a su petición: X,Y[,Z], un número,\n"
              "una opción, o vacía para Intro; esc la cancela. clic X Y pulsa el pixel (X, Y)\n"
              "de la vista de "
           << pantalla.ancho << "x" << pantalla.alto
           << (camaraFija ? ", que muestra el punto (X, Y, 0)" : ", y hacia arriba")
           << "; sin orden en curso,\n"
              "selecciona la entidad que hay bajo él.\n";
    return true;
}

bool Sesion::ordenSal()
{
    if (dibujo.hayCambios() && !avisoCambiosDado)
    {
        avisoCambiosDado = true;
        salida << "Hay cambios sin guardar; sal otra vez los descarta\n";
        return true;
    }
    terminando = true;
    return true;
}

bool Sesion::clicSinOrden(int x, int y)
{
    repinta();
    const int64_t h = dibujo.getEntidadBajoPixel(x, y);
    if (h == 0)
    {
        salida << "Nada bajo el pixel (" << x << "," << y << ")\n";
        return true;
    }
    dibujo.seleccionaEntidad(h);
    salida << "Seleccionada: " << describeEntidad(dibujo, h) << '\n';
    return true;
}

}  // namespace tarvelo
