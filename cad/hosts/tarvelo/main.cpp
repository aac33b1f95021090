// tarvelo: the command-line host of the drawing kernel.
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <system_error>
#include <vector>

#include <unistd.h>

#include "Demo.h"
#include "Dibuja.h"
#include "Fendrix/Fendrix.h"
#include "Importa.h"
#include "Informe.h"
#include "Sesion.h"
#include "base/Excepcion.h"

namespace
{

int uso()
{
    std::cerr << "uso: tarvelo ORDEN [ARGUMENTOS]\n"
                 "  demo                      construye un dibujo de ejemplo, lo guarda en\n"
                 "                            salida/demo.cad, lo relee y compara, y escribe\n"
                 "                            salida/demo.dxf y la textura de la fachada\n"
                 "  info FICHERO.cad          capas, entidades por tipo y extension\n"
                 "  dxf FICHERO.cad SALIDA.dxf  exporta un dibujo a DXF\n"
                 "  dibuja FICHERO.cad SALIDA.png [--vista planta|iso|NOMBRE]\n"
                 "        [--tamano 1600x1200] [--modo 0..5]  dibuja el dibujo con OpenGL,\n"
                 "                            sin ventana, y lo guarda como PNG; por defecto\n"
                 "                            visto en planta y encuadrado entero; el modo es\n"
                 "                            la representacion de los modelos (0 alambrica,\n"
                 "                            1 conceptual, 2 oculto, 3 realista, 4 rayos X,\n"
                 "                            5 texturas)\n"
                 "  importa FICHERO.dxf|FICHERO.obj [SALIDA.cad]  lee el fichero en el\n"
                 "                            dibujo SALIDA.cad (nuevo si no existe; por\n"
                 "                            defecto, el nombre de la entrada), cuenta lo\n"
                 "                            que entra y lo guarda\n"
                 "  sesion [FICHERO.cad]      dibuja con ordenes leidas de la entrada; la\n"
                 "                            orden ayuda las lista\n"
                 "  guion GUION.txt [FICHERO.cad]  la misma sesion, leida de un fichero y\n"
                 "                            escrita como transcripcion; falla si falla\n"
                 "                            una orden\n";
    return 2;
}

// A session over `entrada`; `fichero`, when not empty, is the drawing it starts with.
int sesion(std::istream& entrada, bool guion, const std::string& fichero)
{
    tarvelo::Sesion::opciones_t opciones;
    // Input that is not typed at a terminal is echoed, so the output reads as a transcript.
    opciones.eco = guion || isatty(STDIN_FILENO) == 0;
    opciones.detieneAlFallar = guion;
    tarvelo::Sesion s(entrada, std::cout, opciones);
    if (!fichero.empty() && !s.abreInicial(fichero))
    {
        return 1;
    }
    return s.ejecuta();
}

// Reads a drawing file into `dibujo`; says why on failure. A file that read with damaged
// entities leaves its warning in `aviso`.
bool carga(Fendrix::WrapDibujoCAD& dibujo, const std::string& fichero, std::string& aviso)
{
    dibujo.nuevoDocumento();
    int64_t danadas = 0;
    if (!dibujo.leeComprobado(fichero, aviso, danadas))
    {
        std::cerr << "tarvelo: no se pudo leer el dibujo: " << aviso << "\n";
        return false;
    }
    return true;
}

// Writes the drawing as a DXF file; says why on failure.
bool exporta(Fendrix::WrapDibujoCAD& dibujo, const std::string& fichero)
{
    std::string mensaje;
    if (!dibujo.exportaDXFComprobado(fichero, mensaje))
    {
        std::cerr << "tarvelo: no se pudo escribir el DXF: " << mensaje << "\n";
        return false;
    }
    std::cout << "DXF escrito en " << fichero << "\n";
    return true;
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

    std::string mensaje;
    if (!dibujo.guardaComprobado(cad, mensaje))
    {
        std::cerr << "tarvelo: no se pudo guardar el dibujo: " << mensaje << "\n";
        return 1;
    }
    Fendrix::WrapDibujoCAD releido(nullptr, nullptr);
    if (!carga(releido, cad, mensaje))
    {
        return 1;
    }
    // The facade's texture, which the drawing names relative to its folder.
    if (!tarvelo::escribeImagenesDemo("salida", mensaje))
    {
        std::cerr << "tarvelo: no se pudo escribir la textura del ejemplo: " << mensaje << "\n";
        return 1;
    }
    std::cout << "\nGuardado en " << cad << " y releido:\n";
    const int diferencias = tarvelo::comparaDibujos(dibujo, releido, std::cout);
    std::cout << (diferencias == 0 ? "  sin diferencias\n" : "");

    if (!exporta(dibujo, dxf))
    {
        return 1;
    }
    return diferencias == 0 ? 0 : 1;
}

int ejecuta(int argc, char** argv)
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
        std::string aviso;
        if (!carga(dibujo, argv[2], aviso))
        {
            return 1;
        }
        tarvelo::imprimeInfo(dibujo, std::cout);
        if (!aviso.empty())
        {
            std::cout << "Aviso: " << aviso << "\n";
        }
        return 0;
    }
    if (orden == "dxf" && argc == 4)
    {
        Fendrix::WrapDibujoCAD dibujo(nullptr, nullptr);
        std::string aviso;
        if (!carga(dibujo, argv[2], aviso))
        {
            return 1;
        }
        if (!aviso.empty())
        {
            std::cerr << "tarvelo: aviso: " << aviso << "\n";
        }
        return exporta(dibujo, argv[3]) ? 0 : 1;
    }
    if (orden == "dibuja" && argc >= 4)
    {
        return tarvelo::dibuja(std::vector<std::string>(argv + 2, argv + argc), std::cout,
                               std::cerr);
    }
    if (orden == "importa" && (argc == 3 || argc == 4))
    {
        return tarvelo::importa(argv[2], argc == 4 ? argv[3] : "", std::cout, std::cerr);
    }
    if (orden == "sesion" && argc <= 3)
    {
        return sesion(std::cin, false, argc == 3 ? argv[2] : "");
    }
    if (orden == "guion" && (argc == 3 || argc == 4))
    {
        std::error_code ec;
        std::ifstream guion(argv[2]);
        if (!std::filesystem::is_regular_file(argv[2], ec) || !guion)
        {
            std::cerr << "tarvelo: no se pudo leer el guion " << argv[2] << "\n";
            return 1;
        }
        return sesion(guion, true, argc == 4 ? argv[3] : "");
    }
    return uso();
}

}  // namespace

int main(int argc, char** argv)
{
    // A failure of the kernel's own (a misused writer, exhausted memory) ends the order with
    // a message and a failed exit, never with an abort.
    try
    {
        return ejecuta(argc, argv);
    }
    catch (const cad::Excepcion&)
    {
        std::cerr << "tarvelo: error interno del núcleo\n";
    }
    catch (const std::exception& e)
    {
        std::cerr << "tarvelo: " << e.what() << "\n";
    }
    return 1;
}
