# cmake -P empty_folder.cmake FOLDER: creates the folder, or empties it.
file(REMOVE_RECURSE ${CMAKE_ARGV3})
file(MAKE_DIRECTORY ${CMAKE_ARGV3})
