// What the host prints of a drawing: the demo's summary, `info`, and the comparison of two
// drawings read and saved.
#include "Informe.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <map>
#include <ostream>
#include <string>
#include <unordered_map>
#include <vector>

#include "Fendrix/Fendrix.h"
#include "base/Color.h"
#include "documento/Dibujo.h"
#include "entidades/Entidad.h"
#include "entidades/GrupoPuntos.h"
#include "entidades/Objeto3D.h"
#include "entidades/Policara.h"
#include "entidades/Polilinea.h"
#include "entidades/Superficie.h"
#include "modelo/Modelo3D.h"

namespace tarvelo
{

using Fendrix::WrapDibujoCAD;

namespace
{

std::string describeColor(const cad::Color& c)
{
    char texto[64];
    if (c.colorCAD >= 0 && c.colorCAD < 256)
    {
        const char* nombre = cad::Color::nombreIndice(c.colorCAD);
        if (nombre != nullptr)
        {
            std::snprintf(texto, sizeof texto, "%s (%d)", nombre, c.colorCAD);
        }
        else
        {
            std::snprintf(texto, sizeof texto, "indice %d", c.colorCAD);
        }
    }
    else if (c.colorCAD == 256)
    {
        std::snprintf(texto, sizeof texto, "por capa");
    }
    else
    {
        std::snprintf(texto, sizeof texto, "RGB %d,%d,%d", c.rojo(), c.verde(), c.azul());
    }
    return texto;
}

}  // namespace

void imprimeResumen(WrapDibujoCAD& dibujo, std::ostream& salida)
{
    cad::Dibujo& d = *dibujo.mDibujo;
    salida << "Capas (" << dibujo.numeroCapas() << "), actual \"" << dibujo.capaActual() << "\":\n";
    for (int i = 0; i < dibujo.numeroCapas(); ++i)
    {
        const std::string nombre = dibujo.capa(i);
        const cad::Capa* c = d.buscaCapa(nombre.c_str());
        salida << "  " << nombre << "  color " << describeColor(c->color) << "  grosor "
               << c->estiloLinea.grosor << (dibujo.capaVisible(nombre) ? "" : "  [oculta]")
               << (dibujo.capaBloqueada(nombre) ? "  [bloqueada]" : "") << "\n";
    }
    salida << "Materiales (" << dibujo.numeroMateriales() << "):\n";
    for (int i = 0; i < dibujo.numeroMateriales(); ++i)
    {
        int32_t id = 0;
        int32_t externo = 0;
        uint32_t color = 0;
        double brillo = 0.0;
        std::string textura;
        dibujo.getMaterial(i, id, externo, color, brillo, textura);
        char linea[160];
        std::snprintf(linea, sizeof linea, "  id %d  externo %d  color 0x%08X  brillo %.2f", id,
                      externo, color, brillo);
        salida << linea << (textura.empty() ? "" : "  textura " + textura) << "\n";
    }
    salida << "Estilos de texto (" << d.estilosTexto.size() << "), actual \""
           << d.estiloTextoActual()->nombre << "\":\n";
    for (const cad::EstiloTexto* e : d.estilosTexto)
    {
        salida << "  " << e->nombre << "  fuente \"" << e->fuente << "\"  tamano " << e->tamano
               << "\n";
    }
    salida << "Variables (" << d.variables.size() << "):\n";
    for (const cad::VariableBase* v : d.variables)
    {
        std::string valor;
        dibujo.getVariable(v->nombre, valor);
        salida << "  " << v->nombre << " [" << v->etiqueta() << "] = " << valor << "\n";
    }
    salida << "Vistas (" << dibujo.numeroVistas() << "):\n";
    for (int i = 0; i < dibujo.numeroVistas(); ++i)
    {
        salida << "  " << dibujo.nombreVista(i) << "\n";
    }
    salida << "Cambios sin guardar: " << (dibujo.hayCambios() ? "si" : "no") << "\n";
}

void imprimeInfo(WrapDibujoCAD& dibujo, std::ostream& salida)
{
    cad::Dibujo& d = *dibujo.mDibujo;
    // One pass over the entities and one over the layers. A layer's line counts the entities
    // on any layer of its name and shows the flags of the first layer so named, as the
    // lookups by name give them when a damaged file repeats a name.
    std::unordered_map<const cad::Capa*, int> porCapa;
    for (const cad::Entidad* e : d.entidades)
    {
        ++porCapa[e->capaEntidad()];
    }
    std::unordered_map<std::string, int> porNombre;
    for (const auto& [capa, n] : porCapa)
    {
        if (capa != nullptr)
        {
            porNombre[capa->nombre] += n;
        }
    }
    std::unordered_map<std::string, const cad::Capa*> primeraConNombre;
    for (const cad::Capa* capa : d.capas)
    {
        primeraConNombre.emplace(capa->nombre, capa);
    }
    salida << "Capas (" << dibujo.numeroCapas() << "):\n";
    for (int i = 0; i < dibujo.numeroCapas(); ++i)
    {
        const std::string nombre = dibujo.capa(i);
        // Looked up as a C string, up to a zero byte, as the lookups by name take it.
        const std::string clave = nombre.c_str();
        const auto n = porNombre.find(clave);
        const auto primera = primeraConNombre.find(clave);
        const int32_t flags = primera != primeraConNombre.end() ? primera->second->flags : 0;
        salida << "  " << nombre << ": " << (n != porNombre.end() ? n->second : 0) << " entidades"
               << ((flags & 1) != 0 ? "" : " [oculta]") << ((flags & 2) != 0 ? " [bloqueada]" : "")
               << "\n";
    }
    std::map<std::string, int> porTipo;
    for (const cad::Entidad* e : d.entidades)
    {
        // A damaged block kept as its raw bytes has no kind it can be trusted for.
        ++porTipo[e->tamanoBloque() == cad::kBloqueCrudo
                      ? std::string("Dañada, sin leer")
                      : std::string(cad::nombreTipo(e->etiqueta())) + " (" + e->etiqueta() + ")"];
    }
    salida << "Entidades (" << d.entidades.size() << "):\n";
    for (const auto& [tipo, n] : porTipo)
    {
        salida << "  " << tipo << ": " << n << "\n";
    }
    // The bulk inside the entities: points of the groups, and the stored meshes (models,
    // surfaces and polyfaces; a parametric solid's mesh is only made to paint it).
    size_t puntosGrupos = 0;
    size_t vertices = 0;
    size_t caras = 0;
    for (const cad::Entidad* e : d.entidades)
    {
        const cad::Modelo3D* m = nullptr;
        if (const auto* g = dynamic_cast<const cad::GrupoPuntos*>(e))
        {
            puntosGrupos += g->puntos.size();
        }
        else if (const auto* o = dynamic_cast<const cad::Objeto3D*>(e))
        {
            m = o->modelo;
        }
        else if (const auto* sup = dynamic_cast<const cad::Superficie*>(e))
        {
            m = &sup->modelo();
        }
        else if (const auto* p = dynamic_cast<const cad::Policara*>(e))
        {
            vertices += p->puntos.size();
            caras += p->triangulos.size() + p->cuadrilateros.size();
        }
        if (m != nullptr)
        {
            vertices += static_cast<size_t>(
                std::count_if(m->vertices().begin(), m->vertices().end(),
                              [](const cad::vertice_t& v) { return v.esValido(); }));
            caras += static_cast<size_t>(std::count_if(m->caras().begin(), m->caras().end(),
                                                       [](const cad::cara_t& c)
                                                       { return c.arista >= 0; }));
        }
    }
    if (puntosGrupos > 0)
    {
        salida << "Puntos en grupos: " << puntosGrupos << "\n";
    }
    if (caras > 0 || vertices > 0)
    {
        salida << "Modelos: " << vertices << " vertices, " << caras << " caras\n";
    }
    cad::Rect3<double> caja;
    d.entidades.extension(caja);
    char linea[200];
    if (caja.esValido())
    {
        std::snprintf(linea, sizeof linea, "Extension: (%.3f, %.3f, %.3f) - (%.3f, %.3f, %.3f)\n",
                      caja.minimo.x, caja.minimo.y, caja.minimo.z, caja.maximo.x, caja.maximo.y,
                      caja.maximo.z);
    }
    else
    {
        std::snprintf(linea, sizeof linea, "Extension: vacia\n");
    }
    salida << linea;
}

namespace
{

// The points a save must keep. A model is saved as a compact copy (each face on corners of
// its own), so its vertex records change in number while every face keeps its corners: for
// it, the corners face by face.
std::vector<cad::Punto3<double>> puntosGuardados(const cad::Entidad& e)
{
    std::vector<cad::Punto3<double>> puntos;
    const auto* o = dynamic_cast<const cad::Objeto3D*>(&e);
    if (o == nullptr || o->modelo == nullptr)
    {
        e.coordenadas(puntos);
        return puntos;
    }
    std::vector<int32_t> esquinas;
    for (size_t c = 0; c < o->modelo->caras().size(); ++c)
    {
        o->modelo->verticesDeCara(static_cast<int32_t>(c), esquinas);
        for (int32_t v : esquinas)
        {
            puntos.push_back(o->modelo->vertices()[static_cast<size_t>(v)].punto);
        }
    }
    return puntos;
}

}  // namespace

int comparaDibujos(WrapDibujoCAD& a, WrapDibujoCAD& b, std::ostream& salida)
{
    int diferencias = 0;
    const auto difiere = [&](const std::string& que)
    {
        salida << "  difiere: " << que << "\n";
        ++diferencias;
    };
    cad::Dibujo& da = *a.mDibujo;
    cad::Dibujo& db = *b.mDibujo;
    if (da.capas.size() != db.capas.size())
    {
        difiere("numero de capas");
    }
    for (size_t i = 0; i < std::min(da.capas.size(), db.capas.size()); ++i)
    {
        const cad::Capa& x = *da.capas[i];
        const cad::Capa& y = *db.capas[i];
        if (x.nombre != y.nombre || x.flags != y.flags || x.color.colorCAD != y.color.colorCAD ||
            x.color.RGBA() != y.color.RGBA() || x.estiloLinea.grosor != y.estiloLinea.grosor)
        {
            difiere("capa " + x.nombre);
        }
    }
    if (da.materiales.size() != db.materiales.size())
    {
        difiere("numero de materiales");
    }
    for (size_t i = 0; i < std::min(da.materiales.size(), db.materiales.size()); ++i)
    {
        if (!(*da.materiales[i] == *db.materiales[i]) ||
            da.materiales[i]->id != db.materiales[i]->id)
        {
            difiere("material " + std::to_string(da.materiales[i]->id));
        }
    }
    if (da.estilosTexto.size() != db.estilosTexto.size())
    {
        difiere("numero de estilos de texto");
    }
    if (da.entidades.size() != db.entidades.size())
    {
        difiere("numero de entidades");
    }
    for (size_t i = 0; i < std::min(da.entidades.size(), db.entidades.size()); ++i)
    {
        const cad::Entidad& x = *da.entidades[i];
        const cad::Entidad& y = *db.entidades[i];
        const std::vector<cad::Punto3<double>> px = puntosGuardados(x);
        const std::vector<cad::Punto3<double>> py = puntosGuardados(y);
        const cad::Capa* cx = x.capaEntidad();
        const cad::Capa* cy = y.capaEntidad();
        // A polygon and a polyline share the tag "Pg1", and the reader takes it as a polyline:
        // a saved polygon comes back as a polyline that read a polygon's body. That is the
        // file format's known behaviour, shown but not counted.
        if (x.tieneFirma(cad::kFirmaEntidadPolilinea) &&
            dynamic_cast<const cad::Polilinea*>(&x) == nullptr)
        {
            salida << "  entidad " << i << ": un poligono guardado vuelve como polilinea\n";
            continue;
        }
        if (std::string(x.etiqueta()) != y.etiqueta() || px != py ||
            (cx == nullptr) != (cy == nullptr) || (cx != nullptr && cx->nombre != cy->nombre) ||
            x.color.colorCAD != y.color.colorCAD || x.color.RGBA() != y.color.RGBA())
        {
            difiere(std::string("entidad ") + std::to_string(i) + " (" + x.etiqueta() + ")");
        }
    }
    if (a.numeroVistas() != b.numeroVistas())
    {
        difiere("numero de vistas");
    }
    return diferencias;
}

}  // namespace tarvelo
