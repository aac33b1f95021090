// ListaVariables: the drawing's owning list of named variables, block "Vbles.1".
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/ObjetoCAD.h"
#include "base/geometria/Punto3.h"
#include "base/geometria/Vector3D.h"
#include "documento/Variables.h"

namespace cad
{

// Owns its variables: vacia(), inserta(), the setValor forms, lee() and the destructor
// delete them. Lookup is linear and takes the first variable of exactly that name.
//
// Block "Vbles.1", u64 length: u64 count, then per variable a u16 block under its tag
// holding its body and the LIST's unknown tail; then the list's unknown tail once more.
// Reading puts every variable's tail into the list's buffer, the last non-empty one winning,
// so a tail seen in one variable is written into every variable on the next save; a
// variable of unknown tag gives no object and its whole body lands in that buffer. The file
// format has always behaved this way and files depend on it.
class ListaVariables : public std::vector<VariableBase*>, public ObjetoCAD
{
public:
    ListaVariables() = default;
    ListaVariables(const ListaVariables&) = delete;
    ListaVariables& operator=(const ListaVariables&) = delete;
    ~ListaVariables() override;

    const char* etiqueta() const override { return "Vbles.1"; }
    void escribe(SerializadorEscrituraBase& w) override;
    // Deletes all variables and installs the defaults first, then appends the file's
    // variables behind them with no test for a name that is already there: lookups thus
    // keep finding the defaults. A block of another tag is kept whole as the list's unknown
    // bytes and gives false. Reading stops at the first variable that fails (it is dropped)
    // or when the file is exhausted; the result is that of finLectura.
    bool lee(SerializadorLecturaBase& r) override;

    // The first variable of exactly that name, or null.
    VariableBase* busca(const std::string& nombre) const;
    // "clayer" "0", "cecolor" "256", "orgplref" (0,0,0), "normplref" (0,0,1), "cview" "",
    // "textstyle" "standar", in this order, each through inserta(): on an empty list they
    // are appended in that order, on a list that holds one of the names it is replaced.
    void creaDefectos();
    // Takes ownership of `variable`. It replaces the first variable of its name, which is
    // deleted, in the same place; otherwise it is appended. Null does nothing.
    void inserta(VariableBase* variable);

    // Assigns the value to the first variable of that name if it has the value's class;
    // if it has another class it is replaced, in its place, by a new one of the value's
    // class; if there is none, one is appended.
    void setValor(const std::string& nombre, const std::string& valor);
    void setValor(const std::string& nombre, int32_t valor);
    void setValor(const std::string& nombre, double valor);
    void setValor(const std::string& nombre, const Vector3D<double>& valor);

    // True when the first variable of that name has the class of the target, which then
    // takes its value; otherwise false and the target is untouched.
    bool getValor3D(const std::string& nombre, Punto3<double>& valor) const;
    bool getValor(const std::string& nombre, std::string& valor) const;
    bool getValor(const std::string& nombre, int32_t& valor) const;
    bool getValor(const std::string& nombre, double& valor) const;

    // Deletes every variable and empties the list.
    void vacia();
};

}  // namespace cad
