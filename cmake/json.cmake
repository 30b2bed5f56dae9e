# The development host and the tests read JSON with nlohmann-json, which Debian installs among the native headers.
# Only that one folder may become visible to the cross compiler.
find_path(QV_JSON_ROOT nlohmann/json.hpp PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/include)
file(CREATE_LINK ${QV_JSON_ROOT}/nlohmann ${CMAKE_BINARY_DIR}/include/nlohmann SYMBOLIC)
add_library(qv_json INTERFACE)
target_include_directories(qv_json SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/include)
