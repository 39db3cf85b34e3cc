; Lo que se ve al instalar a mano.

!define MUI_ICON quillay.ico
!define MUI_UNICON quillay.ico
!define MUI_WELCOMEFINISHPAGE_BITMAP "${COSTADO}"
!define MUI_ABORTWARNING
!define MUI_ABORTWARNING_TEXT "¿Querés salir sin instalar Quillay?"
!define MUI_UNABORTWARNING
!define MUI_UNABORTWARNING_TEXT "¿Querés salir sin desinstalar Quillay?"
!define MUI_CUSTOMFUNCTION_GUIINIT AlEmpezar

!define MUI_WELCOMEPAGE_TITLE "Instalar Quillay ${VERSION}"
!define MUI_WELCOMEPAGE_TEXT "Quillay es el lanzador de las apps creativas de la escuela.$\r$\n$\r$\nSi ya está instalado, se actualiza o se repara: lo configurado y los trabajos quedan como están."
!define MUI_PAGE_CUSTOMFUNCTION_PRE SaltearSiYaSeVio
!insertmacro MUI_PAGE_WELCOME

Page custom PaginaParaQuien DejarParaQuien

!define MUI_PAGE_HEADER_TEXT "Carpeta"
!define MUI_PAGE_HEADER_SUBTEXT "Elegí dónde instalar Quillay."
!define MUI_DIRECTORYPAGE_TEXT_DESTINATION "Instalar en"
!define MUI_DIRECTORYPAGE_TEXT_TOP "Si todas las cuentas tienen que poder aceptar las actualizaciones, dejá esta carpeta. En Archivos de programa solo va a poder un administrador."
!define MUI_PAGE_CUSTOMFUNCTION_PRE SaltearSiHayAnterior
!define MUI_PAGE_CUSTOMFUNCTION_LEAVE DejarCarpeta
!insertmacro MUI_PAGE_DIRECTORY

Page custom PaginaConfiguracion DejarConfiguracion

!define MUI_PAGE_HEADER_TEXT "Instalando"
!define MUI_PAGE_HEADER_SUBTEXT "Esperá un momento."
!define MUI_INSTFILESPAGE_FINISHHEADER_TEXT "Listo"
!define MUI_INSTFILESPAGE_FINISHHEADER_SUBTEXT "Quillay está instalado."
!define MUI_INSTFILESPAGE_ABORTHEADER_TEXT "No se instaló"
!define MUI_INSTFILESPAGE_ABORTHEADER_SUBTEXT "La computadora quedó como estaba."
!insertmacro MUI_PAGE_INSTFILES

!define MUI_FINISHPAGE_TITLE "Quillay está instalado"
!define MUI_FINISHPAGE_TEXT "Está en el menú de inicio. Si estaba abierto, cerralo y abrilo de nuevo."
!define MUI_FINISHPAGE_RUN
!define MUI_FINISHPAGE_RUN_TEXT "Abrir Quillay"
!define MUI_FINISHPAGE_RUN_FUNCTION AbrirQuillay
!insertmacro MUI_PAGE_FINISH

UninstPage custom un.PaginaDatos un.DejarDatos
!define MUI_PAGE_HEADER_TEXT "Desinstalando"
!define MUI_PAGE_HEADER_SUBTEXT "Esperá un momento."
!define MUI_INSTFILESPAGE_FINISHHEADER_TEXT "Listo"
!define MUI_INSTFILESPAGE_FINISHHEADER_SUBTEXT "Quillay ya no está en esta computadora."
!undef MUI_INSTFILESPAGE_ABORTHEADER_TEXT ; MUI olvida estas dos
!undef MUI_INSTFILESPAGE_ABORTHEADER_SUBTEXT
!define MUI_INSTFILESPAGE_ABORTHEADER_TEXT "No se desinstaló"
!define MUI_INSTFILESPAGE_ABORTHEADER_SUBTEXT "La computadora quedó como estaba."
!insertmacro MUI_UNPAGE_INSTFILES

!insertmacro MUI_LANGUAGE SpanishInternational

Var Control1
Var Control2
Var Control3
Var Control4

Function AlEmpezar
    ; Al volver a empezar con permisos, que no quede detrás de otra ventana.
    BringToFront
FunctionEnd

Function SaltearSiYaSeVio
    ${If} $Elevado = 1
        Abort
    ${EndIf}
FunctionEnd

Function PaginaParaQuien
    ${If} $Elevado = 1
        Abort
    ${EndIf}
    !insertmacro MUI_HEADER_TEXT "Para quién" "¿Quiénes van a usar Quillay en esta computadora?"
    nsDialogs::Create 1018
    Pop $0
    ${NSD_CreateRadioButton} 0 10u 100% 12u "&Todas las cuentas de esta computadora"
    Pop $Control1
    ${NSD_CreateLabel} 12u 24u 95% 20u "Lo común en la escuela. Pide permisos de administrador."
    Pop $0
    ${NSD_CreateRadioButton} 0 50u 100% 12u "Solo &mi cuenta"
    Pop $Control2
    ${NSD_CreateLabel} 12u 64u 95% 20u "No pide permisos."
    Pop $0
    ${If} $Modo == "todos"
        ${NSD_Check} $Control1
        ${NSD_SetFocus} $Control1
    ${Else}
        ${NSD_Check} $Control2
        ${NSD_SetFocus} $Control2
    ${EndIf}
    nsDialogs::Show
FunctionEnd

Function DejarParaQuien
    ${NSD_GetState} $Control1 $0
    StrCpy $Modo "usuario"
    ${If} $0 = ${BST_CHECKED}
        StrCpy $Modo "todos"
        ${If} $Administrador = 0
            Call VolverAEmpezarConPermisos
        ${EndIf}
    ${EndIf}
    Call ElegirCarpeta
FunctionEnd

Function VolverAEmpezarConPermisos
    StrCpy $0 "/ELEVADO $Dados"
    ${If} $CarpetaDada = 1
        StrCpy $0 '$0 "/CARPETA=$INSTDIR"' ; NSIS no incluye la de /D en los parámetros
    ${EndIf}
    ClearErrors
    ExecShell "runas" "$EXEPATH" $0
    ${IfNot} ${Errors}
        Quit
    ${EndIf}
    MessageBox MB_OK|MB_ICONEXCLAMATION "Hacen falta permisos de administrador. Sin ellos, podés instalarlo solo para tu cuenta."
    Abort
FunctionEnd

Function SaltearSiHayAnterior
    ${If} $Anterior != ""
    ${AndIf} $CarpetaDada = 0
        Abort
    ${EndIf}
FunctionEnd

Function DejarCarpeta
    Call RevisarCarpeta
    ${If} $Codigo != ${LISTO}
        MessageBox MB_OK|MB_ICONEXCLAMATION "$Mensaje"
        Abort
    ${EndIf}
FunctionEnd

!macro CampoDeDireccion ARRIBA NOMBRE VALOR CONTROL
    ${NSD_CreateLabel} 0 ${ARRIBA}u 32% 12u "${NOMBRE}"
    Pop $0
    ${NSD_CreateText} 33% ${ARRIBA}u 67% 12u "${VALOR}"
    Pop ${CONTROL}
!macroend

Function PaginaConfiguracion
    !insertmacro MUI_HEADER_TEXT "Direcciones de la escuela" "Todas son optativas, y se pueden cambiar después en config.json."
    nsDialogs::Create 1018
    Pop $0
    !insertmacro CampoDeDireccion 4 "&Servicio Aulared:" "$Aulared" $Control1
    !insertmacro CampoDeDireccion 22 "&Manifiesto de versiones:" "$Manifiesto" $Control2
    !insertmacro CampoDeDireccion 40 "Carpeta de &descargas:" "$Descargas" $Control3
    ${NSD_CreateLabel} 33% 56u 67% 20u "Lo que dejes vacío queda como estaba."
    Pop $0
    ${NSD_CreateCheckBox} 0 88u 100% 12u "Es un &equipo de Aulared: no buscar actualizaciones"
    Pop $Control4
    SetShellVarContext all
    ${If} $Equipo == ""
    ${AndIf} ${FileExists} "$APPDATA\Lumbre\equipo.json"
        StrCpy $Equipo "si"
    ${EndIf}
    SetShellVarContext current
    ${If} $Equipo == "si"
        ${NSD_Check} $Control4
    ${EndIf}
    ${NSD_SetFocus} $Control1
    nsDialogs::Show
FunctionEnd

!macro TomarDireccion CONTROL VARIABLE
    ${NSD_GetText} ${CONTROL} $R1
    ${If} $R1 != ""
        Push $R1
        Call RevisarDireccion
        ${If} $Codigo != ${LISTO}
            MessageBox MB_OK|MB_ICONEXCLAMATION "$Mensaje"
            ${NSD_SetFocus} ${CONTROL}
            Abort
        ${EndIf}
    ${EndIf}
    StrCpy ${VARIABLE} $R1
!macroend

Function DejarConfiguracion
    !insertmacro TomarDireccion $Control1 $Aulared
    !insertmacro TomarDireccion $Control2 $Manifiesto
    !insertmacro TomarDireccion $Control3 $Descargas
    ${NSD_GetState} $Control4 $0
    StrCpy $Equipo "no"
    ${If} $0 = ${BST_CHECKED}
        StrCpy $Equipo "si"
    ${EndIf}
FunctionEnd

Function AbrirQuillay
    SetOutPath $INSTDIR
    ${If} $Modo == "todos"
        ; El explorador no tiene permisos de administrador, y Quillay tampoco los tiene que tener.
        Exec '"$WINDIR\explorer.exe" "$INSTDIR\quillay.exe"'
    ${Else}
        Exec '"$INSTDIR\quillay.exe"'
    ${EndIf}
FunctionEnd
