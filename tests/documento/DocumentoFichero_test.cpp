// The document file through the facade: a drawing with every kind of entity saved, loaded and
// saved again, proved byte for byte; the state the load restores; references that match
// nothing; files that can't load; and the persistent ids.
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Fendrix/WrapDibujoCAD.h"
#include "base/SerializadorBinarioEscritura.h"
#include "documento/Dibujo.h"
#include "documento/Variables.h"
#include "entidades/Plano.h"
#include "entidades/Polilinea.h"
#include "entidades/Punto.h"
#include "entidades/PuntoControl.h"
#include "entidades/Texto.h"
#include "soporte/BloquesPrueba.h"
#include "soporte/FicheroTemporal.h"
#include "soporte/PantallaGrabadora.h"

namespace
{

using cad::Punto3;
using cad::Vector3D;
using cad::prueba::anade;
using cad::prueba::Bloque;
using cad::prueba::Bytes;
using cad::prueba::items;
using cad::prueba::num;
using cad::prueba::ponNum;
using cad::prueba::seccion;
using cad::prueba::trozo;
using Fendrix::WrapDibujoCAD;

void anadeCadena(Bytes& b, const std::string& s)
{
    anade(b, s.size() + (s.size() & 1), 2);
    b.insert(b.end(), s.begin(), s.end());
    if ((s.size() & 1) != 0)
    {
        b.push_back(0);
    }
}

// One variable block: tag, u16 length, id 0, name, value.
Bytes bloqueVariable(const char* tag, const std::string& nombre, const Bytes& valor)
{
    Bytes cuerpo;
    anade(cuerpo, 0, 8);
    anadeCadena(cuerpo, nombre);
    cuerpo.insert(cuerpo.end(), valor.begin(), valor.end());
    Bytes b(tag, tag + 4);
    anade(b, 2 + cuerpo.size(), 2);
    b.insert(b.end(), cuerpo.begin(), cuerpo.end());
    return b;
}

Bytes texto(const std::string& s)
{
    Bytes b;
    anadeCadena(b, s);
    return b;
}

Bytes vector3(double x, double y, double z)
{
    Bytes b(24);
    const double v[] = {x, y, z};
    std::memcpy(b.data(), v, sizeof v);
    return b;
}

// The six defaults a load puts ahead of the file's variables, with their default values.
Bytes seisDefectos()
{
    Bytes r;
    for (const Bytes& v : {bloqueVariable("VSt", "clayer", texto("0")),
                           bloqueVariable("VSt", "cecolor", texto("256")),
                           bloqueVariable("V3D", "orgplref", vector3(0, 0, 0)),
                           bloqueVariable("V3D", "normplref", vector3(0, 0, 1)),
                           bloqueVariable("VSt", "cview", texto("")),
                           bloqueVariable("VSt", "textstyle", texto("standar"))})
    {
        r.insert(r.end(), v.begin(), v.end());
    }
    return r;
}

// `a` as a load and save cycle writes it back when the state equals the defaults: the six
// default variables inserted ahead of the file's, with the count and the "Vbles.1" and outer
// lengths grown to match.
Bytes conSeisDefectos(const Bytes& a)
{
    Bytes b = a;
    const Bloque v = seccion(a, "Vbles.1");
    const Bytes seis = seisDefectos();
    b.insert(b.begin() + static_cast<long>(v.posLongitud + 16), seis.begin(), seis.end());
    ponNum(b, v.posLongitud, num(a, v.posLongitud, 8) + seis.size(), 8);
    ponNum(b, v.posLongitud + 8, num(a, v.posLongitud + 8, 8) + 6, 8);
    ponNum(b, 16, num(a, 16, 8) + seis.size(), 8);
    return b;
}

void comparaBytes(const Bytes& obtenido, const Bytes& esperado)
{
    size_t i = 0;
    while (i < obtenido.size() && i < esperado.size() && obtenido[i] == esperado[i])
    {
        ++i;
    }
    EXPECT_EQ(obtenido.size(), esperado.size());
    EXPECT_TRUE(obtenido == esperado) << "first difference at byte " << i;
}

std::string ruta(const char* nombre)
{
    return cad::prueba::rutaTemporal(nombre);
}

// Every kind of entity on three layers in the default state, saved (A), loaded and saved (B):
// B is A plus six default variables ahead of the file's (count and lengths grown), and the
// polygon, back as a closed Polilinea with its vertices, is written as a polyline of the same
// tag: its closed flag (01 01) goes in ahead of the count, and the lengths grow by two.
TEST(DocumentoFichero, cicloDeCargaYGuardadoByteAByte)
{
    WrapDibujoCAD w(nullptr, nullptr);
    w.nuevoDocumento();
    ASSERT_TRUE(w.nuevaCapa("Ejes", true));
    ASSERT_NE(w.nuevoPunto(1, 2, 3), 0);
    ASSERT_NE(w.nuevoTexto("Cota 12", 4, 5, 6, WrapDibujoCAD::alineacionTexto::kAlineacionMedCen,
                           1.5, 0.25),
              0);
    ASSERT_NE(w.nuevoPuntoControl("PC-1", "base", 7, 8, 9), 0);
    ASSERT_TRUE(w.nuevaCapa("Cotas", true));
    ASSERT_NE(w.nuevaLinea(0, 0, 0, 10, 0, 0), 0);
    const double tres[] = {0, 0, 0, 5, 0, 0, 5, 5, 1};
    const int64_t abierta = w.nuevaPolilinea(3, tres);
    ASSERT_NE(abierta, 0);
    ASSERT_NE(w.nuevaPolilinea3D({0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0}, true), 0);
    std::vector<double> mil;
    for (int i = 0; i < 1000; ++i)
    {
        mil.insert(mil.end(), {i * 0.5, static_cast<double>(i % 7), 2.0});
    }
    ASSERT_NE(w.nuevaPolilinea3D(mil, false), 0);
    ASSERT_TRUE(w.capaActual("0"));
    ASSERT_NE(w.nuevoPoligono({1, 0, 0, 2, 0, 0, 2, 1, 0, 1, 1, 0}), 0);
    const Punto3<double> contorno[] = {{0, 0, 0}, {4, 0, 0}, {4, 3, 1}};
    ASSERT_TRUE(w.insertaEntidad(new cad::Plano(3, contorno)));
    ASSERT_NE(w.nuevoSistemaLocal("Obra", {10, 20, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}), 0);
    ASSERT_EQ(w.capaActual(), "0");
    ASSERT_EQ(w.mDibujo->colorActual.colorCAD, 256);
    ASSERT_EQ(w.mDibujo->estiloTextoActual()->nombre, "standar");
    ASSERT_EQ(w.mDibujo->origenPlano, Punto3<double>(0, 0, 0));
    ASSERT_EQ(w.mDibujo->normalPlano, Vector3D<double>(0, 0, 1));

    const std::string rutaA = ruta("a.tcad");
    const std::string rutaB = ruta("b.tcad");
    ASSERT_TRUE(w.guarda(rutaA));
    const Bytes a = cad::prueba::leeFichero(rutaA);
    WrapDibujoCAD w2(nullptr, nullptr);
    ASSERT_TRUE(w2.lee(rutaA));
    EXPECT_TRUE(w2.hayCambios());
    ASSERT_TRUE(w2.guarda(rutaB));
    const Bytes b = cad::prueba::leeFichero(rutaB);

    const auto entidades = items(a, "Entid.1");
    std::vector<std::string> tags;
    for (const Bloque& e : entidades)
    {
        tags.push_back(e.tag);
    }
    ASSERT_EQ(tags, (std::vector<std::string>{"Pt1", "Tx1", "PC1", "Ln1", "Pg1", "Pg1", "PolyLn1",
                                              "Pg1", "Pn1", "Sl1"}));
    const Bloque& poligono = entidades[7];
    ASSERT_EQ(num(a, poligono.cuerpo() + 32, 4), 4U);
    const Bytes seis = seisDefectos();
    const size_t variables = seccion(a, "Vbles.1").posLongitud + 16;
    ASSERT_EQ(Bytes(a.begin() + static_cast<long>(variables),
                    a.begin() + static_cast<long>(variables + seis.size())),
              seis)
        << "A's first six variables are the defaults as they stand";
    const auto vs = items(a, "Vbles.1");
    ASSERT_EQ(vs.size(), 11U);
    EXPECT_EQ(items(b, "Vbles.1").size(), 17U);
    // Saved with no display, the working view the new document made has no view variables to
    // fill it, so it keeps a new view's values, and those are saved.
    const struct
    {
        const char* nombre;
        double z;
    } vista[] = {{"posVista", 1}, {"objVista", 0}, {"upVista", 1}};
    for (size_t i = 0; i < 3; ++i)
    {
        EXPECT_EQ(trozo(a, vs[6 + i]),
                  bloqueVariable("V3D", vista[i].nombre, vector3(0, 0, vista[i].z)))
            << vista[i].nombre;
    }

    Bytes esperado = a;
    esperado.insert(esperado.begin() + static_cast<long>(poligono.cuerpo() + 32), {1, 1});
    ponNum(esperado, poligono.posLongitud, num(a, poligono.posLongitud, 2) + 2, 2);
    const Bloque lista = seccion(a, "Entid.1");
    ponNum(esperado, lista.posLongitud, num(a, lista.posLongitud, 8) + 2, 8);
    ponNum(esperado, 16, num(a, 16, 8) + 2, 8);
    comparaBytes(b, conSeisDefectos(esperado));

    std::vector<int64_t> h;
    ASSERT_EQ(w2.getEntidades(h), 10);
    std::vector<double> c;
    EXPECT_EQ(w2.getVertices(h[6], c), 3000);
    EXPECT_EQ(c[2997], 499.5);
    EXPECT_EQ(w2.getVertices(h[7], c), 12);
    EXPECT_EQ(c, (std::vector<double>{1, 0, 0, 2, 0, 0, 2, 1, 0, 1, 1, 0}));
    EXPECT_NE(dynamic_cast<cad::Polilinea*>(w2.mDibujo->buscaEntidad(h[7])), nullptr);
    EXPECT_EQ(w2.longitud(h[4]), w.longitud(abierta));
    EXPECT_EQ(w2.numeroCapas(), 3);
    EXPECT_EQ(w2.nombreSistemaLocal(0), "Obra");
}

// Another current layer, a true colour, another style and plane are saved into the file's
// variables, but a load restores the defaults' state ("0", 256, "standar", (0,0,0)/(0,0,1))
// since the defaults stand ahead; the file's copies stay behind them, and the next save
// writes them back after six new defaults.
TEST(DocumentoFichero, estadoQueLaCargaNoRestaura)
{
    WrapDibujoCAD w(nullptr, nullptr);
    w.nuevoDocumento();
    ASSERT_TRUE(w.nuevaCapa("Ejes", true));
    w.setColorActualRGB(0x12, 0x34, 0x56);
    ASSERT_TRUE(w.nuevoEstiloTexto("Rotulos", "Arial", 12, true));
    w.mDibujo->setPlanoReferencia(Punto3<double>(1, 2, 3), Vector3D<double>(0, 1, 0));
    ASSERT_NE(w.nuevoPunto(1, 1, 1), 0);
    const std::string rutaA = ruta("estado.tcad");
    ASSERT_TRUE(w.guarda(rutaA));
    const Bytes a = cad::prueba::leeFichero(rutaA);
    const auto vs = items(a, "Vbles.1");
    ASSERT_GE(vs.size(), 6U);
    EXPECT_EQ(trozo(a, vs[0]), bloqueVariable("VSt", "clayer", texto("Ejes")));
    EXPECT_EQ(trozo(a, vs[1]), bloqueVariable("VSt", "cecolor", texto("RGB:305420031")));
    EXPECT_EQ(trozo(a, vs[2]), bloqueVariable("V3D", "orgplref", vector3(1, 2, 3)));
    EXPECT_EQ(trozo(a, vs[3]), bloqueVariable("V3D", "normplref", vector3(0, 1, 0)));
    EXPECT_EQ(trozo(a, vs[5]), bloqueVariable("VSt", "textstyle", texto("Rotulos")));

    WrapDibujoCAD w2(nullptr, nullptr);
    ASSERT_TRUE(w2.lee(rutaA));
    cad::Dibujo& d = *w2.mDibujo;
    EXPECT_EQ(w2.capaActual(), "0");
    EXPECT_EQ(d.colorActual.colorCAD, 256);
    EXPECT_EQ(d.estiloTextoActual()->nombre, "standar");
    EXPECT_EQ(d.origenPlano, Punto3<double>(0, 0, 0));
    EXPECT_EQ(d.normalPlano, Vector3D<double>(0, 0, 1));
    EXPECT_NE(d.buscaCapa("Ejes"), nullptr);
    EXPECT_NE(d.buscaEstiloTexto("Rotulos"), nullptr);
    ASSERT_EQ(d.variables.size(), 6 + vs.size());
    auto* copia = dynamic_cast<cad::VariableStr*>(d.variables[6]);
    ASSERT_NE(copia, nullptr);
    EXPECT_EQ(copia->nombre, "clayer");
    EXPECT_EQ(copia->valor, "Ejes");
    const std::string rutaB = ruta("estado-b.tcad");
    ASSERT_TRUE(w2.guarda(rutaB));
    comparaBytes(cad::prueba::leeFichero(rutaB), conSeisDefectos(a));
}

// References that match nothing after a load: a text and a control point whose style id
// names no style keep a null style pointer (a bound one is tied up); a point whose layer id
// names no layer keeps a null layer pointer, and the paint loop skips it.
TEST(DocumentoFichero, referenciasSinDestino)
{
    WrapDibujoCAD w(nullptr, nullptr);
    w.nuevoDocumento();
    const auto alin = WrapDibujoCAD::alineacionTexto::kAlineacionInfIzq;
    const int64_t huerfano = w.nuevoTexto("huerfano", 10, 0, 0, alin, 1, 0);
    ASSERT_NE(w.nuevoTexto("atado", 20, 0, 0, alin, 1, 0), 0);
    const int64_t control = w.nuevoPuntoControl("PC", "c", 30, 0, 0);
    const int64_t perdido = w.nuevoPunto(1, 1, 1);
    ASSERT_NE(w.nuevoPunto(2, 2, 2), 0);
    auto* t = dynamic_cast<cad::Texto*>(w.mDibujo->buscaEntidad(huerfano));
    auto* pc = dynamic_cast<cad::PuntoControl*>(w.mDibujo->buscaEntidad(control));
    ASSERT_NE(t, nullptr);
    ASSERT_NE(pc, nullptr);
    t->referenciaEstilo().set(nullptr, 0xDEADBEEFU);
    pc->referenciaEstilo().set(nullptr, 0xDEADBEEFU);
    w.mDibujo->buscaEntidad(perdido)->capa.set(nullptr, 0xBEEFU);
    const std::string r = ruta("huerfanos.tcad");
    ASSERT_TRUE(w.guarda(r));

    WrapDibujoCAD w2(nullptr, nullptr);
    ASSERT_TRUE(w2.lee(r));
    cad::Dibujo& d = *w2.mDibujo;
    ASSERT_EQ(d.entidades.size(), 5U);
    auto* t2 = dynamic_cast<cad::Texto*>(d.entidades[0]);
    auto* atado = dynamic_cast<cad::Texto*>(d.entidades[1]);
    auto* pc2 = dynamic_cast<cad::PuntoControl*>(d.entidades[2]);
    ASSERT_TRUE(t2 != nullptr && atado != nullptr && pc2 != nullptr);
    EXPECT_EQ(t2->referenciaEstilo().objeto, nullptr);
    EXPECT_EQ(t2->referenciaEstilo().id, 0xDEADBEEFU);
    EXPECT_EQ(pc2->referenciaEstilo().objeto, nullptr);
    EXPECT_EQ(atado->referenciaEstilo().get(), d.buscaEstiloTexto("standar"));
    EXPECT_TRUE(d.entidades[3]->sinCapa());
    EXPECT_EQ(d.entidades[3]->capa.id, 0xBEEFU);
    EXPECT_EQ(d.entidades[4]->capa.get(), d.buscaCapa("0"));

    cad::prueba::PantallaGrabadora p;
    EXPECT_TRUE(d.dibuja(p));
    std::vector<std::string> puntos;
    for (const std::string& l : p.llamadasDe("dibujaPunto"))
    {
        puntos.push_back(l.substr(0, l.find(')') + 1));
    }
    EXPECT_EQ(std::count(puntos.begin(), puntos.end(), "dibujaPunto (2,2,2)"), 1);
    EXPECT_EQ(std::count(puntos.begin(), puntos.end(), "dibujaPunto (1,1,1)"), 0);
}

// A damaged file that repeats a layer id and a style id: every reference with that id binds
// to the first object that carries it, whichever the entity named when it was saved. Catches
// a lookup that lets a later object overwrite an earlier one.
TEST(DocumentoFichero, idRepetidoAtaAlPrimero)
{
    WrapDibujoCAD w(nullptr, nullptr);
    w.nuevoDocumento();
    ASSERT_TRUE(w.nuevaCapa("A", false));
    ASSERT_TRUE(w.nuevaCapa("B", false));
    ASSERT_TRUE(w.nuevoEstiloTexto("S1", "Arial", 10, false));
    ASSERT_TRUE(w.nuevoEstiloTexto("S2", "Mono", 8, false));
    cad::Dibujo& d = *w.mDibujo;
    d.buscaCapa("A")->setId(7, 0);
    d.buscaCapa("B")->setId(7, 0);
    d.buscaEstiloTexto("S1")->setId(9, 0);
    d.buscaEstiloTexto("S2")->setId(9, 0);
    const auto alin = WrapDibujoCAD::alineacionTexto::kAlineacionInfIzq;
    ASSERT_TRUE(w.capaActual("B"));
    ASSERT_TRUE(w.estiloTextoActual("S2"));
    ASSERT_NE(w.nuevoPunto(1, 2, 3), 0);
    ASSERT_NE(w.nuevoTexto("t", 4, 5, 6, alin, 1, 0), 0);
    ASSERT_TRUE(w.capaActual("A"));
    ASSERT_NE(w.nuevoPunto(7, 8, 9), 0);
    const std::string r = ruta("ids-repetidos.tcad");
    ASSERT_TRUE(w.guarda(r));

    WrapDibujoCAD w2(nullptr, nullptr);
    ASSERT_TRUE(w2.lee(r));
    cad::Dibujo& d2 = *w2.mDibujo;
    ASSERT_EQ(d2.entidades.size(), 3U);
    for (const cad::Entidad* e : d2.entidades)
    {
        EXPECT_EQ(e->capaEntidad(), d2.buscaCapa("A")) << e->etiqueta();
    }
    auto* t = dynamic_cast<cad::Texto*>(d2.entidades[1]);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->referenciaEstilo().get(), d2.buscaEstiloTexto("S1"));
}

// Files that do not load, from one sound file (a layer, a point, a line) spoiled in turns.
// Plain forms: empty and missing files load false. A wrong magic loads false, keeps every list
// and keeps the outer body as unknown bytes. A section of another tag stops the load there:
// layers read, that list emptied keeping the section's body, later lists untouched. A save
// into a missing folder reports true and creates nothing.
// Checked forms: they say why a file did not load and leave the open drawing exactly as it
// was (its entity, its layers, its ready flag); a damaged file loads with a warning and the
// count of entities kept unread. A checked save into a missing folder says so.
TEST(DocumentoFichero, ficherosQueNoCargan)
{
    WrapDibujoCAD origen(nullptr, nullptr);
    origen.nuevoDocumento();
    ASSERT_TRUE(origen.nuevaCapa("Ejes", false));
    ASSERT_NE(origen.nuevoPunto(5, 5, 5), 0);
    ASSERT_NE(origen.nuevaLinea(0, 0, 0, 1, 1, 1), 0);
    const std::string buena = ruta("buena.tcad");
    ASSERT_TRUE(origen.guarda(buena));
    const Bytes b = cad::prueba::leeFichero(buena);
    const auto escribe = [](const char* nombre, const Bytes& bytes)
    {
        const std::string r = ruta(nombre);
        cad::prueba::escribeFichero(r, bytes);
        return r;
    };
    Bytes magia = b;
    magia[0] = 't';
    Bytes otraVersion = b;
    otraVersion[14] = '3';
    Bytes seccionAjena = b;
    const Bloque m = seccion(b, "Mater.1");
    seccionAjena[m.inicio + 6] = '9';
    Bytes danada = b;
    danada[items(b, "Entid.1")[0].inicio + 3] = 'X';
    const std::string noExiste = ruta("no-existe.tcad");
    const std::string vacio = escribe("vacio.tcad", {});
    const std::string texto = escribe("texto.tcad", {'h', 'o', 'l', 'a'});
    const std::string rMagia = escribe("magia.tcad", magia);
    const std::string version = escribe("version.tcad", otraVersion);
    const std::string ajena = escribe("seccion.tcad", seccionAjena);
    const std::string rDanada = escribe("danada.tcad", danada);
    const std::string carpeta = ruta("no-hay-carpeta");

    {
        SCOPED_TRACE("plain forms");
        WrapDibujoCAD w(nullptr, nullptr);
        w.nuevoDocumento();
        ASSERT_NE(w.nuevoPunto(1, 1, 1), 0);
        cad::Dibujo& d = *w.mDibujo;
        EXPECT_FALSE(w.lee(vacio));
        EXPECT_FALSE(d.documentoListo);
        EXPECT_FALSE(w.lee(noExiste));

        EXPECT_FALSE(w.lee(rMagia));
        EXPECT_FALSE(d.documentoListo);
        EXPECT_EQ(d.entidades.size(), 1U);
        EXPECT_EQ(d.capas.size(), 1U);
        EXPECT_EQ(d.tamanoDatosDesconocidos, b.size() - 24);

        EXPECT_FALSE(w.lee(ajena));
        EXPECT_EQ(d.capas.size(), 2U);
        EXPECT_NE(d.buscaCapa("Ejes"), nullptr);
        EXPECT_TRUE(d.materiales.empty());
        EXPECT_EQ(d.materiales.tamanoDatosDesconocidos, m.fin - m.posLongitud - 8);
        EXPECT_EQ(d.estilosTexto.size(), 1U);
        EXPECT_EQ(d.entidades.size(), 1U);

        EXPECT_TRUE(origen.guarda(carpeta + "/dibujo.tcad"));
        EXPECT_FALSE(cad::prueba::existeFichero(carpeta + "/dibujo.tcad"));
    }

    SCOPED_TRACE("checked forms");
    WrapDibujoCAD w(nullptr, nullptr);
    w.nuevoDocumento();
    ASSERT_TRUE(w.nuevaCapa("Mia", true));
    ASSERT_NE(w.nuevoPunto(1, 1, 1), 0);
    const std::vector<std::pair<std::string, std::string>> casos = {
        {noExiste, "no existe el fichero " + noExiste},
        {vacio, vacio + " está vacío"},
        {texto, texto + " no es un dibujo de Tarvelo"},
        {version, version + " es de otra versión del formato de dibujo"},
        {ajena, ajena + " está dañado y no se puede leer"},
    };
    for (const auto& [fichero, motivo] : casos)
    {
        std::string mensaje;
        int64_t danadas = -1;
        EXPECT_FALSE(w.leeComprobado(fichero, mensaje, danadas));
        EXPECT_EQ(mensaje, motivo);
        EXPECT_EQ(w.mDibujo->entidades.size(), 1U);
        EXPECT_EQ(w.numeroCapas(), 2);
        EXPECT_EQ(w.capaActual(), "Mia");
        EXPECT_TRUE(w.mDibujo->documentoListo);
    }

    std::string mensaje;
    int64_t danadas = 0;
    ASSERT_TRUE(w.leeComprobado(rDanada, mensaje, danadas));
    EXPECT_EQ(danadas, 1);
    EXPECT_EQ(mensaje,
              rDanada + " está dañado: 1 entidad no se pudo leer y se conserva tal como venía");
    EXPECT_EQ(w.mDibujo->entidades.size(), 2U);
    EXPECT_EQ(w.mDibujo->entidades[1]->etiqueta(), std::string("Ln1"));

    EXPECT_FALSE(w.guardaComprobado(carpeta + "/dibujo.tcad", mensaje));
    EXPECT_EQ(mensaje, "no existe la carpeta " + carpeta);
    EXPECT_TRUE(cad::prueba::restosTemporales().empty());
}

// A file written in pieces, with the lengths of blocks already on the disk patched there
// (the outer block, the entity list, a polyline of 150,000 vertices larger than a piece, and
// many small blocks across the pieces' borders), is byte for byte what the same drawing
// assembles in memory.
TEST(DocumentoFichero, guardadoPorTrozosIgualQueEnMemoria)
{
    cad::Dibujo d;
    d.nuevoDocumento();
    std::vector<Punto3<double>> muchos;
    for (int i = 0; i < 150000; ++i)
    {
        muchos.emplace_back(i * 0.5, i % 7, 2.0);
        d.nuevaEntidad(new cad::Punto(i, -i, 0.25 * i));
    }
    d.nuevaEntidad(new cad::Polilinea(static_cast<int>(muchos.size()), muchos.data()));
    cad::SerializadorBinarioEscritura memoria;
    d.escribe(memoria);
    const std::string r = ruta("trozos.tcad");
    cad::resultadoFichero_t resultado;
    ASSERT_TRUE(d.guardaFichero(r, resultado)) << resultado.mensaje;
    const Bytes fichero = cad::prueba::leeFichero(r);
    ASSERT_GT(fichero.size(), 10000000U);
    EXPECT_TRUE(fichero == memoria.bytes());
}

// A process killed at any moment of a 60 MB save and of the DXF export behind it (a child
// process, killed at random times over the span the two take) leaves each file either as it
// was, byte for byte, or whole and new: never a mix, never a cut file. Some kills must land
// while a temporary file is being written, which shows that the target was not.
TEST(DocumentoFichero, procesoMatadoDuranteElGuardadoDejaElFicheroAnterior)
{
    const std::string carpeta = ruta("matado");
    std::filesystem::create_directories(carpeta);
    const std::string cad = carpeta + "/obra.cad";
    const std::string dxf = carpeta + "/obra.dxf";
    WrapDibujoCAD pequeno(nullptr, nullptr);
    pequeno.nuevoDocumento();
    ASSERT_NE(pequeno.nuevoPunto(1, 2, 3), 0);
    std::string mensaje;
    ASSERT_TRUE(pequeno.guardaComprobado(cad, mensaje) &&
                pequeno.exportaDXFComprobado(dxf, mensaje));
    const Bytes viejoCad = cad::prueba::leeFichero(cad);
    const Bytes viejoDxf = cad::prueba::leeFichero(dxf);

    WrapDibujoCAD grande(nullptr, nullptr);
    grande.nuevoDocumento();
    for (int i = 0; i < 1000000; ++i)
    {
        grande.mDibujo->entidades.push_back(new cad::Punto(431000.0 + i * 0.01, 4581000.0, 600.0));
    }
    const auto inicio = std::chrono::steady_clock::now();
    ASSERT_TRUE(grande.guardaComprobado(carpeta + "/nuevo.cad", mensaje) &&
                grande.exportaDXFComprobado(carpeta + "/nuevo.dxf", mensaje));
    const auto duracion = std::chrono::steady_clock::now() - inicio;
    const Bytes nuevoCad = cad::prueba::leeFichero(carpeta + "/nuevo.cad");
    const auto tamanoNuevoDxf = std::filesystem::file_size(carpeta + "/nuevo.dxf");
    ASSERT_GT(nuevoCad.size(), 60000000U);

    std::mt19937 azar(11);
    int aMedias = 0;
    for (int ronda = 0; ronda < 4; ++ronda)
    {
        const pid_t hijo = ::fork();
        ASSERT_GE(hijo, 0);
        if (hijo == 0)
        {
            std::string m;
            grande.guardaComprobado(cad, m);
            grande.exportaDXFComprobado(dxf, m);
            std::_Exit(0);
        }
        const auto espera = std::uniform_int_distribution<int64_t>(
            0, std::chrono::duration_cast<std::chrono::microseconds>(duracion).count())(azar);
        std::this_thread::sleep_for(std::chrono::microseconds(espera));
        ::kill(hijo, SIGKILL);
        ::waitpid(hijo, nullptr, 0);
        const Bytes ahoraCad = cad::prueba::leeFichero(cad);
        EXPECT_TRUE(ahoraCad == viejoCad || ahoraCad == nuevoCad) << "round " << ronda;
        const std::string ahoraDxf = [&]
        {
            const Bytes b = cad::prueba::leeFichero(dxf);
            return std::string(b.begin(), b.end());
        }();
        EXPECT_TRUE(ahoraDxf == std::string(viejoDxf.begin(), viejoDxf.end()) ||
                    (ahoraDxf.size() == tamanoNuevoDxf && ahoraDxf.ends_with("  0\nEOF\n")))
            << "round " << ronda;
        // A killed writer leaves its temporary file; only it, and it is cleared here.
        for (const std::string& resto : cad::prueba::restosTemporales())
        {
            ++aMedias;
            std::filesystem::remove(resto);
        }
        cad::prueba::escribeFichero(cad, viejoCad);
        cad::prueba::escribeFichero(dxf, viejoDxf);
    }
    EXPECT_GT(aMedias, 0);
}

// The persistent ids of the layers, the materials and the text styles, in list order.
std::vector<std::vector<uint64_t>> ids(const cad::Dibujo& d)
{
    std::vector<std::vector<uint64_t>> r(3);
    for (const cad::Capa* c : d.capas)
    {
        r[0].push_back(c->id);
    }
    for (const cad::Material* m : d.materiales)
    {
        r[1].push_back(m->ObjetoCAD::id);
    }
    for (const cad::EstiloTexto* e : d.estilosTexto)
    {
        r[2].push_back(e->id);
    }
    return r;
}

bool validos(const std::vector<uint64_t>& v)
{
    return std::set<uint64_t>(v.begin(), v.end()).size() == v.size() &&
           std::count(v.begin(), v.end(), 0U) == 0;
}

// Layers, materials and styles have id 0 until saved; a save gives each a unique non-zero id,
// a second save keeps them (and writes the same bytes), a later item gets a new one without
// moving the others, and a load brings the file's ids back.
TEST(DocumentoFichero, idsPersistentes)
{
    WrapDibujoCAD w(nullptr, nullptr);
    w.nuevoDocumento();
    ASSERT_TRUE(w.nuevaCapa("A", false));
    ASSERT_TRUE(w.nuevaCapa("B", false));
    w.nuevoMaterial(5, 0xFF00FF00U, 0.5);
    ASSERT_TRUE(w.nuevoEstiloTexto("Rot", "Arial", 10, false));
    const auto antes = ids(*w.mDibujo);
    EXPECT_EQ(std::count(antes[0].begin(), antes[0].end(), 0U), 3);
    EXPECT_EQ(std::count(antes[1].begin(), antes[1].end(), 0U), 2);
    const std::string r1 = ruta("ids1.tcad");
    const std::string r2 = ruta("ids2.tcad");
    ASSERT_TRUE(w.guarda(r1));
    const auto primero = ids(*w.mDibujo);
    for (const auto& familia : primero)
    {
        EXPECT_TRUE(validos(familia));
    }
    ASSERT_TRUE(w.guarda(r2));
    EXPECT_EQ(ids(*w.mDibujo), primero);
    EXPECT_EQ(cad::prueba::leeFichero(r1), cad::prueba::leeFichero(r2));

    ASSERT_TRUE(w.nuevaCapa("C", false));
    const std::string r3 = ruta("ids3.tcad");
    ASSERT_TRUE(w.guarda(r3));
    const auto tercero = ids(*w.mDibujo);
    ASSERT_EQ(tercero[0].size(), 4U);
    EXPECT_EQ(std::vector<uint64_t>(tercero[0].begin(), tercero[0].begin() + 3), primero[0]);
    EXPECT_TRUE(validos(tercero[0]));
    WrapDibujoCAD w2(nullptr, nullptr);
    ASSERT_TRUE(w2.lee(r3));
    EXPECT_EQ(ids(*w2.mDibujo), tercero);
}

}  // namespace
