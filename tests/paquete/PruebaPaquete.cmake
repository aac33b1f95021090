# Installs the built library into a scratch prefix, builds the command-line host against the
# installed package with find_package(cadLib), and runs its demo.
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
foreach(esperado "sin diferencias" "salida/demo.dxf")
    string(FIND "${salida}" "${esperado}" pos)
    if(pos EQUAL -1)
        message(FATAL_ERROR "the demo output lacks \"${esperado}\"")
    endif()
endforeach()
