// Named, typed drawing variables: integer, double, string and 3D vector.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>

#include "base/ObjetoCAD.h"
#include "base/geometria/Vector3D.h"

namespace cad
{

// A variable writes no block of its own: ListaVariables opens a u16 block under the
// variable's tag around escribe() and lee(), and puts its own unknown tail at the block's
// end. The body is u64 id, nombre, then the value.
class VariableBase : public ObjetoCAD
{
public:
    explicit VariableBase(const std::string& nombreVariable) : nombre(nombreVariable) {}
    ~VariableBase() override = default;
    // A new copy of the same class; the caller owns it.
    virtual VariableBase* clona() const = 0;

    // The id alone; each class adds its name and value.
    void escribe(SerializadorEscrituraBase& w) override;
    // Reads the id and gives the result of that read.
    bool lee(SerializadorLecturaBase& r) override;

    std::string nombre;
};

// Variable lee() operations read every field without testing them and give the result of
// the last one, the value.

// "VIn": i32, stored with the unsigned 32-bit writer.
class VariableInt : public VariableBase
{
public:
    explicit VariableInt(const std::string& nombreVariable, int32_t valorInicial = 0)
        : VariableBase(nombreVariable), valor(valorInicial)
    {
    }
    VariableBase* clona() const override { return new VariableInt(*this); }
    const char* etiqueta() const override { return "VIn"; }
    void escribe(SerializadorEscrituraBase& w) override;
    bool lee(SerializadorLecturaBase& r) override;

    int32_t valor;
};

// "VDb": f64.
class VariableDob : public VariableBase
{
public:
    explicit VariableDob(const std::string& nombreVariable, double valorInicial = 0.0)
        : VariableBase(nombreVariable), valor(valorInicial)
    {
    }
    VariableBase* clona() const override { return new VariableDob(*this); }
    const char* etiqueta() const override { return "VDb"; }
    void escribe(SerializadorEscrituraBase& w) override;
    bool lee(SerializadorLecturaBase& r) override;

    double valor;
};

// "VSt": a string.
class VariableStr : public VariableBase
{
public:
    explicit VariableStr(const std::string& nombreVariable, const std::string& valorInicial = "")
        : VariableBase(nombreVariable), valor(valorInicial)
    {
    }
    VariableBase* clona() const override { return new VariableStr(*this); }
    const char* etiqueta() const override { return "VSt"; }
    void escribe(SerializadorEscrituraBase& w) override;
    bool lee(SerializadorLecturaBase& r) override;

    std::string valor;
};

// "V3D": three f64.
class Variable3D : public VariableBase
{
public:
    explicit Variable3D(const std::string& nombreVariable,
                        const Vector3D<double>& valorInicial = Vector3D<double>())
        : VariableBase(nombreVariable), valor(valorInicial)
    {
    }
    VariableBase* clona() const override { return new Variable3D(*this); }
    const char* etiqueta() const override { return "V3D"; }
    void escribe(SerializadorEscrituraBase& w) override;
    bool lee(SerializadorLecturaBase& r) override;

    Vector3D<double> valor;
};

// `v` as the class of its tag ("VIn", "VDb", "VSt", "V3D"), or null when it is of another.
template <class Variable>
Variable* comoVariable(VariableBase* v, const char* etiqueta)
{
    return v != nullptr && std::strcmp(v->etiqueta(), etiqueta) == 0 ? static_cast<Variable*>(v)
                                                                     : nullptr;
}

}  // namespace cad
