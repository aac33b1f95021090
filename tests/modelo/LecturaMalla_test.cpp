#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/SerializadorBinarioEscritura.h"
#include "base/SerializadorBinarioLectura.h"
#include "modelo/Modelo3D.h"
#include "soporte/ComprobadorMalla.h"
#include "soporte/MallasPrueba.h"

namespace cad
{
namespace
{

using Bytes = std::vector<uint8_t>;
using P = Punto3<double>;
using prueba::cubo;
using prueba::cuerpoDe;
using prueba::imagenDe;
using prueba::leeCuerpo;

// The body lee reads: a u32 count and the records, for vertices, edges and faces in turn.
constexpr size_t kTamano[3] = {36, 36, 6};

// The records of a body taken as they stand, with nothing checked; false when the bytes end
// before the counts say.
bool registrosDe(const Bytes& b, Modelo3D& m)
{
    size_t pos = 0;
    uint32_t n = 0;
    const auto cuenta = [&](size_t tamano)
    {
        if (b.size() - pos < 4)
        {
            return false;
        }
        std::memcpy(&n, b.data() + pos, 4);
        pos += 4;
        return static_cast<uint64_t>(n) * tamano <= b.size() - pos;
    };
    const auto toma = [&](auto& v)
    {
        std::memcpy(&v, b.data() + pos, sizeof v);
        pos += sizeof v;
    };
    if (!cuenta(kTamano[0]))
    {
        return false;
    }
    for (uint32_t i = 0; i < n; ++i)
    {
        vertice_t v;
        toma(v.punto.x), toma(v.punto.y), toma(v.punto.z), toma(v.uv.x), toma(v.uv.y);
        toma(v.arista);
        m.vertices().push_back(v);
    }
    if (!cuenta(kTamano[1]))
    {
        return false;
    }
    for (uint32_t i = 0; i < n; ++i)
    {
        Arista a;
        toma(a.vertice[0]), toma(a.vertice[1]), toma(a.siguienteCara0), toma(a.anteriorCara0);
        toma(a.siguienteCara1), toma(a.anteriorCara1), toma(a.cara[0]), toma(a.cara[1]);
        toma(a.viva);
        m.aristas().nueva(a);
    }
    if (!cuenta(kTamano[2]))
    {
        return false;
    }
    for (uint32_t i = 0; i < n; ++i)
    {
        cara_t c;
        toma(c.arista), toma(c.material);
        m.caras().push_back(c);
    }
    return true;
}

// The bodies the mutations start from: the cube and a strip of a concave pentagon, a
// triangle and a sharp quad as escribe writes them (private corners, one face per edge), and
// the cube's own records, where every edge has two faces, with a vertex of no edge, a dead
// edge and a deleted face behind.
std::vector<Bytes> semillas()
{
    Modelo3D caja;
    cubo(caja);
    Modelo3D tira;
    const P pentagono[5] = {P(0, 0, 0), P(2, 0, 0), P(2, 2, 0), P(1, 0.5, 0), P(0, 2, 0)};
    const Vector2D<float> uv[5] = {{0, 0}, {1, 0}, {1, 1}, {0.5F, 0.25F}, {0, 1}};
    tira.nuevaCara(5, pentagono, uv, false, 3);
    for (const P& p : {P(1, -1, 0), P(3, 0, 1), P(3, 2, 1)})
    {
        tira.nuevoVertice(p);
    }
    const int32_t triangulo[3] = {1, 0, 5};
    tira.nuevaCara(3, triangulo, false, 4);
    const int32_t cuadro[4] = {2, 1, 6, 7};
    tira.nuevaCara(4, cuadro, true, 5);
    Modelo3D registros;
    cubo(registros);
    registros.nuevoVertice(P(9, 9, 9));
    registros.aristas().nueva(Arista());
    registros.caras().push_back({-1, {}, 0});
    return {cuerpoDe(caja), cuerpoDe(tira), imagenDe(registros)};
}

// Where a body's parts lie, from its counts.
struct Disposicion
{
    explicit Disposicion(const Bytes& b)
    {
        size_t pos = 0;
        for (int l = 0; l < 3; ++l)
        {
            cuenta[l] = pos;
            std::memcpy(&n[l], b.data() + pos, 4);
            pos += 4 + n[l] * kTamano[l];
        }
    }
    size_t registro(int lista, uint32_t i) const { return cuenta[lista] + 4 + i * kTamano[lista]; }

    size_t cuenta[3];
    uint32_t n[3];
};

// Reads and writes past a cut are dropped: a body may be cut before a second mutation.
template <class T>
T lee(const Bytes& b, size_t pos)
{
    T v{};
    if (pos + sizeof v <= b.size())
    {
        std::memcpy(&v, b.data() + pos, sizeof v);
    }
    return v;
}

template <class T>
void pon(Bytes& b, size_t pos, T v)
{
    if (pos + sizeof v <= b.size())
    {
        std::memcpy(b.data() + pos, &v, sizeof v);
    }
}

// Damage of the kinds a file meets, aimed at the fields through the body's layout, and some
// changes that leave a sound mesh, so that lee both refuses and accepts.
class Mutador
{
public:
    Mutador(const Bytes& b, uint32_t semilla) : d_(b), azar_(semilla) {}

    void muta(Bytes& b)
    {
        switch (uno(9))
        {
            case 0:  // flipped bits anywhere
                for (int k = b.empty() ? 0 : 1 + uno(3); k > 0; --k)
                {
                    b[uno(b.size())] ^= static_cast<uint8_t>(1U << uno(8));
                }
                break;
            case 1:  // a count that promises too much, or too little
            {
                const int l = uno(3);
                const uint32_t valores[5] = {0xFFFFFFFFU, 0x7FFFFFFFU, 0x10000000U, d_.n[l] + 1,
                                             d_.n[l] - 1};
                pon(b, d_.cuenta[l], valores[uno(5)]);
                break;
            }
            case 2:  // an index outside its list
            {
                const auto [pos, n] = campoIndice();
                const int32_t valores[6] = {-1,
                                            -2,
                                            std::numeric_limits<int32_t>::min(),
                                            std::numeric_limits<int32_t>::max(),
                                            n,
                                            n + 7};
                pon(b, pos, valores[uno(6)]);
                break;
            }
            case 3:  // an index moved to another record of its list: cycles redirected
            {
                const auto [pos, n] = campoIndice();
                pon(b, pos, static_cast<int32_t>(uno(n)));
                break;
            }
            case 4:  // two wings exchanged
            {
                const size_t a = campoAla();
                const size_t c = campoAla();
                const auto x = lee<int32_t>(b, a);
                pon(b, a, lee<int32_t>(b, c));
                pon(b, c, x);
                break;
            }
            case 5:  // cut short
                if (!b.empty())
                {
                    b.resize(uno(b.size()));
                }
                break;
            case 6:  // a point, or its texture corner, that no one can draw
            {
                const double raros[4] = {std::nan(""), std::numeric_limits<double>::infinity(),
                                         -1e308, -0.0};
                const size_t v = d_.registro(0, uno(d_.n[0]));
                if (uno(2) == 0)
                {
                    pon(b, v + 8 * uno(3), raros[uno(4)]);
                }
                else
                {
                    pon(b, v + 24 + 4 * uno(2), static_cast<float>(raros[uno(4)]));
                }
                break;
            }
            case 7:  // materials, sharpness and a vertex that forgets its edge: all allowed
                pon(b, d_.registro(2, uno(d_.n[2])) + 4, static_cast<uint16_t>(azar_()));
                pon(b, d_.registro(1, uno(d_.n[1])) + 32, static_cast<int32_t>(azar_()));
                pon(b, d_.registro(0, uno(d_.n[0])) + 32, int32_t{-1});
                break;
            default:  // a face deleted cleanly: its record and every side that names it
            {
                const uint32_t f = uno(d_.n[2]);
                pon(b, d_.registro(2, f), int32_t{-1});
                for (uint32_t e = 0; e < d_.n[1]; ++e)
                {
                    const size_t a = d_.registro(1, e);
                    for (int s = 0; s < 2; ++s)
                    {
                        if (lee<int32_t>(b, a + 24 + 4 * s) == static_cast<int32_t>(f))
                        {
                            pon(b, a + 24 + 4 * s, int32_t{-1});
                            pon(b, a + 8 + 8 * s, int32_t{-1});
                            pon(b, a + 12 + 8 * s, int32_t{-1});
                        }
                    }
                }
                break;
            }
        }
    }

private:
    uint32_t uno(size_t n) { return static_cast<uint32_t>(azar_() % n); }

    // An index field and the size of the list it points into.
    std::pair<size_t, int32_t> campoIndice()
    {
        const auto ne = static_cast<int32_t>(d_.n[1]);
        switch (uno(3))
        {
            case 0:
                return {d_.registro(0, uno(d_.n[0])) + 32, ne};
            case 1:
            {
                const uint32_t k = uno(8);
                const int32_t n = k < 2 ? static_cast<int32_t>(d_.n[0])
                                        : (k < 6 ? ne : static_cast<int32_t>(d_.n[2]));
                return {d_.registro(1, uno(d_.n[1])) + 4 * k, n};
            }
            default:
                return {d_.registro(2, uno(d_.n[2])), ne};
        }
    }
    size_t campoAla() { return d_.registro(1, uno(d_.n[1])) + 8 + 4 * uno(4); }

    Disposicion d_;
    std::mt19937 azar_;
};

// What lee accepts every walk goes round, and escribe writes it readable again.
void recorreTodo(Modelo3D& m)
{
    std::vector<int32_t> ciclo;
    std::vector<int32_t> triangulos;
    size_t conCiclo = 0;
    for (int32_t f = 0; f < static_cast<int32_t>(m.caras().size()); ++f)
    {
        m.getVerticesCara(f, ciclo);
        m.triangulaCara(f, triangulos);
        conCiclo += ciclo.empty() ? 0 : 1;
        if (ciclo.size() >= 3)
        {
            EXPECT_EQ(triangulos.size(), 3 * (ciclo.size() - 2)) << "cara " << f;
        }
    }
    std::vector<Vector3D<float>> normales;
    m.normalesVertices(normales);
    EXPECT_EQ(normales.size(), m.vertices().size());
    Modelo3D copia;
    EXPECT_TRUE(leeCuerpo(cuerpoDe(m), copia));
    EXPECT_EQ(copia.caras().size(), conCiclo);
}

// Each seed, untouched, is read exactly as it stands; then a thousand damaged copies of each.
// lee must take exactly the bodies whose records are whole and sound (the checker judging
// them straight from the bytes), and what it takes must be safe to walk.
TEST(LecturaMalla, AceptaSoloRegistrosSanosYLoAceptadoSeRecorre)
{
    constexpr int kCasos = 1000;
    int casos = 0;
    int aceptadas = 0;
    for (const Bytes& semilla : semillas())
    {
        Modelo3D m;
        ASSERT_TRUE(leeCuerpo(semilla, m));
        EXPECT_EQ(imagenDe(m), semilla);
        Mutador mutador(semilla, 20240611U + static_cast<uint32_t>(casos));
        for (int i = 0; i < kCasos && !HasFailure(); ++i, ++casos)
        {
            SCOPED_TRACE("caso " + std::to_string(casos));
            Bytes b = semilla;
            mutador.muta(b);
            if (i % 3 == 0)
            {
                mutador.muta(b);
            }
            Modelo3D registros;
            const bool enteros = registrosDe(b, registros);
            const std::vector<std::string> defectos = defectosMalla(registros, 1);
            Modelo3D leido;
            const bool leida = leeCuerpo(b, leido);
            EXPECT_EQ(leida, enteros && defectos.empty())
                << (enteros ? (defectos.empty() ? "sana" : defectos[0]) : "incompleta");
            if (leida)
            {
                ++aceptadas;
                EXPECT_TRUE(mallaSana(leido));
                EXPECT_EQ(imagenDe(leido), imagenDe(registros));
                recorreTodo(leido);
            }
        }
    }
    // Both answers must come up often, or the loop would test one path only.
    EXPECT_GT(aceptadas, casos / 10);
    EXPECT_GT(casos - aceptadas, casos / 10);
}

}  // namespace
}  // namespace cad
