# CMake package of the JobObjects client kit:
#
#   find_package(JobObjects 1.0 REQUIRED)
#   target_link_libraries(client PRIVATE JobObjects::JobObjects)
#
# The target provides the headers and the identifiers (CLSID_PrintJob, IID_IPrintJob, ...). The library itself is not
# linked: clients create its objects with CoCreateInstance. JobObjects_TYPE_LIBRARY and JobObjects_IDL are the paths of
# the type library for the client's platform and the interface definition.
get_filename_component(JobObjects_ROOT "${CMAKE_CURRENT_LIST_DIR}/../../.." ABSOLUTE)
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    set(JobObjects_TYPE_LIBRARY "${JobObjects_ROOT}/x64/JobObjects.tlb")
else()
    set(JobObjects_TYPE_LIBRARY "${JobObjects_ROOT}/JobObjects.tlb")
endif()
set(JobObjects_IDL "${JobObjects_ROOT}/JobObjects.idl")

if(NOT TARGET JobObjects::JobObjects)
    # The identifiers are compiled into the client, as C++ if that language is enabled, else as C.
    get_property(languages GLOBAL PROPERTY ENABLED_LANGUAGES)
    set(identifiers "${JobObjects_ROOT}/src/JobObjects_i.c")
    if("CXX" IN_LIST languages)
        set(identifiers "${JobObjects_ROOT}/src/JobObjects_i.cpp")
    endif()
    add_library(JobObjects::JobObjects INTERFACE IMPORTED)
    set_target_properties(JobObjects::JobObjects PROPERTIES
        INTERFACE_INCLUDE_DIRECTORIES "${JobObjects_ROOT}/include"
        INTERFACE_SOURCES "${identifiers}"
        INTERFACE_LINK_LIBRARIES "ole32;oleaut32;uuid")
endif()
