// tarvelo-visor: the desktop viewer. A drawing in a 3D view with the session's command line.
#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QSurfaceFormat>
#include <QTextStream>
#include <clocale>
#include <iostream>

#include "VentanaVisor.h"

namespace
{

int uso()
{
    std::cerr << "Uso: tarvelo-visor [FICHERO.cad] [--guion GUION.txt] [--sal]\n"
                 "                    [--tamano ANCHOxALTO] [--captura IMAGEN.png]\n"
                 "  --guion     pasa las líneas del fichero por la línea de órdenes, como\n"
                 "              tecleadas; \"clic X Y [derecho]\" pulsa el pixel (X, Y) de la\n"
                 "              vista, y hacia arriba. Una orden que falla detiene el guion\n"
                 "              (código 1).\n"
                 "  --sal       termina al acabar el guion, descartando los cambios\n"
                 "  --tamano    fija el tamaño de la vista en pixeles; con 800x600 y un dibujo\n"
                 "              nuevo, el pixel (X, Y) muestra el punto (X, Y, 0)\n"
                 "  --captura   guarda una imagen de la ventana al acabar el guion\n";
    return 2;
}

// The script's lines; false when the file is not a regular file that reads.
bool leeGuion(const QString& ruta, QStringList& lineas)
{
    QFile f(ruta);
    if (!QFileInfo(ruta).isFile() || !f.open(QIODevice::ReadOnly))
    {
        return false;
    }
    QTextStream s(&f);
    s.setCodec("UTF-8");
    while (!s.atEnd())
    {
        lineas << s.readLine();
    }
    return true;
}

}  // namespace

int main(int argc, char** argv)
{
    // The renderer needs OpenGL 3.3 core; the default format has to be set before the
    // application makes any context.
    QSurfaceFormat formato;
    formato.setVersion(3, 3);
    formato.setProfile(QSurfaceFormat::CoreProfile);
    formato.setDepthBufferSize(24);
    formato.setStencilBufferSize(8);
    QSurfaceFormat::setDefaultFormat(formato);

    QApplication aplicacion(argc, argv);
    // Qt takes the user's locale; the kernel and the session read and write numbers with a
    // point, whatever the language.
    std::setlocale(LC_NUMERIC, "C");

    visor::VentanaVisor::opciones_t opciones;
    QString fichero;
    const QStringList argumentos = QCoreApplication::arguments();
    for (int i = 1; i < argumentos.size(); ++i)
    {
        const QString& a = argumentos[i];
        const bool hayValor = i + 1 < argumentos.size();
        if (a == QLatin1String("--guion") && hayValor)
        {
            const QString ruta = argumentos[++i];
            if (!leeGuion(ruta, opciones.guion))
            {
                std::cerr << "tarvelo-visor: no se pudo leer el guion " << ruta.toStdString()
                          << "\n";
                return 1;
            }
            opciones.detieneAlFallar = true;
        }
        else if (a == QLatin1String("--sal"))
        {
            opciones.salAlAcabar = true;
        }
        else if (a == QLatin1String("--captura") && hayValor)
        {
            opciones.captura = argumentos[++i];
        }
        else if (a == QLatin1String("--tamano") && hayValor)
        {
            const QStringList partes = argumentos[++i].split(QLatin1Char('x'));
            bool okAncho = false;
            bool okAlto = false;
            const int ancho = partes.size() == 2 ? partes[0].toInt(&okAncho) : 0;
            const int alto = partes.size() == 2 ? partes[1].toInt(&okAlto) : 0;
            if (!okAncho || !okAlto || ancho < 1 || alto < 1 || ancho > 16384 || alto > 16384)
            {
                return uso();
            }
            opciones.tamanoVista = QSize(ancho, alto);
        }
        else if (!a.startsWith(QLatin1String("--")) && fichero.isEmpty())
        {
            fichero = a;
        }
        else
        {
            return uso();
        }
    }

    visor::VentanaVisor ventana(opciones);
    if (!fichero.isEmpty() && !ventana.abreInicial(fichero))
    {
        return 1;
    }
    ventana.show();
    return QApplication::exec();
}
