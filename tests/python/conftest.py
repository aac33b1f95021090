"""Fixtures of the Python package's tests. The library comes through TARVELO_C_LIB and the
package through PYTHONPATH; written files go under CAD_TEST_SALIDA when it is set, so that the
DXF audit that runs after the tests reads the DXF files in its dxf/ folder."""

import os
import shutil
from pathlib import Path

import pytest

RAIZ = Path(__file__).resolve().parents[2]
EJEMPLOS = RAIZ / "cad" / "hosts" / "python" / "ejemplos"


@pytest.fixture
def salida(tmp_path, request):
    base = os.environ.get("CAD_TEST_SALIDA")
    if not base:
        return tmp_path
    # One folder per test, so that reruns and other tests never see stale files.
    carpeta = Path(base) / "python" / request.node.name
    shutil.rmtree(carpeta, ignore_errors=True)
    carpeta.mkdir(parents=True)
    return carpeta


@pytest.fixture
def dxf(salida):
    """The folder for DXF files that the independent audit reads (names start python_)."""
    base = os.environ.get("CAD_TEST_SALIDA")
    carpeta = Path(base) / "dxf" if base else salida / "dxf"
    carpeta.mkdir(parents=True, exist_ok=True)
    return carpeta


@pytest.fixture
def datos():
    """Real DXF and OBJ files that other programs wrote, in the shared data beside the clone."""
    carpeta = RAIZ.parent / "shared" / "datos"
    if not carpeta.is_dir():
        pytest.skip(f"no están los datos compartidos en {carpeta}")
    return carpeta
