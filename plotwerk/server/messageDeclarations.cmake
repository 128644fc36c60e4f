# Writes OUTPUT: for every message that the generated ADAPTOR declares, the declaration of an
# override.
file(READ ${ADAPTOR} adaptor)
string(REGEX MATCHALL "virtual [^;]* = 0" declarations "${adaptor}")
list(TRANSFORM declarations REPLACE "^virtual (.*) = 0$" "\\1 override")
list(JOIN declarations ";\n" declarations)
file(WRITE ${OUTPUT} "${declarations};\n")
