# Installs the built library into a scratch prefix, builds the command-line host against the
# installed package with find_package(cadLib), and runs its demo.
# A full-disk check below mounts a small file system here; one left by a broken run goes first.
execute_process(COMMAND umount "${TRABAJO}/lleno" OUTPUT_QUIET ERROR_QUIET)
file(REMOVE_RECURSE "${TRABAJO}")
execute_process(COMMAND ${CMAKE_COMMAND} --install "${CONSTRUCCION}" --prefix "${TRABAJO}/prefijo"
    RESULT_VARIABLE r OUTPUT_QUIET)
if(NOT r EQUAL 0)
    message(FATAL_ERROR "install failed: ${r}")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} -S "${FUENTE}/cad/hosts/tarvelo" -B "${TRABAJO}/host"
    -G "${GENERADOR}" "-DCMAKE_PREFIX_PATH=${TRABAJO}/prefijo" "-DCMAKE_CXX_FLAGS=${BANDERAS}"
    "-DCMAKE_EXE_LINKER_FLAGS=${BANDERAS}"
    RESULT_VARIABLE r)
if(NOT r EQUAL 0)
    message(FATAL_ERROR "configuring the host against the installed package failed: ${r}")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} --build "${TRABAJO}/host" RESULT_VARIABLE r)
if(NOT r EQUAL 0)
    message(FATAL_ERROR "building the host failed: ${r}")
endif()
execute_process(COMMAND "${TRABAJO}/host/tarvelo" demo
    WORKING_DIRECTORY "${TRABAJO}"
    RESULT_VARIABLE r OUTPUT_VARIABLE salida ERROR_VARIABLE errores)
message("${salida}")
if(NOT r EQUAL 0)
    message(FATAL_ERROR "tarvelo demo failed: ${r}\n${errores}")
endif()
foreach(esperado "Capas" "Materiales" "Estilos de texto" "Variables")
    string(FIND "${salida}" "${esperado}" pos)
    if(pos EQUAL -1)
        message(FATAL_ERROR "the demo summary lacks \"${esperado}\"")
    endif()
endforeach()

# The demo's drawing rendered headless: a PNG of the size asked for, with more in it than a
# flat background; a drawing that can't be read fails and writes nothing.
# Under the sanitizers the software GL driver's compiled shaders leave blocks at exit that no
# suppression can name (their stack is generated code): leaks are not checked for this run.
execute_process(COMMAND ${CMAKE_COMMAND} -E env "ASAN_OPTIONS=detect_leaks=0:abort_on_error=1"
    "${TRABAJO}/host/tarvelo" dibuja salida/demo.cad salida/demo.png
    --vista iso --tamano 800x600
    WORKING_DIRECTORY "${TRABAJO}" RESULT_VARIABLE r OUTPUT_VARIABLE s ERROR_VARIABLE e)
message("${s}${e}")
if(NOT r EQUAL 0 OR NOT s MATCHES "^PNG escrito en salida/demo.png \\(800x600, ")
    message(FATAL_ERROR "tarvelo dibuja of the demo failed: ${r}\n${s}${e}")
endif()
if(NOT EXISTS "${TRABAJO}/salida/demo.png")
    message(FATAL_ERROR "tarvelo dibuja wrote no salida/demo.png")
endif()
# A flat 800x600 image packs into about 3 kB; the demo's site drawn in it, into about 90 kB.
file(SIZE "${TRABAJO}/salida/demo.png" tamanoPNG)
if(NOT tamanoPNG GREATER 40000)
    message(FATAL_ERROR "the demo's PNG has only ${tamanoPNG} bytes")
endif()
# The demo's stored plan view frames the site: the kernel's zoom to extents would also take
# in the empty boxes of its solids, at the origin, and show the site as a dot.
execute_process(COMMAND ${CMAKE_COMMAND} -E env "ASAN_OPTIONS=detect_leaks=0:abort_on_error=1"
    "${TRABAJO}/host/tarvelo" dibuja salida/demo.cad salida/planta.png
    --vista Planta --tamano 800x600
    WORKING_DIRECTORY "${TRABAJO}" RESULT_VARIABLE r OUTPUT_VARIABLE s ERROR_VARIABLE e)
file(SIZE "${TRABAJO}/salida/planta.png" tamanoPlanta)
if(NOT r EQUAL 0 OR NOT tamanoPlanta GREATER 40000)
    message(FATAL_ERROR "the demo's Planta view shows too little: ${r}, ${tamanoPlanta} bytes\n${e}")
endif()
execute_process(COMMAND "${TRABAJO}/host/tarvelo" dibuja no-existe.cad salida/no-existe.png
    WORKING_DIRECTORY "${TRABAJO}" RESULT_VARIABLE r OUTPUT_VARIABLE s ERROR_VARIABLE e)
if(r EQUAL 0 OR EXISTS "${TRABAJO}/salida/no-existe.png"
        OR NOT e MATCHES "tarvelo: no se pudo leer el dibujo: no existe el fichero no-existe.cad")
    message(FATAL_ERROR "tarvelo dibuja of a missing drawing gave ${r}:\n${s}${e}")
endif()

# An outside program that includes only cadLib.h and makes every entity kind, a mesh and a DXF.
execute_process(COMMAND ${CMAKE_COMMAND} -S "${FUENTE}/tests/paquete/programa"
    -B "${TRABAJO}/programa" -G "${GENERADOR}" "-DCMAKE_PREFIX_PATH=${TRABAJO}/prefijo"
    "-DCMAKE_CXX_FLAGS=${BANDERAS}" "-DCMAKE_EXE_LINKER_FLAGS=${BANDERAS}"
    RESULT_VARIABLE r)
if(NOT r EQUAL 0)
    message(FATAL_ERROR "configuring the umbrella-header program failed: ${r}")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} --build "${TRABAJO}/programa" RESULT_VARIABLE r)
if(NOT r EQUAL 0)
    message(FATAL_ERROR "a program that includes only cadLib.h does not build: ${r}")
endif()
execute_process(COMMAND "${TRABAJO}/programa/programa" "${TRABAJO}"
    RESULT_VARIABLE r OUTPUT_VARIABLE salidaPrograma ERROR_VARIABLE errores)
if(NOT r EQUAL 0 OR NOT salidaPrograma MATCHES "^19 entidades, modelo de 1 caras")
    message(FATAL_ERROR "the umbrella-header program failed: ${r}\n${salidaPrograma}${errores}")
endif()

# The C interface from the same package: its header and library, used by an outside C
# program; and the Python package installed beside them, which finds that library by itself.
execute_process(COMMAND ${CMAKE_COMMAND} -S "${FUENTE}/tests/paquete/programa_c"
    -B "${TRABAJO}/programa_c" -G "${GENERADOR}" "-DCMAKE_PREFIX_PATH=${TRABAJO}/prefijo"
    "-DCMAKE_C_FLAGS=${BANDERAS}" "-DCMAKE_EXE_LINKER_FLAGS=${BANDERAS}"
    RESULT_VARIABLE r)
if(NOT r EQUAL 0)
    message(FATAL_ERROR "configuring the C program against the installed package failed: ${r}")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} --build "${TRABAJO}/programa_c" RESULT_VARIABLE r)
if(NOT r EQUAL 0)
    message(FATAL_ERROR "a C program on the installed tarvelo.h does not build: ${r}")
endif()
execute_process(COMMAND "${TRABAJO}/programa_c/programa_c" "${TRABAJO}"
    RESULT_VARIABLE r OUTPUT_VARIABLE salidaC ERROR_VARIABLE errores)
if(NOT r EQUAL 0 OR NOT salidaC MATCHES "^[0-9.]+: 1 grupo de 2 puntos")
    message(FATAL_ERROR "the C program failed: ${r}\n${salidaC}${errores}")
endif()
# Python cannot load the sanitized library without preloading the sanitizers' runtime.
if(BANDERAS STREQUAL "")
    file(GLOB_RECURSE paquetePython "${TRABAJO}/prefijo/__init__.py")
    list(FILTER paquetePython INCLUDE REGEX "/dist-packages/tarvelo/__init__.py$")
    if(NOT paquetePython)
        message(FATAL_ERROR "the Python package was not installed")
    endif()
    list(GET paquetePython 0 paquetePython)
    get_filename_component(sitio "${paquetePython}" DIRECTORY)
    get_filename_component(sitio "${sitio}" DIRECTORY)
    execute_process(COMMAND ${CMAKE_COMMAND} -E env --unset=TARVELO_C_LIB "PYTHONPATH=${sitio}"
        /usr/bin/python3 -c "import tarvelo; print(tarvelo.version(), tarvelo.__file__)"
        WORKING_DIRECTORY "${TRABAJO}" RESULT_VARIABLE r OUTPUT_VARIABLE s ERROR_VARIABLE e)
    if(NOT r EQUAL 0 OR NOT s MATCHES "^[0-9.]+ ${sitio}/tarvelo/__init__.py")
        message(FATAL_ERROR "import tarvelo from the installed package failed: ${r}\n${s}${e}")
    endif()
endif()

# The DXF the demo wrote must pass the independent audit, when the auditor is installed.
if(EXISTS "${AUDITOR}")
    execute_process(COMMAND /usr/bin/python3 -c "import ezdxf" RESULT_VARIABLE sinEzdxf
        OUTPUT_QUIET ERROR_QUIET)
    if(sinEzdxf EQUAL 0)
        execute_process(COMMAND /usr/bin/python3 "${AUDITOR}" "${TRABAJO}/salida/demo.dxf"
            RESULT_VARIABLE r OUTPUT_VARIABLE informe ERROR_VARIABLE informe)
        message("${informe}")
        if(NOT r EQUAL 0)
            message(FATAL_ERROR "the demo's DXF failed the audit")
        endif()
    endif()
endif()
# The 3D side of the demo: the points of its group, the stored meshes, one of each new kind.
foreach(esperado "sin diferencias" "salida/demo.dxf" "Puntos en grupos: 100000"
        "Modelos: 280 vertices, 243 caras" "GrupoPuntos (GrpPnt1): 1" "PoliCara3D (Poly3D1): 1"
        "Esfera (Es1): 1" "Cilindro (Cl1): 1" "Prisma (Pr1): 1" "Cubo (Cb1): 1"
        "Objeto3D (Ob1): 1" "TomaCamara (TC1): 2" "Desconocida (F3D): 1")
    string(FIND "${salida}" "${esperado}" pos)
    if(pos EQUAL -1)
        message(FATAL_ERROR "the demo output lacks \"${esperado}\"")
    endif()
endforeach()

# A file with one entity of every kind (the fuzz seed) opens in info with the right counts.
execute_process(COMMAND "${TRABAJO}/host/tarvelo" info "${FUENTE}/fuzz/corpus/todas.tcad"
    WORKING_DIRECTORY "${TRABAJO}" RESULT_VARIABLE r OUTPUT_VARIABLE salidaInfo)
foreach(esperado "Entidades (12):" "Cara3D (C3D): 1" "Cilindro (Cl1): 1" "Cubo (Cb1): 1"
        "Desconocida (F3D): 1" "Esfera (Es1): 1" "GrupoPuntos (GrpPnt1): 1" "Objeto3D (Ob1): 1"
        "PoliCara3D (Poly3D1): 1" "Prisma (Pr1): 1" "Superficie (Superficie3D001): 1"
        "TomaCamara (TC1): 1" "Puntos en grupos: 5" "Modelos: 16 vertices, 5 caras")
    string(FIND "${salidaInfo}" "${esperado}" pos)
    if(NOT r EQUAL 0 OR pos EQUAL -1)
        message(FATAL_ERROR "info of every kind lacks \"${esperado}\":\n${salidaInfo}")
    endif()
endforeach()

# The drawing session, checked line by line: each line of the text `esperadas` must be a whole
# line of `salida`, in the same order; other lines may come between them.
function(compruebaLineas salida esperadas que)
    set(resto "\n${salida}")
    set(pendientes "${esperadas}")
    while(NOT pendientes STREQUAL "")
        string(FIND "${pendientes}" "\n" fin)
        if(fin EQUAL -1)
            set(linea "${pendientes}")
            set(pendientes "")
        else()
            string(SUBSTRING "${pendientes}" 0 ${fin} linea)
            math(EXPR siguiente "${fin} + 1")
            string(SUBSTRING "${pendientes}" ${siguiente} -1 pendientes)
        endif()
        string(FIND "${resto}" "\n${linea}\n" pos)
        if(pos EQUAL -1)
            message(FATAL_ERROR "${que}: the line \"${linea}\" is missing or out of order")
        endif()
        # Keep the line's own end as the start of the next search.
        string(LENGTH "${linea}" largo)
        math(EXPR corte "${pos} + 1 + ${largo}")
        string(SUBSTRING "${resto}" ${corte} -1 resto)
    endwhile()
endfunction()

function(tarvelo resultado salida)
    execute_process(COMMAND "${TRABAJO}/host/tarvelo" ${ARGN}
        WORKING_DIRECTORY "${TRABAJO}"
        RESULT_VARIABLE r OUTPUT_VARIABLE s ERROR_VARIABLE e)
    set(${resultado} "${r}" PARENT_SCOPE)
    set(${salida} "${s}${e}" PARENT_SCOPE)
endfunction()

# The sample script the README shows: two points, a rectangle whose closing click snaps to
# its first corner, the undo of that side, a click that selects, the save and the DXF.
set(tarveloFuente "${FUENTE}/cad/hosts/tarvelo")
tarvelo(r salida guion "${tarveloFuente}/ejemplos/sesion.txt")
message("${salida}")
if(NOT r EQUAL 0)
    message(FATAL_ERROR "tarvelo guion failed: ${r}")
endif()
compruebaLineas("${salida}" "> punto
2 puntos creados
Referencia a entidades: sí, máscara 1 (extremos)
> clic 3 2
4 líneas creadas
Deshecho: se quita Linea (0,50,0)-(0,0,0)
Seleccionada: Linea (0,0,0)-(100,0,0)
  Linea (0,0,0)-(100,0,0)  [seleccionada]
Dibujo guardado en salida/sesion.cad (5 entidades)
DXF escrito en salida/sesion.dxf" "the sample session")
foreach(fichero sesion.cad sesion.dxf)
    if(NOT EXISTS "${TRABAJO}/salida/${fichero}")
        message(FATAL_ERROR "the sample session did not write salida/${fichero}")
    endif()
endforeach()
if(EXISTS "${AUDITOR}" AND sinEzdxf EQUAL 0)
    execute_process(COMMAND /usr/bin/python3 "${AUDITOR}" "${TRABAJO}/salida/sesion.dxf"
        RESULT_VARIABLE r OUTPUT_VARIABLE informe ERROR_VARIABLE informe)
    if(NOT r EQUAL 0)
        message(FATAL_ERROR "the session's DXF failed the audit:\n${informe}")
    endif()
endif()
tarvelo(r salida info salida/sesion.cad)
if(NOT r EQUAL 0)
    message(FATAL_ERROR "tarvelo info on the saved session failed: ${r}\n${salida}")
endif()
compruebaLineas("${salida}" "Entidades (5):
  Linea (Ln1): 3
  Punto (Pt1): 2
Extension: (0.000, 0.000, 0.000) - (100.000, 80.000, 0.000)" "info on the saved session")

# A session typed on standard input: pruebas/NOMBRE.txt is the input, and each line of
# pruebas/NOMBRE.esperado must come out, in order. Further arguments go to `tarvelo sesion`.
function(sesionPorEntrada nombre)
    execute_process(COMMAND "${TRABAJO}/host/tarvelo" sesion ${ARGN}
        WORKING_DIRECTORY "${TRABAJO}"
        INPUT_FILE "${tarveloFuente}/pruebas/${nombre}.txt"
        RESULT_VARIABLE r OUTPUT_VARIABLE s ERROR_VARIABLE e)
    if(NOT r EQUAL 0)
        message(FATAL_ERROR "tarvelo sesion < ${nombre}.txt failed: ${r}\n${s}${e}")
    endif()
    file(READ "${tarveloFuente}/pruebas/${nombre}.esperado" esperadas)
    string(REGEX REPLACE "\n$" "" esperadas "${esperadas}")
    compruebaLineas("${s}${e}" "${esperadas}" "the session ${nombre}.txt")
    set(salida "${s}${e}" PARENT_SCOPE)
endfunction()

# Over the drawing the sample saved: orders from inside waits, cancels, the options of a
# prompt, a window selection, and the end of the input inside a command.
sesionPorEntrada(espera salida/sesion.cad)
# On an empty drawing: every order, its refusals, and quitting from inside a wait, after
# which nothing more is read.
sesionPorEntrada(ordenes)
if(NOT salida MATCHES "Se descartan los cambios sin guardar\n$")
    message(FATAL_ERROR "the session went on after sal:\n${salida}")
endif()

# A script stops at its first failed order, and its run fails; so does a missing script.
tarvelo(r salida guion "${tarveloFuente}/pruebas/fallo.txt")
if(r EQUAL 0)
    message(FATAL_ERROR "a script with an unknown order ran to success:\n${salida}")
endif()
compruebaLineas("${salida}" "Orden desconocida: traza (ayuda lista las órdenes)
El guion se detiene en la línea 5
* Cancelado *
1 punto creado" "the failing script")
string(FIND "${salida}" "Entidades (" pos)
if(NOT pos EQUAL -1)
    message(FATAL_ERROR "the failing script went on after its failed order:\n${salida}")
endif()
tarvelo(r salida guion no-existe.txt)
if(r EQUAL 0 OR NOT salida MATCHES "no se pudo leer el guion no-existe.txt")
    message(FATAL_ERROR "a missing script gave ${r}:\n${salida}")
endif()

# Files that can't be written or read: the order fails with its reason and a failed exit,
# at once (a FIFO is not waited on), and what stood there before is left alone.
file(WRITE "${TRABAJO}/salida/previo.dxf" "previo")
foreach(caso "no/hay/carpeta/plano.dxf|no existe la carpeta no/hay/carpeta"
             "/dev/full|/dev/full no es un fichero regular"
             "salida|salida es una carpeta")
    string(REPLACE "|" ";" caso "${caso}")
    list(GET caso 0 destino)
    list(GET caso 1 motivo)
    tarvelo(r salida dxf salida/sesion.cad "${destino}")
    if(r EQUAL 0 OR NOT salida MATCHES "tarvelo: no se pudo escribir el DXF: ${motivo}")
        message(FATAL_ERROR "tarvelo dxf to ${destino} gave ${r}:\n${salida}")
    endif()
endforeach()
execute_process(COMMAND mkfifo "${TRABAJO}/tuberia")
execute_process(COMMAND "${TRABAJO}/host/tarvelo" info tuberia WORKING_DIRECTORY "${TRABAJO}"
    TIMEOUT 30 RESULT_VARIABLE r OUTPUT_VARIABLE s ERROR_VARIABLE e)
if(r EQUAL 0 OR NOT "${s}${e}" MATCHES "no se pudo leer el dibujo: tuberia no es un fichero regular")
    message(FATAL_ERROR "tarvelo info on a FIFO gave ${r}:\n${s}${e}")
endif()

# One damaged byte: in a tag, the entity is kept unread and counted, and info says so; in
# the only layer's name (cut to nothing), the DXF is refused with the reason, and a session
# over that drawing goes on after the refusal and saves it.
execute_process(COMMAND /usr/bin/python3 -c "
import sys
b = bytearray(open('salida/sesion.cad', 'rb').read())
t = bytearray(b)
t[b.index(b'Ln1\\0') + 3] = ord('X')
open('salida/danado.cad', 'wb').write(t)
c = bytearray(b)
c[b.index(b'\\2\\0' + b'0\\0', b.index(b'Cp1\\0')) + 2] = 0
open('salida/sin-nombre.cad', 'wb').write(c)
" WORKING_DIRECTORY "${TRABAJO}" RESULT_VARIABLE r)
if(NOT r EQUAL 0)
    message(FATAL_ERROR "could not write the damaged copies")
endif()
tarvelo(r salida info salida/danado.cad)
if(NOT r EQUAL 0)
    message(FATAL_ERROR "tarvelo info on a damaged file failed: ${r}\n${salida}")
endif()
compruebaLineas("${salida}" "Entidades (5):
  Dañada, sin leer: 1
Aviso: salida/danado.cad está dañado: 1 entidad no se pudo leer y se conserva tal como venía" "info on a damaged file")
tarvelo(r salida dxf salida/sin-nombre.cad salida/previo.dxf)
if(r EQUAL 0 OR NOT salida MATCHES "una capa sin nombre no se puede escribir en un DXF")
    message(FATAL_ERROR "tarvelo dxf with a layer without a name gave ${r}:\n${salida}")
endif()
file(READ "${TRABAJO}/salida/previo.dxf" previo)
if(NOT previo STREQUAL "previo")
    message(FATAL_ERROR "a failed export touched the previous file")
endif()
file(WRITE "${TRABAJO}/sin-nombre.txt"
    "dxf salida/previo.dxf\nguarda salida/rescatado.cad\nabre salida/danado.cad\nsal\n")
execute_process(COMMAND "${TRABAJO}/host/tarvelo" sesion salida/sin-nombre.cad
    WORKING_DIRECTORY "${TRABAJO}" INPUT_FILE "${TRABAJO}/sin-nombre.txt"
    RESULT_VARIABLE r OUTPUT_VARIABLE s ERROR_VARIABLE e)
compruebaLineas("${s}${e}" "dxf: una capa sin nombre no se puede escribir en un DXF; póngale nombre antes de exportar
Dibujo guardado en salida/rescatado.cad (5 entidades)
Aviso: salida/danado.cad está dañado: 1 entidad no se pudo leer y se conserva tal como venía
Dibujo abierto: salida/danado.cad (5 entidades)" "a session over a layer without a name")

# A session that fills a small disk (root only; otherwise said and skipped): the first save
# fits, the one after 5,000 more points does not. The save and the DXF say so, the order
# fails, and the files of the first save stay byte for byte, with nothing beside them.
file(MAKE_DIRECTORY "${TRABAJO}/lleno")
execute_process(COMMAND mount -t tmpfs -o size=96k tmpfs "${TRABAJO}/lleno"
    RESULT_VARIABLE montado OUTPUT_QUIET ERROR_QUIET)
if(NOT montado EQUAL 0)
    message("the full-disk session is skipped: mounting a tmpfs needs root")
else()
    set(guion "punto\n1,1\n\nguarda lleno/obra.cad\ndxf lleno/obra.dxf\npunto\n")
    foreach(i RANGE 1 5000)
        string(APPEND guion "${i},${i},1\n")
    endforeach()
    string(APPEND guion "\nguarda lleno/obra.cad\ndxf lleno/obra.dxf\nsal\nsal\n")
    file(WRITE "${TRABAJO}/lleno.txt" "${guion}")
    execute_process(COMMAND "${TRABAJO}/host/tarvelo" sesion WORKING_DIRECTORY "${TRABAJO}"
        INPUT_FILE "${TRABAJO}/lleno.txt" RESULT_VARIABLE r OUTPUT_VARIABLE s ERROR_VARIABLE e)
    file(GLOB quedan RELATIVE "${TRABAJO}/lleno" "${TRABAJO}/lleno/*" "${TRABAJO}/lleno/.*")
    file(READ "${TRABAJO}/lleno/obra.cad" cad HEX)
    file(READ "${TRABAJO}/lleno/obra.dxf" dxf)
    execute_process(COMMAND umount "${TRABAJO}/lleno")
    compruebaLineas("${s}${e}" "Dibujo guardado en lleno/obra.cad (1 entidad)
DXF escrito en lleno/obra.dxf
5000 puntos creados
guarda: no queda espacio en el disco para escribir lleno/obra.cad
dxf: no queda espacio en el disco para escribir lleno/obra.dxf" "the session on a full disk")
    list(SORT quedan)
    if(NOT quedan STREQUAL "obra.cad;obra.dxf")
        message(FATAL_ERROR "a failed save left files behind: ${quedan}")
    endif()
    string(LENGTH "${cad}" largo)
    if(largo GREATER 4000 OR NOT dxf MATCHES "POINT\n  8\n0\n 10\n1.0000\n 20\n1.0000\n 30\n0.0000\n  0\nENDSEC")
        message(FATAL_ERROR "the first save's files did not stay as they were")
    endif()
endif()

# Other programs' files: a plan from a DXF into a new drawing, a textured model from an OBJ
# added to it, each with its report; a binary DXF refused with its reason, the drawing as it
# was.
set(datos "${FUENTE}/../shared/datos")
if(EXISTS "${datos}/dxf/trimesh/LM2.dxf")
    file(REMOVE "${TRABAJO}/salida/importado.cad")
    tarvelo(r salida importa "${datos}/dxf/trimesh/LM2.dxf" salida/importado.cad)
    message("${salida}")
    foreach(esperado "DXF AC1021, textos en UTF-8" "Capas nuevas: 3 \\(GRAVIRANJE, HOLES, IZREZ\\)"
            "Puntos: 31" "Polilineas: 4 \\(268 vertices\\)"
            "Descartados: 0 arcos, 36 circulos, 5 textos" "Entidades omitidas: DIMENSION 22"
            "Entidades nuevas: 35" "Guardado en salida/importado.cad")
        if(r OR NOT salida MATCHES "${esperado}")
            message(FATAL_ERROR "tarvelo importa of a DXF gave ${r}, not '${esperado}':\n${salida}")
        endif()
    endforeach()
    tarvelo(r salida importa "${datos}/obj/trimesh_capsule/capsule.obj" salida/importado.cad)
    message("${salida}")
    foreach(esperado "Se añade a salida/importado.cad" "Caras: 10200 triangulos, 0 cuadrilateros"
            "Materiales creados: 1" "Texturas: .*capsule0.jpg" "Entidades nuevas: 1")
        if(r OR NOT salida MATCHES "${esperado}")
            message(FATAL_ERROR "tarvelo importa of an OBJ gave ${r}, not '${esperado}':\n${salida}")
        endif()
    endforeach()
    tarvelo(r salida info salida/importado.cad)
    if(r OR NOT salida MATCHES "Modelos: [0-9]+ vertices, 10200 caras")
        message(FATAL_ERROR "tarvelo info after the imports gave ${r}:\n${salida}")
    endif()
    file(SHA256 "${TRABAJO}/salida/importado.cad" antes)
    tarvelo(r salida importa "${datos}/dxf/ezdxf/bin_dxf_r12.dxf" salida/importado.cad)
    file(SHA256 "${TRABAJO}/salida/importado.cad" despues)
    if(r EQUAL 0 OR NOT salida MATCHES "es un DXF binario" OR NOT antes STREQUAL despues)
        message(FATAL_ERROR "tarvelo importa of a binary DXF gave ${r}:\n${salida}")
    endif()
endif()
