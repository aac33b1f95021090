// EditorDibujo: the commands that create entities.
#include "documento/Dibujo.h"
#include "editor/Comando.h"
#include "editor/EditorDibujo.h"
#include "editor/LineaElastica.h"
#include "entidades/Linea.h"
#include "entidades/Punto.h"

namespace cad
{

// -------------------------------------------------------------------------------------------
// Commands

int EditorDibujo::comandoPunto()
{
    iniciaComandoInteractivo(false);
    int creados = 0;
    cursor_t cursor;
    while (getPunto(texto(2, 1, "Seleccione coordenadas del punto:"), cursor, true))
    {
        auto* punto = new Punto(cursor.get());
        if (reactorInsercionEntidades &&
            !reactorInsercionEntidades(handleEntidad(punto), kEntidadInsertada))
        {
            // Refused by the host: nobody else holds it.
            delete punto;
            continue;
        }
        registraComando(new ComandoNuevaEntidad(dibujo_, punto));
        actualiza(kControl, false);
        ++creados;
    }
    finComandoInteractivo();
    return creados;
}

int EditorDibujo::comandoLinea()
{
    iniciaComandoInteractivo(false);
    cursor_t cursor;
    if (!getPunto(texto(3, 1, "Seleccione coordenada inicial de la linea:"), cursor, true))
    {
        finComandoInteractivo();
        return 0;
    }
    int creadas = 0;
    Punto3<double> anterior = cursor.get();
    {
        LineaElastica banda(this, 1);
        banda.nuevaAncla(anterior);
        while (getPunto(texto(3, 2, "Seleccione coordenada final de la linea:"), cursor, true))
        {
            const Punto3<double> punto = cursor.get();
            auto* linea = new Linea(anterior, punto);
            if (nuevaEntidad(linea))
            {
                ++creadas;
            }
            else
            {
                delete linea;
            }
            anterior = punto;
            banda.nuevaAncla(punto);
        }
        banda.vaciaAnclas();
    }
    finComandoInteractivo();
    return creadas;
}

}  // namespace cad

namespace cad
{
// PLACEHOLDER (helper 3 replaces these bodies).
int EditorDibujo::comandoCara3D3() { return 0; }
int EditorDibujo::comandoCara3D4() { return 0; }
int EditorDibujo::comandoCara() { return 0; }
int EditorDibujo::comandoPlano() { return 0; }
bool EditorDibujo::comandoContornoPlano() { return false; }
int EditorDibujo::comandoParalelaPlano() { return 0; }
int EditorDibujo::comandoPerpendicularPlano() { return 0; }
int EditorDibujo::comandoCubo() { return 0; }
int EditorDibujo::comandoModeloCubo() { return 0; }
int EditorDibujo::comandoModeloCilindro() { return 0; }
int EditorDibujo::comandoModeloEsfera() { return 0; }
int EditorDibujo::comandoConvierteObjeto3D() { return 0; }
int16_t EditorDibujo::materialActual() const { return 0; }
void EditorDibujo::setMaterialActual(int16_t) {}
}  // namespace cad
