; La carpeta donde se instala: cuál es, si sirve, y crearla.

; Deja en $INSTDIR la de una instalación anterior o la que corresponde al modo, salvo que venga dada.
Function ElegirCarpeta
    ${If} $Modo == "todos"
        ReadRegStr $Anterior HKLM "${REGISTRO}" InstallLocation
    ${Else}
        ReadRegStr $Anterior HKCU "${REGISTRO}" InstallLocation
    ${EndIf}
    ${IfNot} ${FileExists} "$Anterior\*.*"
        StrCpy $Anterior ""
    ${EndIf}
    ${If} $CarpetaDada = 1
        StrCpy $0 $INSTDIR 1 -1
        ${If} $0 == "\"
            StrCpy $INSTDIR $INSTDIR -1
        ${EndIf}
        Return
    ${EndIf}
    ${If} $Anterior != ""
        StrCpy $INSTDIR $Anterior
    ${ElseIf} $Modo == "todos"
        StrCpy $0 $WINDIR 2
        StrCpy $INSTDIR "$0\Lumbre\Quillay"
    ${Else}
        StrCpy $INSTDIR "$LOCALAPPDATA\Programs\Quillay"
    ${EndIf}
FunctionEnd

Function RevisarCarpeta
    StrCpy $Codigo ${CARPETA}
    StrCpy $0 $INSTDIR 2 1
    StrLen $1 $INSTDIR
    ${If} $0 != ":\"
    ${OrIf} $1 < 4
        StrCpy $Mensaje "La carpeta tiene que ser completa, como C:\Lumbre\Quillay."
    ${ElseIf} $Anterior != ""
    ${AndIf} $Anterior != $INSTDIR
        StrCpy $Mensaje "Quillay ya está instalado en $Anterior. Actualizalo ahí o desinstalalo antes."
    ${ElseIf} $Anterior == ""
    ${AndIf} ${FileExists} "$INSTDIR\*.*"
        Call RevisarContenido
    ${Else}
        StrCpy $Codigo ${LISTO}
    ${EndIf}
FunctionEnd

; Una carpeta que ya tiene cosas tiene que ser de Quillay: se le van a dar permisos a todos y lo que
; haya con los mismos nombres se reemplaza.
Function RevisarContenido
    StrCpy $Codigo ${LISTO}
    ${If} ${FileExists} "$INSTDIR\quillay.exe"
    ${OrIf} ${FileExists} "$INSTDIR\quillay.exe.viejo"
    ${OrIf} ${FileExists} "$INSTDIR\config.json"
    ${OrIf} ${FileExists} "$INSTDIR\versiones.json"
        Return
    ${EndIf}
    FindFirst $0 $1 "$INSTDIR\*.*"
    ${DoWhile} $1 != ""
        ${If} $1 != "."
        ${AndIf} $1 != ".."
        ${AndIf} $1 != "instalando"
        ${AndIf} $1 != "desinstalar.exe"
            StrCpy $Codigo ${CARPETA}
            StrCpy $Mensaje "En $INSTDIR hay otras cosas. Elegí una carpeta vacía o una que no exista."
        ${EndIf}
        FindNext $0 $1
    ${Loop}
    FindClose $0
FunctionEnd

; Crea $INSTDIR y la de los archivos extraídos, y mira que haya lugar.
Function CrearCarpeta
    StrCpy $PrimeraNueva ""
    StrCpy $0 $INSTDIR
    ${DoUntil} ${FileExists} "$0\*.*"
        StrCpy $PrimeraNueva $0
        ${GetParent} $0 $0
        ${If} $0 == ""
            ${Break}
        ${EndIf}
    ${Loop}

    RMDir /r "${EXTRAIDOS}"
    ClearErrors
    CreateDirectory "${EXTRAIDOS}"
    ${If} ${Errors}
        StrCpy $Codigo ${NO_SE_PUDO_ESCRIBIR}
        StrCpy $Mensaje "No se puede escribir en $INSTDIR."
        Return
    ${EndIf}

    ; En kB, con un margen para los JSON y los registros de Windows.
    SectionGetSize ${SeccionQuillay} $0
    IntOp $0 $0 + 4096
    System::Call 'kernel32::GetDiskFreeSpaceExW(w "${EXTRAIDOS}", *l .r1, p 0, p 0) i .r2'
    System::Int64Op $1 / 1024
    Pop $1
    System::Int64Op $1 < $0
    Pop $1
    ${If} $2 <> 0
    ${AndIf} $1 = 1
        IntOp $0 $0 / 1024
        StrCpy $Codigo ${SIN_LUGAR}
        StrCpy $Mensaje "No hay lugar en el disco: hacen falta $0 MB en $INSTDIR."
    ${EndIf}
FunctionEnd

; Las carpetas creadas para una instalación que no se hizo; nunca una con algo adentro.
Function QuitarCarpetasCreadas
    ${If} $PrimeraNueva == ""
        Return
    ${EndIf}
    StrCpy $0 $INSTDIR
    ${Do}
        RMDir $0
        ${If} $0 == $PrimeraNueva
            ${Break}
        ${EndIf}
        ${GetParent} $0 $0
    ${LoopUntil} $0 == ""
FunctionEnd

!macro NoSiEstaEn PROTEGIDA
    StrLen $1 "${PROTEGIDA}\"
    StrCpy $2 "$INSTDIR\" $1
    ${If} $2 == "${PROTEGIDA}\"
        StrCpy $R0 "no"
    ${EndIf}
!macroend

; Deja en la pila "si" cuando cualquier cuenta va a poder actualizar Quillay: una instalación para
; todos, fuera de las carpetas que Windows protege.
Function SaberSiSeComparte
    StrCpy $R0 "no"
    ${If} $Modo == "todos"
        StrCpy $R0 "si"
        !insertmacro NoSiEstaEn "$PROGRAMFILES64"
        ReadEnvStr $3 "ProgramFiles(x86)"
        !insertmacro NoSiEstaEn $3
        !insertmacro NoSiEstaEn "$WINDIR"
    ${EndIf}
    Push $R0
FunctionEnd
