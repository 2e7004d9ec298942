"""The twelve functions with their types, loaded at first use, once a process."""

from __future__ import annotations

import ctypes
import os
import sys
from typing import Any, Optional

from ._blocks import system_blocks
from ._find import load_library


class Library:
    """``functions`` has the twelve functions, ``blocks`` the memory blocks that they exchange."""

    def __init__(self) -> None:
        self.functions = _typed(load_library())
        self.blocks: Any = system_blocks()
        self.file = _file_of(self.functions)
        self.folder = os.path.dirname(self.file)


def _typed(functions: ctypes.CDLL) -> ctypes.CDLL:
    number, handle = ctypes.c_int32, ctypes.c_void_p
    arguments = {
        "orv_InitDLL": (),
        "orv_ReleaseDLL": (),
        "orv_SetLanguageFile": (ctypes.c_char_p,),
        "orv_SetOwnerWindow": (handle,),
        "orv_SetVisibleMode": (number,),
        "orv_SetSizeOutputImage": (number, number),
        "orv_SetFaceCropRatio": (ctypes.c_float,),
        "orv_EnableAction": (number, number),
        "orv_GetBitDepth": (handle,),
        "orv_DetectFacePicture": (handle,),
        "orv_DetectFaceLive": (number,),
        "orv_GetOutputImage": (ctypes.POINTER(handle),),
    }
    for name, types in arguments.items():
        function = getattr(functions, name)
        function.restype = number
        function.argtypes = types
    return functions


class _DlInfo(ctypes.Structure):
    _fields_ = [
        ("dli_fname", ctypes.c_char_p),
        ("dli_fbase", ctypes.c_void_p),
        ("dli_sname", ctypes.c_char_p),
        ("dli_saddr", ctypes.c_void_p),
    ]


def _file_of(functions: ctypes.CDLL) -> str:
    """The library's file, whatever path or name it was loaded by; the name alone where the system can't tell."""
    if sys.platform == "win32":
        name = ctypes.create_unicode_buffer(32768)
        module_file_name = ctypes.WinDLL("kernel32").GetModuleFileNameW
        module_file_name.argtypes = (ctypes.c_void_p, ctypes.c_wchar_p, ctypes.c_uint32)
        module_file_name(functions._handle, name, len(name))
        return name.value or functions._name
    info = _DlInfo()
    dladdr = getattr(ctypes.CDLL(None), "dladdr", None)
    if dladdr is not None:
        dladdr.argtypes = (ctypes.c_void_p, ctypes.POINTER(_DlInfo))
        dladdr(ctypes.cast(functions.orv_InitDLL, ctypes.c_void_p), ctypes.byref(info))
    return os.path.realpath(os.fsdecode(info.dli_fname)) if info.dli_fname else functions._name


_library: Optional[Library] = None


def the_library() -> Library:
    """Loaded at the first call. A failure is told anew at each call, so that a mended place is found."""
    global _library
    if _library is None:
        _library = Library()
    return _library
