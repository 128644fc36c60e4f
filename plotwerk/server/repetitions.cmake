# Writes HEADER: for every message of the protocol in the folder PROTOCOL, the row of the table by
# which it can be repeated.
set(XML ${PROTOCOL}/PlotwerkControl.xml)
include(${PROTOCOL}/messages.cmake)
set(rows "")
foreach(member IN LISTS MEMBERS)
  string(APPEND rows "{\"${member}\", [](ControlObject &object, const Arguments &arguments) {\n"
         "     repeatMessage(object, \"${member}\", &ControlObject::${member}, arguments);\n }},\n")
endforeach()
file(WRITE ${HEADER} "${rows}")
