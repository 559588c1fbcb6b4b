; The installer for one user, without administrator rights. Defined by script/package: VERSION, FOLDER (what is
; installed), SIZE (its kilobytes), REMOVE (a script that deletes exactly that), OUTPUT.
Unicode true
Target amd64-unicode
!include MUI2.nsh

!define KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Ombrivantel"
; What the explorer offers under "Open with" for a comma-separated file; what opens such a file by itself stays.
!define OPENED "Software\Classes\.csv\OpenWithProgids"
!define OPENER "Software\Classes\Ombrivantel.csv"
Name "Ombrivantel ${VERSION}"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\Programs\Ombrivantel"
InstallDirRegKey HKCU "${KEY}" "InstallLocation"
RequestExecutionLevel user
SetCompressor /SOLID lzma
VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "Ombrivantel"
VIAddVersionKey "FileDescription" "Installs Ombrivantel, multivariate statistics"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" "The Ombrivantel authors"

!define MUI_FINISHPAGE_RUN "$INSTDIR\Ombrivantel.exe"
!insertmacro MUI_PAGE_LICENSE "${FOLDER}\LICENSE.txt"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; Its files cannot be replaced while it runs, which its mutex tells.
!macro refuseWhileRunning
    System::Call 'kernel32::OpenMutexA(i 0x100000, i 0, m "Ombrivantel") p .R0'
    ${If} $R0 P<> 0
        System::Call 'kernel32::CloseHandle(p R0)'
        MessageBox MB_OK|MB_ICONEXCLAMATION "Ombrivantel is running. Close it first, then try again." /SD IDOK
        SetErrorLevel 2
        Abort
    ${EndIf}
!macroend
Function .onInit
    !insertmacro refuseWhileRunning
FunctionEnd
Function un.onInit
    !insertmacro refuseWhileRunning
FunctionEnd

; That the types of files have changed: SHCNE_ASSOCCHANGED.
!macro tellExplorer
    System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'
!macroend

Section
    SetOutPath "$INSTDIR"
    File /r "${FOLDER}\*"
    WriteUninstaller "$INSTDIR\Uninstall.exe"
    CreateDirectory "$SMPROGRAMS\Ombrivantel"
    CreateShortcut "$SMPROGRAMS\Ombrivantel\Ombrivantel.lnk" "$INSTDIR\Ombrivantel.exe"
    CreateShortcut "$SMPROGRAMS\Ombrivantel\Ombrivantel (textbook numerics).lnk" "$INSTDIR\Ombrivantel.exe" "--numerics textbook"
    CreateShortcut "$SMPROGRAMS\Ombrivantel\Manual.lnk" "$INSTDIR\docs\manual.html"
    CreateShortcut "$SMPROGRAMS\Ombrivantel\Samples.lnk" "$INSTDIR\samples"
    WriteRegStr HKCU "${KEY}" "DisplayName" "Ombrivantel"
    WriteRegStr HKCU "${KEY}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKCU "${KEY}" "Publisher" "The Ombrivantel authors"
    WriteRegStr HKCU "${KEY}" "DisplayIcon" "$INSTDIR\Ombrivantel.exe"
    WriteRegStr HKCU "${KEY}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKCU "${KEY}" "UninstallString" '"$INSTDIR\Uninstall.exe"'
    WriteRegStr HKCU "${KEY}" "QuietUninstallString" '"$INSTDIR\Uninstall.exe" /S'
    WriteRegDWORD HKCU "${KEY}" "NoModify" 1
    WriteRegDWORD HKCU "${KEY}" "NoRepair" 1
    WriteRegDWORD HKCU "${KEY}" "EstimatedSize" ${SIZE}
    WriteRegStr HKCU "${OPENER}" "" "Table for Ombrivantel"
    WriteRegStr HKCU "${OPENER}\shell\open\command" "" '"$INSTDIR\Ombrivantel.exe" "%1"'
    WriteRegStr HKCU "${OPENED}" "Ombrivantel.csv" ""
    !insertmacro tellExplorer
SectionEnd

; What the user has put into the folder stays, the settings file among it; the folder goes when it is empty.
Section "Uninstall"
    SetOutPath "$TEMP"
    !include "${REMOVE}"
    Delete "$INSTDIR\Uninstall.exe"
    RMDir "$INSTDIR"
    Delete "$SMPROGRAMS\Ombrivantel\*.lnk"
    RMDir "$SMPROGRAMS\Ombrivantel"
    DeleteRegKey HKCU "${KEY}"
    DeleteRegKey HKCU "${OPENER}"
    DeleteRegValue HKCU "${OPENED}" "Ombrivantel.csv"
    DeleteRegKey /ifempty HKCU "${OPENED}"
    DeleteRegKey /ifempty HKCU "Software\Classes\.csv"
    !insertmacro tellExplorer
SectionEnd
