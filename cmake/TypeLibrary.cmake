# Generates from JobObjects/JobObjects.idl, in the build folder:
#   JobObjects.tlb               type library, resource 1 of the module
#   include/JobObjects.h         interfaces and classes with their comments, shipped to clients
#   include/JobObjects.hpp       C++ classes over them, shipped to clients
#   JobObjects_i.c               identifiers, for clients whose compiler has no __uuidof
#   include/JobObjectClasses.h   list of the classes, for the tool and the tests
# Target jobobjects_typelib makes them. A target that includes "JobObjects.h" links jobobjects_idl.

find_program(WIDL NAMES i686-w64-mingw32-widl widl REQUIRED DOC "Interface definition compiler")
find_path(WIDL_IDL_DIR oaidl.idl PATHS /usr/include/wine/wine/windows REQUIRED NO_CMAKE_FIND_ROOT_PATH
    DOC "Folder of the system's interface definitions")
# importlib accepts no absolute path, so -L passes the folder of stdole2.tlb.
find_path(WIDL_STDOLE_DIR_32 stdole2.tlb
    PATHS /usr/lib/i386-linux-gnu/wine/i386-windows /usr/lib/wine/i386-windows
    REQUIRED NO_CMAKE_FIND_ROOT_PATH DOC "Folder of stdole2.tlb")
find_path(WIDL_STDOLE_DIR_64 stdole2.tlb
    PATHS /usr/lib/x86_64-linux-gnu/wine/x86_64-windows /usr/lib/wine/x86_64-windows
    REQUIRED NO_CMAKE_FIND_ROOT_PATH DOC "Folder of stdole2.tlb")
find_program(FAKETIME faketime DOC "Fixes widl's clock")

set(JOBOBJECTS_IDL ${PROJECT_SOURCE_DIR}/JobObjects/JobObjects.idl)
set(JOBOBJECTS_IDL_OUT ${PROJECT_BINARY_DIR}/idl)
set(JOBOBJECTS_TLB ${JOBOBJECTS_IDL_OUT}/JobObjects.tlb)
set(JOBOBJECTS_HEADERS ${JOBOBJECTS_IDL_OUT}/include/JobObjects.h ${JOBOBJECTS_IDL_OUT}/include/JobObjects.hpp)
set(JOBOBJECTS_IDS ${JOBOBJECTS_IDL_OUT}/JobObjects_i.c)
file(MAKE_DIRECTORY ${JOBOBJECTS_IDL_OUT}/include)

# widl stamps the type library with the current time and ignores SOURCE_DATE_EPOCH.
set(widl_command ${WIDL})
if(FAKETIME)
    set(widl_command ${CMAKE_COMMAND} -E env TZ=UTC ${FAKETIME} -f "2000-01-01 00:00:00" ${WIDL})
endif()

# One call per output. The IDL path is relative because widl writes it into the outputs.
function(jobobjects_widl option output bits)
    add_custom_command(
        OUTPUT ${output}
        COMMAND ${widl_command} -m${bits} -I${WIDL_IDL_DIR} -L${WIDL_STDOLE_DIR_${bits}} ${option} -o ${output} JobObjects.idl
        WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}/JobObjects
        DEPENDS ${JOBOBJECTS_IDL}
        COMMENT "Compiling JobObjects.idl (${option})"
        VERBATIM)
endfunction()

math(EXPR bits "${CMAKE_SIZEOF_VOID_P} * 8")
jobobjects_widl(-t ${JOBOBJECTS_TLB} ${bits})
set(plain_header ${JOBOBJECTS_IDL_OUT}/JobObjects.h)
jobobjects_widl(-h ${plain_header} ${bits})
jobobjects_widl(-u ${JOBOBJECTS_IDS} ${bits})
if(bits EQUAL 32)
    # For the client kit, which serves both.
    set(JOBOBJECTS_TLB_64 ${JOBOBJECTS_IDL_OUT}/x64/JobObjects.tlb)
    file(MAKE_DIRECTORY ${JOBOBJECTS_IDL_OUT}/x64)
    jobobjects_widl(-t ${JOBOBJECTS_TLB_64} 64)
endif()

# Writes a header with a script from the folder of the interface definition.
find_program(PYTHON3 python3 REQUIRED)
function(jobobjects_header script output)
    set(folder ${PROJECT_SOURCE_DIR}/JobObjects)
    add_custom_command(OUTPUT ${output}
        COMMAND ${PYTHON3} -B ${folder}/${script} ${JOBOBJECTS_IDL} ${ARGN} ${output}
        DEPENDS ${JOBOBJECTS_IDL} ${folder}/idl.py ${folder}/${script} ${folder}/JobObjects.hpp.in ${ARGN}
        VERBATIM)
endfunction()
set(class_list ${JOBOBJECTS_IDL_OUT}/include/JobObjectClasses.h)
jobobjects_header(make_class_list.py ${class_list})
jobobjects_header(comment_header.py ${JOBOBJECTS_IDL_OUT}/include/JobObjects.h ${plain_header})
jobobjects_header(make_wrapper.py ${JOBOBJECTS_IDL_OUT}/include/JobObjects.hpp)
add_custom_target(jobobjects_typelib
    DEPENDS ${JOBOBJECTS_TLB} ${JOBOBJECTS_TLB_64} ${JOBOBJECTS_HEADERS} ${JOBOBJECTS_IDS} ${class_list})

# A system header: the generated code does not compile without warnings.
add_library(jobobjects_idl INTERFACE)
add_dependencies(jobobjects_idl jobobjects_typelib)
target_include_directories(jobobjects_idl SYSTEM INTERFACE ${JOBOBJECTS_IDL_OUT}/include)
