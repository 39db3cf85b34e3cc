; El desinstalador. Borra el programa y las apps que están en su carpeta; los datos, solo si se pide;
; los trabajos, nunca.

Var BorrarDatos
Var ControlDatos

Function un.onInit
    !insertmacro SaberSiEsAdministrador
    StrCpy $BorrarDatos 0
    !insertmacro RecorrerParametros un.LeerParametro
    ${If} $Codigo != ${LISTO}
        ${Salir} $Codigo "$Mensaje"
    ${EndIf}
    StrCpy $Modo "usuario"
    ReadRegStr $0 HKLM "${REGISTRO}" InstallLocation
    ${If} $0 == $INSTDIR
        StrCpy $Modo "todos"
        ${If} $Administrador = 0
            Call un.VolverAEmpezarConPermisos
        ${EndIf}
        Return
    ${EndIf}
    ReadRegStr $0 HKCU "${REGISTRO}" InstallLocation
    ${If} $0 != $INSTDIR ; una copia de este archivo en otro lado no borra nada
        ${Salir} ${CARPETA} "Quillay no está instalado en $INSTDIR."
    ${EndIf}
FunctionEnd

Function un.LeerParametro
    StrCpy $7 $6 3
    ${If} $7 == "_?=" ; lo agrega NSIS y llega hasta el final del renglón
        StrCpy $8 1
    ${ElseIf} $6 == "/BORRARDATOS"
        StrCpy $BorrarDatos 1
    ${ElseIf} $6 S!= "/S"
    ${AndIf} $6 S!= "/NCRC"
        StrCpy $Codigo ${PARAMETROS}
        StrCpy $Mensaje "No se entiende el parámetro $6"
    ${EndIf}
FunctionEnd

Function un.VolverAEmpezarConPermisos
    ${IfNot} ${Silent}
        ClearErrors
        ExecShell "runas" "$INSTDIR\desinstalar.exe"
        ${IfNot} ${Errors}
            Quit
        ${EndIf}
    ${EndIf}
    ${Salir} ${SIN_PERMISOS} "Para desinstalar Quillay hacen falta permisos de administrador."
FunctionEnd

Function un.PaginaDatos
    !insertmacro MUI_HEADER_TEXT "Desinstalar Quillay" "Los trabajos guardados no se tocan."
    nsDialogs::Create 1018
    Pop $0
    ${NSD_CreateLabel} 0 4u 100% 36u "Se van a borrar Quillay, su configuración y las apps instaladas en su carpeta:$\r$\n$INSTDIR"
    Pop $0
    ${NSD_CreateCheckBox} 0 56u 100% 12u "Borrar también los &perfiles, las listas de recientes y la sesión"
    Pop $ControlDatos
    ${If} $BorrarDatos = 1
        ${NSD_Check} $ControlDatos
    ${EndIf}
    GetDlgItem $0 $HWNDPARENT 1
    SendMessage $0 ${WM_SETTEXT} 0 "STR:&Desinstalar"
    nsDialogs::Show
FunctionEnd

Function un.DejarDatos
    ${NSD_GetState} $ControlDatos $0
    StrCpy $BorrarDatos 0
    ${If} $0 = ${BST_CHECKED}
        StrCpy $BorrarDatos 1
    ${EndIf}
FunctionEnd

; Deja el nombre de un programa abierto en $0, o nada: los que están abiertos no se dejan escribir.
!macro SaberSiEstaAbierto RUTA
    ${If} ${FileExists} "$INSTDIR\${RUTA}"
        ClearErrors
        FileOpen $1 "$INSTDIR\${RUTA}" a
        ${If} ${Errors}
            StrCpy $0 "${RUTA}"
        ${Else}
            FileClose $1
        ${EndIf}
    ${EndIf}
!macroend

Function un.ExigirCerrado
    ${Do}
        StrCpy $0 ""
        !insertmacro SaberSiEstaAbierto "quillay.exe"
        !insertmacro ParaCadaApp SaberSiEstaAbierto
        ${If} $0 == ""
            Return
        ${EndIf}
        MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "Está abierto $0. Cerralo para seguir." /SD IDCANCEL IDRETRY otra_vez
        SetErrorLevel ${NO_SE_PUDO_ESCRIBIR}
        Abort
        otra_vez:
    ${Loop}
FunctionEnd

!macro BorrarApp EJECUTABLE
    ${un.GetParent} "$INSTDIR\${EJECUTABLE}" $0
    RMDir /r $0
!macroend

Section Uninstall
    Call un.ExigirCerrado
    SetOutPath $TEMP

    !insertmacro ParaCadaApp BorrarApp
    !insertmacro BorrarPrograma
    ; Una versión que vino por una actualización puede haber traído otras bibliotecas.
    Delete "$INSTDIR\*.dll"
    Delete "$INSTDIR\*.viejo"
    Delete "$INSTDIR\config.json"
    Delete "$INSTDIR\versiones.json"
    Delete "$INSTDIR\versiones.json.*"
    RMDir /r "${EXTRAIDOS}"
    ${If} $BorrarDatos = 1
        SetShellVarContext current
        RMDir /r "$LOCALAPPDATA\Lumbre"
        SetShellVarContext all
        RMDir /r "$APPDATA\Lumbre"
    ${EndIf}
    SetShellVarContext all
    RMDir "$APPDATA\Lumbre" ; solo si quedó vacía

    ${If} $Modo == "usuario"
        SetShellVarContext current
    ${EndIf}
    Delete "$SMPROGRAMS\Quillay.lnk"
    DeleteRegKey SHCTX "${REGISTRO}"

    Delete "$INSTDIR\desinstalar.exe" ; con _?= está en uso y queda
    RMDir "$INSTDIR"
    ${un.GetParent} $INSTDIR $0
    ${un.GetFileName} $0 $1
    ${If} $1 == "Lumbre"
        RMDir $0
    ${EndIf}
    SetErrorLevel ${LISTO}
    ${If} ${FileExists} "$INSTDIR\quillay.exe"
        SetErrorLevel ${NO_SE_PUDO_ESCRIBIR}
    ${EndIf}
SectionEnd
