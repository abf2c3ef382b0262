# CLI11 and nlohmann-json are header-only, and Debian installs them beside the native headers. A
# cross compiler must see these two folders and nothing else of /usr/include, so they are linked
# into a folder of the build tree.
find_path(ZEBCOMN_CLI11_DIR CLI/CLI.hpp REQUIRED NO_CMAKE_FIND_ROOT_PATH PATHS /usr/include)
find_path(ZEBCOMN_JSON_DIR nlohmann/json.hpp REQUIRED NO_CMAKE_FIND_ROOT_PATH PATHS /usr/include)
set(header_only_dir "${PROJECT_BINARY_DIR}/header-only")
file(MAKE_DIRECTORY "${header_only_dir}")
file(CREATE_LINK "${ZEBCOMN_CLI11_DIR}/CLI" "${header_only_dir}/CLI" SYMBOLIC)
file(CREATE_LINK "${ZEBCOMN_JSON_DIR}/nlohmann" "${header_only_dir}/nlohmann" SYMBOLIC)

add_library(zebcomn_header_only INTERFACE)
target_include_directories(zebcomn_header_only SYSTEM INTERFACE "${header_only_dir}")
