// Base of everything that lives in a document file: tag, persistent id and unknown bytes.
#pragma once

#include <cstdint>

namespace cad
{

class SerializadorEscrituraBase;
class SerializadorLecturaBase;
class BloqueSerializacion;

class ObjetoCAD
{
public:
    ObjetoCAD() = default;
    // Copies keep the id and carry their own copy of the unknown bytes, so that a copied
    // layer from a newer file still writes them back and no buffer is freed twice.
    ObjetoCAD(const ObjetoCAD& otro);
    ObjetoCAD& operator=(const ObjetoCAD& otro);

    // The block tag of the class; the empty string for values written inside their owner.
    virtual const char* etiqueta() const = 0;
    virtual void escribe(SerializadorEscrituraBase& w) = 0;
    // True on success; each class tells how far it reads after a failed field.
    virtual bool lee(SerializadorLecturaBase& r) = 0;
    virtual ~ObjetoCAD();

    // Closes a read block: keeps what the class did not read as datosDesconocidos, so that
    // the next save puts it back at the block's end. Deletes `bloque`. False only when the
    // tail could not be read (also when the block claims more bytes than the file holds).
    bool finLectura(SerializadorLecturaBase& r, BloqueSerializacion* bloque);
    // Writes the kept tail; every class calls it right before closing its block.
    void escribeDatosDesconocidos(SerializadorEscrituraBase& w);
    // id = base + n, n widened with its sign. The base is the object's unique key, which the
    // save's id rule takes from a deterministic source instead of the object's address.
    void setId(uint64_t base, int32_t n);

    uint64_t id = 0;
    unsigned char* datosDesconocidos = nullptr;  // malloc'ed; null if none
    uint32_t tamanoDatosDesconocidos = 0;
};

}  // namespace cad
