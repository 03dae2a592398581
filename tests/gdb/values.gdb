# Shows the values of values.cpp, which stands at its first Stop. Run by printers_show_values.sh.
set width 0
set print address off
set print frame-info short-location
set host-charset UTF-8
set target-charset UTF-8
# Those of the standard library: on the target, gdb does not find them by itself.
python
import sys
sys.path.insert(0, "/usr/share/gcc/python")
import libstdcxx.v6
libstdcxx.v6.register_libstdcxx_printers(None)
end

# The text up to the first command that is traced is not compared.
set trace-commands on
backtrace -full
up-silently
print pointer
print *pointer
print &reference
print reference
print list[1]
print byName
print -pretty -- array
print -elements 5 -- narrow
print -elements 10 -- narrow
print -elements 4 -- list
print -elements 3 -- withZero
print /r narrow
print $qor_buffer(shared)
print $qor_buffer(reference).nRefs
# What a development environment asks for.
interpreter-exec mi2 "-enable-pretty-printing"
interpreter-exec mi2 "-var-create - * narrow"
interpreter-exec mi2 "-var-create - * array"
interpreter-exec mi2 "-var-list-children --all-values var2"

continue
up-silently
info locals

continue
up-silently
info locals
print -pretty -- store
print -elements 2 -- store
set $copy = store
print $copy

continue
up-silently
info locals

continue
up-silently
info locals
print *pointer
print /r time
print /r fileTime
print /r systemTime
kill
