// The facade's property family as a host drives it: every kind of entity read and written row
// by row, the sheet of no selection, the layer row with its undo and its hold on the current
// layer, the by-name forms, the wider out forms, and a disposed facade.
#include <cmath>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Fendrix/WrapDibujoCAD.h"
#include "documento/Dibujo.h"
#include "entidades/Entidad.h"
#include "entidades/Linea.h"
#include "entidades/Prisma.h"
#include "soporte/CatalogoEntidades.h"
#include "soporte/PantallaGrabadora.h"

namespace
{

using Fendrix::WrapDibujoCAD;
using Tipo = WrapDibujoCAD::tipoPropiedad;

const char* const kTipos[] = {"Booleano",         "Entero",     "Doble",      "DoblePositivo",
                              "Cadena",           "Color",      "ColorCad",   "Material",
                              "Enumerado",        "Coordenada", "Vector",     "Orientacion",
                              "ListaCoordenadas", "Leyenda",    "CapaEntidad"};

// A row in the catalogue's form: "Nombre:Tipo=valor", "!" after the kind when read-only, the
// coordinates as the value of Coordenada and Vector rows.
std::string fila(WrapDibujoCAD& w, int64_t h, int c, int i)
{
    std::string nombre, valor;
    Tipo tipo{};
    bool soloLectura = false;
    std::vector<double> p;
    if (!w.getPropiedad(h, c, i, nombre, tipo, valor, soloLectura, p))
    {
        return "(false)";
    }
    const bool xyz = tipo == Tipo::Coordenada || tipo == Tipo::Vector;
    return nombre + ":" + kTipos[static_cast<int>(tipo)] + (soloLectura ? "!" : "") + "=" +
           (xyz ? cad::prueba::texto({p[0], p[1], p[2]}) : valor);
}

std::vector<std::string> filasTrasGeneral(WrapDibujoCAD& w, int64_t h)
{
    std::vector<std::string> filas;
    for (int c = 1; c < w.numeroCategorias(h); ++c)
    {
        for (int i = 0; i < w.numeroPropiedadesCategoria(h, c); ++i)
        {
            filas.push_back(w.nombreCategoria(h, c) + "/" + fila(w, h, c, i));
        }
    }
    return filas;
}

// Every row after "General" written back with what it shows, through the form of its kind.
void reescribe(WrapDibujoCAD& w, int64_t h)
{
    for (int c = 1; c < w.numeroCategorias(h); ++c)
    {
        for (int i = 0; i < w.numeroPropiedadesCategoria(h, c); ++i)
        {
            std::string nombre, valor;
            Tipo tipo{};
            bool ro = false;
            int16_t material = 0;
            int32_t idbd = 0;
            std::vector<double> p;
            w.getPropiedad(h, c, i, nombre, tipo, valor, ro, p);
            w.getPropiedad(h, c, i, nombre, tipo, valor, ro, material, idbd);
            if (tipo == Tipo::Coordenada || tipo == Tipo::Vector || tipo == Tipo::Orientacion)
            {
                w.setPropiedad(h, c, i, p);
            }
            else if (tipo == Tipo::Material)
            {
                w.setPropiedad(h, c, i, material, idbd);
            }
            else if (tipo != Tipo::ListaCoordenadas)
            {
                w.setPropiedad(h, c, i, valor);
            }
            for (int k = 0; k < w.numeroElementosLista(h, c, i); ++k)
            {
                double xyz[3];
                ASSERT_TRUE(w.getElementoLista(h, c, i, k, xyz[0], xyz[1], xyz[2]));
                w.setElementoLista(h, c, i, k, xyz);  // a mesh's list refuses it
                double otra[3];
                w.getElementoLista(h, c, i, k, otra[0], otra[1], otra[2]);
                EXPECT_EQ(cad::Punto3<double>(otra[0], otra[1], otra[2]),
                          cad::Punto3<double>(xyz[0], xyz[1], xyz[2]));
            }
        }
    }
}

// A facade over a new drawing with a second layer, "Ejes", red.
struct Fachada
{
    WrapDibujoCAD w{nullptr, nullptr};
    Fachada()
    {
        w.nuevoDocumento();
        w.nuevaCapa("Ejes", false);
        w.colorCapa("Ejes", 255, 0, 0);
    }
    int64_t inserta(std::unique_ptr<cad::Entidad> e, const char* capa = "Ejes")
    {
        e->asignaCapa(w.mDibujo->buscaCapa(capa));
        return w.insertaEntidadGetHandle(e.release());
    }
    int64_t linea()
    {
        return inserta(std::make_unique<cad::Linea>(cad::Punto3<double>(0, 0, 0),
                                                    cad::Punto3<double>(3, 4, 0)),
                       "0");
    }
};

// Invariants under test: every kind shows through the facade exactly the catalogue's rows and
// the four common ones, the layer row as an Enumerado of the drawing's layers; writing every
// row back with its own value changes nothing; a read-only row the entity refuses leaves the
// drawing unmarked, and a taken write marks it.
TEST(WrapPropiedades, cadaTipoDeEntidadSeLeeYSeEscribePorLaFachada)
{
    Fachada f;
    WrapDibujoCAD& w = f.w;
    for (const cad::prueba::TipoEntidad& t : cad::prueba::catalogoEntidades())
    {
        SCOPED_TRACE(t.nombre);
        const int64_t h = f.inserta(t.crea());
        EXPECT_EQ(w.nombreCategoria(h, 0), "General");
        EXPECT_EQ(w.numeroPropiedadesCategoria(h, 0), 4);
        EXPECT_EQ(fila(w, h, 0, 0), std::string("Entidad:Cadena!=") + t.nombreTipo);
        EXPECT_EQ(fila(w, h, 0, 1), "Capa:Enumerado=Ejes");
        EXPECT_EQ(fila(w, h, 0, 3), "Grosor:DoblePositivo=           0");
        EXPECT_EQ(fila(w, h, 0, 4), "(false)");
        EXPECT_EQ(w.numeroValoresEnumerados(h, 0, 1), 2);
        int32_t k = -1;
        EXPECT_TRUE(w.getEnumerado(h, 0, 1, k));
        EXPECT_EQ(k, 1);
        EXPECT_EQ(filasTrasGeneral(w, h), t.hoja);
        reescribe(w, h);
        EXPECT_EQ(filasTrasGeneral(w, h), t.hoja);

        w.borraMarcaCambios();
        EXPECT_FALSE(w.setPropiedad(h, 0, 0, "Otra"));
        EXPECT_FALSE(w.hayCambios());
        EXPECT_EQ(fila(w, h, 0, 0), std::string("Entidad:Cadena!=") + t.nombreTipo);
        EXPECT_TRUE(w.setPropiedad(h, 0, 3, "2.5"));
        EXPECT_EQ(fila(w, h, 0, 3), "Grosor:DoblePositivo=         2.5");
        EXPECT_TRUE(w.hayCambios());
    }
}

// Invariants under test: a zero handle and the handle of a deleted entity both give the
// editor's own sheet, whose layer row writes the current layer and which takes no other write.
// Disposed, every operation of the family answers its failure value.
TEST(WrapPropiedades, sinSeleccionYFachadaLiberada)
{
    Fachada f;
    WrapDibujoCAD& w = f.w;
    const int64_t caducado = f.linea();
    ASSERT_TRUE(w.borraEntidad(caducado));
    for (const int64_t h : {int64_t{0}, caducado})
    {
        EXPECT_EQ(w.numeroCategorias(h), 1);
        EXPECT_EQ(w.nombreCategoria(h, 0), "General");
        EXPECT_EQ(w.numeroPropiedadesCategoria(h, 0), 2);
        EXPECT_EQ(fila(w, h, 0, 0), "Entidad:Cadena!=Sin selección");
        EXPECT_EQ(fila(w, h, 0, 1), "Capa:Enumerado=0");
        EXPECT_EQ(fila(w, h, 0, 2), "(false)");
        double d = 0;
        EXPECT_FALSE(w.getPropiedad(h, "Grosor", d));
        EXPECT_FALSE(w.setPropiedad(h, "Grosor", 2.0));
        EXPECT_FALSE(w.setPropiedad(h, 0, 3, "2"));
    }
    EXPECT_TRUE(w.setPropiedad(0, 0, 1, "Ejes"));
    EXPECT_EQ(w.capaActual(), "Ejes");
    EXPECT_TRUE(w.setEnumerado(caducado, 0, 1, 0));
    EXPECT_EQ(w.capaActual(), "0");

    const int64_t h = f.linea();
    w.Dispose();
    EXPECT_EQ(w.numeroCategorias(h), 0);
    EXPECT_EQ(w.nombreCategoria(h, 0), "");
    EXPECT_EQ(fila(w, h, 0, 0), "(false)");
    EXPECT_FALSE(w.setPropiedad(h, 0, 1, "Ejes"));
    EXPECT_FALSE(w.setElementoLista(h, 1, 0, 0, nullptr));
    EXPECT_FALSE(w.comandoPropiedades());
    w.copiar();
    w.cortar();
    w.pegar();
}

// Invariants under test: writing the layer row moves the entity as one undo step and makes the
// layer current too; undo gives the entity its layer back but leaves the current layer where
// the write put it; an unknown layer changes nothing and pushes no step; the Enumerado form
// takes the layer by index.
TEST(WrapPropiedades, capaPorLaHojaSeDeshaceYCambiaLaCapaActual)
{
    Fachada f;
    WrapDibujoCAD& w = f.w;
    std::vector<WrapDibujoCAD::tipoActualizacion> avisos;
    w.setActualiza([&avisos](WrapDibujoCAD::tipoActualizacion t) { avisos.push_back(t); });
    const int64_t h = f.linea();
    const auto capa = [&]
    {
        std::string c;
        w.getNombreCapa(h, c);
        return c;
    };
    avisos.clear();
    EXPECT_TRUE(w.setPropiedad(h, 0, 1, "Ejes"));
    EXPECT_EQ(capa() + "/" + w.capaActual(), "Ejes/Ejes");
    EXPECT_EQ(avisos, (std::vector<WrapDibujoCAD::tipoActualizacion>{
                          WrapDibujoCAD::tipoActualizacion::kCapaActual,
                          WrapDibujoCAD::tipoActualizacion::kControl}));
    w.deshacer();
    EXPECT_EQ(capa() + "/" + w.capaActual(), "0/Ejes");
    w.rehacer();
    EXPECT_EQ(capa(), "Ejes");
    EXPECT_FALSE(w.setPropiedad(h, 0, 1, "Nada"));
    EXPECT_EQ(capa(), "Ejes");
    w.deshacer();
    EXPECT_EQ(capa(), "0");
    EXPECT_EQ(w.mDibujo->entidades.size(), 1U);

    std::string nombre;
    EXPECT_TRUE(w.valorEnumerado(h, 0, 1, 1, nombre));
    EXPECT_EQ(nombre, "Ejes");
    EXPECT_TRUE(w.setEnumerado(h, 0, 1, 1));
    EXPECT_EQ(capa(), "Ejes");
    EXPECT_FALSE(w.setEnumerado(h, 0, 1, 5));
}

// Invariants under test: by name, ASCII case aside; a double written by name keeps three
// significant digits; a colour by name is the packed colour. colorPorCapa turns 0 for a colour
// by layer and keeps the host's value otherwise. A material row names the material by its
// texture's file name, else by its id, and gives the host's id; writing it stores the host's
// id into the material. Coordinates come as an array of three; one that is not finite is
// refused.
TEST(WrapPropiedades, porNombreYFormasAmpliadas)
{
    Fachada f;
    WrapDibujoCAD& w = f.w;
    const int64_t h = f.linea();
    double grosor = 0;
    std::string texto;
    EXPECT_TRUE(w.setPropiedad(h, "gROSOR", 1.23456));
    EXPECT_TRUE(w.getPropiedad(h, "Grosor", grosor));
    EXPECT_DOUBLE_EQ(grosor, 1.23);
    EXPECT_TRUE(w.setPropiedad(h, "Grosor", 1234.5678));
    EXPECT_TRUE(w.getPropiedad(h, "grosor", texto));
    EXPECT_EQ(texto, "    1.23e+03");
    int32_t longitud = 0;
    EXPECT_TRUE(w.getPropiedad(h, "LONGITUD", longitud));
    EXPECT_EQ(longitud, 5);
    EXPECT_FALSE(w.getPropiedad(h, "Anchura", texto));

    std::string nombre, valor;
    Tipo tipo{};
    bool ro = false;
    int32_t porCapa = 7;
    uint32_t colorCapa = 0;
    ASSERT_TRUE(w.getPropiedad(h, 0, 2, nombre, tipo, valor, ro, porCapa, colorCapa));
    EXPECT_EQ(porCapa, 0);
    EXPECT_EQ(colorCapa, 0xFFFFFFFFU);
    EXPECT_TRUE(w.setPropiedad(h, "color", int32_t{0x00102030}));
    porCapa = 7;
    ASSERT_TRUE(w.getPropiedad(h, 0, 2, nombre, tipo, valor, ro, porCapa, colorCapa));
    EXPECT_EQ(porCapa, 7);
    EXPECT_EQ(valor, std::to_string(0xFF102030U));
    EXPECT_TRUE(w.setPropiedad(h, 0, 2, "", 3));
    EXPECT_EQ(fila(w, h, 0, 2), "Color:Color=" + std::to_string(0xFF00FF00U));
    EXPECT_TRUE(w.setPropiedad(h, 1, 1, std::vector<double>{7, 8, 9}));
    EXPECT_FALSE(w.setPropiedad(h, 1, 1, std::vector<double>{1, 2}));
    EXPECT_FALSE(w.setPropiedad(h, 1, 1, std::vector<double>{std::nan(""), 0, 0}));
    EXPECT_EQ(fila(w, h, 1, 1), "Fin:Coordenada=(7,8,9)");

    const int32_t ladrillo = w.nuevoMaterial(77, "/datos/texturas/ladrillo.png");
    const int32_t liso = w.nuevoMaterial(5, 0xFF00FF00U, 0.5);
    const int64_t prisma = f.inserta(std::make_unique<cad::Prisma>(
        cad::Punto3<double>(0, 0, 0), cad::Punto3<double>(1, 1, 1), ladrillo));
    int16_t material = 0;
    int32_t idbd = 0;
    ASSERT_TRUE(w.getPropiedad(prisma, 2, 0, nombre, tipo, valor, ro, material, idbd));
    EXPECT_EQ(valor + "/" + std::to_string(material) + "/" + std::to_string(idbd),
              "ladrillo.png/" + std::to_string(ladrillo) + "/77");
    EXPECT_TRUE(w.setPropiedad(prisma, 2, 0, static_cast<int16_t>(liso), 99));
    EXPECT_EQ(fila(w, prisma, 2, 0), "Material:Material=" + std::to_string(liso));
    int32_t externo = 0;
    EXPECT_TRUE(w.getIdExternoMaterial(liso, externo));
    EXPECT_EQ(externo, 99);
}

}  // namespace
