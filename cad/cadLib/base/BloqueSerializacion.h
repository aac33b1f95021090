// A framed block of a document file: tag, self-inclusive length, body.
#pragma once

#include <cstdint>

namespace cad
{

// Width of a block's length field.
enum tipoBloque_e
{
    kBloque16 = 0,
    kBloque32 = 1,
    kBloque64 = 2
};

// The caller owns a block; deleting it closes the block (a writer patches the length).
class BloqueSerializacion
{
public:
    virtual ~BloqueSerializacion() = default;
    // True when the block's tag equals `tag` byte for byte.
    virtual bool esTipo(const char* tag) const { (void)tag; return false; }
    // Copies the tag, at most 20 bytes with its terminator.
    virtual void tipo(char* destino) const { destino[0] = '\0'; }
    // Bytes of the block not read yet.
    virtual uint64_t restante() const { return 0; }
};

}  // namespace cad
