# The development host reads ribbons with RapidXML, which Debian installs among the native headers. Only that one folder
# may become visible to the cross compiler.
find_path(QV_XML_ROOT rapidxml/rapidxml.hpp PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/include-xml)
file(CREATE_LINK ${QV_XML_ROOT}/rapidxml ${CMAKE_BINARY_DIR}/include-xml/rapidxml SYMBOLIC)
add_library(qv_xml INTERFACE)
target_include_directories(qv_xml SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/include-xml)
