// tarvelo: the command-line host of the drawing kernel.
#include <cstring>
#include <filesystem>
#include <iostream>
#include <string>

#include "Demo.h"
#include "Fendrix/Fendrix.h"

namespace
{

int uso()
{
    std::cerr << "uso: tarvelo ORDEN [ARGUMENTOS]\n"
                 "  demo                      construye un dibujo de ejemplo, lo guarda en\n"
                 "                            salida/demo.cad, lo relee y compara, y escribe\n"
                 "                            salida/demo.dxf\n"
                 "  info FICHERO.cad          capas, entidades por tipo y extension\n"
                 "  dxf FICHERO.cad SALIDA.dxf  exporta un dibujo a DXF\n";
    return 2;
}

// Reads a drawing file into `dibujo`; says why on failure.
bool carga(Fendrix::WrapDibujoCAD& dibujo, const std::string& fichero)
{
    dibujo.nuevoDocumento();
    try
    {
        if (dibujo.lee(fichero))
        {
            return true;
        }
    }
    catch (const std::logic_error&)
    {
        std::cerr << "tarvelo: la ruta no es UTF-8 valido: " << fichero << "\n";
        return false;
    }
    std::cerr << "tarvelo: no se pudo leer el dibujo " << fichero << "\n";
    return false;
}

int demo()
{
    std::filesystem::create_directories("salida");
    const std::string cad = "salida/demo.cad";
    const std::string dxf = "salida/demo.dxf";

    Fendrix::WrapDibujoCAD dibujo(nullptr, nullptr);
    tarvelo::construyeDemo(dibujo);
    tarvelo::imprimeResumen(dibujo, std::cout);
    std::cout << "\n";
    tarvelo::imprimeInfo(dibujo, std::cout);

    dibujo.guarda(cad);
    Fendrix::WrapDibujoCAD releido(nullptr, nullptr);
    if (!carga(releido, cad))
    {
        return 1;
    }
    std::cout << "\nGuardado en " << cad << " y releido:\n";
    const int diferencias = tarvelo::comparaDibujos(dibujo, releido, std::cout);
    std::cout << (diferencias == 0 ? "  sin diferencias\n" : "");

    dibujo.exportaDXF(dxf);
    std::cout << "DXF escrito en " << dxf << "\n";
    return diferencias == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc < 2)
    {
        return uso();
    }
    const std::string orden = argv[1];
    if (orden == "demo" && argc == 2)
    {
        return demo();
    }
    if (orden == "info" && argc == 3)
    {
        Fendrix::WrapDibujoCAD dibujo(nullptr, nullptr);
        if (!carga(dibujo, argv[2]))
        {
            return 1;
        }
        tarvelo::imprimeInfo(dibujo, std::cout);
        return 0;
    }
    if (orden == "dxf" && argc == 4)
    {
        Fendrix::WrapDibujoCAD dibujo(nullptr, nullptr);
        if (!carga(dibujo, argv[2]))
        {
            return 1;
        }
        dibujo.exportaDXF(argv[3]);
        std::cout << "DXF escrito en " << argv[3] << "\n";
        return 0;
    }
    return uso();
}
