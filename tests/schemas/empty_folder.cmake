# cmake -P empty_folder.cmake FOLDER: empties or creates the folder.
file(REMOVE_RECURSE ${CMAKE_ARGV3})
file(MAKE_DIRECTORY ${CMAKE_ARGV3})
