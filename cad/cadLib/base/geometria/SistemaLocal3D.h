// SistemaLocal3D: a coordinate frame (origin and three axes) with its matrices to and from it.
#pragma once

#include "base/geometria/Matriz4.h"
#include "base/geometria/Punto3.h"
#include "base/geometria/Vector3D.h"
#include "base/geometria/Vector4D.h"

namespace cad
{

// The matrices are derived data, rebuilt by setVectoresXYZ and setOrigen only: code that
// writes the fields directly must call one of them afterwards. No inverse is ever computed;
// both directions are kept. The default frame is the global one.
template <typename T>
struct SistemaLocal3D
{
    Punto3<T> origen;
    Vector3D<T> ejeX{1, 0, 0};
    Vector3D<T> ejeY{0, 1, 0};
    Vector3D<T> ejeZ{0, 0, 1};
    Matriz4<T> matrizALocal;    // global point -> local point
    Matriz4<T> matrizAGlobal;   // local point -> global point
    Matriz4<T> matrizRotacion;  // rows are the axes: global vector -> local vector

    // Stores the unit vectors of the three arguments (orthogonality is neither enforced nor
    // checked) and rebuilds all three matrices around the current origin.
    void setVectoresXYZ(const Vector3D<T>& x, const Vector3D<T>& y, const Vector3D<T>& z)
    {
        ejeX = x.unit();
        ejeY = y.unit();
        ejeZ = z.unit();
        matrizRotacion = Matriz4<T>(Vector4D<T>(ejeX, 0), Vector4D<T>(ejeY, 0),
                                    Vector4D<T>(ejeZ, 0), Vector4D<T>(0, 0, 0, 1))
                             .transpuesta();
        actualizaTraslaciones();
    }

    // Moves the frame; the axes and the rotation stay as they were.
    void setOrigen(const Punto3<T>& punto)
    {
        origen = punto;
        actualizaTraslaciones();
    }

    const Vector3D<T>& getEjeX() const { return ejeX; }
    const Vector3D<T>& getEjeY() const { return ejeY; }
    const Vector3D<T>& getEjeZ() const { return ejeZ; }
    const Matriz4<T>& getMatrizALocal() const { return matrizALocal; }
    const Matriz4<T>& getMatrizAGlobal() const { return matrizAGlobal; }
    const Matriz4<T>& getMatrizRotacion() const { return matrizRotacion; }

private:
    void actualizaTraslaciones()
    {
        matrizALocal = matrizRotacion * Matriz4<T>::traslacion(-origen);
        matrizAGlobal = Matriz4<T>::traslacion(origen) * matrizRotacion.transpuesta();
    }
};

}  // namespace cad
