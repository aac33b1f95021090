// Matriz4: a 4x4 column-major matrix acting on column vectors (A * B applies B first).
#pragma once

#include <cmath>

#include "base/geometria/Punto3.h"
#include "base/geometria/Vector3D.h"
#include "base/geometria/Vector4D.h"

namespace cad
{

// Element (row r, column c) is number 4c + r of the sixteen; the translation sits in the
// fourth column, numbers 12, 13 and 14.
template <typename T>
struct Matriz4
{
    Vector4D<T> col[4];

    // Identity.
    constexpr Matriz4() : col{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}} {}

    // The four arguments are the columns, in order.
    constexpr Matriz4(const Vector4D<T>& c0, const Vector4D<T>& c1, const Vector4D<T>& c2,
                      const Vector4D<T>& c3)
        : col{c0, c1, c2, c3}
    {
    }

    // The four arguments are the rows, in order: handy where a matrix is written out row by row.
    static constexpr Matriz4 desdeFilas(const Vector4D<T>& f0, const Vector4D<T>& f1,
                                        const Vector4D<T>& f2, const Vector4D<T>& f3)
    {
        return Matriz4(f0, f1, f2, f3).transpuesta();
    }

    constexpr bool operator==(const Matriz4&) const = default;

    // Element access by row and column, each 0..3; not range-checked.
    constexpr T& operator()(int fila, int columna) { return col[columna][fila]; }
    constexpr const T& operator()(int fila, int columna) const { return col[columna][fila]; }

    // Element access by its number 0..15 in the layout above; not range-checked.
    constexpr T& operator[](int n) { return col[n / 4][n % 4]; }
    constexpr const T& operator[](int n) const { return col[n / 4][n % 4]; }

    // Identity with the point in the fourth column.
    static constexpr Matriz4 traslacion(const Punto3<T>& p)
    {
        Matriz4 m;
        m.col[3] = {p.x, p.y, p.z, 1};
        return m;
    }

    constexpr Matriz4 transpuesta() const
    {
        Matriz4 t;
        for (int r = 0; r < 4; ++r)
        {
            for (int c = 0; c < 4; ++c)
            {
                t(r, c) = (*this)(c, r);
            }
        }
        return t;
    }

    constexpr Vector4D<T> operator*(const Vector4D<T>& v) const
    {
        return col[0] * v.x + col[1] * v.y + col[2] * v.z + col[3] * v.w;
    }

    // Each column of `o` is transformed by this matrix, so the product applies `o` first.
    constexpr Matriz4 operator*(const Matriz4& o) const
    {
        return {*this * o.col[0], *this * o.col[1], *this * o.col[2], *this * o.col[3]};
    }

    // Transforms a point taken with w = 1. The fourth row is ignored: there is no projective
    // division, so only affine matrices give meaningful results here.
    constexpr Punto3<T> operator*(const Punto3<T>& p) const
    {
        const Matriz4& m = *this;
        return {m(0, 0) * p.x + m(0, 1) * p.y + m(0, 2) * p.z + m(0, 3),
                m(1, 0) * p.x + m(1, 1) * p.y + m(1, 2) * p.z + m(1, 3),
                m(2, 0) * p.x + m(2, 1) * p.y + m(2, 2) * p.z + m(2, 3)};
    }

    // Elementary rotations, angle in radians. The X and Z forms turn the opposite way to the Y
    // form; camera orientation and hot-element rotation rely on these exact sign positions.
    static Matriz4 rotacionX(T angulo)
    {
        const T c = std::cos(angulo);
        const T s = std::sin(angulo);
        // clang-format off
        return desdeFilas({1,  0, 0, 0},
                          {0,  c, s, 0},
                          {0, -s, c, 0},
                          {0,  0, 0, 1});
        // clang-format on
    }
    static Matriz4 rotacionY(T angulo)
    {
        const T c = std::cos(angulo);
        const T s = std::sin(angulo);
        // clang-format off
        return desdeFilas({ c, 0, s, 0},
                          { 0, 1, 0, 0},
                          {-s, 0, c, 0},
                          { 0, 0, 0, 1});
        // clang-format on
    }
    static Matriz4 rotacionZ(T angulo)
    {
        const T c = std::cos(angulo);
        const T s = std::sin(angulo);
        // clang-format off
        return desdeFilas({ c, s, 0, 0},
                          {-s, c, 0, 0},
                          { 0, 0, 1, 0},
                          { 0, 0, 0, 1});
        // clang-format on
    }

    // The upper three numbers of rows 0, 1 and 2: in a rotation to a local frame, its axes.
    constexpr Vector3D<T> filaX() const { return {(*this)[0], (*this)[4], (*this)[8]}; }
    constexpr Vector3D<T> filaY() const { return {(*this)[1], (*this)[5], (*this)[9]}; }
    constexpr Vector3D<T> filaZ() const { return {(*this)[2], (*this)[6], (*this)[10]}; }

    // Write a whole row: the vector into the first three columns, `cuarto` into the fourth.
    constexpr void setFilaX(const Vector3D<T>& v, T cuarto) { setFila(0, v, cuarto); }
    constexpr void setFilaY(const Vector3D<T>& v, T cuarto) { setFila(1, v, cuarto); }
    constexpr void setFilaZ(const Vector3D<T>& v, T cuarto) { setFila(2, v, cuarto); }

    // The translation part, numbers 12, 13 and 14; number 15 is left alone.
    constexpr Punto3<T> getOrigen() const { return {(*this)[12], (*this)[13], (*this)[14]}; }
    constexpr void setOrigen(const Punto3<T>& p)
    {
        (*this)[12] = p.x;
        (*this)[13] = p.y;
        (*this)[14] = p.z;
    }

private:
    constexpr void setFila(int fila, const Vector3D<T>& v, T cuarto)
    {
        (*this)(fila, 0) = v.x;
        (*this)(fila, 1) = v.y;
        (*this)(fila, 2) = v.z;
        (*this)(fila, 3) = cuarto;
    }
};

}  // namespace cad
