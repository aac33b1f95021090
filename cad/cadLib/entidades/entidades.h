// The entities of a drawing.
#pragma once

#include "entidades/AjustePlano.h"
#include "entidades/Entidad.h"
#include "entidades/EntidadDesconocida.h"
#include "entidades/Firmas.h"
#include "entidades/Linea.h"
#include "entidades/Plano.h"
#include "entidades/Poligono.h"
#include "entidades/Polilinea.h"
#include "entidades/Punto.h"
#include "entidades/PuntoControl.h"
#include "entidades/SistemaLocal.h"
#include "entidades/Texto.h"
