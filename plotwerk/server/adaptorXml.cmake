# Writes to ADAPTOR_XML the protocol's file XML for an adaptor whose methods may answer later.
file(READ ${XML} xml)
string(REGEX REPLACE "<method name=[^>]*>"
       "\\0<annotation name=\"org.freedesktop.DBus.Method.Async\" value=\"server\"/>" xml "${xml}")
file(WRITE ${ADAPTOR_XML} "${xml}")
