// Builds layers, points, lines and polylines of a DXF file into a drawing.
#include "intercambio/ImportaDXF.h"

#include <memory>
#include <mutex>

#include "base/Color.h"
#include "documento/Capa.h"
#include "documento/Dibujo.h"
#include "entidades/Linea.h"
#include "entidades/Polilinea.h"
#include "entidades/Punto.h"

namespace cad
{

namespace
{

// DXF's default layer, where an entity without a layer group belongs.
const char* const kCapaPorDefecto = "0";

}  // namespace

ImportaDXF::~ImportaDXF()
{
    terminaAbierta();
}

void ImportaDXF::capa(const std::string& nombreCapa, int32_t colorCapa)
{
    const std::string n = nombreCapa.empty() ? std::string(kCapaPorDefecto) : nombreCapa;
    if (dibujo->buscaCapa(n.c_str()) != nullptr)
    {
        return;
    }
    ColorCapa c;
    // Compared unsigned: a switched-off layer's negative colour keeps the default.
    if (static_cast<uint32_t>(colorCapa) < 256)
    {
        c.setIndiceColor(colorCapa);
    }
    auto nueva = std::make_unique<Capa>(n, c, 1);
    if (dibujo->nuevaCapa(nueva.get()))
    {
        nueva.release();
        ++informe.capasNuevas;
    }
    else
    {
        ++informe.capasRechazadas;
    }
}

void ImportaDXF::asignaCapaColor(Entidad& e, const std::string& capaEntidad, int32_t colorEntidad)
{
    // Entities come in runs on one layer: the last one found is tried first.
    if (ultimaCapa == nullptr || capaEntidad != ultimoNombreCapa)
    {
        const char* nombreCapa = capaEntidad.empty() ? kCapaPorDefecto : capaEntidad.c_str();
        ultimaCapa = dibujo->buscaCapa(nombreCapa);
        if (ultimaCapa == nullptr)
        {
            capa(capaEntidad, colorEntidad);
            ultimaCapa = dibujo->buscaCapa(nombreCapa);
        }
        // A name the file cannot hold made no layer: the current one takes the entity.
        if (ultimaCapa == nullptr)
        {
            ultimaCapa = dibujo->capaActual();
        }
        ultimoNombreCapa = capaEntidad;
    }
    e.asignaCapa(ultimaCapa);
    if (colorEntidad >= 0 && colorEntidad < 512)
    {
        e.color.setIndiceColor(colorEntidad);
    }
}

void ImportaDXF::anade(Entidad* e)
{
    std::lock_guard<std::recursive_mutex> guardia(dibujo->cerrojo());
    dibujo->entidades.push_back(e);
    dibujo->ultimaEntidad = e;
}

void ImportaDXF::punto(double px, double py, double pz, const std::string& capaEntidad,
                       int32_t colorEntidad)
{
    auto p = std::make_unique<Punto>(px, py, pz);
    asignaCapaColor(*p, capaEntidad, colorEntidad);
    anade(p.release());
    ++informe.puntos;
}

void ImportaDXF::linea(double ax, double ay, double az, double bx, double by, double bz,
                       const std::string& capaEntidad, int32_t colorEntidad)
{
    auto l = std::make_unique<Linea>(Punto3<double>(ax, ay, az), Punto3<double>(bx, by, bz));
    asignaCapaColor(*l, capaEntidad, colorEntidad);
    anade(l.release());
    ++informe.lineas;
}

void ImportaDXF::polilinea(const std::string& capaEntidad, int32_t colorEntidad, bool cerradaLeida)
{
    // A POLYLINE without its SEQEND: the open one is kept as it stands, not lost.
    if (polilinea_ != nullptr)
    {
        ++informe.polilineasSinFin;
        finPolilinea();
    }
    auto p = std::make_unique<Polilinea>();
    asignaCapaColor(*p, capaEntidad, colorEntidad);
    polilinea_ = p.release();
    cerrada = cerradaLeida;
}

void ImportaDXF::vertice(double px, double py, double pz, double /*bulge*/,
                         const std::string& /*capa*/, int32_t /*color*/)
{
    if (polilinea_ == nullptr)
    {
        ++informe.verticesSinPolilinea;
        return;
    }
    polilinea_->vertices.emplace_back(px, py, pz);
    ++informe.vertices;
}

void ImportaDXF::finPolilinea()
{
    if (polilinea_ == nullptr)
    {
        ++informe.verticesSinPolilinea;
        return;
    }
    if (cerrada && !polilinea_->vertices.empty())
    {
        const Punto3<double> primero = polilinea_->vertices.front();
        polilinea_->vertices.push_back(primero);
    }
    anade(polilinea_);
    polilinea_ = nullptr;
    ++informe.polilineas;
}

void ImportaDXF::terminaAbierta()
{
    if (polilinea_ != nullptr)
    {
        ++informe.polilineasSinFin;
        finPolilinea();
    }
}

void ImportaDXF::arco(double, double, double, double, double, double, const std::string&, int32_t)
{
    ++informe.arcos;
}

void ImportaDXF::circulo(double, double, double, double, const std::string&, int32_t)
{
    ++informe.circulos;
}

void ImportaDXF::texto(double, double, double, const std::string&, double, double, int32_t,
                       const std::string&, int32_t)
{
    ++informe.textos;
}

bool Dibujo::importaDocumentoDFX(const std::string& ruta)
{
    hayCambios_ = true;
    redibujar = true;
    {
        ImportaDXF lector(this);
        lector.lee(ruta);
    }
    std::lock_guard<std::recursive_mutex> guardia(lock);
    recalculaExtension();
    return true;
}

}  // namespace cad
