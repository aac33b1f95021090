// VentanaVisor: the viewer's main window, one drawing session shown and driven with the mouse.
#pragma once

#include <QMainWindow>
#include <QStringList>
#include <functional>
#include <memory>
#include <ostream>
#include <streambuf>
#include <string>

#include "PantallaGL.h"
#include "Sesion.h"

class QLabel;
class QTableWidget;
class QTableWidgetItem;

namespace visor
{

class PanelOrdenes;
class VistaGL;

// An output stream that hands over each whole line it is written.
class SalidaPorLineas : public std::streambuf
{
public:
    explicit SalidaPorLineas(std::function<void(const std::string&)> destino_)
        : destino(std::move(destino_))
    {
    }

protected:
    int_type overflow(int_type c) override;

private:
    std::function<void(const std::string&)> destino;
    std::string linea;
};

// The session is the command-line host's, given this window's display: every order, typed,
// scripted or chosen from a menu, goes through it and prints into the command dock. The
// thread's queue steps Qt's event loop while a command waits, so a waiting command sleeps
// until an event comes, and each step first gives the drawing to the display when it asks.
class VentanaVisor : public QMainWindow
{
    Q_OBJECT

public:
    struct opciones_t
    {
        QStringList guion;             // lines to run as if typed, after the first frame
        bool salAlAcabar = false;      // quit, discarding changes, when the script is done
        QString captura;               // a PNG of the window, taken when the script is done
        QSize tamanoVista;             // fixed size of the 3D view; empty to let it follow
        bool detieneAlFallar = false;  // a failed order ends the session with code 1
    };

    explicit VentanaVisor(const opciones_t& opciones, QWidget* padre = nullptr);
    ~VentanaVisor() override;

    // Opens the drawing the viewer starts with; false, with the reason printed, when not.
    bool abreInicial(const QString& fichero);
    // Writes a PNG of the window through a temporary file; false with the reason.
    bool guardaCaptura(const QString& fichero, QString& error);

protected:
    void closeEvent(QCloseEvent* e) override;

private:
    void creaMenus();
    void creaPaneles();

    // Gives the drawing to the display when the drawing asks, repaints, and brings the
    // command dock, the title and the panels up to date.
    void refresca();
    // The overlay (rubber band, snap marker) drawn again for the cursor where it is now.
    void refrescaSuperposicion();
    void actualizaEstado();
    void programaPaneles();
    void rellenaCapas();
    void rellenaPropiedades();
    void capaEditada(QTableWidgetItem* item);
    void colorCapaPulsado(int fila, int columna);
    void propiedadEditada(QTableWidgetItem* item);

    // A line as if typed; after it, the session may have ended.
    void entraLinea(const QString& linea);
    void orden(const std::vector<std::string>& palabras);
    void compruebaFin();
    void alimentaGuion();
    void terminaGuion();

    void raton(int x, int y);
    void clic(int x, int y, int boton);
    void camaraInicial();
    void colocaCamaraDibujo();
    // Fits the whole drawing in the view.
    void encuadraTodo();
    // Whether the present view shows any of the drawing's extent.
    bool muestraAlgo();
    // Set when the drawing was fitted before the view was first shown.
    bool encuadrarAlMostrar = false;
    void camaraCambiada();

    // Asks before changes would be lost; true to go on.
    bool confirmaDescartar();
    void abre();
    void guarda(bool comoNuevo);
    void importa(bool obj);
    // A file to write, asked for in a dialog; `extension` is added to a name without one.
    // Empty when the user gave none.
    QString pideDestino(const QString& titulo, const QString& inicial, const QString& filtro,
                        const QString& extension);
    void exportaDXF();

    opciones_t opciones;
    // The display outlives the session, whose editor refers to it.
    cad::PantallaGL pantalla;
    SalidaPorLineas bufferSalida;
    std::ostream salida;
    std::unique_ptr<tarvelo::Sesion> sesion;

    VistaGL* vista = nullptr;
    PanelOrdenes* panelOrdenes = nullptr;
    QTableWidget* tablaCapas = nullptr;
    QTableWidget* tablaPropiedades = nullptr;
    QLabel* etiquetaCursor = nullptr;
    QLabel* etiquetaEstadisticas = nullptr;

    int lineaGuion = 0;
    bool guionEmpezado = false;
    bool rellenando = false;
    bool panelesProgramados = false;
    bool saliendo = false;
    // The editor's overlay may have changed without the drawing asking for a repaint (a
    // wait that ended, a click taken): the next empty step of the queue draws it again.
    bool superposicionSucia = false;
};

}  // namespace visor
