// The facade's property sheets and clipboard.
#include <string>
#include <vector>

#include "Fendrix/WrapDibujoCAD.h"
#include "base/Propiedades.h"
#include "editor/EditorDibujo.h"

namespace Fendrix
{

using cad::Prop;
using cad::TipoProp;

// -------------------------------------------------------------------------------------------
// Clipboard and command

void WrapDibujoCAD::cortar()
{
    if (mEditor != nullptr)
    {
        mEditor->cortar();
    }
}

void WrapDibujoCAD::copiar()
{
    if (mEditor != nullptr)
    {
        mEditor->copiar();
    }
}

void WrapDibujoCAD::pegar()
{
    if (mEditor != nullptr)
    {
        mEditor->pegar();
    }
}

bool WrapDibujoCAD::comandoPropiedades()
{
    return mEditor != nullptr && mEditor->comandoPropiedades();
}

// -------------------------------------------------------------------------------------------
// Categories

int32_t WrapDibujoCAD::numeroCategorias(int64_t handle)
{
    return mEditor != nullptr ? mEditor->numeroCategorias(handle) : 0;
}

std::string WrapDibujoCAD::nombreCategoria(int64_t handle, int32_t categoria)
{
    return mEditor != nullptr ? mEditor->nombreCategoria(handle, categoria) : std::string();
}

int32_t WrapDibujoCAD::numeroPropiedadesCategoria(int64_t handle, int32_t categoria)
{
    return mEditor != nullptr ? mEditor->numeroPropiedadesCategoria(handle, categoria) : 0;
}

// -------------------------------------------------------------------------------------------
// Reading a row

// What every reading form hands out: name, kind, text and the read-only flag. `p` keeps the
// whole row for the wider forms.
bool WrapDibujoCAD::leePropiedad(int64_t handle, int32_t categoria, int32_t indice, Prop& p,
                                 std::string& nombre, tipoPropiedad& tipo, std::string& valor,
                                 bool& soloLectura)
{
    if (mEditor == nullptr || !mEditor->getPropiedad(handle, categoria, indice, p))
    {
        return false;
    }
    nombre = p.nombre;
    tipo = static_cast<tipoPropiedad>(p.tipo);
    valor = p.valor;
    soloLectura = p.soloLectura;
    return true;
}

bool WrapDibujoCAD::getPropiedad(int64_t handle, int32_t categoria, int32_t indice,
                                 std::string& nombre, tipoPropiedad& tipo, std::string& valor,
                                 bool& soloLectura)
{
    Prop p;
    return leePropiedad(handle, categoria, indice, p, nombre, tipo, valor, soloLectura);
}

bool WrapDibujoCAD::getPropiedad(int64_t handle, int32_t categoria, int32_t indice,
                                 std::string& nombre, tipoPropiedad& tipo, std::string& valor,
                                 bool& soloLectura, int32_t& colorPorCapa, uint32_t& colorCapa)
{
    Prop p;
    if (!leePropiedad(handle, categoria, indice, p, nombre, tipo, valor, soloLectura))
    {
        return false;
    }
    // Only the by-layer case is written; the host's own value stands otherwise.
    if (p.indiceColor == 256)
    {
        colorPorCapa = 0;
    }
    colorCapa = p.colorCapa;
    return true;
}

bool WrapDibujoCAD::getPropiedad(int64_t handle, int32_t categoria, int32_t indice,
                                 std::string& nombre, tipoPropiedad& tipo, std::string& valor,
                                 bool& soloLectura, int16_t& material, int32_t& idbd)
{
    Prop p;
    if (!leePropiedad(handle, categoria, indice, p, nombre, tipo, valor, soloLectura))
    {
        return false;
    }
    material = p.material;
    idbd = p.idExterno;
    return true;
}

bool WrapDibujoCAD::getPropiedad(int64_t handle, int32_t categoria, int32_t indice,
                                 std::string& nombre, tipoPropiedad& tipo, std::string& valor,
                                 bool& soloLectura, std::vector<double>& coordenadas)
{
    Prop p;
    if (!leePropiedad(handle, categoria, indice, p, nombre, tipo, valor, soloLectura))
    {
        return false;
    }
    coordenadas = {p.x, p.y, p.z};
    return true;
}

bool WrapDibujoCAD::getPropiedad(int64_t handle, const std::string& nombre, double& valor)
{
    return mEditor != nullptr && mEditor->getPropiedad(handle, nombre, valor);
}

bool WrapDibujoCAD::getPropiedad(int64_t handle, const std::string& nombre, int32_t& valor)
{
    int v = 0;
    if (mEditor == nullptr || !mEditor->getPropiedad(handle, nombre, v))
    {
        return false;
    }
    valor = v;
    return true;
}

bool WrapDibujoCAD::getPropiedad(int64_t handle, const std::string& nombre, std::string& valor)
{
    return mEditor != nullptr && mEditor->getPropiedad(handle, nombre, valor);
}

// -------------------------------------------------------------------------------------------
// Writing a row

namespace
{

// The row as it stands, so that what the host does not give keeps its value (a material's
// host id above all, which the write stores back into the material).
Prop filaActual(cad::EditorDibujo& editor, int64_t handle, int32_t categoria, int32_t indice)
{
    Prop p;
    editor.getPropiedad(handle, categoria, indice, p);
    return p;
}

}  // namespace

bool WrapDibujoCAD::setPropiedad(int64_t handle, int32_t categoria, int32_t indice,
                                 const std::string& valor)
{
    if (mEditor == nullptr)
    {
        return false;
    }
    Prop p = filaActual(*mEditor, handle, categoria, indice);
    p.valor = valor;
    // The row's index would win over the text.
    if (p.tipo == TipoProp::Color)
    {
        p.indiceColor = -1;
    }
    return mEditor->setPropiedad(handle, categoria, indice, p);
}

bool WrapDibujoCAD::setPropiedad(int64_t handle, int32_t categoria, int32_t indice,
                                 const std::string& valor, int32_t indiceColor)
{
    if (mEditor == nullptr)
    {
        return false;
    }
    Prop p = filaActual(*mEditor, handle, categoria, indice);
    p.valor = valor;
    p.indiceColor = indiceColor;
    return mEditor->setPropiedad(handle, categoria, indice, p);
}

bool WrapDibujoCAD::setPropiedad(int64_t handle, int32_t categoria, int32_t indice,
                                 int16_t material, int32_t idbd)
{
    if (mEditor == nullptr)
    {
        return false;
    }
    Prop p = filaActual(*mEditor, handle, categoria, indice);
    p.material = material;
    p.idExterno = idbd;
    p.valor = std::to_string(material);
    return mEditor->setPropiedad(handle, categoria, indice, p);
}

bool WrapDibujoCAD::setPropiedad(int64_t handle, int32_t categoria, int32_t indice,
                                 const std::vector<double>& coordenadas)
{
    if (mEditor == nullptr || coordenadas.size() < 3)
    {
        return false;
    }
    Prop p = filaActual(*mEditor, handle, categoria, indice);
    p.x = coordenadas[0];
    p.y = coordenadas[1];
    p.z = coordenadas[2];
    return mEditor->setPropiedad(handle, categoria, indice, p);
}

bool WrapDibujoCAD::setPropiedad(int64_t handle, const std::string& nombre, double valor)
{
    return mEditor != nullptr && mEditor->setPropiedad(handle, nombre, valor);
}

bool WrapDibujoCAD::setPropiedad(int64_t handle, const std::string& nombre, int32_t valor)
{
    return mEditor != nullptr && mEditor->setPropiedad(handle, nombre, static_cast<int>(valor));
}

bool WrapDibujoCAD::setPropiedad(int64_t handle, const std::string& nombre,
                                 const std::string& valor)
{
    return mEditor != nullptr && mEditor->setPropiedad(handle, nombre, valor);
}

// -------------------------------------------------------------------------------------------
// Enumerations and lists

int32_t WrapDibujoCAD::numeroValoresEnumerados(int64_t handle, int32_t categoria, int32_t indice)
{
    return mEditor != nullptr ? mEditor->numeroValoresEnumerados(handle, categoria, indice) : 0;
}

bool WrapDibujoCAD::valorEnumerado(int64_t handle, int32_t categoria, int32_t indice, int32_t i,
                                   std::string& valor)
{
    return mEditor != nullptr && mEditor->valorEnumerado(handle, categoria, indice, i, valor);
}

bool WrapDibujoCAD::getEnumerado(int64_t handle, int32_t categoria, int32_t indice, int32_t& i)
{
    int k = 0;
    if (mEditor == nullptr || !mEditor->getEnumerado(handle, categoria, indice, k))
    {
        return false;
    }
    i = k;
    return true;
}

bool WrapDibujoCAD::setEnumerado(int64_t handle, int32_t categoria, int32_t indice, int32_t i)
{
    return mEditor != nullptr && mEditor->setEnumerado(handle, categoria, indice, i);
}

int32_t WrapDibujoCAD::numeroElementosLista(int64_t handle, int32_t categoria, int32_t indice)
{
    return mEditor != nullptr ? mEditor->numeroElementosLista(handle, categoria, indice) : 0;
}

bool WrapDibujoCAD::getElementoLista(int64_t handle, int32_t categoria, int32_t indice, int32_t i,
                                     double& x, double& y, double& z)
{
    return mEditor != nullptr && mEditor->getElementoLista(handle, categoria, indice, i, x, y, z);
}

bool WrapDibujoCAD::setElementoLista(int64_t handle, int32_t categoria, int32_t indice, int32_t i,
                                     const double* xyz)
{
    return mEditor != nullptr && mEditor->setElementoLista(handle, categoria, indice, i, xyz);
}

}  // namespace Fendrix
