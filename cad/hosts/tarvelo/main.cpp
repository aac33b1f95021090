// tarvelo: the command-line host of the drawing kernel.
#include "Fendrix/Fendrix.h"
#include <cstring>
#include <iostream>

#include "Demo.h"

namespace
{

int uso()
{
    std::cerr << "uso: tarvelo demo\n"
                 "  demo   construye un dibujo de ejemplo y muestra su resumen\n";
    return 2;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc < 2)
    {
        return uso();
    }
    if (std::strcmp(argv[1], "demo") == 0)
    {
        Fendrix::WrapDibujoCAD dibujo(nullptr, nullptr);
        tarvelo::construyeDemo(dibujo);
        tarvelo::imprimeResumen(dibujo, std::cout);
        return 0;
    }
    return uso();
}
