// Plane fitting: centroid, covariance, and a small symmetric eigen-solver written for 3x3.
#include "entidades/AjustePlano.h"

#include <cmath>
#include <limits>
#include <utility>

namespace cad
{

namespace
{

constexpr int kN = 3;
constexpr int kMaxRondas = 32;

using Matriz3 = double[kN][kN];

void multiplica(const Matriz3& x, const Matriz3& y, Matriz3& r)
{
    for (int i = 0; i < kN; ++i)
    {
        for (int j = 0; j < kN; ++j)
        {
            double s = 0.0;
            for (int k = 0; k < kN; ++k)
            {
                s += x[i][k] * y[k][j];
            }
            r[i][j] = s;
        }
    }
}

// One Householder reflection on rows and columns 1..2 clears m[2][0]: h m h is then
// tridiagonal. h is symmetric and orthogonal, and becomes the start of the eigenvector matrix.
void tridiagonaliza(const Matriz3& m, double (&diagonal)[kN], double (&lateral)[kN], Matriz3& h)
{
    for (int i = 0; i < kN; ++i)
    {
        for (int j = 0; j < kN; ++j)
        {
            h[i][j] = i == j ? 1.0 : 0.0;
        }
    }
    const double x0 = m[1][0];
    const double x1 = m[2][0];
    if (x1 != 0.0)
    {
        // alfa takes the sign opposite to x0 so that v = x - alfa e1 does not cancel.
        const double alfa = -std::copysign(std::hypot(x0, x1), x0);
        const double v0 = x0 - alfa;
        const double v1 = x1;
        const double vv = v0 * v0 + v1 * v1;
        h[1][1] = 1.0 - 2.0 * v0 * v0 / vv;
        h[1][2] = -2.0 * v0 * v1 / vv;
        h[2][1] = h[1][2];
        h[2][2] = 1.0 - 2.0 * v1 * v1 / vv;
    }
    Matriz3 hm;
    Matriz3 t;
    multiplica(h, m, hm);
    multiplica(hm, h, t);
    for (int i = 0; i < kN; ++i)
    {
        diagonal[i] = t[i][i];
    }
    // lateral[i] couples i and i + 1; the last one is a sentinel that stays zero.
    lateral[0] = t[1][0];
    lateral[1] = t[2][1];
    lateral[2] = 0.0;
}

// QL iteration with implicit shifts on the tridiagonal matrix; the rotations are accumulated
// into the columns of z. False when some eigenvalue used up its rounds.
bool iteraQL(double (&diagonal)[kN], double (&lateral)[kN], Matriz3& z)
{
    const double eps = std::numeric_limits<double>::epsilon();
    bool converge = true;
    for (int l = 0; l < kN; ++l)
    {
        int rondas = 0;
        for (;;)
        {
            // The first negligible off-diagonal element at or after l splits the matrix.
            int m = l;
            for (; m < kN - 1; ++m)
            {
                const double escala = std::abs(diagonal[m]) + std::abs(diagonal[m + 1]);
                if (std::abs(lateral[m]) <= eps * escala)
                {
                    break;
                }
            }
            if (m == l)
            {
                break;
            }
            if (rondas == kMaxRondas)
            {
                converge = false;
                break;
            }
            ++rondas;
            // Shift from the leading 2x2 block, taken towards diagonal[l].
            double g = (diagonal[l + 1] - diagonal[l]) / (2.0 * lateral[l]);
            double r = std::hypot(g, 1.0);
            g = diagonal[m] - diagonal[l] + lateral[l] / (g + std::copysign(r, g));
            double s = 1.0;
            double c = 1.0;
            double p = 0.0;
            bool anulado = false;
            for (int i = m - 1; i >= l; --i)
            {
                double f = s * lateral[i];
                const double b = c * lateral[i];
                r = std::hypot(f, g);
                lateral[i + 1] = r;
                if (r == 0.0)
                {
                    // Underflow: the chase cannot go on; retry from l with what it reached.
                    diagonal[i + 1] -= p;
                    lateral[m] = 0.0;
                    anulado = true;
                    break;
                }
                s = f / r;
                c = g / r;
                g = diagonal[i + 1] - p;
                r = (diagonal[i] - g) * s + 2.0 * c * b;
                p = s * r;
                diagonal[i + 1] = g + p;
                g = c * r - b;
                for (int k = 0; k < kN; ++k)
                {
                    f = z[k][i + 1];
                    z[k][i + 1] = s * z[k][i] + c * f;
                    z[k][i] = c * z[k][i] - s * f;
                }
            }
            if (anulado)
            {
                continue;
            }
            diagonal[l] -= p;
            lateral[l] = g;
            lateral[m] = 0.0;
        }
    }
    return converge;
}

}  // namespace

bool autovaloresSimetricos(const double (&m)[3][3], double (&valores)[3], double (&vectores)[3][3])
{
    double lateral[kN];
    tridiagonaliza(m, valores, lateral, vectores);
    const bool converge = iteraQL(valores, lateral, vectores);

    // Insertion sort keeps equal eigenvalues in the order the iteration left them.
    for (int i = 1; i < kN; ++i)
    {
        for (int j = i; j > 0 && valores[j] < valores[j - 1]; --j)
        {
            std::swap(valores[j], valores[j - 1]);
            for (int k = 0; k < kN; ++k)
            {
                std::swap(vectores[k][j], vectores[k][j - 1]);
            }
        }
    }
    return converge;
}

Plano3D<double> ajustaPlano(const std::vector<Punto3<double>>& puntos)
{
    if (puntos.empty())
    {
        return {};
    }
    const auto n = static_cast<double>(puntos.size());
    double centro[kN] = {0.0, 0.0, 0.0};
    for (const auto& p : puntos)
    {
        centro[0] += p.x;
        centro[1] += p.y;
        centro[2] += p.z;
    }
    for (double& c : centro)
    {
        c /= n;
    }

    // Differences are taken before the products, so survey-sized coordinates keep their digits.
    double covarianza[kN][kN] = {};
    for (const auto& p : puntos)
    {
        const double q[kN] = {p.x - centro[0], p.y - centro[1], p.z - centro[2]};
        for (int i = 0; i < kN; ++i)
        {
            for (int j = 0; j < kN; ++j)
            {
                covarianza[i][j] += q[i] * q[j];
            }
        }
    }
    for (auto& fila : covarianza)
    {
        for (double& v : fila)
        {
            v /= n;
        }
    }

    double valores[kN];
    double vectores[kN][kN];
    autovaloresSimetricos(covarianza, valores, vectores);
    const Vector3D<double> normal =
        Vector3D<double>(vectores[0][0], vectores[1][0], vectores[2][0]).unit();
    return Plano3D<double>(Punto3<double>(centro[0], centro[1], centro[2]), normal);
}

}  // namespace cad
