# Writes HEADER: for every message of the protocol in the file XML, a row of the table of those that
# can be repeated.
include(${PROTOCOL_DIR}/messages.cmake)
set(rows "")
foreach(member IN LISTS MEMBERS)
  string(APPEND rows "{\"${member}\", [](ControlObject &object, const Arguments &arguments) {\n"
         "     repeatMessage(object, &ControlObject::${member}, arguments);\n }},\n")
endforeach()
file(WRITE ${HEADER} "${rows}")
