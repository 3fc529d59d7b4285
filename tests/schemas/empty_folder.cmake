# cmake -P empty_folder.cmake FOLDER: makes the folder anew.
file(REMOVE_RECURSE ${CMAKE_ARGV3})
file(MAKE_DIRECTORY ${CMAKE_ARGV3})
