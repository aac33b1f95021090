// Variable bodies: id, name and value, framed by the list.
#include "documento/Variables.h"

#include "base/SerializadorEscrituraBase.h"
#include "base/SerializadorLecturaBase.h"

namespace cad
{

void VariableBase::escribe(SerializadorEscrituraBase& w)
{
    w.escribeLongitud64(id);
}

bool VariableBase::lee(SerializadorLecturaBase& r)
{
    return r.leeLongitud64(id);
}

void VariableInt::escribe(SerializadorEscrituraBase& w)
{
    VariableBase::escribe(w);
    w.escribeCadena(nombre);
    w.escribeEnteroSinSigno(static_cast<uint32_t>(valor));
}

bool VariableInt::lee(SerializadorLecturaBase& r)
{
    VariableBase::lee(r);
    r.leeCadena(nombre);
    uint32_t v = static_cast<uint32_t>(valor);
    const bool ok = r.leeEnteroSinSigno(v);
    valor = static_cast<int32_t>(v);
    return ok;
}

void VariableDob::escribe(SerializadorEscrituraBase& w)
{
    VariableBase::escribe(w);
    w.escribeCadena(nombre);
    w.escribeDoble(valor);
}

bool VariableDob::lee(SerializadorLecturaBase& r)
{
    VariableBase::lee(r);
    r.leeCadena(nombre);
    return r.leeDoble(valor);
}

void VariableStr::escribe(SerializadorEscrituraBase& w)
{
    VariableBase::escribe(w);
    w.escribeCadena(nombre);
    w.escribeCadena(valor);
}

bool VariableStr::lee(SerializadorLecturaBase& r)
{
    VariableBase::lee(r);
    r.leeCadena(nombre);
    return r.leeCadena(valor);
}

void Variable3D::escribe(SerializadorEscrituraBase& w)
{
    VariableBase::escribe(w);
    w.escribeCadena(nombre);
    w.escribeVector3(valor);
}

bool Variable3D::lee(SerializadorLecturaBase& r)
{
    VariableBase::lee(r);
    r.leeCadena(nombre);
    return r.leeVector3(valor);
}

}  // namespace cad
