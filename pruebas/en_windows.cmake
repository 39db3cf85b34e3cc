# Cómo corren en wine las pruebas compiladas para Windows: cada una, en una computadora virtual
# recién instalada (ver para_windows/con_wine).

# Las bibliotecas de Qt y del compilador, que en la carpeta portátil están junto al programa.
set(carpetas ${QT6_INSTALL_PREFIX}/${QT6_INSTALL_BINS})
foreach(biblioteca libstdc++-6.dll libwinpthread-1.dll)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${biblioteca}
        OUTPUT_VARIABLE ruta OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    get_filename_component(ruta ${ruta} REALPATH)
    get_filename_component(carpeta ${ruta} DIRECTORY)
    list(APPEND carpetas ${carpeta})
endforeach()
list(TRANSFORM carpetas PREPEND ${UNIDAD_DE_DEBIAN})
list(JOIN carpetas "\\;" camino)

# En UTC, una fecha que se guardara sin pasar a la hora local parecería bien.
set(ENTORNO "WINEPATH=${camino}" "TZ=America/Argentina/Buenos_Aires"
    "QUILLAY_COMPUTADORA_DESCARTABLE=1")
set(ENTORNO_CON_RELOJ "QUILLAY_RELOJ=1")
