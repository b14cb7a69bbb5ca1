include("${CMAKE_CURRENT_LIST_DIR}/zelkovaTargets.cmake")
