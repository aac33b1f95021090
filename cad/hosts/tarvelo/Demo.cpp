#include "Demo.h"

#include "Fendrix/Fendrix.h"
#include "base/Color.h"
#include "documento/Dibujo.h"
#include <cstdio>
#include <ostream>
#include <string>

namespace tarvelo
{

using Fendrix::WrapDibujoCAD;

void construyeDemo(WrapDibujoCAD& dibujo)
{
    dibujo.nuevoDocumento();

    // Survey layers: palette colours, a true colour, a hidden and a locked layer.
    dibujo.nuevaCapa("Topografia", false);
    dibujo.nuevaCapa("Bordillos", false);
    dibujo.nuevaCapa("Edificios", false);
    dibujo.nuevaCapa("Arbolado", false);
    dibujo.nuevaCapa("Referencias", false);
    dibujo.nuevaCapa("Ortofoto", false);

    cad::Dibujo& d = *dibujo.mDibujo;
    d.buscaCapa("Topografia")->color.setIndiceColor(3);
    d.buscaCapa("Bordillos")->color.setIndiceColor(1);
    d.buscaCapa("Edificios")->color.setIndiceColor(30);
    dibujo.colorCapa("Arbolado", 34, 139, 34);
    dibujo.colorCapa("Referencias", 255, 128, 0);
    dibujo.visibilidadCapa("Ortofoto", false);
    dibujo.bloqueaCapa("Referencias", true);
    dibujo.setGrosorLineaCapa("Bordillos", 2.0);
    dibujo.capaActual("Topografia");

    // Materials: a plain one, a shiny one and a textured one.
    dibujo.nuevoMaterial(101, 0xFF808080U, 0.25);
    dibujo.nuevoMaterial(102, 0xFF2040C0U, 0.9);
    dibujo.nuevoMaterial(103, "texturas/fachada.jpg");

    dibujo.nuevoEstiloTexto("Rotulos", "Sans", 12, false);
    dibujo.nuevoEstiloTexto("Cotas", "Mono", 8, true);

    dibujo.setVariable("PROYECTO", std::string("Levantamiento parcela 27"));
    dibujo.setVariable("ESCALA", 500);
    dibujo.setVariable("FACTOR_ANAMORFOSIS", 0.9996);
    dibujo.setVariable("ORIGEN_LOCAL", 431250.0, 4581320.0, 612.5);
    dibujo.setRepresentacionModelos(WrapDibujoCAD::representacion_modelos::kTexturas);

    // A saved view, as a display would report it.
    cad::Vista* vista = new cad::Vista();
    vista->nombre = "Planta";
    vista->posicion = cad::Punto3<double>(431250.0, 4581320.0, 1000.0);
    vista->objetivo = cad::Punto3<double>(431250.0, 4581320.0, 0.0);
    vista->zoom = 2.5;
    d.vistas.push_back(vista);
}

namespace
{

std::string describeColor(const cad::Color& c)
{
    char texto[64];
    if (c.colorCAD >= 0 && c.colorCAD < 256)
    {
        const char* nombre = cad::Color::nombreIndice(c.colorCAD);
        if (nombre != nullptr)
        {
            std::snprintf(texto, sizeof texto, "%s (%d)", nombre, c.colorCAD);
        }
        else
        {
            std::snprintf(texto, sizeof texto, "indice %d", c.colorCAD);
        }
    }
    else if (c.colorCAD == 256)
    {
        std::snprintf(texto, sizeof texto, "por capa");
    }
    else
    {
        std::snprintf(texto, sizeof texto, "RGB %d,%d,%d", c.rojo(), c.verde(), c.azul());
    }
    return texto;
}

}  // namespace

void imprimeResumen(WrapDibujoCAD& dibujo, std::ostream& salida)
{
    cad::Dibujo& d = *dibujo.mDibujo;
    salida << "Capas (" << dibujo.numeroCapas() << "), actual \"" << dibujo.capaActual()
           << "\":\n";
    for (int i = 0; i < dibujo.numeroCapas(); ++i)
    {
        const std::string nombre = dibujo.capa(i);
        const cad::Capa* c = d.buscaCapa(nombre.c_str());
        salida << "  " << nombre << "  color " << describeColor(c->color) << "  grosor "
               << c->estiloLinea.grosor << (dibujo.capaVisible(nombre) ? "" : "  [oculta]")
               << (dibujo.capaBloqueada(nombre) ? "  [bloqueada]" : "") << "\n";
    }
    salida << "Materiales (" << dibujo.numeroMateriales() << "):\n";
    for (int i = 0; i < dibujo.numeroMateriales(); ++i)
    {
        int32_t id = 0;
        int32_t externo = 0;
        uint32_t color = 0;
        double brillo = 0.0;
        std::string textura;
        dibujo.getMaterial(i, id, externo, color, brillo, textura);
        char linea[160];
        std::snprintf(linea, sizeof linea, "  id %d  externo %d  color 0x%08X  brillo %.2f", id,
                      externo, color, brillo);
        salida << linea << (textura.empty() ? "" : "  textura " + textura) << "\n";
    }
    salida << "Estilos de texto (" << d.estilosTexto.size() << "), actual \""
           << d.estiloTextoActual()->nombre << "\":\n";
    for (const cad::EstiloTexto* e : d.estilosTexto)
    {
        salida << "  " << e->nombre << "  fuente \"" << e->fuente << "\"  tamano " << e->tamano
               << "\n";
    }
    salida << "Variables (" << d.variables.size() << "):\n";
    for (const cad::VariableBase* v : d.variables)
    {
        std::string valor;
        dibujo.getVariable(v->nombre, valor);
        salida << "  " << v->nombre << " [" << v->etiqueta() << "] = " << valor << "\n";
    }
    salida << "Vistas (" << dibujo.numeroVistas() << "):\n";
    for (int i = 0; i < dibujo.numeroVistas(); ++i)
    {
        salida << "  " << dibujo.nombreVista(i) << "\n";
    }
    salida << "Cambios sin guardar: " << (dibujo.hayCambios() ? "si" : "no") << "\n";
}

}  // namespace tarvelo
