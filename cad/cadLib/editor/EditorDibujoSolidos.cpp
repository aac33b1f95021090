// EditorDibujo: the commands that create solids: the box, and the models of box, cylinder
// and sphere.
#include <cmath>
#include <cstring>
#include <functional>
#include <memory>

#include "documento/Dibujo.h"
#include "editor/EditorDibujo.h"
#include "editor/LineaElastica.h"
#include "editor/TextosEditor.h"
#include "entidades/Cilindro.h"
#include "entidades/Cubo.h"
#include "entidades/Esfera.h"
#include "entidades/Prisma.h"

namespace cad
{

namespace
{

// Picks come in drawing coordinates; solids are measured in the active local system, whose
// axes are the box's edges and the cylinder's axis.
Punto3<double> aLocal(const EditorDibujo& editor, const Punto3<double>& p)
{
    return editor.haySistemaLocal ? editor.sistemaLocalActivo.getMatrizALocal() * p : p;
}

Matriz4<double> localADocumento(const EditorDibujo& editor)
{
    return editor.haySistemaLocal ? editor.sistemaLocalActivo.getMatrizAGlobal()
                                  : Matriz4<double>();
}

// The plan picks run on the horizontal plane (of the local system) through `base`.
void planoHorizontal(EditorDibujo& editor, const Punto3<double>& base)
{
    editor.dibujo_->setPlanoReferencia(base, editor.aDocumento(Vector3D<double>(0, 0, 1)));
    editor.dibujo_->fijaPlanoTemporal(base);
}

// A point where a radius or a height is asked: picked, typed as coordinates, or a typed
// distance from `ultimo` along the local axis `eje`. A typed number of 0 or less gives no
// point to measure, so the question is asked again.
bool puntoOMedida(EditorDibujo& editor, const char* prompt, const Punto3<double>& ultimo,
                  const Vector3D<double>& eje, Punto3<double>& punto)
{
    for (;;)
    {
        cursor_t cursor;
        double valor = -1.0;
        if (!editor.getPunto(prompt, cursor, nullptr, &valor, true))
        {
            return false;
        }
        // The wait leaves valorValido up only when a number answered it.
        if (!editor.valorValido)
        {
            punto = cursor.get();
            return true;
        }
        if (valor > 0.0)
        {
            punto = ultimo + editor.aDocumento(eje) * valor;
            return true;
        }
        editor.mensaje("%s", kCoordenadaNoValida);
    }
}

// The three picks of a box: a corner, the opposite corner and the height. With `modelo` the
// plan pick runs on the horizontal plane through the first corner and the height may be
// typed as a number. `haciaVista` installs the plane facing the user through a point. False
// when any answer was refused.
bool pideCaja(EditorDibujo& editor, bool modelo,
              const std::function<void(const Punto3<double>&)>& haciaVista, Punto3<double>& minimo,
              Punto3<double>& maximo)
{
    cursor_t cursor;
    if (!editor.getPunto(editor.texto(8, 1, "Seleccione una esquina del cubo:"), cursor, true))
    {
        return false;
    }
    const Punto3<double> p1 = cursor.get();
    LineaElastica banda(&editor, 7);
    std::strcpy(banda.formato, "%0.3lf");
    banda.nuevaAncla(p1);
    bool resultado = false;
    if (modelo)
    {
        planoHorizontal(editor, p1);
    }
    if (editor.getPunto(editor.texto(8, 2, "Seleccione una esquina opuesta del cubo:"), cursor,
                        true))
    {
        const Punto3<double> p2 = cursor.get();
        banda.nuevaAncla(p2);
        // The height is measured on a plane that faces the user.
        haciaVista(p2);
        const char* prompt = editor.texto(8, 3, "Seleccione la altura del cubo:");
        Punto3<double> p3;
        if (modelo ? puntoOMedida(editor, prompt, p2, Vector3D<double>(0, 0, 1), p3)
                   : editor.getPunto(prompt, cursor, true))
        {
            if (!modelo)
            {
                p3 = cursor.get();
            }
            const Punto3<double> a = aLocal(editor, p1);
            const Punto3<double> b = aLocal(editor, p2);
            const double altura = (aLocal(editor, p3) - b).dot(Vector3D<double>(0, 0, 1));
            minimo = a;
            maximo = Punto3<double>(b.x, b.y, a.z + altura);
            resultado = true;
        }
    }
    editor.dibujo_->planoTemporalActivo = false;
    banda.vaciaAnclas();
    return resultado;
}

}  // namespace

int EditorDibujo::comandoCubo()
{
    iniciaComandoInteractivo(false);
    int creados = 0;
    Punto3<double> minimo;
    Punto3<double> maximo;
    while (pideCaja(
        *this, false, [this](const Punto3<double>& p) { planoHaciaVista(p); }, minimo, maximo))
    {
        auto* cubo = new Cubo(minimo, maximo);
        cubo->transformacion = localADocumento(*this);
        if (nuevaEntidad(std::unique_ptr<Entidad>(cubo)))
        {
            ++creados;
        }
    }
    finComandoInteractivo();
    return creados;
}

int EditorDibujo::comandoModeloCubo()
{
    iniciaComandoInteractivo(false);
    int creados = 0;
    Punto3<double> minimo;
    Punto3<double> maximo;
    while (pideCaja(
        *this, true, [this](const Punto3<double>& p) { planoHaciaVista(p); }, minimo, maximo))
    {
        // A Prisma is drawn about the midpoint of its corners with the transform's turn: the
        // corners go to drawing coordinates around that midpoint, keeping the local size.
        const Matriz4<double> aDocumento = localADocumento(*this);
        const Punto3<double> medio = aDocumento * Punto3<double>::puntoMedio(minimo, maximo);
        const Vector3D<double> mitad = (maximo - minimo) * 0.5;
        auto* prisma = new Prisma(medio - mitad, medio + mitad,
                                  static_cast<uint16_t>(dibujo_->materialActual()));
        Matriz4<double> giro = aDocumento;
        giro.setOrigen(medio);
        prisma->transformacion = giro;
        if (nuevaEntidad(std::unique_ptr<Entidad>(prisma)))
        {
            ++creados;
        }
    }
    finComandoInteractivo();
    return creados;
}

int EditorDibujo::comandoModeloCilindro()
{
    iniciaComandoInteractivo(false);
    int creados = 0;
    cursor_t cursor;
    while (getPunto(texto(9, 1, "Seleccione el centro del cilindro:"), cursor, true))
    {
        const Punto3<double> centro = cursor.get();
        bool hecho = false;
        {
            LineaElastica banda(this, 8);
            banda.nuevaAncla(centro);
            planoHorizontal(*this, centro);
            Punto3<double> borde;
            Punto3<double> techo;
            if (puntoOMedida(*this, texto(9, 2, "Seleccione el radio del cilindro:"), centro,
                             Vector3D<double>(1, 0, 0), borde))
            {
                banda.nuevaAncla(borde);
                planoHaciaVista(borde);
                if (puntoOMedida(*this, texto(9, 3, "Seleccione la altura del cilindro:"), borde,
                                 Vector3D<double>(0, 0, 1), techo))
                {
                    const Punto3<double> c = aLocal(*this, centro);
                    const Punto3<double> b = aLocal(*this, borde);
                    const double radio = std::hypot(b.x - c.x, b.y - c.y);
                    const double altura = aLocal(*this, techo).z - b.z;
                    auto* cilindro = new Cilindro(centro, radio, altura,
                                                  static_cast<uint16_t>(dibujo_->materialActual()));
                    // The axis is the local Z; the base centre stays where it was picked.
                    Matriz4<double> colocacion = localADocumento(*this);
                    colocacion.setOrigen(centro);
                    cilindro->transformacion = colocacion;
                    if (nuevaEntidad(std::unique_ptr<Entidad>(cilindro)))
                    {
                        ++creados;
                    }
                    hecho = true;
                }
            }
            dibujo_->planoTemporalActivo = false;
            banda.vaciaAnclas();
        }
        if (!hecho)
        {
            break;
        }
    }
    finComandoInteractivo();
    return creados;
}

int EditorDibujo::comandoModeloEsfera()
{
    iniciaComandoInteractivo(false);
    int creados = 0;
    cursor_t cursor;
    while (getPunto(texto(10, 1, "Seleccione el centro de la esfera:"), cursor, true))
    {
        const Punto3<double> centro = cursor.get();
        bool hecho = false;
        {
            LineaElastica banda(this, 9);
            banda.nuevaAncla(centro);
            planoHorizontal(*this, centro);
            Punto3<double> borde;
            if (puntoOMedida(*this, texto(10, 2, "Seleccione el radio de la esfera:"), centro,
                             Vector3D<double>(1, 0, 0), borde))
            {
                auto* esfera = new Esfera(centro, centro.distancia(borde),
                                          static_cast<uint16_t>(dibujo_->materialActual()));
                if (nuevaEntidad(std::unique_ptr<Entidad>(esfera)))
                {
                    ++creados;
                }
                hecho = true;
            }
            dibujo_->planoTemporalActivo = false;
            banda.vaciaAnclas();
        }
        if (!hecho)
        {
            break;
        }
    }
    finComandoInteractivo();
    return creados;
}

}  // namespace cad
