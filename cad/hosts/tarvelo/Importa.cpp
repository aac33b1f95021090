// The `importa` order: a DXF or OBJ file into a drawing, with a report of what came in.
#include "Importa.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <ostream>
#include <system_error>

#include "base/FicheroAtomico.h"
#include "documento/Capa.h"
#include "documento/Dibujo.h"
#include "entidades/Policara.h"
#include "intercambio/ImportaDXF.h"
#include "intercambio/ImportaOBJ.h"

namespace tarvelo
{

namespace
{

const std::uintmax_t kFicheroGrande = 50u * 1024u * 1024u;

std::string extension(const std::string& ruta)
{
    std::string e = std::filesystem::path(ruta).extension().string();
    std::transform(e.begin(), e.end(), e.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return e;
}

using Progreso = std::function<void(double)>;

// A progress line rewritten in place, one step per whole percent.
class LineaProgreso
{
public:
    LineaProgreso(std::ostream& s, bool activo) : salida(s), activo_(activo) {}
    void operator()(double fraccion)
    {
        const int tanto = static_cast<int>(fraccion * 100.0);
        if (activo_ && tanto != ultimo)
        {
            ultimo = tanto;
            salida << "\rLeyendo: " << tanto << " %" << (tanto >= 100 ? "\n" : "") << std::flush;
        }
    }

private:
    std::ostream& salida;
    bool activo_;
    int ultimo = -1;
};

// A line of the report only when something was counted.
void siHay(std::ostream& s, const char* texto, uint64_t cuenta)
{
    if (cuenta != 0)
    {
        s << texto << cuenta << "\n";
    }
}

void lista(std::ostream& s, const char* titulo, const std::vector<std::string>& nombres)
{
    if (nombres.empty())
    {
        return;
    }
    s << titulo << ":";
    for (const std::string& n : nombres)
    {
        s << " " << n;
    }
    s << "\n";
}

bool importaDXF(cad::Dibujo& dibujo, const std::string& entrada, std::ostream& s,
                const Progreso& progreso, std::string& error)
{
    const size_t capasAntes = dibujo.capas.size();
    cad::ImportaDXF lector(&dibujo);
    lector.progreso = [&](double f) { progreso(f); };
    const bool ok = lector.lee(entrada);
    lector.terminaAbierta();
    if (!ok)
    {
        error = lector.motivo;
        return false;
    }
    const cad::informeDXF_t& i = lector.informe;
    s << "DXF " << (lector.version.empty() ? "sin version" : lector.version) << ", textos en "
      << (lector.codificacion == cad::codificacionDXF::kUTF8 ? std::string("UTF-8")
          : lector.altos != nullptr                          ? lector.paginaCodigos
                                                             : std::string("Windows-1252"))
      << "\n";
    s << "Capas nuevas: " << i.capasNuevas;
    for (size_t c = capasAntes; c < dibujo.capas.size(); ++c)
    {
        s << (c == capasAntes ? " (" : ", ") << dibujo.capas[c]->nombre;
    }
    s << (dibujo.capas.size() > capasAntes ? ")\n" : "\n");
    s << "Puntos: " << i.puntos << "\n";
    s << "Lineas: " << i.lineas << "\n";
    s << "Polilineas: " << i.polilineas << " (" << i.vertices << " vertices)\n";
    s << "Descartados: " << i.arcos << " arcos, " << i.circulos << " circulos, " << i.textos
      << " textos\n";
    if (!lector.omitidas.empty())
    {
        s << "Entidades omitidas:";
        for (const auto& [nombre, veces] : lector.omitidas)
        {
            s << " " << nombre << " " << veces;
        }
        s << "\n";
    }
    siHay(s, "Vertices sin polilinea, descartados: ", i.verticesSinPolilinea);
    siHay(s, "Polilineas sin SEQEND, guardadas como estaban: ", i.polilineasSinFin);
    siHay(s, "Capas con nombre demasiado largo, en la capa actual: ", i.capasRechazadas);
    return true;
}

bool importaOBJ(cad::Dibujo& dibujo, const std::string& entrada, std::ostream& s,
                const Progreso& progreso, std::string& error)
{
    auto modelo = std::make_unique<cad::Policara>();
    cad::informeOBJ_t i;
    i.progreso = [&](double f) { progreso(f); };
    modelo->importaObj(entrada, dibujo, &i);
    progreso(1.0);
    if (!i.abierto || !i.motivo.empty())
    {
        error = i.motivo.empty() ? "no se pudo abrir" : i.motivo;
        return false;
    }
    s << "Vertices: " << i.vertices << ", coordenadas UV: " << i.coordenadasUV
      << ", normales: " << i.normales << "\n";
    s << "Caras: " << i.triangulos << " triangulos, " << i.cuadrilateros << " cuadrilateros\n";
    siHay(s, "Caras de mas de cuatro esquinas, cortadas a las cuatro primeras: ", i.carasCortadas);
    siHay(s, "Caras de menos de tres esquinas, descartadas: ", i.carasMenosDeTres);
    siHay(s, "Caras con un vertice fuera de rango, descartadas: ", i.carasFueraDeRango);
    siHay(s, "Esquinas con numero relativo (negativo): ", i.esquinasNegativas);
    siHay(s, "Lineas que siguen en la siguiente (\\), leidas por separado: ", i.lineasContinuadas);
    s << "Normales calculadas: " << i.normalesCalculadas << "\n";
    s << "Materiales creados: " << i.materialesCreados << "\n";
    siHay(s, "usemtl de materiales desconocidos: ", i.usemtlDesconocidos);
    lista(s, "Bibliotecas", i.bibliotecas);
    lista(s, "Bibliotecas que faltan", i.bibliotecasQueFaltan);
    lista(s, "Texturas", i.texturas);
    lista(s, "Texturas que faltan", i.texturasQueFaltan);
    if (i.desplazamientos != 0)
    {
        s.precision(17);
        s << "Desplazamiento #DX aplicado: " << i.desplazamiento.x << ", " << i.desplazamiento.y
          << ", " << i.desplazamiento.z << "\n";
    }
    dibujo.nuevaEntidad(modelo.release());
    return true;
}

}  // namespace

bool esImportable(const std::string& entrada)
{
    const std::string tipo = extension(entrada);
    return tipo == ".dxf" || tipo == ".obj";
}

bool importaFichero(cad::Dibujo& dibujo, const std::string& entrada, std::ostream& informe,
                    std::ostream& errores, std::string& error)
{
    std::error_code ec;
    const std::uintmax_t tamano = std::filesystem::file_size(entrada, ec);
    return importaFichero(dibujo, entrada, informe,
                          LineaProgreso(errores, !ec && tamano > kFicheroGrande), error);
}

bool importaFichero(cad::Dibujo& dibujo, const std::string& entrada, std::ostream& informe,
                    const std::function<void(double)>& progreso, std::string& error)
{
    const Progreso aviso = progreso ? progreso : [](double) {};
    return extension(entrada) == ".dxf" ? importaDXF(dibujo, entrada, informe, aviso, error)
                                        : importaOBJ(dibujo, entrada, informe, aviso, error);
}

int importa(const std::string& entrada, std::string salida, std::ostream& informe,
            std::ostream& errores)
{
    if (!esImportable(entrada))
    {
        errores << "tarvelo: " << entrada << " no es .dxf ni .obj\n";
        return 1;
    }
    if (salida.empty())
    {
        salida = std::filesystem::path(entrada).replace_extension(".cad").string();
    }
    cad::Dibujo dibujo;
    dibujo.nuevoDocumento();
    cad::resultadoFichero_t r;
    std::error_code ec;
    if (std::filesystem::exists(salida, ec))
    {
        if (!dibujo.leeFichero(salida, r))
        {
            errores << "tarvelo: no se pudo leer el dibujo: " << r.mensaje << "\n";
            return 1;
        }
        informe << "Se añade a " << salida << "\n";
    }
    informe << "Importando " << entrada << "\n";
    const size_t entidadesAntes = dibujo.entidades.size();
    std::string error;
    if (!importaFichero(dibujo, entrada, informe, errores, error))
    {
        errores << "tarvelo: no se pudo importar " << entrada << ": " << error << "\n";
        return 1;
    }
    if (!dibujo.guardaFichero(salida, r))
    {
        errores << "tarvelo: no se pudo guardar el dibujo: " << r.mensaje << "\n";
        return 1;
    }
    informe << "Entidades nuevas: " << dibujo.entidades.size() - entidadesAntes << "\n";
    informe << "Guardado en " << salida << "\n";
    return 0;
}

}  // namespace tarvelo
