// Foto360: a 360-degree photograph, a sphere around the station textured from inside.
#pragma once

#include <cstdint>

#include "entidades/Esfera.h"

namespace cad
{

// A sphere of its own divisions, turned by roll, pitch and yaw about its centre. Unlike the
// sphere it is never without its mesh: the constructor makes it, and after a read or a change
// the coordinates (and so the extent) make it again before they answer.
class Foto360 : public Esfera
{
public:
    // Centre at the origin, radius 1, 60 by 20 divisions, no angles, painted with textures;
    // the entity a reader fills, so its mesh waits until it is needed.
    Foto360();
    // Painted with textures and tessellated at once.
    Foto360(const Punto3<double>& centroFoto, double radioFoto, int32_t meridianos,
            int32_t paralelos, double rollFoto, double pitchFoto, double yawFoto);

    const char* etiqueta() const override { return kFirmaEntidadFoto360; }
    // Prefix and transform of EntidadTransformada, centro, radio, material, anchura and
    // altura as u32, roll, pitch, yaw.
    void escribe(SerializadorEscrituraBase& w) override;
    // False on a short body. Divisions out of range (see divisionesAdmisibles) are kept as
    // read and give an empty mesh.
    bool lee(SerializadorLecturaBase& r) override;
    Entidad* clona() const override { return new Foto360(*this); }

    // The vertex records of the mesh, made again first when it is out of date.
    int numCoordenadas() const override;
    const Punto3<double>* coordenada(int i) const override;

    // As the sphere, after dropping the mesh's per-vertex colours: the photograph alone
    // colours it.
    void dibuja(PantallaCAD& p) const override;
    // anchura meridians and altura parallels, then turned about the centre by
    // T(centro) * Rz(yaw) * Ry(3.1415926535897 - pitch) * Rx(roll) * T(-centro): roll first,
    // yaw last.
    void teselaEsfera(Modelo3D& m) const override;

    int32_t anchura = 60;  // meridians of the tessellation
    int32_t altura = 20;   // parallels of the tessellation
    double roll = 0.0;
    double pitch = 0.0;
    double yaw = 0.0;
};

}  // namespace cad
