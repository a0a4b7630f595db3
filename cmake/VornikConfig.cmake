# find_package(Vornik) gives the target Vornik::vornik.
include(${CMAKE_CURRENT_LIST_DIR}/VornikTargets.cmake)
