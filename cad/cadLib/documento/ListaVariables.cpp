// ListaVariables: defaults, lookup, typed setters and the "Vbles.1" block.
#include "documento/ListaVariables.h"

#include <cstring>
#include <memory>

#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"

namespace cad
{

namespace
{

// The class of a tag read from a file; null for a tag this version does not know.
std::unique_ptr<VariableBase> creaVariable(const char* tag)
{
    if (std::strcmp(tag, "VIn") == 0)
    {
        return std::make_unique<VariableInt>("");
    }
    if (std::strcmp(tag, "VDb") == 0)
    {
        return std::make_unique<VariableDob>("");
    }
    if (std::strcmp(tag, "VSt") == 0)
    {
        return std::make_unique<VariableStr>("");
    }
    if (std::strcmp(tag, "V3D") == 0)
    {
        return std::make_unique<Variable3D>("");
    }
    return nullptr;
}

template <class V, class T>
void ponValor(ListaVariables& lista, const std::string& nombre, const T& valor)
{
    for (VariableBase*& variable : lista)
    {
        if (variable->nombre != nombre)
        {
            continue;
        }
        if (auto* mismaClase = dynamic_cast<V*>(variable))
        {
            mismaClase->valor = valor;
            return;
        }
        auto nueva = std::make_unique<V>(nombre, valor);
        delete variable;
        variable = nueva.release();
        return;
    }
    auto nueva = std::make_unique<V>(nombre, valor);
    lista.push_back(nueva.get());
    nueva.release();
}

template <class V, class T>
bool tomaValor(const ListaVariables& lista, const std::string& nombre, T& valor)
{
    const auto* variable = dynamic_cast<const V*>(lista.busca(nombre));
    if (variable == nullptr)
    {
        return false;
    }
    valor = variable->valor;
    return true;
}

}  // namespace

ListaVariables::~ListaVariables()
{
    vacia();
}

void ListaVariables::vacia()
{
    for (VariableBase* variable : *this)
    {
        delete variable;
    }
    clear();
}

VariableBase* ListaVariables::busca(const std::string& nombre) const
{
    for (VariableBase* variable : *this)
    {
        if (variable->nombre == nombre)
        {
            return variable;
        }
    }
    return nullptr;
}

void ListaVariables::creaDefectos()
{
    inserta(new VariableStr("clayer", "0"));
    inserta(new VariableStr("cecolor", "256"));
    inserta(new Variable3D("orgplref", Vector3D<double>(0.0, 0.0, 0.0)));
    inserta(new Variable3D("normplref", Vector3D<double>(0.0, 0.0, 1.0)));
    inserta(new VariableStr("cview", ""));
    inserta(new VariableStr("textstyle", "standar"));
}

void ListaVariables::inserta(VariableBase* variable)
{
    std::unique_ptr<VariableBase> nueva(variable);
    if (!nueva)
    {
        return;
    }
    for (VariableBase*& actual : *this)
    {
        if (actual->nombre == nueva->nombre)
        {
            if (actual != nueva.get())
            {
                delete actual;
                actual = nueva.get();
            }
            nueva.release();
            return;
        }
    }
    push_back(nueva.get());
    nueva.release();
}

void ListaVariables::setValor(const std::string& nombre, const std::string& valor)
{
    ponValor<VariableStr>(*this, nombre, valor);
}

void ListaVariables::setValor(const std::string& nombre, int32_t valor)
{
    ponValor<VariableInt>(*this, nombre, valor);
}

void ListaVariables::setValor(const std::string& nombre, double valor)
{
    ponValor<VariableDob>(*this, nombre, valor);
}

void ListaVariables::setValor(const std::string& nombre, const Vector3D<double>& valor)
{
    ponValor<Variable3D>(*this, nombre, valor);
}

bool ListaVariables::getValor3D(const std::string& nombre, Punto3<double>& valor) const
{
    Vector3D<double> v;
    if (!tomaValor<Variable3D>(*this, nombre, v))
    {
        return false;
    }
    valor = Punto3<double>(v.x, v.y, v.z);
    return true;
}

bool ListaVariables::getValor(const std::string& nombre, std::string& valor) const
{
    return tomaValor<VariableStr>(*this, nombre, valor);
}

bool ListaVariables::getValor(const std::string& nombre, int32_t& valor) const
{
    return tomaValor<VariableInt>(*this, nombre, valor);
}

bool ListaVariables::getValor(const std::string& nombre, double& valor) const
{
    return tomaValor<VariableDob>(*this, nombre, valor);
}

void ListaVariables::escribe(SerializadorEscrituraBase& w)
{
    std::unique_ptr<BloqueSerializacion> bloque(w.nuevoBloque64(etiqueta()));
    w.escribeLongitud64(size());
    for (VariableBase* variable : *this)
    {
        std::unique_ptr<BloqueSerializacion> bloqueVariable(w.nuevoBloque16(variable->etiqueta()));
        variable->escribe(w);
        // The list's tail, not the variable's: see the class comment.
        escribeDatosDesconocidos(w);
        bloqueVariable.reset();  // patches the length
    }
    escribeDatosDesconocidos(w);
    bloque.reset();
}

bool ListaVariables::lee(SerializadorLecturaBase& r)
{
    vacia();
    creaDefectos();
    std::unique_ptr<BloqueSerializacion> bloque(r.leeBloque64());
    if (!bloque->esTipo(etiqueta()))
    {
        finLectura(r, bloque.release());
        return false;
    }
    uint64_t cuenta = 0;
    if (!r.leeLongitud64(cuenta))
    {
        return false;
    }
    // An untrusted count: no reserve, and the loop ends at the first failed variable or
    // tail, or when no byte is left. A valid file reads the same as with the count alone
    // (see ListaCapas).
    for (auto n = static_cast<int64_t>(cuenta); n > 0 && r.bytesDisponibles() > 0; --n)
    {
        std::unique_ptr<BloqueSerializacion> bloqueVariable(r.leeBloque16());
        char tag[20];
        bloqueVariable->tipo(tag);
        std::unique_ptr<VariableBase> variable = creaVariable(tag);
        if (variable)
        {
            if (!variable->lee(r))
            {
                break;
            }
            push_back(variable.get());
            variable.release();
        }
        // finLectura on the list with the variable's block is exactly the rule for the
        // tail: a non-empty rest replaces the list's buffer, an empty one leaves it.
        if (!finLectura(r, bloqueVariable.release()))
        {
            break;
        }
    }
    return finLectura(r, bloque.release());
}

}  // namespace cad
