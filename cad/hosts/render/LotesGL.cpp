// The renderer's batches: retained primitives laid out as vertices relative to their cell,
// and their upload.
#include "LotesGL.h"

#include <cstring>

namespace cad::gpu
{

namespace
{

// Triangulates a polygon given by its corners: ear clipping on the plane it mostly lies in.
// Appends the corners' indices, three per triangle, to `t`. Clipping costs the cube of the
// corners at worst, so an outline of more than 128 goes as a fan.
void triangula(const std::vector<Punto3<double>>& p, std::vector<std::array<size_t, 3>>& t)
{
    const size_t n = p.size();
    if (n < 3)
    {
        return;
    }
    if (n == 3 || n > 128)
    {
        for (size_t i = 1; i + 1 < n; ++i)
        {
            t.push_back({0, i, i + 1});
        }
        return;
    }
    // Newell's normal picks the plane to work in.
    double nx = 0, ny = 0, nz = 0;
    for (size_t i = 0; i < n; ++i)
    {
        const Punto3<double>& a = p[i];
        const Punto3<double>& b = p[(i + 1) % n];
        nx += (a.y - b.y) * (a.z + b.z);
        ny += (a.z - b.z) * (a.x + b.x);
        nz += (a.x - b.x) * (a.y + b.y);
    }
    const double ax = std::fabs(nx), ay = std::fabs(ny), az = std::fabs(nz);
    const int eje = az >= ax && az >= ay ? 2 : (ax >= ay ? 0 : 1);
    const double signo = (eje == 0 ? nx : eje == 1 ? ny : nz) >= 0 ? 1.0 : -1.0;
    auto u = [&](size_t i) { return eje == 0 ? p[i].y : p[i].x; };
    auto v = [&](size_t i) { return eje == 2 ? p[i].y : p[i].z; };
    auto cruz = [&](size_t a, size_t b, size_t c)
    { return ((u(b) - u(a)) * (v(c) - v(a)) - (v(b) - v(a)) * (u(c) - u(a))) * signo; };
    std::vector<size_t> quedan(n);
    for (size_t i = 0; i < n; ++i)
    {
        quedan[i] = i;
    }
    // Newell's axis 1 (y) runs z-x, so its winding is the other way round.
    const double orientacion = eje == 1 ? -1.0 : 1.0;
    size_t intentos = 0;
    while (quedan.size() > 3 && intentos < quedan.size())
    {
        const size_t m = quedan.size();
        bool cortada = false;
        for (size_t k = 0; k < m; ++k)
        {
            const size_t a = quedan[(k + m - 1) % m], b = quedan[k], c = quedan[(k + 1) % m];
            if (cruz(a, b, c) * orientacion <= 0)
            {
                continue;
            }
            bool vacia = true;
            for (const size_t q : quedan)
            {
                if (q == a || q == b || q == c)
                {
                    continue;
                }
                if (cruz(a, b, q) * orientacion >= 0 && cruz(b, c, q) * orientacion >= 0 &&
                    cruz(c, a, q) * orientacion >= 0)
                {
                    vacia = false;
                    break;
                }
            }
            if (vacia)
            {
                t.push_back({a, b, c});
                quedan.erase(quedan.begin() + static_cast<std::ptrdiff_t>(k));
                cortada = true;
                break;
            }
        }
        intentos = cortada ? 0 : intentos + 1;
        if (!cortada)
        {
            break;
        }
    }
    // Whatever a self-crossing outline leaves goes as a fan.
    for (size_t i = 1; i + 1 < quedan.size(); ++i)
    {
        t.push_back({quedan[0], quedan[i], quedan[i + 1]});
    }
}

}  // namespace

void liberaLotes(std::vector<loteGPU_t>& lotes)
{
    for (loteGPU_t& l : lotes)
    {
        glDeleteVertexArrays(1, &l.vao);
        glDeleteBuffers(1, &l.vbo);
        if (l.ebo != 0)
        {
            glDeleteBuffers(1, &l.ebo);
        }
    }
    lotes.clear();
}

void Constructor::anade(const primitiva_t& pr, uint32_t id, int escalaFija)
{
    if (pr.puntos.empty())
    {
        return;
    }
    const uint32_t color = opaco(pr.color);
    switch (pr.tipo)
    {
        case primitiva_t::kPunto:
        case primitiva_t::kGrupoPuntos:
        {
            const float tam = pr.tipo == primitiva_t::kPunto ? kTamanoPunto : kTamanoPuntoGrupo;
            // A group of millions of points mostly stays in one cell: the batch is looked
            // up again only when a point leaves the cell of the one before.
            loteCPU_t* l = nullptr;
            double x0 = 0, y0 = 0, z0 = 0;
            for (size_t i = 0; i < pr.puntos.size(); ++i)
            {
                const Punto3<double>& p = pr.puntos[i];
                if (!finito(p))
                {
                    continue;
                }
                if (l == nullptr || p.x < x0 || p.x >= x0 + kCelda || p.y < y0 ||
                    p.y >= y0 + kCelda || p.z < z0 || p.z >= z0 + kCelda)
                {
                    claveLote_t c = claveDe(pr, kLotePuntos, p);
                    c.tamano = tam;
                    l = &lote(c);
                    x0 = static_cast<double>(c.cx) * kCelda;
                    y0 = static_cast<double>(c.cy) * kCelda;
                    z0 = static_cast<double>(c.cz) * kCelda;
                    asegura(l->puntos, pr.puntos.size() - i);
                }
                verticePunto_t v;
                relativo(*l, p, v.x, v.y, v.z);
                v.color = i < pr.colores.size() ? opaco(pr.colores[i]) : color;
                v.id = id;
                l->puntos.push_back(v);
                amplia(p);
            }
            break;
        }
        case primitiva_t::kLinea:
        case primitiva_t::kPolilinea:
        case primitiva_t::kVector:
        {
            const uint32_t estilo = estiloLinea(pr.patron, pr.grosor);
            loteCPU_t& l = lote(claveDe(pr, kLoteLineas, pr.puntos[0]));
            const size_t n = pr.puntos.size();
            for (size_t i = 0; i + 1 < n; ++i)
            {
                if (finito(pr.puntos[i]) && finito(pr.puntos[i + 1]))
                {
                    linea(l, pr.puntos[i], pr.puntos[i + 1], color, color, id, estilo);
                }
            }
            if (pr.tipo == primitiva_t::kPolilinea && pr.cerrada && n > 2 &&
                finito(pr.puntos[n - 1]) && finito(pr.puntos[0]))
            {
                linea(l, pr.puntos[n - 1], pr.puntos[0], color, color, id, estilo);
            }
            if (pr.tipo == primitiva_t::kVector && n == 2 && finito(pr.puntos[0]) &&
                finito(pr.puntos[1]))
            {
                // The arrow's head: two strokes of a fifth of its length.
                const Vector3D<double> d = pr.puntos[1] - pr.puntos[0];
                const double largo = d.modulo();
                if (largo > 0)
                {
                    Vector3D<double> lado = d.cross(Vector3D<double>(0, 0, 1));
                    if (lado.modulo() < 1e-9 * largo)
                    {
                        lado = d.cross(Vector3D<double>(1, 0, 0));
                    }
                    lado = lado.unit() * (largo * 0.08);
                    const Punto3<double> base = pr.puntos[1] - d * 0.2;
                    linea(l, pr.puntos[1], base + lado, color, color, id, estilo);
                    linea(l, pr.puntos[1], base - lado, color, color, id, estilo);
                }
            }
            break;
        }
        case primitiva_t::kPoligono:
            poligono(pr, id);
            break;
        case primitiva_t::kTexto:
            textos(pr, id);
            break;
        case primitiva_t::kObjeto:
            objeto(pr, id, escalaFija);
            break;
        case primitiva_t::kMarca:
            anadeMarca(pr, id);
            break;
    }
}

void Constructor::poligono(const primitiva_t& pr, uint32_t id)
{
    for (const Punto3<double>& p : pr.puntos)
    {
        if (!finito(p))
        {
            return;
        }
    }
    triangulos.clear();
    triangula(pr.puntos, triangulos);
    loteCPU_t& l = lote(claveDe(pr, kLoteCaras, pr.puntos[0]));
    const uint32_t color = opaco(pr.color);
    for (const auto& t : triangulos)
    {
        for (const size_t i : t)
        {
            verticeCara_t v{};
            relativo(l, pr.puntos[i], v.x, v.y, v.z);
            v.color = color;
            v.id = id;
            l.indices.push_back(static_cast<uint32_t>(l.caras.size()));
            l.caras.push_back(v);
            amplia(pr.puntos[i]);
        }
    }
}

void Constructor::textos(const primitiva_t& pr, uint32_t id)
{
    const Punto3<double>& p = pr.puntos[0];
    if (letras == nullptr || !finito(p) || !std::isfinite(pr.altura) || pr.altura <= 0.0F)
    {
        return;
    }
    // Lines break at "\n" (a "\r" before it goes too), 1.6 heights apart. Bottom alignment
    // puts the last line's baseline on the point, top the first line's capitals under it,
    // middle the block's centre on it.
    std::vector<std::string> lineas(1);
    for (const char ch : pr.texto)
    {
        if (ch == '\n')
        {
            if (!lineas.back().empty() && lineas.back().back() == '\r')
            {
                lineas.back().pop_back();
            }
            lineas.emplace_back();
        }
        else
        {
            lineas.back().push_back(ch);
        }
    }
    const double interlineado = 1.6;
    const double bloque = static_cast<double>(lineas.size() - 1) * interlineado;
    const int h = pr.alineacion & 3;
    const int vert = pr.alineacion & 12;
    const double dy0 = vert == 4 ? 0.5 * bloque - 0.5 : (vert == 8 ? -1.0 : bloque);
    const double a = pr.altura;
    const double r = std::isfinite(pr.rotacion) ? pr.rotacion : 0.0;
    const double co = std::cos(r), si = std::sin(r);
    claveLote_t c = claveDe(pr, kLoteCaras, p);
    c.forma = 3;
    loteCPU_t& l = lote(c);
    const uint32_t color = opaco(pr.color);
    for (size_t k = 0; k < lineas.size(); ++k)
    {
        cuadros.clear();
        const double ancho = letras->compone(lineas[k], cuadros);
        const double dx = h == 1 ? -0.5 * ancho : (h == 2 ? -ancho : 0.0);
        const double dy = dy0 - static_cast<double>(k) * interlineado;
        auto esquina = [&](double ex, double ey, float u, float v)
        {
            const double x = (ex + dx) * a, y = (ey + dy) * a;
            const Punto3<double> q(p.x + x * co - y * si, p.y + x * si + y * co, p.z);
            verticeCara_t w{};
            relativo(l, q, w.x, w.y, w.z);
            w.color = color;
            w.id = id;
            w.nz = 1.0F;
            w.u = u;
            w.v = v;
            l.caras.push_back(w);
            amplia(q);
        };
        for (const cuadroGlifo_t& g : cuadros)
        {
            const auto base = static_cast<uint32_t>(l.caras.size());
            esquina(g.x0, g.y0, g.u0, g.v1);
            esquina(g.x1, g.y0, g.u1, g.v1);
            esquina(g.x1, g.y1, g.u1, g.v0);
            esquina(g.x0, g.y1, g.u0, g.v0);
            for (const uint32_t q : {0U, 1U, 2U, 0U, 2U, 3U})
            {
                l.indices.push_back(base + q);
            }
        }
    }
}

void Constructor::objeto(const primitiva_t& pr, uint32_t id, int escalaFija)
{
    const size_t n = pr.puntos.size();
    const int modo = pr.modo;
    // The colour of the faces: the model's own, else its material's, else the object's.
    uint32_t colorCaras = opaco(pr.color);
    auto material = materiales.find(pr.material);
    if (pr.colorMaterial != 0)
    {
        colorCaras = opaco(argbAAbgr(pr.colorMaterial));
    }
    else if (material != materiales.end() &&
             (modo == PantallaCAD::kRealista || modo == PantallaCAD::kTexturas))
    {
        colorCaras = opaco(material->second.color);
    }
    auto colorVertice = [&](size_t i, uint32_t defecto)
    { return i < pr.colores.size() ? opaco(pr.colores[i]) : defecto; };

    Punto3<double> ancla = pr.puntos[0];
    claveLote_t base = claveDe(pr, kLoteCaras, ancla);
    base.escalaFija = escalaFija;

    // Edges: the model's own, else the outlines of its faces in wireframe.
    const bool conAristas = modo == PantallaCAD::kAlambrica || modo == PantallaCAD::kOculto ||
                            modo == PantallaCAD::kRayosX;
    if (conAristas)
    {
        claveLote_t c = base;
        c.tipo = kLoteLineas;
        loteCPU_t& l = lote(c);
        const uint32_t estilo = estiloLinea(pr.patron, pr.grosor);
        const uint32_t color = opaco(pr.color);
        auto arista = [&](size_t a, size_t b)
        {
            if (a < n && b < n && finito(pr.puntos[a]) && finito(pr.puntos[b]))
            {
                linea(l, pr.puntos[a], pr.puntos[b], colorVertice(a, color), colorVertice(b, color),
                      id, estilo);
            }
        };
        if (!pr.aristas.empty())
        {
            for (size_t i = 0; i + 1 < pr.aristas.size(); i += 2)
            {
                arista(pr.aristas[i], pr.aristas[i + 1]);
            }
        }
        else
        {
            for (size_t i = 0; i < pr.caras.size();)
            {
                const auto k = static_cast<size_t>(std::max(pr.caras[i], 0));
                if (i + 1 + k > pr.caras.size())
                {
                    break;
                }
                for (size_t j = 0; j < k; ++j)
                {
                    arista(static_cast<size_t>(pr.caras[i + 1 + j]),
                           static_cast<size_t>(pr.caras[i + 1 + (j + 1) % k]));
                }
                i += 1 + k;
            }
        }
    }
    if (modo == PantallaCAD::kAlambrica || pr.caras.empty())
    {
        return;
    }

    claveLote_t c = base;
    switch (modo)
    {
        case PantallaCAD::kConceptual:
        case PantallaCAD::kRealista:
            c.forma = 1;
            break;
        case PantallaCAD::kOculto:
            c.forma = 0;
            c.orden = 1;
            break;
        case PantallaCAD::kRayosX:
            c.forma = 0;
            c.orden = 2;
            break;
        case PantallaCAD::kTexturas:
            c.forma = 1;
            if (material != materiales.end() && !material->second.imagen.empty() &&
                pr.uv.size() >= 2 * n)
            {
                c.forma = 2;
                c.textura = pr.material;
                colorCaras = 0xFFFFFFFFU;
            }
            break;
        default:
            c.forma = 1;
            break;
    }
    loteCPU_t& l = lote(c);
    const auto primero = static_cast<uint32_t>(l.caras.size());
    asegura(l.caras, n);
    asegura(l.indices, pr.caras.size() * 3 / 2);
    for (size_t i = 0; i < n; ++i)
    {
        verticeCara_t v{};
        relativo(l, finito(pr.puntos[i]) ? pr.puntos[i] : l.origen, v.x, v.y, v.z);
        v.color = modo == PantallaCAD::kOculto ? fondo : colorVertice(i, colorCaras);
        v.id = id;
        if (i < pr.normales.size())
        {
            v.nx = pr.normales[i].x;
            v.ny = pr.normales[i].y;
            v.nz = pr.normales[i].z;
        }
        if (2 * i + 1 < pr.uv.size())
        {
            v.u = pr.uv[2 * i];
            v.v = 1.0F - pr.uv[2 * i + 1];
        }
        l.caras.push_back(v);
        if (finito(pr.puntos[i]))
        {
            amplia(pr.puntos[i]);
        }
    }
    std::vector<Punto3<double>> esquinas;
    for (size_t i = 0; i < pr.caras.size();)
    {
        const auto k = static_cast<size_t>(std::max(pr.caras[i], 0));
        if (i + 1 + k > pr.caras.size())
        {
            break;
        }
        const int32_t* idx = &pr.caras[i + 1];
        bool dentro = true;
        for (size_t j = 0; j < k; ++j)
        {
            dentro = dentro && idx[j] >= 0 && static_cast<size_t>(idx[j]) < n;
        }
        if (dentro && k >= 3)
        {
            if (k == 3 || k == 4)
            {
                // Triangles and quads, the bulk of a mesh, go as fans without a search.
                for (size_t j = 1; j + 1 < k; ++j)
                {
                    l.indices.push_back(primero + static_cast<uint32_t>(idx[0]));
                    l.indices.push_back(primero + static_cast<uint32_t>(idx[j]));
                    l.indices.push_back(primero + static_cast<uint32_t>(idx[j + 1]));
                }
            }
            else
            {
                esquinas.clear();
                for (size_t j = 0; j < k; ++j)
                {
                    esquinas.push_back(pr.puntos[static_cast<size_t>(idx[j])]);
                }
                triangulos.clear();
                triangula(esquinas, triangulos);
                for (const auto& t : triangulos)
                {
                    for (const size_t q : t)
                    {
                        l.indices.push_back(primero + static_cast<uint32_t>(idx[q]));
                    }
                }
            }
        }
        i += 1 + k;
    }
}

void Constructor::anadeMarca(const primitiva_t& pr, uint32_t id)
{
    const Punto3<double>& p = pr.puntos[0];
    if (!finito(p))
    {
        return;
    }
    primitiva_t capa;
    capa.primerPlano = true;
    loteCPU_t& l = lote(claveDe(capa, kLoteLineas, p));
    const uint32_t color = opaco(pr.color);
    const uint32_t estilo = estiloLinea(PantallaCAD::kLineaContinua, 2.0F);
    const double s = kTamanoMarca * pixel;
    auto en = [&](double x, double y) { return p + derecha * (x * s) + arribaPantalla * (y * s); };
    auto trazo = [&](double x0, double y0, double x1, double y1)
    { linea(l, en(x0, y0), en(x1, y1), color, color, id, estilo); };
    switch (pr.modo)
    {
        case PantallaCAD::kMarcaExtremo:
            trazo(-1, -1, 1, -1);
            trazo(1, -1, 1, 1);
            trazo(1, 1, -1, 1);
            trazo(-1, 1, -1, -1);
            break;
        case PantallaCAD::kMarcaMedio:
            trazo(-1, -1, 1, -1);
            trazo(1, -1, 0, 1);
            trazo(0, 1, -1, -1);
            break;
        case PantallaCAD::kMarcaCentro:
            for (int i = 0; i < 16; ++i)
            {
                const double a0 = i * 3.14159265358979 / 8, a1 = (i + 1) * 3.14159265358979 / 8;
                trazo(std::cos(a0), std::sin(a0), std::cos(a1), std::sin(a1));
            }
            break;
        case PantallaCAD::kMarcaInterseccion:
            trazo(-1, -1, 1, 1);
            trazo(-1, 1, 1, -1);
            break;
        default:
            trazo(-1, 0, 1, 0);
            trazo(0, -1, 0, 1);
            break;
    }
}

namespace
{

void llenaBuffer(GLenum destino, const void* datos, size_t bytes)
{
    glBufferData(destino, static_cast<GLsizeiptr>(bytes), datos, GL_STATIC_DRAW);
}

template <typename V>
void subeAtributos(const std::vector<V>& datos, loteGPU_t& g)
{
    glBindBuffer(GL_ARRAY_BUFFER, g.vbo);
    llenaBuffer(GL_ARRAY_BUFFER, datos.data(), datos.size() * sizeof(V));
    const auto paso = static_cast<GLsizei>(sizeof(V));
    glEnableVertexAttribArray(0);
    glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, paso, reinterpret_cast<void*>(0));
    glEnableVertexAttribArray(1);
    glVertexAttribPointer(1, 4, GL_UNSIGNED_BYTE, GL_TRUE, paso,
                          reinterpret_cast<void*>(offsetof(V, color)));
    glEnableVertexAttribArray(2);
    glVertexAttribIPointer(2, 1, GL_UNSIGNED_INT, paso, reinterpret_cast<void*>(offsetof(V, id)));
}

}  // namespace

// Moves the CPU batches to the GPU; their CPU memory goes as each is sent.
void subeLotes(std::map<claveLote_t, loteCPU_t>& cpu, std::vector<loteGPU_t>& gpu, size_t& bytes)
{
    for (auto& [clave, l] : cpu)
    {
        loteGPU_t g;
        g.clave = clave;
        g.origen = l.origen;
        glGenVertexArrays(1, &g.vao);
        glBindVertexArray(g.vao);
        glGenBuffers(1, &g.vbo);
        if (clave.tipo == kLotePuntos)
        {
            subeAtributos(l.puntos, g);
            g.cuenta = static_cast<GLsizei>(l.puntos.size());
            bytes += l.puntos.size() * sizeof(verticePunto_t);
        }
        else if (clave.tipo == kLoteLineas)
        {
            subeAtributos(l.lineas, g);
            glEnableVertexAttribArray(3);
            glVertexAttribIPointer(3, 1, GL_UNSIGNED_INT, sizeof(verticeLinea_t),
                                   reinterpret_cast<void*>(offsetof(verticeLinea_t, estilo)));
            g.cuenta = static_cast<GLsizei>(l.lineas.size());
            bytes += l.lineas.size() * sizeof(verticeLinea_t);
        }
        else
        {
            subeAtributos(l.caras, g);
            glEnableVertexAttribArray(3);
            glVertexAttribPointer(3, 3, GL_FLOAT, GL_FALSE, sizeof(verticeCara_t),
                                  reinterpret_cast<void*>(offsetof(verticeCara_t, nx)));
            glEnableVertexAttribArray(4);
            glVertexAttribPointer(4, 2, GL_FLOAT, GL_FALSE, sizeof(verticeCara_t),
                                  reinterpret_cast<void*>(offsetof(verticeCara_t, u)));
            glGenBuffers(1, &g.ebo);
            glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, g.ebo);
            llenaBuffer(GL_ELEMENT_ARRAY_BUFFER, l.indices.data(),
                        l.indices.size() * sizeof(uint32_t));
            g.indexado = true;
            g.cuenta = static_cast<GLsizei>(l.indices.size());
            bytes += l.caras.size() * sizeof(verticeCara_t) + l.indices.size() * 4;
        }
        glBindVertexArray(0);
        l = loteCPU_t();
        if (g.cuenta > 0)
        {
            gpu.push_back(g);
        }
        else
        {
            glDeleteVertexArrays(1, &g.vao);
            glDeleteBuffers(1, &g.vbo);
            if (g.ebo != 0)
            {
                glDeleteBuffers(1, &g.ebo);
            }
        }
    }
    cpu.clear();
}

}  // namespace cad::gpu
