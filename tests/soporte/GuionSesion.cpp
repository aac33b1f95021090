#include "soporte/GuionSesion.h"

#include <gtest/gtest.h>

#include "base/ColaMensajes.h"
#include "documento/Vista.h"

namespace cad::prueba
{

GuionSesion::GuionSesion(EditorDibujo& e, PantallaReferencia& p) : editor(e), pantalla(p)
{
    ColaMensajes::delHilo().setAlVaciarse(
        [this]()
        {
            ++agotado;
            if (agotarEsFallo && agotado == 1)
            {
                ADD_FAILURE() << "the command waited for input that the script does not give";
            }
            // A command that keeps asking after many cancels would loop for ever.
            if (agotado > 1000)
            {
                std::abort();
            }
            ColaMensajes::delHilo().publica([this]() { editor.cancelaComando(); });
        });
}

GuionSesion::~GuionSesion()
{
    // What the command left unread runs now rather than in the next test; the hook stays
    // meanwhile, so a leftover step that starts a command cannot block.
    agotarEsFallo = false;
    ColaMensajes& cola = ColaMensajes::delHilo();
    while (!cola.vacia())
    {
        cola.ejecutaPendientes();
    }
    cola.setAlVaciarse(nullptr);
}

GuionSesion& GuionSesion::escribe(const std::string& linea)
{
    ColaMensajes::delHilo().publica([this, linea]() { editor.introPulsado(linea.c_str()); });
    return *this;
}

GuionSesion& GuionSesion::clic(int x, int y, int boton)
{
    ColaMensajes::delHilo().publica([this, x, y, boton]() { pantalla.clic(x, y, boton); });
    return *this;
}

GuionSesion& GuionSesion::clicEn(const Punto3<double>& p, int boton)
{
    const Punto2<double> s = pantalla.proyecta(p);
    return clic(static_cast<int>(std::lround(s.x)), static_cast<int>(std::lround(s.y)), boton);
}

GuionSesion& GuionSesion::mueve(int x, int y)
{
    ColaMensajes::delHilo().publica([this, x, y]() { pantalla.setPosicionCursor(x, y); });
    return *this;
}

GuionSesion& GuionSesion::cancela()
{
    ColaMensajes::delHilo().publica([this]() { editor.cancelaComando(); });
    return *this;
}

GuionSesion& GuionSesion::ejecuta(std::function<void()> accion)
{
    ColaMensajes::delHilo().publica(std::move(accion));
    return *this;
}

SesionEditor::SesionEditor()
{
    dibujo.nuevoDocumento();
    // The drawing's view is what the paint pass places on the display: make it ours.
    dibujo.vistaActual->posicion = Punto3<double>(400, 300, 100);
    dibujo.vistaActual->objetivo = Punto3<double>(400, 300, 0);
    dibujo.vistaActual->arriba = Vector3D<double>(0, 1, 0);
    dibujo.vistaActual->zoom = 1.0;
    pantalla.setCamara(dibujo.vistaActual->posicion, dibujo.vistaActual->objetivo,
                       dibujo.vistaActual->arriba, 1.0, 0.0);
    pantalla.grabando = false;
    editor = new EditorDibujo(&dibujo, &pantalla);
    editor->setSalidaTexto([this](const char* t) { textos.emplace_back(t); });
    editor->setReactorComandoInteractivo(
        [this](EditorDibujo::enumEstadoComandoInteractivo e) {
            estados.push_back(e == EditorDibujo::kInicio ? 'I'
                              : e == EditorDibujo::kFin  ? 'F'
                                                         : 'C');
        });
}

SesionEditor::~SesionEditor()
{
    delete editor;
}

std::vector<std::string> SesionEditor::prompts() const
{
    std::vector<std::string> t;
    for (const std::string& x : textos)
    {
        if (!x.empty())
        {
            t.push_back(x);
        }
    }
    return t;
}

void SesionEditor::pinta()
{
    dibujo.redibujar = true;
    dibujo.inicioDibujo(pantalla);
    dibujo.dibuja(pantalla);
    dibujo.finEntidades(pantalla);
    dibujo.finDibujo(pantalla);
}

void SesionEditor::pintaSuperposicion()
{
    editor->dibuja(pantalla, true);
}

}  // namespace cad::prueba
