// The session's orders: the kernel's commands under their own names, the drawing's files,
// undo, selection and the listings, each writing what it did.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <set>
#include <system_error>
#include <unordered_map>

#include "Informe.h"
#include "Sesion.h"
#include "base/geometria/Rect3.h"
#include "documento/Dibujo.h"
#include "documento/SeleccionEntidades.h"
#include "entidades/Cilindro.h"
#include "entidades/Cubo.h"
#include "entidades/Entidad.h"
#include "entidades/Esfera.h"
#include "entidades/Objeto3D.h"
#include "entidades/Poligono.h"
#include "entidades/Polilinea.h"
#include "entidades/Prisma.h"
#include "entidades/Texto.h"
#include "modelo/Modelo3D.h"

namespace tarvelo
{

namespace
{

// Beyond this many vertices an entity's line ends in "...".
constexpr size_t kVerticesListados = 6;

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

std::string punto(const cad::Punto3<double>& p)
{
    return "(" + numero(p.x) + "," + numero(p.y) + "," + numero(p.z) + ")";
}

// The primitive solids keep their shape in a few numbers and build their mesh only when
// painted: described by those numbers, a solid reads the same whether it was shown or not.
bool describeSolido(const cad::Entidad* e, std::string& texto)
{
    if (const auto* cubo = dynamic_cast<const cad::Cubo*>(e))
    {
        cad::Rect3<double> caja;
        cubo->volumen(caja);
        texto += " " + punto(caja.minimo) + "-" + punto(caja.maximo);
        return true;
    }
    if (const auto* prisma = dynamic_cast<const cad::Prisma*>(e))
    {
        texto += " " + punto(prisma->minimo) + "-" + punto(prisma->maximo);
        return true;
    }
    if (const auto* cilindro = dynamic_cast<const cad::Cilindro*>(e))
    {
        texto += " centro " + punto(cilindro->transformacion.getOrigen()) + " radio " +
                 numero(cilindro->radio) + " altura " + numero(cilindro->altura);
        return true;
    }
    if (const auto* esfera = dynamic_cast<const cad::Esfera*>(e))
    {
        texto += " centro " + punto(esfera->centro) + " radio " + numero(esfera->radio);
        return true;
    }
    return false;
}

// A text as one line of a listing: line breaks and tabs written as escapes.
std::string enUnaLinea(const std::string& t)
{
    std::string r;
    r.reserve(t.size());
    for (const char c : t)
    {
        switch (c)
        {
            case '\n':
                r += "\\n";
                break;
            case '\r':
                r += "\\r";
                break;
            case '\t':
                r += "\\t";
                break;
            default:
                r += c;
        }
    }
    return r;
}

// The entity, its points as the facade's getVertices gives them (a primitive solid by its
// measures), then what else tells it apart: closed, faces, material; "?" for null.
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
    if (!describeSolido(e, texto))
    {
        std::vector<cad::Punto3<double>> c;
        e->coordenadas(c);
        const size_t n = c.size();
        for (size_t i = 0; i < n && i < kVerticesListados; ++i)
        {
            texto += (i == 0 ? " " : "-") + punto(c[i]);
        }
        if (n == 0)
        {
            texto += " (sin vértices)";
        }
        if (n > kVerticesListados)
        {
            texto += "-... (" + std::to_string(n) + " vértices)";
        }
    }
    const auto* polilinea = dynamic_cast<const cad::Polilinea*>(e);
    if (polilinea != nullptr && polilinea->cerrada)
    {
        texto += " cerrada";
    }
    if (const auto* t = dynamic_cast<const cad::Texto*>(e))
    {
        texto += " \"" + enUnaLinea(t->texto) + "\"";
    }
    const auto* objeto = dynamic_cast<const cad::Objeto3D*>(e);
    if (objeto != nullptr && objeto->modelo != nullptr)
    {
        texto += " " + cuenta(static_cast<long>(objeto->modelo->caras().size()), "cara", "caras");
    }
    if (e->material() != 0)
    {
        texto += " material " + std::to_string(e->material());
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

}  // namespace

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

void Sesion::agregaGrupo(const char* titulo, std::vector<orden_t> grupo)
{
    grupos.emplace_back(ordenes.size(), titulo);
    for (orden_t& o : grupo)
    {
        ordenes.push_back(std::move(o));
    }
}

bool Sesion::informa(long n, const char* singular, const char* plural)
{
    salida << cuenta(n, singular, plural) << '\n';
    return true;
}

void Sesion::creaOrdenes()
{
    using args_t = std::vector<std::string>;
    agregaGrupo(
        "Puntos y líneas",
        {
            ordenCuenta(
                "punto", "puntos hasta Intro o esc", [this]() { return dibujo.comandoPunto(); },
                "punto creado", "puntos creados"),
            ordenCuenta(
                "linea", "líneas encadenadas hasta Intro o esc",
                [this]() { return dibujo.comandoLinea(); }, "línea creada", "líneas creadas"),
            {"polilinea", "[una] [cerrada]",
             "polilíneas hasta Intro; opciones Borrar y Cerrar; una: solo una", 0, 2, false,
             [this](const args_t& a) { return ordenPolilinea(a); }},
            {"fusiona", "[borra]", "une dos polilíneas en la primera; borra quita la otra", 0, 1,
             false, [this](const args_t& a) { return ordenFusiona(a, false); }},
            {"fusionanueva", "[borra]", "une a una polilínea otra que se dibuja; borra la quita", 0,
             1, false, [this](const args_t& a) { return ordenFusiona(a, true); }},
        });
    agregaGrupo(
        "Caras y planos",
        {
            ordenCuenta(
                "cara3d", "caras triangulares en tira, hasta Intro",
                [this]() { return dibujo.comandoCara3D3(); }, "cara creada", "caras creadas"),
            ordenCuenta(
                "cara3d4", "una cara de cuatro lados por tres esquinas",
                [this]() { return dibujo.comandoCara3D4(); }, "cara creada", "caras creadas"),
            {"cara", "", "un plano ajustado a los puntos dados hasta Intro", 0, 0, false,
             [this](const args_t&)
             {
                 // The command counts the points of the plane it made; fewer than three
                 // make none.
                 const int n = dibujo.comandoCara();
                 salida << (n == 0 ? "Ningún plano creado"
                                   : "Plano creado con " + cuenta(n, "vértice", "vértices"))
                        << '\n';
                 return true;
             }},
            ordenCuenta(
                "plano", "planos por su contorno, hasta Intro",
                [this]() { return dibujo.comandoPlano(); }, "plano creado", "planos creados"),
            {"contornoplano", "", "el contorno de un plano pasa a ser el de una polilínea", 0, 0,
             false,
             [this](const args_t&)
             {
                 salida << (dibujo.comandoContornoPlano() ? "Contorno del plano sustituido\n"
                                                          : "Contorno sin cambios\n");
                 return true;
             }},
            ordenCuenta(
                "paralelaplano", "copias de un plano a una distancia o por un punto",
                [this]() { return dibujo.comandoParalelaPlano(); }, "plano creado",
                "planos creados"),
            ordenCuenta(
                "perpendicularplano", "planos perpendiculares a otro por una línea",
                [this]() { return dibujo.comandoPerpendicularPlano(); }, "plano creado",
                "planos creados"),
        });
    agregaGrupo("Sólidos y materiales",
                {
                    ordenCuenta(
                        "cubo", "cajas por dos esquinas y la altura",
                        [this]() { return dibujo.comandoCubo(); }, "cubo creado", "cubos creados"),
                    ordenCuenta(
                        "modelocubo", "prismas con el material actual",
                        [this]() { return dibujo.comandoModeloCubo(); }, "prisma creado",
                        "prismas creados"),
                    ordenCuenta(
                        "modelocilindro", "cilindros por centro, radio y altura",
                        [this]() { return dibujo.comandoModeloCilindro(); }, "cilindro creado",
                        "cilindros creados"),
                    ordenCuenta(
                        "modeloesfera", "esferas por centro y radio",
                        [this]() { return dibujo.comandoModeloEsfera(); }, "esfera creada",
                        "esferas creadas"),
                    ordenCuenta(
                        "convierte", "planos y sólidos a objetos 3D",
                        [this]() { return dibujo.comandoConvierteObjeto3D(); },
                        "entidad convertida a objeto 3D", "entidades convertidas a objetos 3D"),
                    {"material", "[ID]", "el material de lo que se crea; 0, ninguno", 0, 1, false,
                     [this](const args_t& a) { return ordenMaterial(a); }},
                    {"materiales", "", "los materiales del dibujo", 0, 0, false,
                     [this](const args_t&) { return ordenMateriales(); }},
                });
    agregaGrupo("Selección y portapapeles",
                {
                    {"selecciona", "", "selecciona lo que cae en una ventana de dos clics", 0, 0,
                     false, [this](const args_t&) { return ordenSelecciona(); }},
                    {"deselecciona", "", "vacía la selección", 0, 0, false,
                     [this](const args_t&)
                     {
                         dibujo.deselecciona();
                         salida << "Selección vacía\n";
                         return true;
                     }},
                    {"copia", "", "copia la selección al portapapeles", 0, 0, false,
                     [this](const args_t&) { return ordenPortapapeles("copia"); }},
                    {"corta", "", "copia la selección y la borra", 0, 0, false,
                     [this](const args_t&) { return ordenPortapapeles("corta"); }},
                    {"pega", "", "añade otra vez lo copiado", 0, 0, false,
                     [this](const args_t&) { return ordenPortapapeles("pega"); }},
                });
    creaOrdenesEdicion();
    creaOrdenesVistas();
    agregaGrupo("Edición",
                {
                    {"deshacer", "", "deshace el último paso", 0, 0, false,
                     [this](const args_t&) { return ordenDeshacer(false); }},
                    {"rehacer", "", "rehace el último paso deshecho", 0, 0, false,
                     [this](const args_t&) { return ordenDeshacer(true); }},
                    {"referencia", "[on [MASCARA] | off]",
                     "referencia a entidades: 1 extremos, 2 medios, 8 inserción, 16 cercano", 0, 2,
                     false, [this](const args_t& a) { return ordenReferencia(a); }},
                });
    agregaGrupo(
        "Dibujo y sesión",
        {
            {"lista", "", "una línea por entidad", 0, 0, false,
             [this](const args_t&) { return ordenLista(); }},
            {"info", "", "capas, entidades por tipo y extensión", 0, 0, false,
             [this](const args_t&)
             {
                 imprimeInfo(dibujo, salida);
                 return true;
             }},
            {"guarda", "[FICHERO.cad]", "guarda el dibujo (por defecto, en el fichero abierto)", 0,
             1, false, [this](const args_t& a) { return ordenGuarda(a); }},
            {"abre", "FICHERO.cad", "abre un dibujo en lugar del actual", 1, 1, true,
             [this](const args_t& a) { return ordenAbre(a); }},
            {"nuevo", "", "empieza un dibujo vacío", 0, 0, true,
             [this](const args_t&)
             {
                 nuevo();
                 salida << "Dibujo nuevo\n";
                 return true;
             }},
            {"dxf", "FICHERO.dxf", "exporta el dibujo a DXF", 1, 1, false,
             [this](const args_t& a) { return ordenDXF(a); }},
            {"ayuda", "", "esta lista", 0, 0, false,
             [this](const args_t&) { return ordenAyuda(); }},
            {"sal", "", "termina la sesión", 0, 0, false,
             [this](const args_t&) { return ordenSal(); }},
        });
}

bool Sesion::ordenPolilinea(const std::vector<std::string>& argumentos)
{
    bool unaSola = false;
    bool cerrada = false;
    for (const std::string& a : argumentos)
    {
        if (a != "una" && a != "cerrada")
        {
            salida << "Uso: polilinea [una] [cerrada]\n";
            return false;
        }
        (a == "una" ? unaSola : cerrada) = true;
    }
    return informa(dibujo.comandoPolilinea(unaSola, cerrada), "polilínea creada",
                   "polilíneas creadas");
}

bool Sesion::ordenFusiona(const std::vector<std::string>& argumentos, bool nueva)
{
    if (!argumentos.empty() && argumentos[0] != "borra")
    {
        salida << "Uso: " << (nueva ? "fusionanueva" : "fusiona") << " [borra]\n";
        return false;
    }
    const bool borra = !argumentos.empty();
    // Handle 0 makes the kernel ask for each polyline.
    const bool hecha = nueva ? dibujo.comandoFusionPolilineasNueva(0, borra)
                             : dibujo.comandoFusionPolilineas(0, 0, borra);
    // A merge the kernel refuses (a polyline with itself, one that crosses itself) or one
    // left unanswered is the user's business, not a failed order.
    salida << (hecha ? "Polilíneas fusionadas\n" : "Polilíneas sin fusionar\n");
    return true;
}

bool Sesion::ordenPortapapeles(const std::string& cual)
{
    // The kernel's clipboard reports nothing: the counts come from the selection and from
    // the entities before and after.
    std::vector<int64_t> handles;
    if (cual == "copia")
    {
        const int n = dibujo.getEntidadesSeleccionadas(handles);
        dibujo.copiar();
        return informa(n, "entidad copiada", "entidades copiadas");
    }
    const int antes = dibujo.getEntidades(handles);
    if (cual == "corta")
    {
        dibujo.cortar();
        return informa(antes - dibujo.getEntidades(handles), "entidad cortada",
                       "entidades cortadas");
    }
    dibujo.pegar();
    return informa(dibujo.getEntidades(handles) - antes, "entidad pegada", "entidades pegadas");
}

bool Sesion::ordenMaterial(const std::vector<std::string>& argumentos)
{
    if (!argumentos.empty())
    {
        long id = 0;
        if (!entero(argumentos[0], id) || id < 0 || id > INT16_MAX)
        {
            salida << "material: el material es un número de 0 a " << INT16_MAX << '\n';
            return false;
        }
        if (!dibujo.setMaterialActual(static_cast<int32_t>(id)))
        {
            salida << "material: el dibujo no tiene el material " << id
                   << " (materiales los lista)\n";
            return false;
        }
    }
    const int32_t actual = dibujo.materialActual();
    salida << "Material actual: " << (actual == 0 ? "ninguno" : std::to_string(actual)) << '\n';
    return true;
}

bool Sesion::ordenMateriales()
{
    const int32_t n = dibujo.numeroMateriales();
    const int32_t actual = dibujo.materialActual();
    salida << "Materiales (" << n << "):\n";
    for (int32_t i = 0; i < n; ++i)
    {
        int32_t id = 0;
        int32_t externo = 0;
        uint32_t color = 0;
        double brillo = 0.0;
        std::string textura;
        if (!dibujo.getMaterial(i, id, externo, color, brillo, textura))
        {
            continue;
        }
        char abgr[16];
        std::snprintf(abgr, sizeof abgr, "%08X", color);
        salida << "  " << id << ": color " << abgr << ", brillo " << numero(brillo) << ", externo "
               << externo << (textura.empty() ? "" : ", textura " + textura)
               << (id == actual ? "  [actual]" : "") << '\n';
    }
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
    auto grupo = grupos.begin();
    for (size_t i = 0; i < ordenes.size(); ++i)
    {
        if (grupo != grupos.end() && grupo->first == i)
        {
            salida << grupo->second << ":\n";
            ++grupo;
        }
        const orden_t& o = ordenes[i];
        salida << "  " << uso(o) << std::string(columna - uso(o).size(), ' ') << o.ayuda << '\n';
    }
    salida << "Con una orden en curso, cada línea responde a su petición: X,Y[,Z], un número,\n"
              "una opción, o vacía para Intro; esc la cancela. clic X Y pulsa el pixel (X, Y)\n"
              "de la vista de "
           << pantalla.ancho << "x" << pantalla.alto
           << (camaraFija ? ", que muestra el punto (X, Y, 0)" : ", y hacia arriba")
           << "; sin orden en curso,\n"
              "selecciona la entidad que hay bajo él. clic X Y derecho pulsa con el botón\n"
              "derecho, que termina una petición de entidades (allí Intro no vale).\n";
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