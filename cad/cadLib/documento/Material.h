// Material: colour, shine and texture of faces, tied to a record of the host.
#pragma once

#include <cstdint>
#include <string>

#include "base/ObjetoCAD.h"
#include "base/geometria/Vector3D.h"

namespace cad
{

// Block "Mt1", u16 length: u64 persistent id, u16 id, u32 idExterno, textura, i32 colour,
// f32 shine, then the unknown tail.
//
// Two ids: the field `id` below is the kernel's small id, which faces and entities store;
// it hides the persistent u64 ObjetoCAD::id, which the save's id rule and the file use.
// Reach that one as ObjetoCAD::id (on a Material, `m.ObjetoCAD::id`).
class Material : public ObjetoCAD
{
public:
    // idExterno 0, no texture, colour 0xFFFFFFFF, shine 1.0, components zero.
    explicit Material(int16_t idMaterial);
    // A copy takes every persisted field (and the persistent id and unknown tail) but not
    // the components: the first two become zero and the third (0.8, 0.8, 0.8).
    Material(const Material& otro);
    Material& operator=(const Material& otro);

    const char* etiqueta() const override { return "Mt1"; }
    void escribe(SerializadorEscrituraBase& w) override;
    // False for a block of another tag. Otherwise every field is read even after one fails,
    // and the result is the AND of all of them and of finLectura.
    bool lee(SerializadorLecturaBase& r) override;

    uint32_t color() const { return color_; }
    void setColor(uint32_t c) { color_ = c; }
    float brillo() const { return brillo_; }
    // Clamped: 1.0 or more gives 1.0, 0.0 or less gives 0.0.
    void setBrillo(float b);
    const std::string& textura() const { return textura_; }
    void setTextura(const std::string& t) { textura_ = t; }
    bool tieneTextura() const { return !textura_.empty(); }
    void setComponentes(const Vector3D<float>& a, const Vector3D<float>& b,
                        const Vector3D<float>& c);
    // A new copy, by the copy rule above; the caller owns it.
    Material* clona() const;

    // Same texture, colour and shine; the ids and the components do not count.
    bool operator==(const Material& otro) const;

    int32_t idExterno = 0;  // the host's id
    int16_t id;             // the kernel's id, see above
    std::string textura_;   // image path; empty means none
    uint32_t color_ = 0xFFFFFFFF;
    float brillo_ = 1.0F;            // between 0.0 and 1.0
    Vector3D<float> componentes[3];  // colour components for OBJ input; not persisted
};

}  // namespace cad
