# For every message that the generated ADAPTOR declares, writes to DECLARATIONS the method of
# ControlObject that answers it, and to RECEIVERS the override that takes it in.
file(READ ${ADAPTOR} adaptor)
string(REGEX MATCHALL "virtual [^;]* = 0" methods "${adaptor}")
set(declarations "")
set(receivers "")
foreach(method IN LISTS methods)
  string(REGEX MATCH "^virtual void ([A-Za-z0-9_]+)\\(sdbus::Result<(.*)>&& result(, )?(.*)\\) = 0$"
         matched "${method}")
  set(member ${CMAKE_MATCH_1})
  set(results "${CMAKE_MATCH_2}")
  set(comma "${CMAKE_MATCH_3}")
  set(parameters "${CMAKE_MATCH_4}")
  set(answer "${results}")
  if(NOT results)
    set(answer void)
  elseif(results MATCHES ",")
    set(answer "std::tuple<${results}>")
  endif()
  set(parameter "([A-Za-z0-9_:]+(<[^>]*>)?) ([A-Za-z0-9_]+)(, |$)")
  string(REGEX REPLACE "${parameter}" "const \\1& \\3\\4" references "${parameters}")
  string(REGEX REPLACE "${parameter}" ", std::move(\\3)" arguments "${parameters}")
  string(APPEND declarations "${answer} ${member}(${references});\n")
  string(APPEND receivers
         "void ${member}(sdbus::Result<${results}>&& result${comma}${parameters}) override {\n"
         "    this->receive(std::move(result), \"${member}\", &ControlObject::${member}${arguments});\n}\n")
endforeach()
file(WRITE ${DECLARATIONS} "${declarations}")
file(WRITE ${RECEIVERS} "${receivers}")
