# The Markdown documents as Doxygen takes them: see FILTER_PATTERNS in docs/Doxyfile.
# The names of headers and documents become links.
s,`(([a-z]+/)?[a-z_]+\.h)`,\1,g
s,`(docs/[a-z]+\.md)`,[\1](\1),g
# A heading of one word can be linked to.
s,^## ([A-Z][a-z]+)$,& {#\L\1},
# Bold text may begin with code.
s,\*\*([^*]+)\*\*,<b>\1</b>,g
# A lone '%' would be taken for a mark of Doxygen's.
s,`%([a-z]+)`,`%%\1`,g
s,'%','%%',g
