// Links between persisted objects: a pointer at run time, an id on disk.
#pragma once

#include <cstdint>

#include "base/ObjetoCAD.h"

namespace cad
{

class ReferenciaObjetoCAD
{
public:
    ReferenciaObjetoCAD() = default;
    explicit ReferenciaObjetoCAD(ObjetoCAD* o) : objeto(o) {}
    ReferenciaObjetoCAD(ObjetoCAD* o, uint64_t i) : objeto(o), id(i) {}
    ReferenciaObjetoCAD(const ReferenciaObjetoCAD&) = default;
    ReferenciaObjetoCAD& operator=(const ReferenciaObjetoCAD&) = default;
    virtual ~ReferenciaObjetoCAD() = default;

    // The id that goes to the file: the stored one if set, otherwise the object's, which is
    // then also kept here; 0 with no object.
    uint64_t idParaEscribir()
    {
        if (id == 0 && objeto != nullptr)
        {
            id = objeto->id;
        }
        return id;
    }

    ObjetoCAD* objeto = nullptr;  // not owned
    uint64_t id = 0;
};

// Typed views of the same link; they add no field.
template <class T>
class ReferenciaTipada : public ReferenciaObjetoCAD
{
public:
    ReferenciaTipada() = default;
    explicit ReferenciaTipada(T* o) : ReferenciaObjetoCAD(o) {}
    ReferenciaTipada(T* o, uint64_t i) : ReferenciaObjetoCAD(o, i) {}
    T* get() const { return static_cast<T*>(objeto); }
    void set(T* o, uint64_t i)
    {
        objeto = o;
        id = i;
    }
};

class Capa;
class Material;
class EstiloTexto;

using ReferenciaCapa = ReferenciaTipada<Capa>;
using ReferenciaMaterial = ReferenciaTipada<Material>;
using ReferenciaEstiloTexto = ReferenciaTipada<EstiloTexto>;

}  // namespace cad
