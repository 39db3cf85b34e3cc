; Los parámetros de la línea de órdenes. Se parten como lo hace Windows, porque las funciones de NSIS
; cortan en "/" las direcciones que no van entre comillas.

Var Aulared
Var Manifiesto
Var Descargas
Var Equipo ; "si", "no" o vacío
Var Dados  ; los parámetros tal como vinieron, para volver a empezar con permisos

; Recorre los parámetros: llama a FUNCION con cada uno en $6, hasta que deje $Codigo distinto de 0
; o 1 en $8.
!macro RecorrerParametros FUNCION
    StrCpy $Codigo 0
    StrCpy $8 0
    System::Call 'kernel32::GetCommandLineW() p .r0'
    System::Call 'shell32::CommandLineToArgvW(p r0, *i .r1) p .r2'
    StrCpy $3 1
    ${DoWhile} $3 < $1
        IntOp $4 $3 * ${NSIS_PTR_SIZE}
        IntPtrOp $4 $2 + $4
        System::Call '*$4(p .r5)'
        System::Call 'kernel32::lstrlenW(p r5) i .r7'
        System::Call 'kernel32::lstrcpynW(w .r6, p r5, i ${NSIS_MAX_STRLEN})'
        ${If} $7 >= ${NSIS_MAX_STRLEN}
            StrCpy $Codigo 3
            StrCpy $Mensaje "Este parámetro es demasiado largo: $6"
        ${Else}
            Call ${FUNCION}
        ${EndIf}
        ${If} $Codigo != 0
        ${OrIf} $8 = 1
            ${Break}
        ${EndIf}
        IntOp $3 $3 + 1
    ${Loop}
    System::Call 'kernel32::LocalFree(p r2)'
!macroend

Function LeerParametros
    ${GetParameters} $Dados
    !insertmacro RecorrerParametros LeerParametro
    ${If} $Codigo = ${LISTO}
    ${AndIf} $Elevado = 1
        StrCpy $Modo "todos"
    ${EndIf}
FunctionEnd

; Guarda VALOR en VARIABLE si es una dirección.
!macro LeerDireccion VARIABLE
    Push $R1
    Call RevisarDireccion
    ${If} $Codigo = ${LISTO}
        StrCpy ${VARIABLE} $R1
    ${EndIf}
!macroend

Function LeerParametro
    StrCpy $R0 $6
    StrCpy $R1 ""
    StrCpy $9 0
    ${Do}
        StrCpy $7 $6 1 $9
        ${If} $7 == "="
            StrCpy $R0 $6 $9
            IntOp $9 $9 + 1
            StrCpy $R1 $6 "" $9
            ${Break}
        ${EndIf}
        IntOp $9 $9 + 1
    ${LoopUntil} $7 == ""

    ${If} $6 S== "/S"
    ${OrIf} $6 S== "/NCRC"
        Return
    ${ElseIf} $R0 S== "/D"
    ${AndIf} $R1 != ""
        StrLen $7 $R1
        StrCpy $9 $INSTDIR $7
        ${If} $9 == $R1 ; NSIS ya la tomó: llega hasta el final del renglón
            StrCpy $8 1
        ${Else} ; entre comillas no la entiende
            StrCpy $INSTDIR $R1
        ${EndIf}
        StrCpy $CarpetaDada 1
    ${ElseIf} $6 == "/ELEVADO"
        StrCpy $Elevado 1
    ${ElseIf} $6 == "/MODO=todos"
        StrCpy $Modo "todos"
    ${ElseIf} $6 == "/MODO=usuario"
        StrCpy $Modo "usuario"
    ${ElseIf} $R0 == "/CARPETA"
    ${AndIf} $R1 != ""
        StrCpy $INSTDIR $R1
        StrCpy $CarpetaDada 1
    ${ElseIf} $R0 == "/AULARED"
        !insertmacro LeerDireccion $Aulared
    ${ElseIf} $R0 == "/MANIFIESTO"
        !insertmacro LeerDireccion $Manifiesto
    ${ElseIf} $R0 == "/DESCARGAS"
        !insertmacro LeerDireccion $Descargas
    ${ElseIf} $6 == "/EQUIPO"
    ${OrIf} $6 == "/EQUIPO=si"
        StrCpy $Equipo "si"
    ${ElseIf} $6 == "/EQUIPO=no"
        StrCpy $Equipo "no"
    ${Else}
        StrCpy $Codigo ${PARAMETROS}
        StrCpy $Mensaje "No se entiende el parámetro $6"
    ${EndIf}
FunctionEnd

; Espera un texto en la pila; $Codigo queda en 0 si puede ser una dirección.
Function RevisarDireccion
    Exch $R9
    Push $R8
    Push $R7
    StrCpy $Codigo ${PARAMETROS}
    StrCpy $Mensaje "Esto no es una dirección completa, como https://aulared.escuela.example: $R9"
    StrCpy $R8 1
    ${Do}
        StrCpy $R7 $R9 3 $R8
        ${If} $R7 == "://"
            StrCpy $Codigo ${LISTO}
            ${Break}
        ${EndIf}
        IntOp $R8 $R8 + 1
    ${LoopUntil} $R7 == ""
    Pop $R7
    Pop $R8
    Pop $R9
FunctionEnd

; Lo que necesita saber preparar_instalacion, en un archivo: así ningún carácter es especial.
Function EscribirPedido
    FileOpen $0 "$PLUGINSDIR\pedido.txt" w
    FileWriteUTF16LE /BOM $0 "carpeta=$INSTDIR$\r$\n"
    FileWriteUTF16LE $0 "nuevos=${EXTRAIDOS}$\r$\n"
    FileWriteUTF16LE $0 "version=${VERSION}$\r$\n"
    ${If} $Aulared != ""
        FileWriteUTF16LE $0 "aulared_url=$Aulared$\r$\n"
    ${EndIf}
    ${If} $Manifiesto != ""
        FileWriteUTF16LE $0 "manifiesto_url=$Manifiesto$\r$\n"
    ${EndIf}
    ${If} $Descargas != ""
        FileWriteUTF16LE $0 "descargas_base=$Descargas$\r$\n"
    ${EndIf}
    ${If} $Equipo != ""
        FileWriteUTF16LE $0 "equipo=$Equipo$\r$\n"
    ${EndIf}
    Call SaberSiSeComparte
    Pop $1
    FileWriteUTF16LE $0 "compartida=$1$\r$\n"
    FileClose $0
FunctionEnd
