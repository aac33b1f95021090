// Least-squares plane through a set of points, and the symmetric 3x3 eigen-solver behind it.
#pragma once

#include <vector>

#include "base/geometria/Plano3D.h"
#include "base/geometria/Punto3.h"

namespace cad
{

// Eigenvalues of the symmetric matrix `m` in rising order, with their unit eigenvectors as the
// columns of `vectores` (column k belongs to valores[k]). Householder reduction to tridiagonal
// form, then QL iteration with implicit shifts, at most 32 rounds per eigenvalue. False when an
// eigenvalue did not settle within those rounds; the outputs then hold the last iterate, which
// is still an orthonormal basis.
bool autovaloresSimetricos(const double (&m)[3][3], double (&valores)[3], double (&vectores)[3][3]);

// The plane that best fits `puntos`: the normal is the eigenvector of the smallest eigenvalue of
// the points' covariance about their centroid (sums divided by the count), unit length, with
// whatever sign the solver leaves; d puts the centroid on the plane. No points give the all-zero
// plane. Collinear or coincident points give some plane through them.
Plano3D<double> ajustaPlano(const std::vector<Punto3<double>>& puntos);

}  // namespace cad
