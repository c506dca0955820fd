"""A complete host in Python: imports an OBJ file and prints what came of it.

    python3 first_import.py libobj_adapter_c.so scene.obj
"""
import ctypes
import sys
from ctypes import POINTER, Structure, byref, c_char_p, c_double, c_int32, c_void_p


class TreeNode(Structure):
    _fields_ = [("name", c_char_p), ("parent", c_int32), ("firstChild", c_int32),
                ("nextSibling", c_int32), ("group", c_int32)]


MESSAGE_CALLBACK = ctypes.CFUNCTYPE(None, c_void_p, c_int32, c_char_p)
show_message = MESSAGE_CALLBACK(lambda user_data, level, text: level < 3 and print(
    text.decode(errors="replace"), file=sys.stderr))

library = ctypes.CDLL(sys.argv[1])
library.objAdapterCreateSettings.restype = c_void_p
library.objAdapterGetTree.restype = POINTER(TreeNode)
settings = c_void_p(library.objAdapterCreateSettings())
library.objAdapterSetSkipPolygonsWithoutEar(settings, 1)
library.objAdapterSetUseGroupNameHierarchy(settings, 1)
library.objAdapterSetMessageCallback(settings, show_message, None)
if library.objAdapterImportFile(settings, sys.argv[2].encode()) != 1:
    sys.exit(1)
count = c_int32()
library.objAdapterGetVertices(byref(count))
vertex_count = count.value
library.objAdapterGetFaces(byref(count))
print(f"{vertex_count} vertices, {count.value} faces, "
      f"{library.objAdapterGetNumberOfMaterials()} materials")
tree = library.objAdapterGetTree(byref(count))
for node in tree[:count.value]:
    print("node", node.name.decode(errors="replace"))
