"""Shows the library's values as what they mean.

gdb runs this when it meets the library, provided that it lies where gdb looks for it, and the user
does by `source`. qorutils_printers.py lies in the same folder.
"""

import os
import sys

import gdb

sys.path.insert(0, os.path.dirname(os.path.realpath(__file__)))
# What Python would write here belongs to no package, and would stay when the package goes.
writes_no_bytecode = sys.dont_write_bytecode
sys.dont_write_bytecode = True
import qorutils_printers
sys.dont_write_bytecode = writes_no_bytecode
sys.path.pop(0)

qorutils_printers.register(gdb.current_objfile())
