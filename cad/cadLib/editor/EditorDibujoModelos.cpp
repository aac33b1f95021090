// EditorDibujo: commands on whole models: contour lines and the union of two models.
#include <cmath>
#include <functional>
#include <memory>
#include <vector>

#include "documento/Dibujo.h"
#include "editor/EditorDibujo.h"
#include "entidades/Objeto3D.h"
#include "entidades/Policara.h"
#include "entidades/Polilinea.h"
#include "modelo/OperacionesModelo.h"

namespace cad
{

namespace
{

// One pick, asked again until it hits an entity `acepta` takes; highlighted as the mesh
// commands highlight theirs. Null when the wait was refused.
Entidad* eligeEntidad(EditorDibujo& editor, const char* prompt,
                      const std::function<bool(Entidad&)>& acepta)
{
    for (;;)
    {
        SeleccionEntidades seleccion(editor.dibujo_);
        if (!editor.seleccionaEntidad(prompt, seleccion))
        {
            return nullptr;
        }
        for (Entidad* e : seleccion.entidades)
        {
            if (acepta(*e))
            {
                e->marcaSeleccion();
                editor.dibujo_->vistaAplicada = false;
                editor.dibujo_->redibujar = true;
                return e;
            }
        }
    }
}

Objeto3D* conModelo(Entidad& e)
{
    auto* o = e.tieneFirma(kFirmaEntidadObjeto3D) ? dynamic_cast<Objeto3D*>(&e) : nullptr;
    return o != nullptr && o->modelo != nullptr ? o : nullptr;
}

void suelta(EditorDibujo& editor, Entidad* e)
{
    if (e != nullptr && editor.dibujo_->contieneEntidad(e))
    {
        e->quitaSeleccion();
        editor.dibujo_->redibujar = true;
    }
}

}  // namespace

// More levels than a survey ever draws, far fewer than would exhaust the memory.
constexpr double kMaxNiveles = 100000;

int EditorDibujo::comandoIsolineas()
{
    iniciaComandoInteractivo(false);
    int hechas = -1;
    // Terrains reach a drawing as polyfaces from OBJ files as often as mesh objects.
    Entidad* fuente = eligeEntidad(
        *this, texto(11, 1, "Seleccione una entidad:"),
        [](Entidad& e) { return conModelo(e) != nullptr || e.tieneFirma(kFirmaEntidadPolicara); });
    double intervalo = 0;
    bool dado = false;
    while (fuente != nullptr &&
           entradaDoble(texto(16, 1, "Incremento de cota de las isolineas"), false, &intervalo))
    {
        if (!dibujo_->contieneEntidad(fuente))
        {
            // Taken away from inside the wait.
            fuente = nullptr;
            break;
        }
        // A step of 0 or less would never end the sweep; a step so small that the sweep holds
        // millions of levels would only fill the memory.
        const Rect3<double> caja = fuente->extension();
        const double diagonal = caja.esValido() ? caja.minimo.distancia(caja.maximo) : 0;
        dado = std::isfinite(intervalo) && intervalo > 0 && diagonal / intervalo <= kMaxNiveles;
        if (dado)
        {
            break;
        }
        if (std::isfinite(intervalo) && intervalo > 0)
        {
            // The catalogue's text is no format: the figure goes after it.
            mensaje("%s %g", texto(16, 3, "Demasiados niveles: el incremento debe ser al menos"),
                    diagonal / kMaxNiveles);
        }
        else
        {
            mensaje("%s", texto(16, 2, "El incremento debe ser mayor que 0"));
        }
    }
    if (dado && dibujo_->contieneEntidad(fuente))
    {
        Modelo3D propio;
        const Modelo3D* modelo =
            conModelo(*fuente) != nullptr ? conModelo(*fuente)->modelo : nullptr;
        if (modelo == nullptr)
        {
            static_cast<const Policara*>(fuente)->aModelo(propio);
            modelo = &propio;
        }
        Vector3D<double> direccion(0, 0, 1);
        if (dibujo_->hayPlanoReferencia())
        {
            Punto3<double> origen;
            Vector3D<double> normal;
            Plano3D<double> plano;
            dibujo_->getPlanoReferencia(origen, normal, plano);
            if (normal.modulo() > 0)
            {
                direccion = normal.unit();
            }
        }
        std::vector<std::vector<Punto3<double>>> normales;
        std::vector<std::vector<Punto3<double>>> maestras;
        isolineas(*modelo, direccion, normales, maestras, intervalo);
        hechas = 0;
        std::vector<cadena_t> cadenas;
        for (const auto* niveles : {&maestras, &normales})
        {
            for (const std::vector<Punto3<double>>& nivel : *niveles)
            {
                cadenas.clear();
                encadena(nivel, cadenas, 0);
                for (const cadena_t& c : cadenas)
                {
                    auto p = std::make_unique<Polilinea>(static_cast<int>(c.puntos.size()),
                                                         c.puntos.data());
                    p->cerrada = c.cerrada;
                    hechas += nuevaEntidad(std::move(p)) ? 1 : 0;
                }
            }
        }
        dibujo_->edicionHecha();
    }
    suelta(*this, fuente);
    actualiza(kControl, false);
    finComandoInteractivo();
    return hechas;
}

// The two prompts are the host's own texts, with no number in the message tables.
bool EditorDibujo::uneModelos()
{
    iniciaComandoInteractivo(false);
    bool hecho = false;
    Entidad* a = eligeEntidad(*this, "Selecciona el modelo 1",
                              [](Entidad& e) { return conModelo(e) != nullptr; });
    Entidad* b = nullptr;
    if (a != nullptr)
    {
        // The first one is highlighted, so a second click on it picks nothing new.
        b = eligeEntidad(*this, "Selecciona el modelo 2",
                         [a](Entidad& e) { return &e != a && conModelo(e) != nullptr; });
    }
    if (b != nullptr && dibujo_->contieneEntidad(a) && dibujo_->contieneEntidad(b))
    {
        auto* modelo = new Modelo3D();
        uneExtension(*conModelo(*a)->modelo, *conModelo(*b)->modelo, *modelo);
        auto nuevo = std::make_unique<Objeto3D>(modelo);
        nuevo->capa = a->capa;
        nuevo->color = a->color;
        nuevo->estiloLinea = a->estiloLinea;
        nuevo->setMaterial(conModelo(*a)->material());
        suelta(*this, a);
        suelta(*this, b);
        // The union goes in first: a host that refuses it keeps both sources.
        if (nuevaEntidad(std::move(nuevo)))
        {
            borraEntidad(a);
            borraEntidad(b);
            hecho = true;
        }
    }
    suelta(*this, a);
    suelta(*this, b);
    actualiza(kControl, false);
    finComandoInteractivo();
    return hecho;
}

}  // namespace cad
