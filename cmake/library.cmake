# The engine: one set of objects, linked into the shared library and, for tests that look inside, into the test
# programs.

find_package(JPEG REQUIRED)
add_library(vornik_opengl INTERFACE)
if(WIN32)
    # Without the import attribute a program can stand in for any OpenGL function by defining it.
    target_compile_definitions(vornik_opengl INTERFACE _GDI32_)
    add_library(OpenGL::OpenGL INTERFACE IMPORTED GLOBAL)
    target_link_libraries(OpenGL::OpenGL INTERFACE opengl32)
    target_link_libraries(vornik_opengl INTERFACE glu32 OpenGL::OpenGL gdi32)
else()
    find_package(OpenGL REQUIRED COMPONENTS OpenGL GLX EGL)
    find_package(X11 REQUIRED)
    target_link_libraries(vornik_opengl INTERFACE OpenGL::OpenGL OpenGL::GLX OpenGL::EGL GLU X11::X11)
endif()

add_library(vornik_objects OBJECT)
set_target_properties(
    vornik_objects PROPERTIES POSITION_INDEPENDENT_CODE ON CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
target_include_directories(vornik_objects PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>)
target_compile_definitions(vornik_objects PRIVATE VORNIK_BUILDING INTERFACE VORNIK_STATIC)
target_link_libraries(vornik_objects PRIVATE vornik_options PUBLIC vornik_opengl vornik_jpeg)

foreach(folder core platform rasterizer scene animation assets spatial lighting particles console)
    add_subdirectory(${PROJECT_SOURCE_DIR}/${folder} ${PROJECT_BINARY_DIR}/${folder})
endforeach()

add_library(vornik SHARED)
add_library(Vornik::vornik ALIAS vornik)
target_link_libraries(vornik PRIVATE vornik_objects vornik_options)
target_include_directories(vornik PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>)
set_target_properties(vornik PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
if(WIN32)
    set_target_properties(vornik PROPERTIES PREFIX "") # vornik.dll
else()
    set(map ${PROJECT_SOURCE_DIR}/cmake/exports.map)
    target_link_options(vornik PRIVATE -Wl,--version-script=${map})
    set_target_properties(vornik PROPERTIES LINK_DEPENDS ${map})
endif()
target_link_options(vornik PRIVATE -Wl,--no-undefined)
