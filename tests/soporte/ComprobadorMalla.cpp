#include "soporte/ComprobadorMalla.h"

#include <cstdint>
#include <set>
#include <sstream>

namespace cad
{

namespace
{

const char* const kSiguiente[2] = {"siguienteCara0", "siguienteCara1"};
const char* const kAnterior[2] = {"anteriorCara0", "anteriorCara1"};

class Comprobador
{
public:
    Comprobador(const Modelo3D& m, size_t maximo)
        : vertices_(m.vertices()), aristas_(m.aristas()), caras_(m.caras()), maximo_(maximo)
    {
    }

    std::vector<std::string> comprueba()
    {
        compruebaVertices();
        for (int32_t e = 0; e < aristas_.size() && !lleno(); ++e)
        {
            compruebaArista(e);
        }
        compruebaCaras();
        compruebaRecorridos();
        return defectos_;
    }

private:
    bool lleno() const { return defectos_.size() >= maximo_; }

    template <class... T>
    void anota(const T&... partes)
    {
        if (!lleno())
        {
            std::ostringstream os;
            (os << ... << partes);
            defectos_.push_back(os.str());
        }
    }

    bool viva(int32_t e) const
    {
        return aristas_.enRango(e) && aristas_[e].vertice[0] != -1 && aristas_[e].vertice[1] != -1;
    }

    // Notes why `e`, found in `campo` of `registro`, is not a live edge; false when it is not.
    bool exigeViva(const std::string& registro, const char* campo, int32_t e)
    {
        if (!aristas_.enRango(e))
        {
            anota(registro, ": ", campo, " = ", e, ", fuera de rango (", aristas_.size(),
                  " aristas)");
            return false;
        }
        if (!viva(e))
        {
            anota(registro, ": ", campo, " = ", e, ", pero la arista ", e, " está muerta");
            return false;
        }
        return true;
    }

    static const char* campoDeCara(const Arista& a, int32_t f, const char* const (&campos)[2])
    {
        return a.cara[0] == f ? campos[0] : campos[1];
    }

    void compruebaVertices()
    {
        for (size_t v = 0; v < vertices_.size() && !lleno(); ++v)
        {
            const int32_t e = vertices_[v].arista;
            const std::string registro = "vertice " + std::to_string(v);
            if (e != -1 && exigeViva(registro, "arista", e) &&
                !aristas_[e].toca(static_cast<int32_t>(v)))
            {
                anota(registro, ": arista = ", e, ", pero la arista ", e, " (",
                      aristas_[e].vertice[0], "-", aristas_[e].vertice[1], ") no toca el vertice ",
                      v);
            }
        }
    }

    void compruebaArista(int32_t e)
    {
        const Arista& a = aristas_[e];
        const std::string registro = "arista " + std::to_string(e);
        if (a.vertice[0] == -1 && a.vertice[1] == -1)
        {
            const std::pair<const char*, int32_t> campos[6] = {{"siguienteCara0", a.siguienteCara0},
                                                               {"anteriorCara0", a.anteriorCara0},
                                                               {"siguienteCara1", a.siguienteCara1},
                                                               {"anteriorCara1", a.anteriorCara1},
                                                               {"cara[0]", a.cara[0]},
                                                               {"cara[1]", a.cara[1]}};
            for (const auto& [campo, valor] : campos)
            {
                if (valor != -1)
                {
                    anota(registro, ": ", campo, " = ", valor,
                          ", pero la arista está muerta (vertice -1, -1)");
                }
            }
            return;
        }
        for (int i = 0; i < 2; ++i)
        {
            const int32_t v = a.vertice[i];
            if (v == -1)
            {
                anota(registro, ": vertice[", i, "] = -1, pero vertice[", 1 - i,
                      "] = ", a.vertice[1 - i]);
                return;
            }
            if (v < 0 || static_cast<size_t>(v) >= vertices_.size())
            {
                anota(registro, ": vertice[", i, "] = ", v, ", fuera de rango (", vertices_.size(),
                      " vertices)");
            }
        }
        for (int s = 0; s < 2; ++s)
        {
            compruebaLado(e, s);
        }
    }

    void compruebaLado(int32_t e, int s)
    {
        const Arista& a = aristas_[e];
        const std::string registro = "arista " + std::to_string(e);
        const int32_t f = a.cara[s];
        const int32_t siguiente = s == 0 ? a.siguienteCara0 : a.siguienteCara1;
        const int32_t anterior = s == 0 ? a.anteriorCara0 : a.anteriorCara1;
        if (f == -1)
        {
            for (const auto& [campo, ala] :
                 {std::pair{kSiguiente[s], siguiente}, std::pair{kAnterior[s], anterior}})
            {
                if (ala != -1)
                {
                    anota(registro, ": ", campo, " = ", ala, ", pero cara[", s, "] = -1");
                }
            }
            return;
        }
        if (f < 0 || static_cast<size_t>(f) >= caras_.size())
        {
            anota(registro, ": cara[", s, "] = ", f, ", fuera de rango (", caras_.size(),
                  " caras)");
            return;
        }
        if (!caraViva(f))
        {
            anota(registro, ": cara[", s, "] = ", f, ", pero la cara ", f, " está borrada");
            return;
        }
        if (exigeViva(registro, kSiguiente[s], siguiente))
        {
            const Arista& n = aristas_[siguiente];
            const int32_t vuelta = n.anteriorEn(f);
            if (n.cara[0] != f && n.cara[1] != f)
            {
                anota(registro, ": ", kSiguiente[s], " = ", siguiente, ", pero la arista ",
                      siguiente, " no tiene la cara ", f);
            }
            else if (vuelta != e)
            {
                anota(registro, ": ", kSiguiente[s], " = ", siguiente, ", pero ",
                      campoDeCara(n, f, kAnterior), " de la arista ", siguiente, " es ", vuelta,
                      ", no ", e);
            }
            if (!n.toca(a.vertice[0]) && !n.toca(a.vertice[1]))
            {
                anota(registro, ": ", kSiguiente[s], " = ", siguiente, ", pero la arista ",
                      siguiente, " (", n.vertice[0], "-", n.vertice[1],
                      ") no comparte extremo con esta (", a.vertice[0], "-", a.vertice[1], ")");
            }
        }
        if (exigeViva(registro, kAnterior[s], anterior))
        {
            const Arista& p = aristas_[anterior];
            const int32_t ida = p.siguienteEn(f);
            if (p.cara[0] != f && p.cara[1] != f)
            {
                anota(registro, ": ", kAnterior[s], " = ", anterior, ", pero la arista ", anterior,
                      " no tiene la cara ", f);
            }
            else if (ida != e)
            {
                anota(registro, ": ", kAnterior[s], " = ", anterior, ", pero ",
                      campoDeCara(p, f, kSiguiente), " de la arista ", anterior, " es ", ida,
                      ", no ", e);
            }
        }
    }

    void compruebaCaras()
    {
        for (size_t f = 0; f < caras_.size() && !lleno(); ++f)
        {
            const int32_t e = caras_[f].arista;
            const std::string registro = "cara " + std::to_string(f);
            const auto cara = static_cast<int32_t>(f);
            if (e != -1 && exigeViva(registro, "arista", e) && aristas_[e].cara[0] != cara &&
                aristas_[e].cara[1] != cara)
            {
                anota(registro, ": arista = ", e, ", pero la arista ", e, " no tiene la cara ", f);
            }
        }
    }

    bool caraViva(int32_t f) const
    {
        return f >= 0 && static_cast<size_t>(f) < caras_.size() &&
               caras_[static_cast<size_t>(f)].arista != -1;
    }

    // Faces that don't exist or are deleted were told by their edges and have no walk. One
    // failed walk is told per face; a walk that closed vouches for every edge it passed, so
    // that a sound mesh is walked once, not once per edge.
    void compruebaRecorridos()
    {
        const int32_t n = aristas_.size();
        std::vector<bool> cerrado(2 * static_cast<size_t>(n), false);
        const auto marca = [&](int32_t x, int32_t f)
        { return 2 * static_cast<size_t>(x) + (aristas_[x].cara[0] == f ? 0 : 1); };
        std::set<int32_t> caraFallida;
        for (int32_t e = 0; e < n && !lleno(); ++e)
        {
            const Arista& a = aristas_[e];
            if (!viva(e))
            {
                continue;
            }
            for (int s = 0; s < 2; ++s)
            {
                const int32_t f = a.cara[s];
                if (!caraViva(f) || (s == 1 && a.cara[0] == f) || cerrado[marca(e, f)] ||
                    caraFallida.count(f) != 0)
                {
                    continue;
                }
                if (recorre(e, f))
                {
                    for (int32_t x = e;;)
                    {
                        cerrado[marca(x, f)] = true;
                        x = aristas_[x].siguienteEn(f);
                        if (x == e)
                        {
                            break;
                        }
                    }
                }
                else
                {
                    caraFallida.insert(f);
                }
            }
        }
    }

    // Whether the walk of face f from e comes back to e; notes why not.
    bool recorre(int32_t e, int32_t f)
    {
        const std::string registro = "arista " + std::to_string(e);
        int32_t x = e;
        for (int32_t pasos = 0; pasos < aristas_.size(); ++pasos)
        {
            const Arista& a = aristas_[x];
            const int32_t siguiente = a.siguienteEn(f);
            const char* campo = campoDeCara(a, f, kSiguiente);
            if (!aristas_.enRango(siguiente))
            {
                anota(registro, ": recorrido de la cara ", f, ", ", campo, " de la arista ", x,
                      " = ", siguiente, ", fuera de rango (", aristas_.size(), " aristas)");
                return false;
            }
            if (siguiente == e)
            {
                return true;
            }
            const Arista& b = aristas_[siguiente];
            if (b.cara[0] != f && b.cara[1] != f)
            {
                anota(registro, ": recorrido de la cara ", f, ", ", campo, " de la arista ", x,
                      " = ", siguiente, ", pero la arista ", siguiente, " no tiene la cara ", f);
                return false;
            }
            x = siguiente;
        }
        anota(registro, ": recorrido de la cara ", f, " sin volver a la arista ", e, " en ",
              aristas_.size(), " pasos");
        return false;
    }

    const std::vector<vertice_t>& vertices_;
    const Aristas& aristas_;
    const std::vector<cara_t>& caras_;
    size_t maximo_;
    std::vector<std::string> defectos_;
};

}  // namespace

std::vector<std::string> defectosMalla(const Modelo3D& m, size_t maximo)
{
    return Comprobador(m, maximo).comprueba();
}

::testing::AssertionResult mallaSana(const Modelo3D& m)
{
    const std::vector<std::string> defectos = defectosMalla(m);
    if (defectos.empty())
    {
        return ::testing::AssertionSuccess();
    }
    ::testing::AssertionResult r = ::testing::AssertionFailure();
    r << "la malla tiene defectos:";
    for (const std::string& d : defectos)
    {
        r << "\n  " << d;
    }
    return r;
}

}  // namespace cad
