; SPDX-License-Identifier: MIT
; The installer for Windows. /S installs without questions, /D=FOLDER (last) chooses the folder.
; Defined by package.sh: VERSION, FILES (folder of what is installed), OUTPUT.

Unicode true
Target amd64-unicode
!include FileFunc.nsh
!include LogicLib.nsh
!include MUI2.nsh

!define SettingsKey "Software\Quenmark\Toravane"
!define UninstallKey "Software\Microsoft\Windows\CurrentVersion\Uninstall\Toravane"

Name "Toravane ${VERSION}"
OutFile "${OUTPUT}"
InstallDir "$PROGRAMFILES64\Toravane"
InstallDirRegKey HKLM "${UninstallKey}" "InstallLocation"
RequestExecutionLevel admin
ManifestDPIAware true
SetCompressor /SOLID lzma
VIProductVersion "${VERSION}.0.0"
VIAddVersionKey ProductName "Toravane"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey FileDescription "Toravane Setup"
VIAddVersionKey CompanyName "The Toravane authors"
VIAddVersionKey InternalName "setup"
VIAddVersionKey OriginalFilename "toravane-${VERSION}-setup.exe"
VIAddVersionKey LegalCopyright "Copyright 2026 The Toravane authors"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_FINISHPAGE_RUN "$INSTDIR\toravane.exe"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English

; A running program holds its file. Without a user: ends with code 2.
!macro WaitForProgramToEnd
    ${Do}
        FindWindow $0 "Toravane"
        ${If} $0 == 0
            ${ExitDo}
        ${EndIf}
        MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "Toravane is running. Close its window first." /SD IDCANCEL IDRETRY retry
        SetErrorLevel 2
        Quit
        retry:
    ${Loop}
!macroend

; Lets ordinary users write the settings, which all users of the machine share: administrators and the system may do
; everything (KA), users may read and write (KEY_READ | KEY_WRITE), and what is made below the key inherits it.
!define SettingsAccess "D:P(A;CI;KA;;;BA)(A;CI;KA;;;SY)(A;CI;0x2001f;;;BU)"
!define DACL_SECURITY_INFORMATION 4
!define WRITE_DAC 0x40000
!define HKEY_LOCAL_MACHINE -2147483646
!macro CreateSettingsKey
    WriteRegStr HKLM "${SettingsKey}" "" "" ; creates the key
    DeleteRegValue HKLM "${SettingsKey}" ""
    System::Call 'advapi32::ConvertStringSecurityDescriptorToSecurityDescriptorW(w "${SettingsAccess}", i 1, *p .r1, p 0) i .r0'
    ${If} $0 != 0
        System::Call 'advapi32::RegOpenKeyExW(p ${HKEY_LOCAL_MACHINE}, w "${SettingsKey}", i 0, i ${WRITE_DAC}, *p .r2) i .r0'
        ${If} $0 == 0
            System::Call 'advapi32::RegSetKeySecurity(p r2, i ${DACL_SECURITY_INFORMATION}, p r1) i .r0'
            System::Call 'advapi32::RegCloseKey(p r2)'
        ${EndIf}
        System::Call 'kernel32::LocalFree(p r1)'
    ${EndIf}
!macroend

Function .onInit
    SetRegView 64
    SetShellVarContext all
    !insertmacro WaitForProgramToEnd
FunctionEnd

Section
    SetOutPath "$INSTDIR"
    File "${FILES}/toravane.exe"
    File "${FILES}/toravanectl.exe"
    File "${FILES}/toravane-replay.exe"
    File "${FILES}/user-guide.html"
    File "${FILES}/license.txt"
    File /r "${FILES}/page"
    WriteUninstaller "$INSTDIR\uninstall.exe"

    CreateDirectory "$SMPROGRAMS\Toravane"
    CreateShortcut "$SMPROGRAMS\Toravane\Toravane.lnk" "$INSTDIR\toravane.exe"
    CreateShortcut "$SMPROGRAMS\Toravane\Static navigation on.lnk" "$INSTDIR\toravane.exe" StaticNavigationOn
    CreateShortcut "$SMPROGRAMS\Toravane\Static navigation off.lnk" "$INSTDIR\toravane.exe" StaticNavigationOff
    CreateShortcut "$SMPROGRAMS\Toravane\User guide.lnk" "$INSTDIR\user-guide.html"

    !insertmacro CreateSettingsKey

    WriteRegStr HKLM "${UninstallKey}" "DisplayName" "Toravane"
    WriteRegStr HKLM "${UninstallKey}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKLM "${UninstallKey}" "DisplayIcon" "$INSTDIR\toravane.exe"
    WriteRegStr HKLM "${UninstallKey}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKLM "${UninstallKey}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegStr HKLM "${UninstallKey}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD HKLM "${UninstallKey}" "NoModify" 1
    WriteRegDWORD HKLM "${UninstallKey}" "NoRepair" 1
    ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
    IntFmt $0 "0x%08X" $0
    WriteRegDWORD HKLM "${UninstallKey}" "EstimatedSize" $0
SectionEnd

Function un.onInit
    SetRegView 64
    SetShellVarContext all
    !insertmacro WaitForProgramToEnd
FunctionEnd

; The settings stay for the next installation unless the user wants them removed; without a user: /SETTINGS.
Section Uninstall
    Delete "$INSTDIR\toravane.exe"
    Delete "$INSTDIR\toravanectl.exe"
    Delete "$INSTDIR\toravane-replay.exe"
    RMDir /r "$INSTDIR\page"
    Delete "$INSTDIR\user-guide.html"
    Delete "$INSTDIR\license.txt"
    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR" ; only when nothing else is in it
    Delete "$SMPROGRAMS\Toravane\Toravane.lnk"
    Delete "$SMPROGRAMS\Toravane\Static navigation on.lnk"
    Delete "$SMPROGRAMS\Toravane\Static navigation off.lnk"
    Delete "$SMPROGRAMS\Toravane\User guide.lnk"
    RMDir "$SMPROGRAMS\Toravane"
    DeleteRegKey HKLM "${UninstallKey}"

    ${GetParameters} $0
    ClearErrors
    ${GetOptions} $0 "/SETTINGS" $1
    ${If} ${Errors}
        MessageBox MB_YESNO|MB_ICONQUESTION|MB_DEFBUTTON2 "Remove the settings (port, rate, chart) as well?" /SD IDNO IDYES remove
        Goto keep
    ${EndIf}
    remove:
    DeleteRegKey HKLM "${SettingsKey}"
    DeleteRegKey /ifempty HKLM "Software\Quenmark"
    DeleteRegKey HKCU "${SettingsKey}" ; where the program kept them before the key could be written
    DeleteRegKey /ifempty HKCU "Software\Quenmark"
    keep:
SectionEnd
