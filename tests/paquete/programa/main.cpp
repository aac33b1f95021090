// Builds a drawing with one entity of each kind and writes it as a file and as a DXF, using
// nothing but the one header a host includes.
#include <cstdio>
#include <string>
#include <vector>

#include "cadLib.h"

int main(int argc, char** argv)
{
    const std::string carpeta = argc > 1 ? argv[1] : ".";
    cad::Dibujo dibujo;
    const cad::Punto3<double> contorno[4] = {{0, 0, 0}, {4, 0, 0}, {4, 3, 0}, {0, 3, 0}};
    std::vector<cad::Entidad*> entidades = {new cad::Punto(1, 2, 3),
                                            new cad::Texto(),
                                            new cad::PuntoControl("P1", {5, 5, 0}),
                                            new cad::Linea(),
                                            new cad::Polilinea(),
                                            new cad::Poligono(),
                                            new cad::Plano(4, contorno),
                                            new cad::SistemaLocal(),
                                            new cad::GrupoPuntos(4, contorno, nullptr),
                                            new cad::Cara3D(3, contorno),
                                            new cad::Policara(),
                                            new cad::Superficie(),
                                            new cad::Cubo(contorno[0], contorno[2]),
                                            new cad::Prisma(),
                                            new cad::Cilindro(),
                                            new cad::Esfera(),
                                            new cad::Objeto3D(),
                                            new cad::TomaCamara(),
                                            new cad::Foto360()};
    for (cad::Entidad* e : entidades)
    {
        dibujo.nuevaEntidad(e);
    }
    cad::Modelo3D modelo;
    static_cast<const cad::Plano*>(entidades[6])->aModelo(modelo);

    cad::resultadoFichero_t resultado;
    if (!dibujo.guardaFichero(carpeta + "/programa.cad", resultado))
    {
        std::fprintf(stderr, "%s\n", resultado.mensaje.c_str());
        return 1;
    }
    cad::ExportaDXF dxf(carpeta + "/programa.dxf");
    dibujo.inicializaDocumentoDXF(dxf);
    dibujo.exportaDocumentoDFX(dxf);
    dibujo.finalizaDocumentoDXF(dxf);
    if (!dxf.termina())
    {
        std::fprintf(stderr, "%s\n", dxf.mensaje().c_str());
        return 1;
    }
    std::printf("%zu entidades, modelo de %zu caras\n", dibujo.entidades.size(),
                modelo.caras().size());
    return 0;
}
