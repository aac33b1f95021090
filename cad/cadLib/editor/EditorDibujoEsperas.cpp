// EditorDibujo: the waits of interactive commands for typed input and points.
#include <cmath>

#include "documento/Dibujo.h"
#include "editor/EditorDibujo.h"
#include "editor/LineaElastica.h"
#include "editor/TextosEditor.h"

namespace cad
{

// -------------------------------------------------------------------------------------------
// Typed waits

bool EditorDibujo::esperaEntrada(const char* prompt, std::string& respuesta)
{
    iniciaComandoInteractivo(false);
    // A line left over from an earlier wait (the Enter that ended a point loop) is no answer.
    limpiaEntrada();
    mensaje("%s", prompt);
    bool resultado = false;
    bool anulado = false;
    while (procesoEventos)
    {
        procesoEventos();
        if (cancelado)
        {
            anulado = true;
            break;
        }
        if (atiendeInterrupcion())
        {
            break;
        }
        respuesta = entrada;
        if (entradaRecibida)
        {
            resultado = true;
            break;
        }
    }
    if (anulado)
    {
        limpiaEntradaCompleta();
        mensaje("%s", texto(4, 16, kTextoCancelado));
    }
    limpiaEntradaCompleta();
    finComandoInteractivo();
    return resultado;
}

bool EditorDibujo::entradaTecleada(const char* prompt, bool aceptaVacio,
                                   const std::function<const char*(const std::string&)>& toma)
{
    for (;;)
    {
        std::string linea;
        if (!esperaEntrada(prompt, linea))
        {
            return false;
        }
        if (linea.empty())
        {
            if (aceptaVacio)
            {
                return true;
            }
            continue;
        }
        const char* error = toma(linea);
        if (error == nullptr)
        {
            return true;
        }
        mensaje("%s", error);
    }
}

bool EditorDibujo::entradaBool(const char* prompt, bool aceptaVacio, bool* resultado)
{
    return entradaTecleada(prompt, aceptaVacio,
                           [resultado](const std::string& linea) -> const char*
                           {
                               if (linea[0] == 'S' || linea[0] == 's')
                               {
                                   *resultado = true;
                                   return nullptr;
                               }
                               if (linea[0] == 'N' || linea[0] == 'n')
                               {
                                   *resultado = false;
                                   return nullptr;
                               }
                               return "Conteste Si o No";
                           });
}

bool EditorDibujo::entradaInt(const char* prompt, bool aceptaVacio, int* resultado)
{
    return entradaTecleada(prompt, aceptaVacio,
                           [resultado](const std::string& linea) -> const char*
                           {
                               // atoi gives 0 for a word: only a leading '0' makes 0 an answer.
                               const int v = std::atoi(linea.c_str());
                               if (v == 0 && linea[0] != '0')
                               {
                                   return "Introduzca un número entero";
                               }
                               *resultado = v;
                               return nullptr;
                           });
}

bool EditorDibujo::entradaDoble(const char* prompt, bool aceptaVacio, double* resultado)
{
    return entradaTecleada(prompt, aceptaVacio,
                           [resultado](const std::string& linea) -> const char*
                           {
                               const double v = std::atof(linea.c_str());
                               // atof also reads "nan", "inf" and overflows: no value to keep.
                               if ((v == 0.0 && linea[0] != '0') || !std::isfinite(v))
                               {
                                   return "Introduzca un número decimal";
                               }
                               *resultado = v;
                               return nullptr;
                           });
}

bool EditorDibujo::entradaString(const char* prompt, bool aceptaVacio, std::string* resultado)
{
    return entradaTecleada(prompt, aceptaVacio,
                           [resultado](const std::string& linea) -> const char*
                           {
                               *resultado = linea;
                               return nullptr;
                           });
}

// -------------------------------------------------------------------------------------------
// Point waits

bool EditorDibujo::getPunto(const char* prompt, cursor_t& cursor, bool abreAmbito)
{
    return getPunto(prompt, cursor, nullptr, nullptr, abreAmbito);
}

bool EditorDibujo::getPunto(const char* prompt, cursor_t& cursor, int* opcionElegida,
                            double* valorDado, bool abreAmbito)
{
    if (abreAmbito)
    {
        iniciaComandoInteractivo(false);
    }
    descartaEvento();
    limpiaEntrada();
    const int32_t tipoCursor = dibujo_->setTipoCursor(kCursorSeleccionCoordenadas);
    mensaje("%s", prompt);
    bool resultado = false;
    while (procesoEventos)
    {
        procesoEventos();
        if (finEspera(false))
        {
            break;
        }
        if (dibujo_->mascaraReferencias != 0 && pantalla_ != nullptr)
        {
            // Only keeps the marker up with the pointer; the answer comes from a click.
            cursor_t actual = posicionCursor();
            if (actual.x >= 0)
            {
                cursorADocumento(actual);
                compruebaPunto(actual);
            }
        }
        const char* error = nullptr;
        int estado = 0;
        if (leeEvento(cursor, estado) && estado == PantallaCAD::kBotonIzquierdo)
        {
            if (compruebaPunto(cursor))
            {
                resultado = true;
                break;
            }
            error = kCoordenadaNoValida;
        }
        if (entradaRecibida)
        {
            if (entradaVacia)
            {
                break;
            }
            if (tomaCoordenadas(cursor))
            {
                resultado = true;
                break;
            }
            error = kCoordenadaNoValida;
            if (!opciones.empty())
            {
                if (opcionElegida != nullptr)
                {
                    *opcionElegida = opcion;
                    if (opcion >= 0)
                    {
                        resultado = true;
                        break;
                    }
                }
                error = kCoordenadaUOpcion;
            }
            if (valorValido && valorDado != nullptr)
            {
                *valorDado = valor;
                resultado = true;
                break;
            }
        }
        if (error != nullptr)
        {
            repiteMensaje(error);
            borraEntradaLineaComandos();
        }
    }
    dibujo_->setTipoCursor(tipoCursor);
    mensaje("%s", "");
    if (abreAmbito)
    {
        finComandoInteractivo();
    }
    return resultado;
}

void EditorDibujo::planoHaciaVista(const Punto3<double>& base)
{
    Vector3D<double> normal(0, 0, 1);
    if (pantalla_ != nullptr)
    {
        Punto3<double> posicion;
        Punto3<double> objetivo;
        Vector3D<double> arriba;
        double zoom = 0.0;
        double angulo = 0.0;
        pantalla_->getCamara(posicion, objetivo, normal, arriba, zoom, angulo);
    }
    dibujo_->setPlanoReferencia(base, normal);
    dibujo_->fijaPlanoTemporal(base);
}

bool EditorDibujo::getPuntoEnPlano(const char* prompt, const Punto3<double>& base, cursor_t& cursor)
{
    iniciaComandoInteractivo(false);
    planoHaciaVista(base);
    descartaEvento();
    limpiaEntradaCompleta();
    const int32_t tipoCursor = dibujo_->setTipoCursor(kCursorSeleccionCoordenadas);
    mensaje("%s", prompt);
    bool resultado = false;
    while (procesoEventos)
    {
        procesoEventos();
        if (finEspera(false))
        {
            break;
        }
        const char* error = nullptr;
        int estado = 0;
        if (leeEvento(cursor, estado))
        {
            if (estado == PantallaCAD::kBotonDerecho)
            {
                // A right click finishes the wait without an answer. It ends here rather
                // than at the next pump step, which might never come.
                terminado = true;
                limpiaEntradaCompleta();
                break;
            }
            const bool enganchado = (dibujo_->mascaraReferencias & 32) == 0 &&
                                    pantalla_ != nullptr &&
                                    dibujo_->referenciaEntidades(*pantalla_, cursor);
            if (enganchado)
            {
                tipoMarcaReferencia = cursor.tipo;
                marcaReferencia = cursor.referencia;
            }
            else
            {
                cursor.referencia = invalido;
                tipoMarcaReferencia = 0;
            }
            dibujo_->proyectaCursor(cursor);
            if (cursor.get() != invalido)
            {
                resultado = true;
                break;
            }
            error = kCoordenadaNoValida;
        }
        if (entradaRecibida)
        {
            if (entradaVacia)
            {
                break;
            }
            if (tomaCoordenadas(cursor))
            {
                resultado = true;
                break;
            }
            error = kCoordenadaNoValida;
        }
        if (error != nullptr)
        {
            repiteMensaje(error);
            borraEntradaLineaComandos();
        }
    }
    dibujo_->planoTemporalActivo = false;
    dibujo_->setTipoCursor(tipoCursor);
    mensaje("%s", "");
    finComandoInteractivo();
    return resultado;
}

EditorDibujo::ajustesReferencia_t EditorDibujo::fuerzaReferencia(int32_t mascara)
{
    ajustesReferencia_t antes;
    dibujo_->getReferenciaEntidades(antes.global, antes.mascara);
    dibujo_->setReferenciaEntidades(true, mascara);
    return antes;
}

void EditorDibujo::restauraReferencia(const ajustesReferencia_t& a)
{
    dibujo_->setReferenciaEntidades(a.global, a.mascara);
}

bool EditorDibujo::getVentana(const char* prompt1, const char* prompt2, int* a, int* b)
{
    const ajustesReferencia_t antes = fuerzaReferencia(32);
    cursor_t cursor;
    if (!getPunto(prompt1, cursor, nullptr, nullptr, true))
    {
        restauraReferencia(antes);
        return false;
    }
    cursor_t actual = posicionCursor();
    a[0] = actual.x;
    a[1] = actual.y;
    bool resultado = false;
    {
        LineaElastica banda(this, 10, true);
        banda.nuevaAncla(Punto3<double>(actual.x, actual.y, 0.0));
        resultado = getPunto(prompt2, cursor, nullptr, nullptr, true);
        actual = posicionCursor();
        b[0] = actual.x;
        b[1] = actual.y;
    }
    restauraReferencia(antes);
    return resultado;
}

bool EditorDibujo::getVentana(const char* prompt1, const char* prompt2, Punto3<double>* a,
                              Punto3<double>* b)
{
    cursor_t cursor;
    if (!getPunto(prompt1, cursor, nullptr, nullptr, true))
    {
        return false;
    }
    *a = cursor.get();
    const cursor_t actual = posicionCursor();
    LineaElastica banda(this, 10, true);
    banda.nuevaAncla(Punto3<double>(actual.x, actual.y, 0.0));
    const bool resultado = getPunto(prompt2, cursor, nullptr, nullptr, true);
    *b = cursor.get();
    return resultado;
}

bool EditorDibujo::getCirculo(const char* prompt1, const char* prompt2, Punto3<double>* centro,
                              double* radio)
{
    Punto3<double> borde;
    Punto3<double> c;
    if (!getCirculo(prompt1, prompt2, &c, &borde))
    {
        return false;
    }
    *centro = c;
    *radio = c.distancia(borde);
    return true;
}

bool EditorDibujo::getCirculo(const char* prompt1, const char* prompt2, Punto3<double>* centro,
                              Punto3<double>* borde)
{
    iniciaComandoInteractivo(false);
    cursor_t cursor;
    if (!getPunto(prompt1, cursor, true))
    {
        finComandoInteractivo();
        return false;
    }
    const Punto3<double> p = cursor.get();
    dibujo_->setPlanoReferencia(p, Vector3D<double>(0, 0, 1));
    dibujo_->fijaPlanoTemporal(p);
    bool resultado = false;
    {
        LineaElastica banda(this, 9);
        banda.nuevaAncla(p);
        resultado = getPuntoEnPlano(prompt2, p, cursor);
        if (resultado)
        {
            *centro = p;
            *borde = cursor.get();
        }
    }
    dibujo_->planoTemporalActivo = false;
    finComandoInteractivo();
    return resultado;
}

cursor_t EditorDibujo::posicionCursor()
{
    cursor_t cursor;
    if (pantalla_ != nullptr)
    {
        pantalla_->getCursor(cursor);
    }
    return cursor;
}

bool EditorDibujo::leeEvento(cursor_t& cursor, int& estado)
{
    if (pantalla_ == nullptr)
    {
        return false;
    }
    cursor_t evento;
    if (!pantalla_->getEvento(evento, estado))
    {
        return false;
    }
    cursorADocumento(evento);
    cursor = evento;
    return true;
}

}  // namespace cad
