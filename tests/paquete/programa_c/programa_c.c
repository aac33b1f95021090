/* Makes a drawing through the installed C interface, saves it, reads it back and counts. */
#include <stdio.h>
#include <tarvelo.h>

int main(int argc, char** argv)
{
    const double xyz[6] = {431200.0, 4581300.0, 612.5, 431201.0, 4581301.0, 612.75};
    const uint32_t colores[2] = {0x0000ffu, 0x00ff00u};
    char ruta[4096];
    tv_dibujo* d = NULL;
    tv_dibujo* releido = NULL;
    int64_t h[4];
    size_t n = 0;
    double leidas[6];
    if (argc < 2)
    {
        return 2;
    }
    snprintf(ruta, sizeof ruta, "%s/programa_c.cad", argv[1]);
    if (tv_dibujo_nuevo(NULL, &d) != TV_OK ||
        tv_dibujo_grupo_puntos(d, xyz, 6, colores, 2, NULL) != TV_OK ||
        tv_dibujo_guarda(d, ruta) != TV_OK || tv_dibujo_nuevo(NULL, &releido) != TV_OK ||
        tv_dibujo_abre(releido, ruta, NULL) != TV_OK ||
        tv_dibujo_entidades(releido, h, 4, &n) != TV_OK || n != 1 ||
        tv_dibujo_coordenadas(releido, h[0], leidas, 6, &n) != TV_OK || n != 6 ||
        leidas[5] != 612.75)
    {
        fprintf(stderr, "programa_c: %s\n", tv_ultimo_mensaje());
        return 1;
    }
    printf("%s: 1 grupo de %zu puntos\n", tv_version(), n / 3);
    tv_dibujo_libera(releido);
    tv_dibujo_libera(d);
    return 0;
}
