; SPDX-License-Identifier: GPL-3.0-or-later
; The setup program: installs Tallow for one user, without administrator rights.
;
; makensis -DVERSION=0.1 -DPROGRAM=folder -DOUTPUT=file tallow.nsi
;   PROGRAM  the folder of what is installed: tallow.exe and its data files
; A 64-bit program, as Tallow is; it implies Unicode.
Target amd64-unicode
SetCompressor /SOLID lzma
!include "MUI2.nsh"

Name "Tallow ${VERSION}"
OutFile "${OUTPUT}"
RequestExecutionLevel user
InstallDir "$LOCALAPPDATA\Programs\Tallow"
InstallDirRegKey HKCU "Software\Tallow\Setup" "Folder"
BrandingText " "
VIProductVersion "${VERSION}.0.0"
VIAddVersionKey "ProductName" "Tallow"
VIAddVersionKey "FileDescription" "Setup of Tallow, MP3 organizer and jukebox"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" "GNU General Public License, version 3 or later"

!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\Tallow"
!define CLASSES "Software\Classes"
!define JUKEBOX "Tallow.Jukebox"

!define MUI_ICON "tallow.ico"
!define MUI_UNICON "tallow.ico"
!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_RUN "$INSTDIR\tallow.exe"
!define MUI_FINISHPAGE_RUN_TEXT "Start Tallow"
!insertmacro MUI_PAGE_FINISH
!define MUI_UNCONFIRMPAGE_TEXT_TOP "Tallow will be taken off this computer. Your song library, ranks, \
settings and jukeboxes stay: they are in the folder Grouping of the folder below. No music file is touched."
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; Stops when the program runs: its file could not be replaced, and it would go on with the old one.
!macro StopWhenRunning
  ${If} ${FileExists} "$INSTDIR\tallow.exe"
    ClearErrors
    FileOpen $0 "$INSTDIR\tallow.exe" a
    ${If} ${Errors}
      MessageBox MB_OK|MB_ICONEXCLAMATION "Tallow is running, or its file is in use. Close it and start \
this again. Nothing was changed." /SD IDOK
      SetErrorLevel 2
      Quit
    ${EndIf}
    FileClose $0
  ${EndIf}
!macroend

Section "Tallow"
  !insertmacro StopWhenRunning
  SetOutPath "$INSTDIR"
  ; What the user has made of a file of the program is theirs.
  File "${PROGRAM}\tallow.exe"
  File "${PROGRAM}\readme.txt"
  File "${PROGRAM}\license.txt"
  SetOverwrite off
  File "${PROGRAM}\TIPOFDAY.TXT"
  SetOverwrite on
  CreateShortCut "$SMPROGRAMS\Tallow.lnk" "$INSTDIR\tallow.exe"

  WriteRegStr HKCU "${CLASSES}\.juk" "" "${JUKEBOX}"
  WriteRegStr HKCU "${CLASSES}\${JUKEBOX}" "" "Jukebox of Tallow"
  WriteRegStr HKCU "${CLASSES}\${JUKEBOX}\DefaultIcon" "" '"$INSTDIR\tallow.exe",0'
  WriteRegStr HKCU "${CLASSES}\${JUKEBOX}\shell\open\command" "" '"$INSTDIR\tallow.exe" "%1"'
  ; SHCNE_ASSOCCHANGED: the shell looks at the file types anew.
  System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'

  WriteRegStr HKCU "Software\Tallow\Setup" "Folder" "$INSTDIR"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  WriteRegStr HKCU "${UNINSTALL}" "DisplayName" "Tallow"
  WriteRegStr HKCU "${UNINSTALL}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${UNINSTALL}" "DisplayIcon" "$INSTDIR\tallow.exe"
  WriteRegStr HKCU "${UNINSTALL}" "Publisher" "Tallow"
  WriteRegStr HKCU "${UNINSTALL}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${UNINSTALL}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKCU "${UNINSTALL}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKCU "${UNINSTALL}" "NoModify" 1
  WriteRegDWORD HKCU "${UNINSTALL}" "NoRepair" 1
SectionEnd

Section "Uninstall"
  !insertmacro StopWhenRunning
  Delete "$INSTDIR\tallow.exe"
  Delete "$INSTDIR\readme.txt"
  Delete "$INSTDIR\license.txt"
  Delete "$INSTDIR\TIPOFDAY.TXT"
  Delete "$INSTDIR\uninstall.exe"
  Delete "$SMPROGRAMS\Tallow.lnk"
  ; Only when it is empty: the library and the jukeboxes lie in it.
  RMDir "$INSTDIR"

  ReadRegStr $0 HKCU "${CLASSES}\.juk" ""
  ${If} $0 == "${JUKEBOX}"
    DeleteRegValue HKCU "${CLASSES}\.juk" ""
    DeleteRegKey /ifempty HKCU "${CLASSES}\.juk"
  ${EndIf}
  DeleteRegKey HKCU "${CLASSES}\${JUKEBOX}"
  DeleteRegKey HKCU "Software\Tallow\Setup"
  DeleteRegKey /ifempty HKCU "Software\Tallow"
  DeleteRegKey HKCU "${UNINSTALL}"
  System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'
  ${If} ${FileExists} "$INSTDIR\Grouping\*.*"
    DetailPrint "Your song library and jukeboxes are still in $INSTDIR\Grouping."
    MessageBox MB_OK|MB_ICONINFORMATION "Tallow was taken off this computer. Your song library, ranks, \
settings and jukeboxes are still in$\r$\n$\r$\n$INSTDIR\Grouping$\r$\n$\r$\nA Tallow that is installed \
there again goes on with them. To be rid of them, delete that folder." /SD IDOK
  ${EndIf}
SectionEnd
