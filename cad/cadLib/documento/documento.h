// The drawing document and the lists it owns.
#pragma once

#include "documento/Capa.h"
#include "documento/Dibujo.h"
#include "documento/EstiloLinea.h"
#include "documento/EstiloTexto.h"
#include "documento/ListaCapas.h"
#include "documento/ListaEntidades.h"
#include "documento/ListaEstilosTexto.h"
#include "documento/ListaMateriales.h"
#include "documento/ListaVariables.h"
#include "documento/ListaVistas.h"
#include "documento/Material.h"
#include "documento/ReferenciaEntidades.h"
#include "documento/SeleccionEntidades.h"
#include "documento/Variables.h"
#include "documento/VariablesPintura.h"
#include "documento/Vista.h"
