; El instalador de Quillay. Lo arma armar_instalador, que define VERSION, SALIDA, ARCHIVOS (las
; listas de lo que se instala) y COSTADO (el dibujo de la bienvenida). Los parámetros y los códigos de salida están en docs/instalacion.md.

Unicode true
Target amd64-unicode
!ifdef RAPIDO
    SetCompressor zlib
!else
    SetCompressor /SOLID lzma
    SetCompressorDictSize 32
!endif
; Las fechas de los archivos harían distintos dos instaladores iguales.
SetDateSave off

Name "Quillay"
BrandingText "Quillay ${VERSION}"
SpaceTexts "Lugar que necesita: " "Lugar libre: "
OutFile "${SALIDA}"
InstallDir "$LOCALAPPDATA\Programs\Quillay"
; Se piden permisos recién cuando hacen falta: instalar para una sola cuenta no los necesita.
RequestExecutionLevel user
ManifestDPIAware true

!define LISTO 0
!define PARAMETROS 3
!define SIN_PERMISOS 4
!define CARPETA 5
!define SIN_LUGAR 6
!define NO_SE_PUDO_ESCRIBIR 7
!define WINDOWS_VIEJO 8
!define OTRO_INSTALADOR 9
!define SIN_PERMISOS_COMUNES 10

!define REGISTRO "Software\Microsoft\Windows\CurrentVersion\Uninstall\Quillay"
!define EXTRAIDOS "$INSTDIR\instalando"

!include LogicLib.nsh
!include FileFunc.nsh
!include nsDialogs.nsh
!include WinVer.nsh
!include MUI2.nsh

Var Modo          ; "todos" o "usuario"
Var Administrador ; 1 si corre con permisos de administrador
Var Elevado       ; 1 si volvió a empezar con permisos: la bienvenida ya se vio
Var CarpetaDada   ; 1 si $INSTDIR viene en los parámetros
Var Anterior      ; la carpeta de una instalación que ya está, o vacío
Var PrimeraNueva  ; la primera carpeta de $INSTDIR que hubo que crear
Var Codigo
Var Mensaje

; Explica por qué no se sigue y termina con ese código.
!macro Salir CODIGO MENSAJE
    MessageBox MB_OK|MB_ICONSTOP "${MENSAJE}" /SD IDOK
    SetErrorLevel ${CODIGO}
    Quit
!macroend
!define Salir "!insertmacro Salir"

; Lo mismo, ya empezada la instalación: pasa por .onInstFailed, que no deja restos.
!macro Fallar CODIGO MENSAJE
    StrCpy $Codigo ${CODIGO}
    MessageBox MB_OK|MB_ICONSTOP "${MENSAJE}" /SD IDOK
    Abort
!macroend
!define Fallar "!insertmacro Fallar"

!macro SaberSiEsAdministrador
    UserInfo::GetAccountType
    Pop $0
    StrCpy $Administrador 0
    ${If} $0 == "Admin"
        StrCpy $Administrador 1
    ${EndIf}
!macroend

!include "${ARCHIVOS}"
!include instalador\parametros.nsh
!include instalador\paginas.nsh

VIProductVersion "${VERSION}.0"
VIFileVersion "${VERSION}.0"
VIAddVersionKey /LANG=${LANG_SPANISHINTERNATIONAL} ProductName "Quillay"
VIAddVersionKey /LANG=${LANG_SPANISHINTERNATIONAL} CompanyName "Lumbre"
VIAddVersionKey /LANG=${LANG_SPANISHINTERNATIONAL} FileDescription "Instalador de Quillay"
VIAddVersionKey /LANG=${LANG_SPANISHINTERNATIONAL} FileVersion "${VERSION}"
VIAddVersionKey /LANG=${LANG_SPANISHINTERNATIONAL} ProductVersion "${VERSION}"
VIAddVersionKey /LANG=${LANG_SPANISHINTERNATIONAL} LegalCopyright "© 2026 Lumbre"

Function .onInit
    ${IfNot} ${AtLeastBuild} 17763
        ${Salir} ${WINDOWS_VIEJO} "Quillay necesita Windows 10 versión 1809 o más nuevo."
    ${EndIf}
    !insertmacro SaberSiEsAdministrador
    StrCpy $Modo ""
    Call LeerParametros
    ${If} $Codigo != ${LISTO}
        ${Salir} $Codigo "$Mensaje"
    ${EndIf}
    ${If} $Modo == ""
        StrCpy $Modo "todos"
        ${If} ${Silent}
        ${AndIf} $Administrador = 0
            StrCpy $Modo "usuario"
        ${EndIf}
    ${EndIf}
    Call ElegirCarpeta
FunctionEnd

; Todo lo que puede impedir la instalación se mira antes de tocar nada.
Function Comprobar
    System::Call 'kernel32::CreateMutexW(p 0, i 0, w "Lumbre.Quillay.Instalador") p ?e'
    Pop $0
    ${If} $0 = 183 ; ya existía
        ${Fallar} ${OTRO_INSTALADOR} "Ya hay otro instalador de Quillay en marcha."
    ${EndIf}
    ${If} $Modo == "todos"
    ${AndIf} $Administrador = 0
        ${Fallar} ${SIN_PERMISOS} "Para instalar Quillay para todas las cuentas hacen falta permisos de administrador."
    ${EndIf}
    Call RevisarCarpeta
    ${If} $Codigo != ${LISTO}
        ${Fallar} $Codigo "$Mensaje"
    ${EndIf}
FunctionEnd

Section "Quillay" SeccionQuillay
    Call Comprobar
    Call CrearCarpeta
    ${If} $Codigo != ${LISTO}
        ${Fallar} $Codigo "$Mensaje"
    ${EndIf}

    ; Primero se extrae todo a un lado: si el disco se llena, lo instalado sigue andando.
    !insertmacro ExtraerPrograma "${EXTRAIDOS}"
    WriteUninstaller "${EXTRAIDOS}\desinstalar.exe"
    ${If} ${Errors}
        ${Fallar} ${NO_SE_PUDO_ESCRIBIR} "No se pudo escribir en $INSTDIR."
    ${EndIf}
    Call ExtraerPreparador
    Call EscribirPedido
    DetailPrint "Ubico los archivos"
    ClearErrors
    ExecWait '"$PLUGINSDIR\preparar_instalacion.exe" "$PLUGINSDIR\pedido.txt"' $0
    ${If} ${Errors}
        ${Fallar} ${NO_SE_PUDO_ESCRIBIR} "No se pudo correr una parte del instalador. ¿La bloqueó el antivirus?"
    ${ElseIf} $0 = ${SIN_PERMISOS_COMUNES}
        StrCpy $Codigo ${SIN_PERMISOS_COMUNES}
    ${ElseIf} $0 != ${LISTO}
        ${Fallar} ${NO_SE_PUDO_ESCRIBIR} "No se pudieron reemplazar los archivos de $INSTDIR. Cerrá Quillay y probá de nuevo."
    ${EndIf}
    RMDir /r "${EXTRAIDOS}"

    Call Registrar
    SetErrorLevel $Codigo
    ${If} $Codigo = ${SIN_PERMISOS_COMUNES}
        MessageBox MB_OK|MB_ICONEXCLAMATION "Quillay quedó instalado, pero no se pudieron dar los permisos para que todas las cuentas compartan sus datos. Pedile a quien administra la computadora que corra este instalador." /SD IDOK
    ${EndIf}
SectionEnd

!include instalador\carpeta.nsh
!include instalador\desinstalar.nsh

; En una función, para que no cuente en lo que ocupa lo instalado.
Function ExtraerPreparador
    InitPluginsDir
    SetOutPath $PLUGINSDIR
    !insertmacro ExtraerPreparador
FunctionEnd

Function .onInstFailed
    ${If} $Codigo = ${LISTO}
        StrCpy $Codigo ${NO_SE_PUDO_ESCRIBIR} ; NSIS no pudo extraer un archivo
    ${EndIf}
    SetErrorLevel $Codigo
    SetOutPath $TEMP
    ${If} $Codigo != ${OTRO_INSTALADOR}
        RMDir /r "${EXTRAIDOS}"
        Call QuitarCarpetasCreadas
    ${EndIf}
FunctionEnd

; La entrada del menú de inicio y la de "Aplicaciones instaladas".
Function Registrar
    ${If} $Modo == "todos"
        SetShellVarContext all
    ${Else}
        SetShellVarContext current
    ${EndIf}
    SetOutPath $INSTDIR ; la carpeta de trabajo del acceso directo
    CreateShortcut "$SMPROGRAMS\Quillay.lnk" "$INSTDIR\quillay.exe"
    SectionGetSize ${SeccionQuillay} $0
    WriteRegStr SHCTX "${REGISTRO}" DisplayName "Quillay"
    WriteRegStr SHCTX "${REGISTRO}" DisplayVersion "${VERSION}"
    WriteRegStr SHCTX "${REGISTRO}" Publisher "Lumbre"
    WriteRegStr SHCTX "${REGISTRO}" DisplayIcon "$INSTDIR\quillay.exe"
    WriteRegStr SHCTX "${REGISTRO}" InstallLocation "$INSTDIR"
    WriteRegStr SHCTX "${REGISTRO}" UninstallString '"$INSTDIR\desinstalar.exe"'
    WriteRegStr SHCTX "${REGISTRO}" QuietUninstallString '"$INSTDIR\desinstalar.exe" /S'
    WriteRegDWORD SHCTX "${REGISTRO}" EstimatedSize $0
    WriteRegDWORD SHCTX "${REGISTRO}" NoModify 1
    WriteRegDWORD SHCTX "${REGISTRO}" NoRepair 1
FunctionEnd
