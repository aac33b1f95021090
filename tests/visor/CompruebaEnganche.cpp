// Reads the drawing the viewer's smoke test saved and checks what its script drew: one point
// and one line whose end is that point exactly, which only the snap can give, as the click
// fell a few pixels off it.
#include <cmath>
#include <cstdio>
#include <string>

#include "Fendrix/Fendrix.h"
#include "documento/Dibujo.h"
#include "entidades/Linea.h"
#include "entidades/Punto.h"

int main(int argc, char** argv)
{
    if (argc != 2)
    {
        std::fprintf(stderr, "uso: comprueba_enganche DIBUJO.cad\n");
        return 2;
    }
    Fendrix::WrapDibujoCAD dibujo(nullptr, nullptr);
    dibujo.nuevoDocumento();
    std::string mensaje;
    int64_t danadas = 0;
    if (!dibujo.leeComprobado(argv[1], mensaje, danadas) || danadas != 0)
    {
        std::fprintf(stderr, "no se leyó %s: %s\n", argv[1], mensaje.c_str());
        return 1;
    }
    const cad::Punto* punto = nullptr;
    const cad::Linea* linea = nullptr;
    size_t otras = 0;
    for (const cad::Entidad* e : dibujo.mDibujo->entidades)
    {
        if (const auto* p = dynamic_cast<const cad::Punto*>(e); p != nullptr && punto == nullptr)
        {
            punto = p;
        }
        else if (const auto* l = dynamic_cast<const cad::Linea*>(e); l != nullptr && !linea)
        {
            linea = l;
        }
        else
        {
            ++otras;
        }
    }
    if (punto == nullptr || linea == nullptr || otras != 0)
    {
        std::fprintf(stderr, "se esperaban un punto y una línea, y nada más\n");
        return 1;
    }
    const cad::Punto3<double>& p = *punto;
    const cad::Punto3<double>& a = linea->origen;
    const cad::Punto3<double>& b = linea->extremo;
    std::printf("punto (%.17g, %.17g, %.17g)\nlinea (%.17g, %.17g, %.17g)-(%.17g, %.17g, %.17g)\n",
                p.x, p.y, p.z, a.x, a.y, a.z, b.x, b.y, b.z);
    // The click that was not snapped lands on its pixel's point of the view: (300, 200, 0).
    if (std::fabs(a.x - 300.0) > 0.01 || std::fabs(a.y - 200.0) > 0.01 || a.z != 0.0)
    {
        std::fprintf(stderr, "el primer clic no cayó en el punto (300, 200, 0) del dibujo\n");
        return 1;
    }
    if (!(b.x == p.x && b.y == p.y && b.z == p.z))
    {
        std::fprintf(stderr, "el final de la línea no es el punto: la referencia no enganchó\n");
        return 1;
    }
    return 0;
}
