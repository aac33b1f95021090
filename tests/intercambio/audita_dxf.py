#!/usr/bin/python3
"""Reads one DXF file with ezdxf, audits it and says what it holds.

Usage: audita_dxf.py FILE.dxf [--capa NAME]... [--texto TEXT]...

--capa and --texto name layers of the LAYER table and TEXT/MTEXT contents that must be in
the file spelled exactly as given (after ezdxf decodes the header's code page and the
"\\U+XXXX" escapes).

Exit codes: 0 read, no unfixed audit errors, every name and text found
            1 the audit reports errors it could not fix
            2 ezdxf cannot read the file (structure error)
            3 the file is missing or cannot be read at all; bad arguments
            4 a layer or text asked for is missing
"""
import argparse
import sys
from collections import Counter

import ezdxf
from ezdxf.audit import AuditError
from ezdxf.lldxf.const import DXFStructureError
from ezdxf.lldxf.validator import is_valid_layer_name


def legible(valor):
    """A value as a reader shows it: ezdxf's own readfile leaves "\\U+XXXX" escapes of files
    before AC1021 as they are, so they are decoded here by ezdxf's decoder; a surrogate pair
    of escapes (a character beyond U+FFFF) is joined into its character."""
    if ezdxf.has_dxf_unicode(valor):
        valor = ezdxf.decode_dxf_unicode(valor)
    try:
        return valor.encode("utf-16", "surrogatepass").decode("utf-16")
    except UnicodeDecodeError:
        return valor


def escape_valido(error, capas):
    """An invalid-layer-name error about a name with escapes that decodes to a table layer."""
    nombre = error.data if isinstance(error.data, str) else None
    if error.code != AuditError.INVALID_LAYER_NAME or not nombre or "\\U+" not in nombre:
        return False
    decodificado = legible(nombre)
    return decodificado in capas and is_valid_layer_name(decodificado)


def main():
    parser = argparse.ArgumentParser(add_help=True, usage=__doc__)
    parser.add_argument("fichero")
    parser.add_argument("--capa", action="append", default=[])
    parser.add_argument("--texto", action="append", default=[])
    try:
        args = parser.parse_args()
    except SystemExit:
        return 3

    try:
        doc = ezdxf.readfile(args.fichero)
    except IOError as e:
        print(f"NOT READABLE: {e}")
        return 3
    except (DXFStructureError, UnicodeDecodeError, ValueError) as e:
        print(f"STRUCTURE ERROR: {type(e).__name__}: {e}")
        return 2
    auditor = doc.audit()
    # This ezdxf's audit checks an entity's layer name before decoding its "\\U+XXXX"
    # escapes, which R12 files use for characters their code page lacks: such a name is no
    # error when, decoded, it is a valid name of the LAYER table.
    capas = [legible(capa.dxf.name) for capa in doc.layers]
    errores = [e for e in auditor.errors if not escape_valido(e, capas)]

    print(f"file: {args.fichero}")
    print(f"dxfversion: {doc.dxfversion}  encoding: {doc.encoding}")
    print(f"audit: {len(errores)} unfixed errors, {len(auditor.fixes)} fixes")
    for e in auditor.errors[:20]:
        print(f"  {'ERROR' if e in errores else 'ESCAPED NAME, not an error'} "
              f"code={e.code}: {e.message}")
    for f in auditor.fixes[:20]:
        print(f"  FIX   code={f.code}: {f.message}")

    print(f"layers ({len(capas)}): " + " | ".join(capas))
    msp = doc.modelspace()
    por_tipo = Counter(e.dxftype() for e in msp)
    print(f"modelspace entities: {sum(por_tipo.values())}")
    for tipo, n in sorted(por_tipo.items()):
        print(f"  {tipo:<14} {n}")
    por_capa = Counter(legible(e.dxf.layer) for e in msp if e.dxf.hasattr("layer"))
    print("entities per layer: " + " ".join(f"{k}={v}" for k, v in sorted(por_capa.items())))
    sin_tabla = sorted(set(por_capa) - set(capas))
    if sin_tabla:
        print("layers used but not in the LAYER table: " + " | ".join(sin_tabla))

    textos = set()
    for e in msp.query("TEXT MTEXT"):
        textos.add(legible(e.dxf.text if e.dxftype() == "TEXT" else e.text))

    faltan = [f"layer {c!r}" for c in args.capa if c not in capas]
    faltan += [f"text {t!r}" for t in args.texto if t not in textos]
    for f in faltan:
        print(f"MISSING {f}")
    if faltan:
        print("texts in the file: " + " | ".join(repr(t) for t in sorted(textos)))

    if errores:
        return 1
    return 4 if faltan else 0


if __name__ == "__main__":
    sys.exit(main())
