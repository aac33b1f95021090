// The commands that make faces, planes and solids, played as a user's sessions: the prompts in
// order, the entity left in the drawing, what undo makes of it, and the current material.
#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "entidades/Cilindro.h"
#include "entidades/Cubo.h"
#include "entidades/Esfera.h"
#include "entidades/Linea.h"
#include "entidades/Objeto3D.h"
#include "entidades/Plano.h"
#include "entidades/Polilinea.h"
#include "entidades/Prisma.h"
#include "soporte/FicheroTemporal.h"
#include "soporte/GuionSesion.h"

namespace
{

using cad::EditorDibujo;
using cad::Entidad;
using cad::Objeto3D;
using cad::PantallaCAD;
using cad::Plano;
using cad::Punto3;
using cad::prueba::GuionSesion;
using cad::prueba::SesionEditor;
using P = Punto3<double>;
using Textos = std::vector<std::string>;

bool cerca(const P& a, const P& b)
{
    return a.distancia(b) < 1e-9;
}

template <class T>
T* entidad(SesionEditor& s, size_t i)
{
    return dynamic_cast<T*>(s.dibujo.entidades.at(i));
}

std::vector<P> esquinas(const Objeto3D* o)
{
    std::vector<P> v;
    o->modelo->getCoordenadasCara(0, v);
    return v;
}

// Each prompt is followed by the cleared prompt line when its wait ends.
Textos conBorrado(const Textos& prompts)
{
    Textos t;
    for (const auto& p : prompts)
    {
        t.push_back(p);
        t.emplace_back("");
    }
    return t;
}

// Inserted as a user's command would, so that it has its undo step.
Plano* cuadrado(SesionEditor& s, double lado)
{
    const P v[4] = {
        {100, 100, 0}, {100 + lado, 100, 0}, {100 + lado, 100 + lado, 0}, {100, 100 + lado, 0}};
    auto* p = new Plano(4, v);
    s.editor->nuevaEntidad(p);
    return p;
}

const char* const kCara1 = "Seleccione coordenada inicial de la cara 3D:";
const char* const kCara2 = "Seleccione la segunda coordenada de la cara 3D:";
const char* const kCara3 = "Seleccione la tercera coordenada de la cara 3D:";
const char* const kPlano = "Seleccione un plano:";

// Faces: a strip of triangles that all face the same way, a parallelogram from three points,
// the current material on both, one undo step per face; a refusal before the face makes none.
TEST(ComandosCara3D, tiraDeTriangulosYParalelogramoEnElMaterialActual)
{
    SesionEditor s;
    const auto m = static_cast<uint16_t>(s.dibujo.nuevoMaterial(7, 0xFF00FF00, 0.5F, ""));
    s.editor->setMaterialActual(static_cast<int16_t>(m));
    GuionSesion g(*s.editor, s.pantalla);
    g.escribe("0,0").escribe("10,0").escribe("0,10").escribe("10,10").intro();
    EXPECT_EQ(s.editor->comandoCara3D3(), 2);
    EXPECT_EQ(s.textos, conBorrado({kCara1, kCara2, kCara3, kCara3, kCara3}));
    auto* t0 = entidad<Objeto3D>(s, 0);
    auto* t1 = entidad<Objeto3D>(s, 1);
    ASSERT_TRUE(t0 != nullptr && t1 != nullptr);
    EXPECT_EQ(esquinas(t0), std::vector<P>({{0, 0, 0}, {10, 0, 0}, {0, 10, 0}}));
    // On the last two points, the shared side walked backwards: taken as given, every other
    // triangle of a strip would face the other way.
    EXPECT_EQ(esquinas(t1), std::vector<P>({{0, 10, 0}, {10, 0, 0}, {10, 10, 0}}));
    EXPECT_FLOAT_EQ(std::fabs(t0->modelo->normalCara(0).z), 1.0F);
    EXPECT_FLOAT_EQ(t1->modelo->normalCara(0).z, t0->modelo->normalCara(0).z);
    EXPECT_EQ(t0->material(), m);
    EXPECT_EQ(t1->material(), m);

    s.textos.clear();
    s.dibujo.borraMarcaCambios();
    g.escribe("0,0,1").escribe("10,0,1").escribe("12,5,1");
    EXPECT_EQ(s.editor->comandoCara3D4(), 1);
    EXPECT_EQ(s.textos, conBorrado({kCara1, kCara2, kCara3}));
    auto* q = entidad<Objeto3D>(s, 2);
    ASSERT_NE(q, nullptr);
    EXPECT_EQ(esquinas(q), std::vector<P>({{0, 0, 1}, {10, 0, 1}, {12, 5, 1}, {2, 5, 1}}));
    EXPECT_EQ(q->material(), m);
    EXPECT_TRUE(s.dibujo.hayCambios());

    g.escribe("0,0").escribe("1,0").cancela();
    EXPECT_EQ(s.editor->comandoCara3D4(), 0);
    EXPECT_EQ(s.dibujo.entidades.size(), 3U);
    EXPECT_EQ(s.editor->lineaElastica, nullptr);
}

// comandoCara: two points make nothing; a cancel closes as Enter does, with a plane fitted to
// the points and them as its contour. comandoPlano: the plane is in the drawing from the
// second point and grows; one left with two points goes with no undo step; an undo from inside
// a wait takes the plane away from the command, which then leaves it alone.
TEST(ComandosPlano, caraAjustadaYPlanoQueCrecePuntoAPunto)
{
    SesionEditor s;
    GuionSesion g(*s.editor, s.pantalla);
    g.escribe("0,0").escribe("5,0").intro();
    EXPECT_EQ(s.editor->comandoCara(), 0);
    EXPECT_FALSE(s.editor->puedeDeshacer());
    const std::vector<P> v = {{0, 0, 5}, {10, 0, 5}, {10, 10, 5}, {0, 10, 5}};
    g.escribe("0,0,5").escribe("10,0,5").escribe("10,10,5").escribe("0,10,5").cancela();
    EXPECT_EQ(s.editor->comandoCara(), 4);
    EXPECT_EQ(s.textos.front(), "Seleccione coordenadas de la cara 3D:");
    auto* cara = entidad<Plano>(s, 0);
    ASSERT_NE(cara, nullptr);
    EXPECT_EQ(cara->contorno.vertices, v);
    EXPECT_EQ(cara->referencia, v[0]);
    EXPECT_NEAR(cara->c * 5 + cara->d, 0.0, 1e-9);
    EXPECT_NEAR(std::fabs(cara->c), 1.0, 1e-12);
    s.editor->deshacer();

    s.textos.clear();
    size_t aLaMitad = 0;
    g.escribe("0,0").escribe("10,0").ejecuta([&]() { aLaMitad = s.dibujo.entidades.size(); });
    g.escribe("10,10").intro().escribe("50,50").escribe("60,50").intro().intro();
    EXPECT_EQ(s.editor->comandoPlano(), 1);
    EXPECT_EQ(aLaMitad, 1U);
    const char* inicial = "Seleccione coordenada inicial del plano:";
    const char* siguiente = "Seleccione siguiente coordenada del plano:";
    EXPECT_EQ(s.textos, conBorrado({inicial, siguiente, siguiente, siguiente, inicial, siguiente,
                                    siguiente, inicial}));
    ASSERT_EQ(s.dibujo.entidades.size(), 1U);
    auto* p = entidad<Plano>(s, 0);
    ASSERT_TRUE(p != nullptr && p->numCoordenadas() == 3);
    EXPECT_TRUE(cerca(*p->coordenada(2), P(10, 10, 0)));
    EXPECT_EQ(s.editor->comandosDeshacer.size(), 1U);
    s.editor->deshacer();
    s.editor->rehacer();
    EXPECT_EQ(s.dibujo.entidades.front(), p);

    g.escribe("0,0").escribe("10,0").ejecuta([&]() { s.editor->deshacer(); });
    g.escribe("10,10").intro();
    EXPECT_EQ(s.editor->comandoPlano(), 0);
    s.editor->rehacer();
    ASSERT_EQ(s.dibujo.entidades.size(), 2U);
    EXPECT_EQ(entidad<Plano>(s, 1)->numCoordenadas(), 2);
}

// The commands on a picked plane. comandoContornoPlano: a pick of the wrong kind asks again;
// the polyline becomes the contour and goes with its undo step. comandoParalelaPlano: a typed
// number is the distance along the normal; a point gives the copy through it, whatever the
// normal's sign. comandoPerpendicularPlano: the new plane holds the line and the first
// plane's normal, with its layer and colour. No plane stays highlighted.
TEST(ComandosSobrePlano, contornoParalelaYPerpendicular)
{
    SesionEditor s;
    Plano* plano = cuadrado(s, 100);
    plano->color.colorCAD = 3;
    const std::vector<P> v = {{300, 300, 0}, {400, 300, 0}, {350, 380, 0}};
    s.editor->nuevaEntidad(new cad::Polilinea(3, v.data()));
    s.pinta();
    GuionSesion g(*s.editor, s.pantalla);
    g.clic(300, 300).clic(150, 150).clic(400, 300);
    EXPECT_TRUE(s.editor->comandoContornoPlano());
    EXPECT_EQ(s.textos, conBorrado({kPlano, kPlano, "Seleccione una polilinea:"}));
    ASSERT_EQ(s.dibujo.entidades, std::vector<Entidad*>({plano}));
    for (int i = 0; i < 3; ++i)
    {
        EXPECT_TRUE(cerca(*plano->coordenada(i), v[static_cast<size_t>(i)]));
    }
    EXPECT_EQ(s.editor->comandosDeshacer.size(), 1U);

    s.pinta();
    s.textos.clear();
    g.clic(350, 320).escribe("5").clic(350, 320).escribe("0,0,-3").cancela();
    EXPECT_EQ(s.editor->comandoParalelaPlano(), 2);
    EXPECT_EQ(s.textos[2], "Seleccione <Punto>/<Distancia>:");
    ASSERT_EQ(s.dibujo.entidades.size(), 3U);
    const auto* porNumero = entidad<Plano>(s, 1);
    const cad::Rect3<double> caja = porNumero->extension();
    EXPECT_NEAR(std::fabs(caja.minimo.z), 5.0, 1e-9);
    EXPECT_NEAR(std::fabs(caja.maximo.z), 5.0, 1e-9);
    // The copy's equation holds its contour: d moved with the points.
    EXPECT_NEAR(porNumero->c * caja.minimo.z + porNumero->d, 0.0, 1e-9);
    EXPECT_NEAR(entidad<Plano>(s, 2)->extension().minimo.z, -3.0, 1e-9);
    EXPECT_NEAR(entidad<Plano>(s, 2)->extension().maximo.z, -3.0, 1e-9);
    EXPECT_EQ(porNumero->estado & 9U, 0U);
    s.editor->deshacer();
    s.editor->deshacer();

    s.editor->nuevaEntidad(new cad::Linea(P(330, 320, 0), P(370, 320, 0)));
    s.pinta();
    s.textos.clear();
    // A pick takes no Enter: a right click refuses the second plane.
    g.clic(350, 320).clic(350, 320).intro().clic(10, 10, PantallaCAD::kBotonDerecho);
    EXPECT_EQ(s.editor->comandoPerpendicularPlano(), 1);
    EXPECT_EQ(s.textos[2], "Seleccione una linea:");
    auto* nuevo = entidad<Plano>(s, 2);
    ASSERT_TRUE(nuevo != nullptr && nuevo->numCoordenadas() == 3);
    const cad::Rect3<double> vertical = nuevo->extension();
    EXPECT_NEAR(vertical.minimo.y, 320.0, 1e-9);
    EXPECT_NEAR(vertical.maximo.y, 320.0, 1e-9);
    EXPECT_GT(vertical.maximo.z - vertical.minimo.z, 1.0);
    EXPECT_EQ(nuevo->color.colorCAD, 3);
    EXPECT_EQ(nuevo->capa.objeto, plano->capa.objeto);
    EXPECT_EQ(plano->estado & 9U, 0U);
}

// The box takes points only: a number at the height is no answer. The models take the
// current material and a number for the height or the radius, along Z or X from the last
// point; a number of 0 or less is asked again. A cancel ends a command with what it made.
TEST(ComandosSolidos, cajaPorPuntosYModelosConMedidaTecleada)
{
    SesionEditor s;
    const auto m = static_cast<uint16_t>(s.dibujo.nuevoMaterial(3, 0xFF0000FF, 1.0F, ""));
    s.editor->setMaterialActual(static_cast<int16_t>(m));
    GuionSesion g(*s.editor, s.pantalla);
    g.escribe("0,0").escribe("10,20").escribe("5").escribe("10,20,5").intro();
    EXPECT_EQ(s.editor->comandoCubo(), 1);
    const char* esquina = "Seleccione una esquina del cubo:";
    const char* altura = "Seleccione la altura del cubo:";
    EXPECT_EQ(s.textos, Textos({esquina, "", "Seleccione una esquina opuesta del cubo:", "", altura,
                                "Coordenada no válida", altura, "", esquina, ""}));
    auto* cubo = entidad<cad::Cubo>(s, 0);
    ASSERT_NE(cubo, nullptr);
    EXPECT_EQ(cubo->minimo, P(0, 0, 0));
    EXPECT_EQ(cubo->maximo, P(10, 20, 5));
    EXPECT_FALSE(s.dibujo.planoTemporalActivo);

    g.escribe("0,0").escribe("10,20").escribe("7").intro();
    EXPECT_EQ(s.editor->comandoModeloCubo(), 1);
    auto* prisma = entidad<cad::Prisma>(s, 1);
    ASSERT_NE(prisma, nullptr);
    EXPECT_EQ(prisma->maximo - prisma->minimo, cad::Vector3D<double>(10, 20, 7));
    EXPECT_EQ(prisma->transformacion.getOrigen(), P(5, 10, 3.5));
    EXPECT_EQ(prisma->material(), m);

    s.textos.clear();
    g.escribe("5,5").escribe("3").escribe("-2").escribe("4");
    g.clic(100, 100).clic(100, 110).escribe("2").intro();
    EXPECT_EQ(s.editor->comandoModeloCilindro(), 2);
    // The wait takes the number and ends; the command refuses it and asks again.
    const char* alturaCilindro = "Seleccione la altura del cilindro:";
    EXPECT_EQ(Textos(s.textos.begin() + 4, s.textos.begin() + 9),
              Textos({alturaCilindro, "", "Coordenada no válida", alturaCilindro, ""}));
    auto* c1 = entidad<cad::Cilindro>(s, 2);
    auto* c2 = entidad<cad::Cilindro>(s, 3);
    ASSERT_TRUE(c1 != nullptr && c2 != nullptr);
    EXPECT_EQ(std::vector<double>({c1->radio, c1->altura}), std::vector<double>({3, 4}));
    EXPECT_EQ(c1->transformacion.getOrigen(), P(5, 5, 0));
    EXPECT_EQ(c1->material(), m);
    // A picked point is the radius's end, on the horizontal plane through the centre.
    EXPECT_NEAR(c2->radio, 10.0, 1e-9);
    EXPECT_EQ(c2->altura, 2.0);

    g.escribe("1,2,3").escribe("4").clic(200, 200).clic(203, 204).escribe("0,0").cancela();
    EXPECT_EQ(s.editor->comandoModeloEsfera(), 2);
    auto* e1 = entidad<cad::Esfera>(s, 4);
    auto* e2 = entidad<cad::Esfera>(s, 5);
    ASSERT_TRUE(e1 != nullptr && e2 != nullptr && s.dibujo.entidades.size() == 6U);
    EXPECT_EQ(e1->centro, P(1, 2, 3));
    EXPECT_EQ(e1->radio, 4.0);
    EXPECT_NEAR(e2->radio, 5.0, 1e-9);
    EXPECT_EQ(e2->material(), m);
    EXPECT_EQ(s.editor->lineaElastica, nullptr);
    s.editor->deshacer();
    EXPECT_EQ(s.dibujo.entidades.size(), 5U);
    s.editor->rehacer();
    EXPECT_EQ(s.dibujo.entidades.back(), e2);
}

// comandoConvierteObjeto3D: picks gather until refused; a sphere and a plane become Objeto3D
// on the current material with the source's layer, the sources go with their steps, a line
// is left as it was. A host's veto of the new object keeps the source.
TEST(ComandoConvierteObjeto3D, esferaYPlanoPasanAObjetosYUnaLineaSeQueda)
{
    SesionEditor s;
    const auto m = static_cast<uint16_t>(s.dibujo.nuevoMaterial(9, 0xFFFFFFFF, 1.0F, ""));
    s.editor->setMaterialActual(static_cast<int16_t>(m));
    auto* linea = new cad::Linea(P(500, 100, 0), P(600, 100, 0));
    s.editor->nuevaEntidad(linea);
    auto* esfera = new cad::Esfera(P(300, 300, 0), 20.0, 0);
    s.editor->nuevaEntidad(esfera);
    cuadrado(s, 50);
    s.pinta();
    const size_t verticesEsfera = esfera->modelo.vertices().size();
    GuionSesion g(*s.editor, s.pantalla);
    g.clic(300, 300).clic(550, 100).clic(120, 120).clic(10, 10, PantallaCAD::kBotonDerecho);
    EXPECT_EQ(s.editor->comandoConvierteObjeto3D(), 2);
    EXPECT_EQ(s.textos[0], "Seleccione entidades para converirlas a objetos 3D");
    ASSERT_EQ(s.dibujo.entidades.size(), 3U);
    EXPECT_EQ(s.dibujo.entidades[0], linea);
    EXPECT_EQ(linea->estado & 9U, 0U);
    auto* deEsfera = entidad<Objeto3D>(s, 1);
    auto* dePlano = entidad<Objeto3D>(s, 2);
    ASSERT_TRUE(deEsfera != nullptr && dePlano != nullptr);
    EXPECT_EQ(deEsfera->modelo->vertices().size(), verticesEsfera);
    EXPECT_EQ(esquinas(dePlano),
              std::vector<P>({{100, 100, 0}, {150, 100, 0}, {150, 150, 0}, {100, 150, 0}}));
    EXPECT_EQ(deEsfera->material(), m);
    EXPECT_EQ(dePlano->material(), m);
    EXPECT_EQ(dePlano->capa.objeto, s.dibujo.capaActual());
    EXPECT_EQ(s.editor->comandosDeshacer.size(), 3U);
    s.editor->deshacer();
    s.editor->deshacer();
    EXPECT_EQ(s.dibujo.entidades, std::vector<Entidad*>({linea}));
    s.editor->rehacer();

    auto* otra = new cad::Esfera(P(300, 300, 0), 20.0, 0);
    s.editor->nuevaEntidad(otra);
    s.pinta();
    s.editor->setReactorInsercionEntidades([](int64_t, EditorDibujo::enumInsercionEntidades)
                                           { return false; });
    // A cancel also ends the picks.
    g.clic(300, 300).cancela();
    EXPECT_EQ(s.editor->comandoConvierteObjeto3D(), 0);
    EXPECT_EQ(s.dibujo.entidades.back(), otra);
    EXPECT_EQ(otra->estado & 9U, 0U);
}

// The current material: only 0 or a material of the drawing is taken; back to 0 when that
// material is deleted, after a load and on a new document; never in the file's bytes.
TEST(MaterialActual, noSeGuardaYSeVaciaAlCargar)
{
    SesionEditor s;
    EXPECT_EQ(s.editor->materialActual(), 0);
    const int16_t m = s.dibujo.nuevoMaterial(1, 0xFF102030, 1.0F, "");
    s.editor->setMaterialActual(999);
    EXPECT_EQ(s.editor->materialActual(), 0);
    const std::string a = cad::prueba::rutaTemporal("material_a.tcad");
    const std::string b = cad::prueba::rutaTemporal("material_b.tcad");
    cad::resultadoFichero_t r;
    ASSERT_TRUE(s.editor->guardaDocumento(a.c_str(), r));
    s.editor->setMaterialActual(m);
    EXPECT_EQ(s.editor->materialActual(), m);
    ASSERT_TRUE(s.editor->guardaDocumento(b.c_str(), r));
    EXPECT_EQ(cad::prueba::leeFichero(a), cad::prueba::leeFichero(b));

    ASSERT_TRUE(s.editor->cargaDocumento(b.c_str(), r));
    EXPECT_EQ(s.editor->materialActual(), 0);
    s.editor->setMaterialActual(m);
    s.dibujo.borraMaterial(m);
    EXPECT_EQ(s.editor->materialActual(), 0);
    s.dibujo.setMaterialActual(1);
    s.dibujo.nuevoDocumento();
    EXPECT_EQ(s.dibujo.materialActual(), 0);
}

}  // namespace
