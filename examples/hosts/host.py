#!/usr/bin/python3
"""A host in Python: converts tables, one after the other. Usage: host.py INPUT OUTPUT [INPUT OUTPUT]..."""

import ctypes
import os
import sys
import tempfile

library = ctypes.CDLL("xls2tki.dll" if os.name == "nt" else "libxls2tki.so.0")
library.xls2tki_convert.restype = library.xls2tki_facts.restype = ctypes.c_bool
library.xls2tki_message.restype = ctypes.POINTER(ctypes.c_uint16)

EXCEL, CSV = 1, 2
UMASK = os.umask(0o077)  # Python reads it only by setting it
os.umask(UMASK)


class Names(ctypes.Structure):
    _fields_ = [("texts", ctypes.c_void_p), ("count", ctypes.c_size_t)]


class Conversion(ctypes.Structure):
    _fields_ = [("size", ctypes.c_size_t), ("input_path", ctypes.c_char_p), ("worksheet_name", ctypes.c_char_p),
                ("output_path", ctypes.c_char_p), ("import_type", ctypes.c_int32), ("separator", ctypes.c_uint16),
                ("forward_messages", ctypes.c_bool), ("utf8", ctypes.c_bool), ("vsg_names", Names),
                ("second_names", Names), ("third_names", Names), ("variant", ctypes.c_char_p),
                ("diagnostic_instance", ctypes.c_char_p)]


class Facts(ctypes.Structure):
    _fields_ = [("size", ctypes.c_size_t), ("layout", ctypes.c_int32), ("hex_digits", ctypes.c_bool),
                ("sae_codes", ctypes.c_bool), ("rows", ctypes.c_size_t), ("columns", ctypes.c_size_t),
                ("end_column", ctypes.c_size_t), ("columns_without_header", ctypes.POINTER(ctypes.c_size_t)),
                ("columns_without_header_count", ctypes.c_size_t), ("item_columns", ctypes.c_size_t),
                ("items", ctypes.c_size_t), ("written", ctypes.c_bool)]


def utf16(text):
    return (text + "\0").encode("utf-16-le", "surrogatepass")


def message():
    units, length = library.xls2tki_message(), 0
    while units[length]:
        length += 1
    return bytes((ctypes.c_uint16 * length)(*units[:length])).decode("utf-16-le", "replace")


def convert(table, fresh):
    """None, or why it could not be done."""
    conversion = Conversion(size=ctypes.sizeof(Conversion), input_path=utf16(table), output_path=utf16(fresh),
                            import_type=CSV if table.endswith(".csv") else EXCEL, separator=ord(";"), utf8=True)
    if not library.xls2tki_convert(ctypes.byref(conversion)):
        return message()
    facts = Facts(size=ctypes.sizeof(Facts))
    if not (library.xls2tki_facts(ctypes.byref(facts)) and facts.written):
        return "The document could not be written."
    return None


def replace(fresh, document):
    """Gives the new document the older one's permissions, or the usual ones, and then its place."""
    usual = 0o666 & ~UMASK
    os.chmod(fresh, os.stat(document).st_mode & 0o777 if os.path.exists(document) else usual)
    with open(fresh, "rb+") as file:
        os.fsync(file.fileno())
    os.replace(fresh, document)


def make(table, document):
    """None, or why it could not be done. An older document stays until the new one is complete."""
    if os.path.lexists(document) and (os.path.islink(document) or not os.path.isfile(document)):
        return f"{document} is not a regular file."
    fresh = None
    try:
        number, fresh = tempfile.mkstemp(dir=os.path.dirname(document) or ".")
        os.close(number)
        failure = convert(table, fresh)
        if failure is None:
            replace(fresh, document)
        return failure
    except OSError as error:
        return f"{document}: {error.strerror}"
    finally:
        if fresh is not None and os.path.exists(fresh):
            os.remove(fresh)


if len(sys.argv) < 3 or len(sys.argv) % 2 == 0:
    sys.exit(__doc__)
sys.stdout.reconfigure(errors="backslashreplace")  # for names that are no text
library.xls2tki_init_ole(True)
failed = False
for table, document in zip(sys.argv[1::2], sys.argv[2::2]):
    failure = make(table, document)
    print(f"{table}: {failure or 'done'}")
    failed = failed or failure is not None
sys.exit(failed)
