#include <algorithm>
#include <map>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "soporte/ComprobadorMalla.h"
#include "soporte/MallaObjPrueba.h"

namespace cad
{
namespace
{

struct FicheroObj
{
    const char* nombre;
    const char* ruta;  // under the shared data's obj folder
    // Whether, in the file's order, each face reaches only vertices whose faces so far are
    // joined around them: then every corner pair is one edge.
    bool estrellasUnidas;
};

void PrintTo(const FicheroObj& f, std::ostream* os)
{
    *os << f.ruta;
}

class MallasReales : public ::testing::TestWithParam<FicheroObj>
{
};

// A model that another tool wrote, built face by face as read: the records are sound, each
// face gives back its corners, and the edges are the input's distinct corner pairs, those of
// one face alone on the boundary, all counted from the input lists. An existing edge is found
// through the wings around a vertex: a face that reaches a vertex whose faces are still two
// separate fans may not find it and gets its own, so a pair may have two edges, each the
// boundary of one of its two faces, and nothing else differs.
TEST_P(MallasReales, RegistrosSanosYAristasDeLosParesDeEsquinas)
{
    const std::string ruta = std::string(CAD_DATOS_COMPARTIDOS) + "/obj/" + GetParam().ruta;
    prueba::MallaObj malla;
    ASSERT_TRUE(prueba::leeMallaObj(ruta, malla)) << ruta;
    const Modelo3D& m = malla.modelo;
    ASSERT_EQ(m.caras().size(), malla.caras.size());
    EXPECT_TRUE(mallaSana(m));

    std::vector<int32_t> ciclo;
    int distintas = 0;
    for (size_t f = 0; f < malla.caras.size(); ++f)
    {
        m.getVerticesCara(static_cast<int32_t>(f), ciclo);
        if (ciclo != malla.caras[f] && distintas++ < 3)
        {
            ADD_FAILURE() << "cara " << f << ": ciclo " << ::testing::PrintToString(ciclo)
                          << ", leida " << ::testing::PrintToString(malla.caras[f]);
        }
    }
    EXPECT_EQ(distintas, 0);

    std::map<std::pair<int32_t, int32_t>, int> usos;
    for (const std::vector<int32_t>& cara : malla.caras)
    {
        for (size_t i = 0; i < cara.size(); ++i)
        {
            const int32_t a = cara[i];
            const int32_t b = cara[(i + 1) % cara.size()];
            ++usos[std::minmax(a, b)];
        }
    }
    const auto deUnaCara =
        std::count_if(usos.begin(), usos.end(), [](const auto& u) { return u.second == 1; });
    std::map<std::pair<int32_t, int32_t>, std::vector<Arista>> aristasPar;
    for (const Arista& a : m.aristas())
    {
        aristasPar[std::minmax(a.vertice[0], a.vertice[1])].push_back(a);
    }
    EXPECT_EQ(aristasPar.size(), usos.size());
    long partidas = 0;
    for (const auto& [par, aristas] : aristasPar)
    {
        ASSERT_EQ(usos.count(par), 1U) << par.first << "-" << par.second;
        ASSERT_LE(aristas.size(), 2U) << par.first << "-" << par.second;
        if (aristas.size() == 2)
        {
            ++partidas;
            EXPECT_EQ(usos[par], 2);
            EXPECT_TRUE(aristas[0].esFrontera() && aristas[0].cara[0] != -1);
            EXPECT_TRUE(aristas[1].esFrontera() && aristas[1].cara[0] != -1);
        }
    }
    const auto fronteras = std::count_if(m.aristas().begin(), m.aristas().end(),
                                         [](const Arista& a) { return a.esFrontera(); });
    EXPECT_EQ(static_cast<long>(m.aristas().size()), static_cast<long>(usos.size()) + partidas);
    EXPECT_EQ(fronteras, deUnaCara + 2 * partidas);
    EXPECT_EQ(partidas == 0, GetParam().estrellasUnidas) << partidas << " pares partidos";
}

// A closed box twice over (one written with materials named with blanks), a closed mesh as
// quads and as triangles, and a triangle mesh of over ten thousand faces with open seams.
INSTANTIATE_TEST_SUITE_P(
    Obj, MallasReales,
    ::testing::Values(FicheroObj{"Cubo", "tinyobj_cube/cube.obj", true},
                      FicheroObj{"Caja", "assimp_box_mat_spaces/box_mat_with_spaces.obj", true},
                      FicheroObj{"VacaCuadrilateros", "spot_cow/spot_quadrangulated.obj", false},
                      FicheroObj{"VacaTriangulos", "spot_cow/spot_triangulated.obj", false},
                      FicheroObj{"Capsula", "trimesh_capsule/capsule.obj", true}),
    [](const ::testing::TestParamInfo<FicheroObj>& i) { return std::string(i.param.nombre); });

}  // namespace
}  // namespace cad
