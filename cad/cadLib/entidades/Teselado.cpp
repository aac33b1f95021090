#include "entidades/Teselado.h"

#include <cmath>
#include <cstddef>
#include <vector>

#include "base/Propiedades.h"
#include "base/geometria/Vector2D.h"
#include "documento/Capa.h"
#include "entidades/Entidad.h"
#include "intercambio/ExportaDXF.h"
#include "modelo/Modelo3D.h"

namespace cad
{

void exportaModeloDXF(const Modelo3D& modelo, ExportaDXF& dxf, int color)
{
    std::vector<int32_t> triangulos;
    const std::vector<vertice_t>& vertices = modelo.vertices();
    for (size_t c = 0; c < modelo.caras().size(); ++c)
    {
        if (modelo.caras()[c].arista < 0)
        {
            continue;
        }
        triangulos.clear();
        modelo.triangulaCara(static_cast<int32_t>(c), triangulos);
        for (size_t i = 0; i + 2 < triangulos.size(); i += 3)
        {
            const Punto3<double> esquinas[3] = {
                vertices[static_cast<size_t>(triangulos[i])].punto,
                vertices[static_cast<size_t>(triangulos[i + 1])].punto,
                vertices[static_cast<size_t>(triangulos[i + 2])].punto};
            dxf.cara(3, esquinas, color);
        }
    }
}

void teselaCubo(Modelo3D& modelo, const Punto3<double>& base, const Vector3D<double>& tamano,
                uint16_t material)
{
    modelo.reserva(8, 12, 6);
    const auto primero = static_cast<int32_t>(modelo.vertices().size());
    for (int k = 0; k < 8; ++k)
    {
        modelo.nuevoVertice({(k & 1) != 0 ? base.x + tamano.x : base.x,
                             (k & 2) != 0 ? base.y + tamano.y : base.y,
                             (k & 4) != 0 ? base.z + tamano.z : base.z});
    }
    // bottom, top, front (y low), back, left (x low), right
    static const int32_t kCaras[6][4] = {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4},
                                         {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}};
    for (const auto& cara : kCaras)
    {
        const int32_t esquinas[4] = {primero + cara[0], primero + cara[1], primero + cara[2],
                                     primero + cara[3]};
        modelo.nuevaCara(4, esquinas, false, material);
    }
}

void teselaCilindro(Modelo3D& modelo, uint16_t material, double radio, double altura)
{
    constexpr double kVuelta = 6.283185307179586;
    modelo.reserva(2 * kEstacionesCilindro, 3 * kEstacionesCilindro, kLadosCilindro + 2);
    const auto primero = static_cast<int32_t>(modelo.vertices().size());
    for (int i = 0; i < kEstacionesCilindro; ++i)
    {
        const double angulo = kVuelta * i / kLadosCilindro;
        // The seam's station takes the first one's position exactly: cos and sin of a whole
        // turn are only near 1 and 0, and the two sides of the seam must meet.
        const double a = i < kLadosCilindro ? angulo : 0.0;
        const double x = radio * std::cos(a);
        const double y = radio * std::sin(a);
        const auto u = static_cast<float>(angulo / kVuelta);
        modelo.nuevoVertice({x, y, 0.0}, Vector2D<float>(u, 0.0F));
        modelo.nuevoVertice({x, y, altura}, Vector2D<float>(u, 1.0F));
    }
    const auto abajo = [primero](int i) { return primero + 2 * i; };
    const auto arriba = [primero](int i) { return primero + 2 * i + 1; };
    for (int i = 0; i < kLadosCilindro; ++i)
    {
        const int32_t lado[4] = {abajo(i), abajo(i + 1), arriba(i + 1), arriba(i)};
        modelo.nuevaCara(4, lado, false, material);
    }
    int32_t base[kLadosCilindro];
    int32_t tapa[kLadosCilindro];
    for (int i = 0; i < kLadosCilindro; ++i)
    {
        base[i] = abajo(kLadosCilindro - 1 - i);  // clockwise from above: outward is down
        tapa[i] = arriba(i);
    }
    modelo.nuevaCara(kLadosCilindro, base, false, material);
    modelo.nuevaCara(kLadosCilindro, tapa, false, material);
}

void transformaModelo(Modelo3D& modelo, const Matriz4<double>& t)
{
    for (vertice_t& v : modelo.vertices())
    {
        v.punto = t * v.punto;
    }
}

std::string capaDXFSolido(const Entidad& e)
{
    const Capa* c = e.capa.get();
    return c != nullptr ? c->nombre : "0";
}

void filaMaterial(Prop& p, uint16_t material)
{
    p.nombre = "Material";
    p.tipo = TipoProp::Material;
    p.material = static_cast<int16_t>(material);
    p.asignaInt(material);
}

bool filaCaja(int indice, const Punto3<double>& minimo, const Punto3<double>& maximo, Prop& p)
{
    const Vector3D<double> d = maximo - minimo;
    const auto coordenada = [&p](const char* nombre, double x, double y, double z)
    {
        p.nombre = nombre;
        p.tipo = TipoProp::Coordenada;
        p.x = x;
        p.y = y;
        p.z = z;
        return true;
    };
    const auto calculada = [&p](const char* nombre, double valor)
    {
        p.nombre = nombre;
        p.tipo = TipoProp::DoblePositivo;
        p.soloLectura = true;
        p.asignaDoble(valor);
        return true;
    };
    switch (indice)
    {
        case 0:
            return coordenada("Posición", minimo.x, minimo.y, minimo.z);
        case 1:
            return coordenada("Incremento", d.x, d.y, d.z);
        case 2:
            return calculada("Área", std::fabs(2 * d.x * d.y + 2 * d.x * d.z + 2 * d.y * d.z));
        case 3:
            return calculada("Volumen", std::fabs(d.x * d.y * d.z));
        default:
            return false;
    }
}

bool escribeFilaCaja(int indice, const Prop& p, Punto3<double>& minimo, Punto3<double>& maximo)
{
    const Vector3D<double> valor(p.x, p.y, p.z);
    if (indice == 0)
    {
        const Vector3D<double> tamano = maximo - minimo;
        minimo = Punto3<double>(p.x, p.y, p.z);
        maximo = minimo + tamano;
        return true;
    }
    if (indice == 1)
    {
        maximo = minimo + valor;
        return true;
    }
    return false;
}

}  // namespace cad
