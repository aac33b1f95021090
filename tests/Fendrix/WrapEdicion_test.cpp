// The facade's editing commands: a handle is resolved before the editor is reached, a bad one
// never turns into a prompt, and a disposed facade answers every command with its failure.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Fendrix/WrapDibujoCAD.h"
#include "PantallaReferencia.h"
#include "soporte/GuionSesion.h"

namespace
{

using Fendrix::WrapDibujoCAD;

TEST(WrapEdicion, handlesDePolilineaYFachadaLiberada)
{
    WrapDibujoCAD w{nullptr, nullptr};
    w.nuevoDocumento();
    std::vector<std::string> textos;
    w.setSalidaTexto([&](const std::string& t) { textos.push_back(t); });
    cad::PantallaReferencia pantalla;  // the script's, never shown: the editor has no display
    const double xyz[9] = {100, 100, 0, 200, 100, 0, 200, 200, 0};
    const int64_t polilinea = w.nuevaPolilinea(3, xyz);
    const int64_t linea = w.nuevaLinea(0, 0, 0, 50, 0, 0);
    const int64_t poligono = w.nuevoPoligono(3, xyz);
    {
        // An empty script: a command that waited would fail here instead of hanging.
        cad::prueba::GuionSesion g(*w.mEditor, pantalla);
        for (const int64_t h : {linea, poligono, polilinea + 1000})
        {
            EXPECT_FALSE(w.comandoEditPol(h));
            EXPECT_FALSE(w.comandoEditarVertsPolPerfil(h));
            EXPECT_FALSE(w.comandoInsertaVertsPolPerfil(h));
            EXPECT_FALSE(w.comandoInsertaVertsPol(h));
            EXPECT_FALSE(w.comandoBorrarVertsPol(h));
            EXPECT_FALSE(w.comandoBorrarRangoVertsPol(h));
            EXPECT_FALSE(w.comandoBorrarVentanaVertsPol(h));
        }
        EXPECT_FALSE(w.comandoEditar(polilinea + 1000));
    }
    EXPECT_TRUE(textos.empty());

    // The handle reaches the editor: a vertex starts halfway along side 1 and is typed away.
    {
        cad::prueba::GuionSesion g(*w.mEditor, pantalla);
        g.escribe("150,50");
        EXPECT_TRUE(w.comandoInsertaVertsPol(polilinea, 1));
    }
    EXPECT_EQ(textos.front(), "Seleccione nueva coordenada");
    std::vector<double> v;
    ASSERT_EQ(w.getVertices(polilinea, v), 12);
    EXPECT_EQ(v, std::vector<double>({100, 100, 0, 150, 50, 0, 200, 100, 0, 200, 200, 0}));

    // A disposed facade has no drawing to look a handle up in, and must not try.
    w.Dispose();
    EXPECT_EQ(w.comandoBorrar() | w.comandoMover() | w.comandoMoverXYZ(1, 2, 3) |
                  w.comandoCopiar() | w.comandoAsignaMaterial(),
              0);
    EXPECT_EQ(w.comandoIsolineas(), -1);
    // Every one is called: | does not stop at the first true.
    EXPECT_FALSE(w.comandoEditar(polilinea) | w.comandoBorrarVertsPol(polilinea) |
                 w.comandoEditar() | w.comandoEditPol() | w.comandoEditarVertsPolPerfil(0) |
                 w.comandoInsertaVertsPolPerfil() | w.comandoInsertaVertsPol() |
                 w.comandoBorrarVertsPol() | w.comandoBorrarRangoVertsPol() |
                 w.comandoBorrarVentanaVertsPol() | w.comandoExtrusionEntidad() |
                 w.comandoExtrusion(true) | w.comandoParteArista(2) | w.comandoParteCara() |
                 w.comandoUneVertices() | w.comandoRecortaCara() | w.comandoRellenaHueco() |
                 w.comandoInvierteNormales() | w.comandoBorraVerticeModelo() |
                 w.comandoBorraAristaModelo() | w.comandoBorraCaraModelo() | w.comandoHueco() |
                 w.comandoHuecoPolilinea() | w.uneModelos() | w.unePlanos() | w.extiendePlanos());
}

}  // namespace
