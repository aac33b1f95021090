#include "VentanaVisor.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QBuffer>
#include <QCloseEvent>
#include <QColorDialog>
#include <QDockWidget>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>
#include <QTableWidget>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iostream>

#include "PanelOrdenes.h"
#include "VistaGL.h"
#include "base/ColaMensajes.h"
#include "base/FicheroAtomico.h"
#include "base/Propiedades.h"
#include "documento/Dibujo.h"
#include "editor/EditorDibujo.h"
#include "entidades/Entidad.h"

namespace visor
{

namespace
{

enum columnasCapas
{
    kColNombre = 0,
    kColVisible = 1,
    kColBloqueada = 2,
    kColColor = 3,
    kColActual = 4
};

// Where a property row leads: category and index in the sheet, and its kind.
constexpr int kRolCategoria = Qt::UserRole;
constexpr int kRolIndice = Qt::UserRole + 1;
constexpr int kRolTipo = Qt::UserRole + 2;

QString desde(const std::string& s)
{
    return QString::fromStdString(s);
}

std::string texto(const QString& s)
{
    return s.toStdString();
}

QString tresNumeros(double x, double y, double z)
{
    return QString::asprintf("%.3f, %.3f, %.3f", x, y, z);
}

// The entity of a handle, when it is still in the drawing.
cad::Entidad* entidadDe(Fendrix::WrapDibujoCAD& dibujo, int64_t handle)
{
    for (cad::Entidad* e : dibujo.mDibujo->entidades)
    {
        if (static_cast<int64_t>(reinterpret_cast<intptr_t>(e)) == handle)
        {
            return e;
        }
    }
    return nullptr;
}

// A property's value as the table shows it.
QString valorMostrado(const cad::Prop& p)
{
    switch (p.tipo)
    {
        case cad::TipoProp::Coordenada:
        case cad::TipoProp::Vector:
        case cad::TipoProp::Orientacion:
            return tresNumeros(p.x, p.y, p.z);
        case cad::TipoProp::Color:
        {
            const uint32_t argb = static_cast<uint32_t>(std::strtoul(p.valor.c_str(), nullptr, 10));
            return p.indiceColor >= 0 ? QString::number(p.indiceColor)
                                      : QString::asprintf("#%06X", argb & 0xFFFFFFU);
        }
        default:
            return desde(p.valor).trimmed();
    }
}

// Puts the edited text into `p`; false, with the reason, when it can't be read.
bool tomaValor(const QString& editado, cad::Prop& p, QString& error)
{
    const QString t = editado.trimmed();
    switch (p.tipo)
    {
        case cad::TipoProp::Coordenada:
        case cad::TipoProp::Vector:
        case cad::TipoProp::Orientacion:
        {
            const QStringList partes = t.split(QLatin1Char(','));
            bool a = partes.size() == 3;
            const double x = a ? partes[0].trimmed().toDouble(&a) : 0.0;
            bool b = a;
            const double y = b ? partes[1].trimmed().toDouble(&b) : 0.0;
            bool c = b;
            const double z = c ? partes[2].trimmed().toDouble(&c) : 0.0;
            if (!c)
            {
                error = QStringLiteral("se esperan tres números: x, y, z");
                return false;
            }
            p.x = x;
            p.y = y;
            p.z = z;
            return true;
        }
        case cad::TipoProp::Color:
        {
            bool ok = false;
            if (t.startsWith(QLatin1Char('#')))
            {
                const uint32_t rgb = t.mid(1).toUInt(&ok, 16);
                p.indiceColor = -1;
                p.valor = std::to_string(0xFF000000U | (rgb & 0xFFFFFFU));
            }
            else
            {
                p.indiceColor = t.toInt(&ok);
                ok = ok && p.indiceColor >= 0 && p.indiceColor <= 256;
            }
            if (!ok)
            {
                error = QStringLiteral("un color es #RRGGBB o un índice de 0 a 256");
            }
            return ok;
        }
        case cad::TipoProp::Entero:
        {
            bool ok = false;
            t.toInt(&ok);
            error = QStringLiteral("se espera un entero");
            p.valor = texto(t);
            return ok;
        }
        case cad::TipoProp::Doble:
        case cad::TipoProp::DoblePositivo:
        {
            bool ok = false;
            const double v = t.toDouble(&ok);
            if (!ok || (p.tipo == cad::TipoProp::DoblePositivo && v < 0.0))
            {
                error = QStringLiteral("se espera un número") +
                        (p.tipo == cad::TipoProp::DoblePositivo ? QStringLiteral(" positivo")
                                                                : QString());
                return false;
            }
            p.valor = texto(t);
            return true;
        }
        default:
            p.valor = texto(t);
            return true;
    }
}

}  // namespace

SalidaPorLineas::int_type SalidaPorLineas::overflow(int_type c)
{
    if (traits_type::eq_int_type(c, traits_type::eof()))
    {
        return traits_type::not_eof(c);
    }
    if (traits_type::to_char_type(c) == '\n')
    {
        destino(linea);
        linea.clear();
    }
    else
    {
        linea.push_back(traits_type::to_char_type(c));
    }
    return c;
}

VentanaVisor::VentanaVisor(const opciones_t& opciones_, QWidget* padre)
    : QMainWindow(padre),
      opciones(opciones_),
      bufferSalida(
          [this](const std::string& linea)
          {
              // Also on the standard output, so that a scripted run leaves a transcript.
              std::cout << linea << '\n' << std::flush;
              if (panelOrdenes != nullptr)
              {
                  panelOrdenes->anade(desde(linea));
              }
          }),
      salida(&bufferSalida)
{
    tarvelo::Sesion::opciones_t o;
    o.eco = true;
    o.detieneAlFallar = opciones.detieneAlFallar;
    sesion = std::make_unique<tarvelo::Sesion>(pantalla, salida, o);
    sesion->alCambiarDibujo = [this]() { colocaCamaraDibujo(); };
    Fendrix::WrapDibujoCAD& dibujo = sesion->fachada();
    dibujo.setActualiza([this](Fendrix::WrapDibujoCAD::tipoActualizacion) { programaPaneles(); });
    // The edges of a selection are drawn in blue by default, which hardly shows on the dark
    // blue background: the viewer draws them in yellow.
    dibujo.setColorConfiguracion(Fendrix::WrapDibujoCAD::colorElemento::kAristasCalientes, 255, 230,
                                 0);

    vista = new VistaGL(pantalla, this);
    if (!opciones.tamanoVista.isEmpty())
    {
        vista->setFixedSize(opciones.tamanoVista);
    }
    else
    {
        // A working size for a survey: most of a common screen.
        resize(1280, 860);
    }
    setCentralWidget(vista);
    vista->hayOrdenEsperando = [this]() { return sesion->fachada().dentroComandoInteractivo(); };
    vista->alMover = [this](int x, int y) { raton(x, y); };
    vista->alClicar = [this](int x, int y, int boton) { clic(x, y, boton); };
    vista->alCambiarCamara = [this]() { camaraCambiada(); };
    vista->alFallarGL = [this](const QString& error)
    { salida << "OpenGL: " << texto(error) << '\n'; };
    vista->alPintarPrimeraVez = [this]()
    {
        // A drawing fitted before the window had its size is fitted again at the real one.
        if (encuadrarAlMostrar)
        {
            encuadrarAlMostrar = false;
            QTimer::singleShot(0, this,
                               [this]()
                               {
                                   encuadraTodo();
                                   camaraCambiada();
                               });
        }
        if (!guionEmpezado)
        {
            guionEmpezado = true;
            QTimer::singleShot(0, this, [this]() { alimentaGuion(); });
        }
    };

    creaPaneles();
    creaMenus();
    etiquetaCursor = new QLabel(this);
    etiquetaEstadisticas = new QLabel(this);
    statusBar()->addWidget(etiquetaCursor, 1);
    statusBar()->addPermanentWidget(etiquetaEstadisticas);

    // While a command waits the kernel pumps the thread's queue; its empty steps sleep in
    // Qt's loop until an event comes, after giving the display what the drawing changed.
    cad::ColaMensajes::delHilo().setPasoExterno(
        [this]()
        {
            if (sesion->terminada())
            {
                sesion->pasoAlTerminar();
                return;
            }
            refresca();
            if (superposicionSucia)
            {
                superposicionSucia = false;
                refrescaSuperposicion();
            }
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        });
    camaraInicial();
    refresca();
}

VentanaVisor::~VentanaVisor()
{
    cad::ColaMensajes::delHilo().setPasoExterno(nullptr);
    // The session's editor refers to the display, and the widget frees the display's GL
    // objects: both go before the display, which is a member and outlives the children.
    sesion.reset();
    delete vista;
    vista = nullptr;
    panelOrdenes = nullptr;
}

// ---------------------------------------------------------------------------------------
// Building the window

void VentanaVisor::creaMenus()
{
    QMenu* archivo = menuBar()->addMenu(QStringLiteral("&Archivo"));
    archivo->addAction(QStringLiteral("&Nuevo"), this,
                       [this]()
                       {
                           if (confirmaDescartar())
                           {
                               orden({"nuevo"});
                           }
                       });
    archivo->addAction(
        QStringLiteral("&Abrir..."), this, [this]() { abre(); }, QKeySequence::Open);
    archivo->addAction(
        QStringLiteral("&Guardar"), this, [this]() { guarda(false); }, QKeySequence::Save);
    archivo->addAction(
        QStringLiteral("Guardar &como..."), this, [this]() { guarda(true); }, QKeySequence::SaveAs);
    archivo->addSeparator();
    archivo->addAction(QStringLiteral("Importar &DXF..."), this, [this]() { importa(false); });
    archivo->addAction(QStringLiteral("Importar &OBJ..."), this, [this]() { importa(true); });
    archivo->addAction(QStringLiteral("&Exportar DXF..."), this, [this]() { exportaDXF(); });
    archivo->addSeparator();
    archivo->addAction(
        QStringLiteral("&Salir"), this, [this]() { close(); }, QKeySequence::Quit);

    QMenu* edicion = menuBar()->addMenu(QStringLiteral("&Edición"));
    edicion->addAction(
        QStringLiteral("&Deshacer"), this, [this]() { orden({"deshacer"}); }, QKeySequence::Undo);
    edicion->addAction(
        QStringLiteral("&Rehacer"), this, [this]() { orden({"rehacer"}); }, QKeySequence::Redo);
    edicion->addAction(QStringLiteral("Deseleccionar"), this,
                       [this]() { orden({"deselecciona"}); });

    QMenu* ver = menuBar()->addMenu(QStringLiteral("&Ver"));
    ver->addAction(QStringLiteral("Zoom &extensión"), this,
                   [this]()
                   {
                       refresca();
                       encuadraTodo();
                       camaraCambiada();
                   });
    ver->addAction(QStringLiteral("Zoom &ventana"), this, [this]() { vista->zoomPorVentana(); });
    ver->addAction(QStringLiteral("Vista en &planta"), this, [this]() { vista->vistaEnPlanta(); });
    QMenu* modelos = ver->addMenu(QStringLiteral("&Representación de modelos"));
    auto* grupo = new QActionGroup(this);
    const char* const nombres[] = {"Alámbrica", "Conceptual", "Oculta",
                                   "Realista",  "Rayos X",    "Texturas"};
    for (int i = 0; i < 6; ++i)
    {
        QAction* a = modelos->addAction(QString::fromUtf8(nombres[i]));
        a->setCheckable(true);
        a->setChecked(i == 0);
        grupo->addAction(a);
        connect(a, &QAction::triggered, this,
                [this, i]()
                {
                    sesion->fachada().setRepresentacionModelos(
                        static_cast<Fendrix::WrapDibujoCAD::representacion_modelos>(i));
                    refresca();
                });
    }
}

void VentanaVisor::creaPaneles()
{
    panelOrdenes = new PanelOrdenes(this);
    auto* dockOrdenes = new QDockWidget(QStringLiteral("Línea de órdenes"), this);
    dockOrdenes->setObjectName(QStringLiteral("ordenes"));
    dockOrdenes->setWidget(panelOrdenes);
    addDockWidget(Qt::BottomDockWidgetArea, dockOrdenes);
    connect(panelOrdenes, &PanelOrdenes::linea, this, &VentanaVisor::entraLinea);

    tablaCapas = new QTableWidget(0, 5, this);
    tablaCapas->setHorizontalHeaderLabels({QStringLiteral("Capa"), QStringLiteral("Visible"),
                                           QStringLiteral("Bloqueada"), QStringLiteral("Color"),
                                           QStringLiteral("Actual")});
    tablaCapas->verticalHeader()->hide();
    tablaCapas->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    tablaCapas->setSelectionMode(QAbstractItemView::NoSelection);
    auto* dockCapas = new QDockWidget(QStringLiteral("Capas"), this);
    dockCapas->setObjectName(QStringLiteral("capas"));
    dockCapas->setWidget(tablaCapas);
    addDockWidget(Qt::RightDockWidgetArea, dockCapas);
    connect(tablaCapas, &QTableWidget::itemChanged, this, &VentanaVisor::capaEditada);
    connect(tablaCapas, &QTableWidget::cellDoubleClicked, this, &VentanaVisor::colorCapaPulsado);

    tablaPropiedades = new QTableWidget(0, 2, this);
    tablaPropiedades->setHorizontalHeaderLabels(
        {QStringLiteral("Propiedad"), QStringLiteral("Valor")});
    tablaPropiedades->verticalHeader()->hide();
    tablaPropiedades->horizontalHeader()->setStretchLastSection(true);
    auto* dockPropiedades = new QDockWidget(QStringLiteral("Propiedades"), this);
    dockPropiedades->setObjectName(QStringLiteral("propiedades"));
    dockPropiedades->setWidget(tablaPropiedades);
    addDockWidget(Qt::RightDockWidgetArea, dockPropiedades);
    connect(tablaPropiedades, &QTableWidget::itemChanged, this, &VentanaVisor::propiedadEditada);
}

// ---------------------------------------------------------------------------------------
// Display

void VentanaVisor::refresca()
{
    Fendrix::WrapDibujoCAD& dibujo = sesion->fachada();
    const cad::Dibujo& d = *dibujo.mDibujo;
    if (d.redibujar || !d.vistaAplicada)
    {
        dibujo.dibuja(&sesion->dispositivo());
        vista->update();
    }
    actualizaEstado();
}

void VentanaVisor::refrescaSuperposicion()
{
    // The scene is rebuilt only when the drawing asks; the overlay pass runs every time.
    sesion->fachada().dibuja(&sesion->dispositivo());
    vista->update();
}

void VentanaVisor::actualizaEstado()
{
    Fendrix::WrapDibujoCAD& dibujo = sesion->fachada();
    QStringList opcionesOrden;
    if (dibujo.dentroComandoInteractivo())
    {
        for (const std::string& o : dibujo.listaOpciones())
        {
            opcionesOrden << desde(o);
        }
    }
    panelOrdenes->muestraEstado(desde(sesion->marcador()), opcionesOrden);
    const QString nombre = sesion->fichero().empty()
                               ? QStringLiteral("Sin título")
                               : QFileInfo(desde(sesion->fichero())).fileName();
    // Each of these reaches the X server even when nothing changed, and its answer wakes the
    // wait step again: a waiting command would spin instead of sleeping.
    const QString titulo = nombre + QStringLiteral("[*] — Tarvelo");
    if (titulo != windowTitle())
    {
        setWindowTitle(titulo);
    }
    if (dibujo.hayCambios() != isWindowModified())
    {
        setWindowModified(dibujo.hayCambios());
    }
    const cad::PantallaGL::estadisticas_t& e = pantalla.estadisticas();
    etiquetaEstadisticas->setText(QString::asprintf("%zu primitivas, %.1f MB, %.1f ms",
                                                    e.primitivas, e.bytesGPU / 1048576.0,
                                                    e.msConstruccion));
}

void VentanaVisor::camaraInicial()
{
    // As in `tarvelo sesion`: over a view of 800 by 600 pixels, pixel (x, y) shows drawing
    // point (x, y, 0), so that a script's clicks mean the same in both hosts.
    pantalla.setCamara(cad::Punto3<double>(400.0, 300.0, 100.0),
                       cad::Punto3<double>(400.0, 300.0, 0.0), cad::Vector3D<double>(0, 1, 0), 1.0,
                       0.0);
    camaraCambiada();
}

void VentanaVisor::colocaCamaraDibujo()
{
    Fendrix::WrapDibujoCAD& dibujo = sesion->fachada();
    std::vector<int64_t> handles;
    if (dibujo.getEntidades(handles) == 0)
    {
        camaraInicial();
        programaPaneles();
        return;
    }
    // A drawing that kept a view of itself shows it; any other is seen whole: one whose view
    // is none, or the default one around the origin while the drawing lies at survey
    // coordinates.
    const bool conVista =
        dibujo.mDibujo->vistaActual != nullptr &&
        dibujo.mDibujo->vistaActual->posicion != dibujo.mDibujo->vistaActual->objetivo;
    refresca();
    if (!conVista || !muestraAlgo())
    {
        encuadraTodo();
        encuadrarAlMostrar = !vista->pintada();
    }
    camaraCambiada();
    programaPaneles();
}

bool VentanaVisor::muestraAlgo()
{
    const cad::Rect3<double>& caja = sesion->fachada().mDibujo->extension;
    if (!caja.esValido())
    {
        return true;
    }
    // The box's corners on screen: their bounds must overlap the view.
    double x0 = 1e300, y0 = 1e300, x1 = -1e300, y1 = -1e300;
    for (int i = 0; i < 8; ++i)
    {
        const cad::Punto3<double> p((i & 1) != 0 ? caja.maximo.x : caja.minimo.x,
                                    (i & 2) != 0 ? caja.maximo.y : caja.minimo.y,
                                    (i & 4) != 0 ? caja.maximo.z : caja.minimo.z);
        const cad::Punto2<double> q = pantalla.proyecta(p);
        if (!std::isfinite(q.x) || !std::isfinite(q.y))
        {
            return false;
        }
        x0 = std::min(x0, q.x);
        y0 = std::min(y0, q.y);
        x1 = std::max(x1, q.x);
        y1 = std::max(y1, q.y);
    }
    return x1 >= 0 && y1 >= 0 && x0 <= pantalla.ancho && y0 <= pantalla.alto;
}

void VentanaVisor::encuadraTodo()
{
    // The drawing's own extent: the kernel's zoom to extents also takes in the empty boxes
    // that solids report, which stand at the origin, far from survey coordinates.
    const cad::Rect3<double>& caja = sesion->fachada().mDibujo->extension;
    if (caja.esValido())
    {
        pantalla.zoomExtension(caja);
        pantalla.zoomEscala(1.0 / 1.05);
    }
}

void VentanaVisor::camaraCambiada()
{
    // Every edit makes the drawing place its stored view again: the camera the user moved
    // to is stored as that view, so that an edit does not throw it back.
    sesion->fachada().guardaVistaActual();
    vista->update();
}

// ---------------------------------------------------------------------------------------
// Mouse

void VentanaVisor::raton(int x, int y)
{
    pantalla.setPosicionCursor(x, y);
    Fendrix::WrapDibujoCAD& dibujo = sesion->fachada();
    cad::cursor_t c;
    pantalla.getCursor(c);
    if (c.plano != cad::invalido)
    {
        etiquetaCursor->setText(QStringLiteral("X %1   Y %2   Z %3")
                                    .arg(c.plano.x, 0, 'f', 3)
                                    .arg(c.plano.y, 0, 'f', 3)
                                    .arg(c.plano.z, 0, 'f', 3));
    }
    if (!dibujo.dentroComandoInteractivo() || dibujo.mEditor == nullptr)
    {
        return;
    }
    // The kernel's own snap, tried where the pointer is, leaves its marker for the overlay.
    refresca();
    cad::cursor_t cursor = dibujo.mEditor->posicionCursor();
    dibujo.mEditor->cursorADocumento(cursor);
    if (dibujo.mDibujo->mascaraReferencias != 0)
    {
        dibujo.mEditor->compruebaPunto(cursor);
    }
    refrescaSuperposicion();
}

void VentanaVisor::clic(int x, int y, int boton)
{
    if (sesion->fachada().dentroComandoInteractivo())
    {
        // The scene picked and snapped must be the one shown.
        refresca();
        pantalla.clic(x, y, boton);
        superposicionSucia = true;
        vista->update();
        return;
    }
    if (boton != cad::PantallaCAD::kBotonIzquierdo)
    {
        return;
    }
    // With no command, the session's own "clic": selects what lies under the pixel.
    entraLinea(QStringLiteral("clic %1 %2").arg(x).arg(y));
}

// ---------------------------------------------------------------------------------------
// Session

void VentanaVisor::entraLinea(const QString& linea)
{
    // A line handled from inside a wait is seen by the queue's next empty step.
    superposicionSucia = true;
    sesion->entraLinea(texto(linea));
    refresca();
    refrescaSuperposicion();
    programaPaneles();
    compruebaFin();
}

void VentanaVisor::orden(const std::vector<std::string>& palabras)
{
    superposicionSucia = true;
    sesion->ejecutaOrden(palabras);
    refresca();
    refrescaSuperposicion();
    programaPaneles();
    compruebaFin();
}

void VentanaVisor::compruebaFin()
{
    if (sesion->terminada() && !sesion->ocupada() && !saliendo)
    {
        saliendo = true;
        QCoreApplication::exit(sesion->codigo());
    }
}

void VentanaVisor::alimentaGuion()
{
    if (saliendo)
    {
        return;
    }
    // A line goes when the previous one has been taken: nothing queued, the command (if
    // any) back in its wait.
    if (!cad::ColaMensajes::delHilo().vacia())
    {
        QTimer::singleShot(1, this, [this]() { alimentaGuion(); });
        return;
    }
    if (lineaGuion >= opciones.guion.size())
    {
        terminaGuion();
        return;
    }
    const QString linea = opciones.guion[lineaGuion++];
    QTimer::singleShot(0, this, [this]() { alimentaGuion(); });
    entraLinea(linea);
}

void VentanaVisor::terminaGuion()
{
    refresca();
    if (!opciones.captura.isEmpty())
    {
        QString error;
        if (!guardaCaptura(opciones.captura, error))
        {
            salida << "captura: " << texto(error) << '\n';
        }
    }
    if (opciones.salAlAcabar)
    {
        sesion->termina();
        compruebaFin();
    }
}

bool VentanaVisor::guardaCaptura(const QString& fichero, QString& error)
{
    vista->update();
    const QImage imagen = grab().toImage();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (imagen.isNull() || !imagen.save(&buffer, "PNG"))
    {
        error = QStringLiteral("no se pudo componer la imagen de la ventana");
        return false;
    }
    try
    {
        cad::FicheroAtomico f(texto(fichero));
        if (f.abierto())
        {
            f.escribe(bytes.constData(), static_cast<size_t>(bytes.size()));
        }
        if (!f.confirma())
        {
            error = desde(f.mensaje());
            return false;
        }
    }
    catch (const std::exception& e)
    {
        error = QString::fromUtf8(e.what());
        return false;
    }
    return true;
}

// ---------------------------------------------------------------------------------------
// Panels

void VentanaVisor::programaPaneles()
{
    if (panelesProgramados)
    {
        return;
    }
    panelesProgramados = true;
    QTimer::singleShot(0, this,
                       [this]()
                       {
                           panelesProgramados = false;
                           rellenaCapas();
                           rellenaPropiedades();
                       });
}

void VentanaVisor::rellenaCapas()
{
    Fendrix::WrapDibujoCAD& dibujo = sesion->fachada();
    rellenando = true;
    const int n = dibujo.numeroCapas();
    const std::string actual = dibujo.capaActual();
    tablaCapas->setRowCount(n);
    const auto casilla = [](bool marcada)
    {
        auto* item = new QTableWidgetItem;
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsUserCheckable);
        item->setCheckState(marcada ? Qt::Checked : Qt::Unchecked);
        return item;
    };
    for (int i = 0; i < n; ++i)
    {
        const std::string nombre = dibujo.capa(i);
        auto* itemNombre = new QTableWidgetItem(desde(nombre));
        itemNombre->setFlags(Qt::ItemIsEnabled);
        tablaCapas->setItem(i, kColNombre, itemNombre);
        tablaCapas->setItem(i, kColVisible, casilla(dibujo.capaVisible(nombre)));
        tablaCapas->setItem(i, kColBloqueada, casilla(dibujo.capaBloqueada(nombre)));
        int32_t r = 0;
        int32_t g = 0;
        int32_t b = 0;
        dibujo.getColorCapa(nombre, r, g, b);
        auto* muestra = new QTableWidgetItem;
        muestra->setFlags(Qt::ItemIsEnabled);
        muestra->setBackground(QColor(r, g, b));
        muestra->setToolTip(QString::asprintf("%d, %d, %d (doble clic para cambiarlo)", r, g, b));
        tablaCapas->setItem(i, kColColor, muestra);
        tablaCapas->setItem(i, kColActual, casilla(nombre == actual));
    }
    rellenando = false;
}

void VentanaVisor::capaEditada(QTableWidgetItem* item)
{
    if (rellenando || item == nullptr)
    {
        return;
    }
    Fendrix::WrapDibujoCAD& dibujo = sesion->fachada();
    const QTableWidgetItem* itemNombre = tablaCapas->item(item->row(), kColNombre);
    if (itemNombre == nullptr)
    {
        return;
    }
    const std::string nombre = texto(itemNombre->text());
    const bool marcada = item->checkState() == Qt::Checked;
    bool ok = true;
    switch (item->column())
    {
        case kColVisible:
            ok = dibujo.visibilidadCapa(nombre, marcada);
            break;
        case kColBloqueada:
            ok = dibujo.bloqueaCapa(nombre, marcada);
            break;
        case kColActual:
            ok = !marcada || dibujo.capaActual(nombre);
            break;
        default:
            return;
    }
    if (!ok)
    {
        salida << "La capa " << nombre << " no admite el cambio\n";
    }
    if (!dibujo.mDibujo->redibujar)
    {
        dibujo.redibuja();
    }
    refresca();
    programaPaneles();
}

void VentanaVisor::colorCapaPulsado(int fila, int columna)
{
    if (columna != kColColor || tablaCapas->item(fila, kColNombre) == nullptr)
    {
        return;
    }
    Fendrix::WrapDibujoCAD& dibujo = sesion->fachada();
    const std::string nombre = texto(tablaCapas->item(fila, kColNombre)->text());
    int32_t r = 0;
    int32_t g = 0;
    int32_t b = 0;
    dibujo.getColorCapa(nombre, r, g, b);
    const QColor color = QColorDialog::getColor(
        QColor(r, g, b), this, QStringLiteral("Color de la capa ") + desde(nombre));
    if (!color.isValid())
    {
        return;
    }
    if (!dibujo.colorCapa(nombre, color.red(), color.green(), color.blue()))
    {
        salida << "La capa " << nombre << " no admite el color\n";
    }
    if (!dibujo.mDibujo->redibujar)
    {
        dibujo.redibuja();
    }
    refresca();
    programaPaneles();
}

void VentanaVisor::rellenaPropiedades()
{
    Fendrix::WrapDibujoCAD& dibujo = sesion->fachada();
    rellenando = true;
    tablaPropiedades->clearSpans();
    tablaPropiedades->setRowCount(0);
    std::vector<int64_t> seleccion;
    dibujo.getEntidadesSeleccionadas(seleccion);
    cad::Entidad* e = seleccion.empty() ? nullptr : entidadDe(dibujo, seleccion.front());
    if (e == nullptr)
    {
        rellenando = false;
        return;
    }
    const auto cabecera = [this](const QString& t)
    {
        const int fila = tablaPropiedades->rowCount();
        tablaPropiedades->insertRow(fila);
        auto* item = new QTableWidgetItem(t);
        item->setFlags(Qt::ItemIsEnabled);
        QFont negrita = item->font();
        negrita.setBold(true);
        item->setFont(negrita);
        tablaPropiedades->setItem(fila, 0, item);
        tablaPropiedades->setSpan(fila, 0, 1, 2);
    };
    if (seleccion.size() > 1)
    {
        cabecera(QStringLiteral("%1 seleccionadas; la primera:").arg(seleccion.size()));
    }
    for (int categoria = 0; categoria < e->numeroCategorias(); ++categoria)
    {
        cabecera(desde(e->nombreCategoria(categoria)));
        for (int i = 0; i < e->numeroPropiedadesCategoria(categoria); ++i)
        {
            cad::Prop p;
            if (!e->getPropiedad(categoria, i, p))
            {
                continue;
            }
            const int fila = tablaPropiedades->rowCount();
            tablaPropiedades->insertRow(fila);
            auto* nombre = new QTableWidgetItem(desde(p.nombre));
            nombre->setFlags(Qt::ItemIsEnabled);
            auto* valor = new QTableWidgetItem(valorMostrado(p));
            const bool editable = !p.soloLectura && p.tipo != cad::TipoProp::ListaCoordenadas &&
                                  p.tipo != cad::TipoProp::Leyenda;
            valor->setFlags(editable ? Qt::ItemIsEnabled | Qt::ItemIsEditable : Qt::ItemIsEnabled);
            valor->setData(kRolCategoria, categoria);
            valor->setData(kRolIndice, i);
            valor->setData(kRolTipo, static_cast<int>(p.tipo));
            tablaPropiedades->setItem(fila, 0, nombre);
            tablaPropiedades->setItem(fila, 1, valor);
        }
    }
    rellenando = false;
}

void VentanaVisor::propiedadEditada(QTableWidgetItem* item)
{
    if (rellenando || item == nullptr || item->column() != 1)
    {
        return;
    }
    Fendrix::WrapDibujoCAD& dibujo = sesion->fachada();
    std::vector<int64_t> seleccion;
    dibujo.getEntidadesSeleccionadas(seleccion);
    cad::Entidad* e = seleccion.empty() ? nullptr : entidadDe(dibujo, seleccion.front());
    if (e == nullptr)
    {
        return;
    }
    const int categoria = item->data(kRolCategoria).toInt();
    const int indice = item->data(kRolIndice).toInt();
    cad::Prop p;
    if (!e->getPropiedad(categoria, indice, p))
    {
        return;
    }
    QString error;
    bool escrita = false;
    if (p.tipo == cad::TipoProp::Enumerado)
    {
        // The choice goes by its position among the texts the sheet offers.
        const std::string elegido = texto(item->text().trimmed());
        for (int i = 0; i < e->numeroValoresEnumerados(categoria, indice); ++i)
        {
            std::string t;
            if (e->valorEnumerado(categoria, indice, i, t) && t == elegido)
            {
                escrita = e->setEnumerado(categoria, indice, i);
            }
        }
        error = QStringLiteral("no es una de las opciones");
    }
    else if (tomaValor(item->text(), p, error))
    {
        escrita = e->setPropiedad(categoria, indice, p);
        error = QStringLiteral("la entidad no la admite");
    }
    if (!escrita)
    {
        salida << p.nombre << ": " << texto(error) << '\n';
    }
    else
    {
        // The sheet changed the entity behind the editor's back: the drawing is marked
        // changed and drawn again. The write is not an undo step of the kernel's.
        dibujo.redibuja();
    }
    refresca();
    programaPaneles();
}

// ---------------------------------------------------------------------------------------
// Files

bool VentanaVisor::abreInicial(const QString& fichero)
{
    return sesion->abreInicial(texto(fichero));
}

bool VentanaVisor::confirmaDescartar()
{
    if (!sesion->fachada().hayCambios())
    {
        return true;
    }
    const auto r = QMessageBox::question(
        this, QStringLiteral("Cambios sin guardar"),
        QStringLiteral("El dibujo tiene cambios sin guardar. ¿Guardarlos antes?"),
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    if (r == QMessageBox::Save)
    {
        guarda(false);
        return !sesion->fachada().hayCambios();
    }
    return r == QMessageBox::Discard;
}

void VentanaVisor::abre()
{
    if (sesion->ocupada())
    {
        salida << "abre: no con una orden en curso (esc la cancela)\n";
        return;
    }
    if (!confirmaDescartar())
    {
        return;
    }
    const QString f = QFileDialog::getOpenFileName(this, QStringLiteral("Abrir dibujo"), QString(),
                                                   QStringLiteral("Dibujos (*.cad)"));
    if (!f.isEmpty())
    {
        orden({"abre", texto(f)});
    }
}

QString VentanaVisor::pideDestino(const QString& titulo, const QString& inicial,
                                  const QString& filtro, const QString& extension)
{
    QString f = QFileDialog::getSaveFileName(this, titulo, inicial, filtro);
    if (!f.isEmpty() && QFileInfo(f).suffix().isEmpty())
    {
        f += extension;
    }
    return f;
}

void VentanaVisor::guarda(bool comoNuevo)
{
    QString f = desde(sesion->fichero());
    if (comoNuevo || f.isEmpty())
    {
        f = pideDestino(QStringLiteral("Guardar dibujo"), f, QStringLiteral("Dibujos (*.cad)"),
                        QStringLiteral(".cad"));
        if (f.isEmpty())
        {
            return;
        }
    }
    orden({"guarda", texto(f)});
}

void VentanaVisor::exportaDXF()
{
    const QString f = pideDestino(QStringLiteral("Exportar DXF"), QString(),
                                  QStringLiteral("DXF (*.dxf)"), QStringLiteral(".dxf"));
    if (!f.isEmpty())
    {
        orden({"dxf", texto(f)});
    }
}

void VentanaVisor::importa(bool obj)
{
    if (sesion->ocupada())
    {
        salida << "importa: no con una orden en curso (esc la cancela)\n";
        return;
    }
    const QString f = QFileDialog::getOpenFileName(
        this, obj ? QStringLiteral("Importar OBJ") : QStringLiteral("Importar DXF"), QString(),
        obj ? QStringLiteral("OBJ (*.obj)") : QStringLiteral("DXF (*.dxf)"));
    if (f.isEmpty())
    {
        return;
    }
    Fendrix::WrapDibujoCAD& dibujo = sesion->fachada();
    std::vector<int64_t> handles;
    const int antes = dibujo.getEntidades(handles);
    bool ok = false;
    try
    {
        ok = obj ? dibujo.importaOBJ(texto(f)) : dibujo.importaDXF(texto(f));
    }
    catch (const std::exception& e)
    {
        salida << "importa: " << e.what() << '\n';
    }
    const int despues = dibujo.getEntidades(handles);
    salida << (ok ? "Importado " : "No se pudo importar ") << texto(f) << ": " << despues - antes
           << " entidades nuevas\n";
    dibujo.redibuja();
    refresca();
    programaPaneles();
}

void VentanaVisor::closeEvent(QCloseEvent* e)
{
    if (saliendo || sesion->terminada())
    {
        e->accept();
        return;
    }
    if (!confirmaDescartar())
    {
        e->ignore();
        return;
    }
    if (sesion->ocupada())
    {
        // The waiting command is cancelled from the queue; the window goes when it has
        // unwound (compruebaFin).
        e->ignore();
        sesion->termina();
        return;
    }
    e->accept();
}

}  // namespace visor
