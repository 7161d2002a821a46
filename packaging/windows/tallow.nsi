; SPDX-License-Identifier: GPL-3.0-or-later
; The setup program: installs Tallow for one user, without administrator rights.
;
; makensis -DVERSION=0.1 -DFOUR_NUMBERS=0.1.0.0 -DPROGRAM=folder -DOUTPUT=file tallow.nsi
;   PROGRAM  the folder of what is installed: tallow.exe, its player and its data files
; A 64-bit program, as Tallow is; it implies Unicode.
Target amd64-unicode
SetCompressor /SOLID lzma
ManifestDPIAware true
!include "MUI2.nsh"

Name "Tallow ${VERSION}"
OutFile "${OUTPUT}"
RequestExecutionLevel user
InstallDir "$LOCALAPPDATA\Programs\Tallow"
InstallDirRegKey HKCU "Software\Tallow\Setup" "Folder"
BrandingText " "
VIProductVersion "${FOUR_NUMBERS}"
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
!define MUI_PAGE_CUSTOMFUNCTION_LEAVE CheckFolder
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_RUN "$INSTDIR\tallow.exe"
!define MUI_FINISHPAGE_RUN_TEXT "Start Tallow"
!insertmacro MUI_PAGE_FINISH
!define MUI_UNCONFIRMPAGE_TEXT_TOP "Tallow will be taken off this computer. Your song library, ranks, \
settings and jukeboxes stay: they are in the folder Grouping of the folder below, or of the folder Tallow \
among your application data. So do the options of your windows. No music file is touched."
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; The tips' file as it is: its time, in $1; empty when it is not there.
!macro StateOfTips un
Function ${un}StateOfTips
  StrCpy $1 ""
  ${If} ${FileExists} "$INSTDIR\TIPOFDAY.TXT"
    GetFileTime "$INSTDIR\TIPOFDAY.TXT" $2 $3
    StrCpy $1 "$2:$3"
  ${EndIf}
FunctionEnd
!macroend
!insertmacro StateOfTips ""
!insertmacro StateOfTips "un."

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
  ; The player ends with Tallow, but one that plays on after a crash has its file in use.
  ${If} ${FileExists} "$INSTDIR\tallow-player.exe"
    ClearErrors
    FileOpen $0 "$INSTDIR\tallow-player.exe" a
    ${If} ${Errors}
      MessageBox MB_OK|MB_ICONEXCLAMATION "Tallow's player, tallow-player.exe, is still running. End it in the \
Task Manager, and start this again. Nothing was changed." /SD IDOK
      SetErrorLevel 2
      Quit
    ${EndIf}
    FileClose $0
  ${EndIf}
!macroend

; A folder that cannot hold the program, or would leave the user's library behind.
Function CheckFolder
  ClearErrors
  CreateDirectory "$INSTDIR"
  FileOpen $0 "$INSTDIR\tallow-write-test.new" w
  ${If} ${Errors}
    MessageBox MB_OK|MB_ICONEXCLAMATION "No file can be made in $INSTDIR. Choose another folder."
    Abort
  ${EndIf}
  FileClose $0
  Delete "$INSTDIR\tallow-write-test.new"
  ReadRegStr $0 HKCU "Software\Tallow\Setup" "Folder"
  ${If} $0 != ""
  ${AndIf} $0 != "$INSTDIR"
  ${AndIf} ${FileExists} "$0\Grouping\*.*"
    MessageBox MB_YESNO|MB_ICONQUESTION "Tallow is installed in $0, with your song library and jukeboxes \
in its folder Grouping. A Tallow in another folder begins with an empty library. Install it there all the \
same?" IDYES +2
    Abort
  ${EndIf}
FunctionEnd

Section "Tallow"
  !insertmacro StopWhenRunning
  SetOutPath "$INSTDIR"
  ; What the user has made of a file of the program is theirs.
  File "${PROGRAM}\tallow.exe"
  File "${PROGRAM}\tallow-player.exe"
  File "${PROGRAM}\readme.txt"
  File "${PROGRAM}\license.txt"
  File "${PROGRAM}\third-party.txt"
  ; Tips of the user's own are kept: a file that is not as it was installed.
  ReadRegStr $0 HKCU "Software\Tallow\Setup" "Tips"
  Call StateOfTips
  ${If} $1 == ""
  ${OrIf} $1 == $0
    File "${PROGRAM}\TIPOFDAY.TXT"
    Call StateOfTips
    WriteRegStr HKCU "Software\Tallow\Setup" "Tips" "$1"
  ${EndIf}
  CreateShortCut "$SMPROGRAMS\Tallow.lnk" "$INSTDIR\tallow.exe"

  ; Who opened such files before gets them back.
  ReadRegStr $0 HKCU "${CLASSES}\.juk" ""
  ${If} $0 != "${JUKEBOX}"
    WriteRegStr HKCU "Software\Tallow\Setup" "Before" "$0"
  ${EndIf}
  WriteRegStr HKCU "${CLASSES}\.juk" "" "${JUKEBOX}"
  WriteRegStr HKCU "${CLASSES}\.juk\OpenWithProgids" "${JUKEBOX}" ""
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
  SectionGetSize 0 $0
  WriteRegDWORD HKCU "${UNINSTALL}" "EstimatedSize" $0
  WriteRegDWORD HKCU "${UNINSTALL}" "NoModify" 1
  WriteRegDWORD HKCU "${UNINSTALL}" "NoRepair" 1
SectionEnd

Section "Uninstall"
  !insertmacro StopWhenRunning
  Delete "$INSTDIR\tallow.exe"
  Delete "$INSTDIR\tallow-player.exe"
  Delete "$INSTDIR\readme.txt"
  Delete "$INSTDIR\license.txt"
  Delete "$INSTDIR\third-party.txt"
  ReadRegStr $0 HKCU "Software\Tallow\Setup" "Tips"
  Call un.StateOfTips
  ${If} $1 == $0
    Delete "$INSTDIR\TIPOFDAY.TXT"
  ${EndIf}
  Delete "$INSTDIR\uninstall.exe"
  ; They only say that nobody runs.
  Delete "$INSTDIR\Grouping\System\tallow.lock"
  Delete "$INSTDIR\Grouping\System\tallow.owner"
  Delete "$SMPROGRAMS\Tallow.lnk"
  ; Only when it is empty: the library and the jukeboxes lie in it.
  RMDir "$INSTDIR"

  ReadRegStr $0 HKCU "${CLASSES}\.juk" ""
  ${If} $0 == "${JUKEBOX}"
    ReadRegStr $0 HKCU "Software\Tallow\Setup" "Before"
    ${If} $0 == ""
      DeleteRegValue HKCU "${CLASSES}\.juk" ""
    ${Else}
      WriteRegStr HKCU "${CLASSES}\.juk" "" "$0"
    ${EndIf}
  ${EndIf}
  DeleteRegValue HKCU "${CLASSES}\.juk\OpenWithProgids" "${JUKEBOX}"
  DeleteRegKey /ifempty HKCU "${CLASSES}\.juk\OpenWithProgids"
  DeleteRegKey /ifempty HKCU "${CLASSES}\.juk"
  DeleteRegKey HKCU "${CLASSES}\${JUKEBOX}"
  DeleteRegKey HKCU "Software\Tallow\Setup"
  DeleteRegKey /ifempty HKCU "Software\Tallow"
  DeleteRegKey HKCU "${UNINSTALL}"
  StrCpy $0 "$INSTDIR"
  ${IfNot} ${FileExists} "$0\Grouping\*.*"
    StrCpy $0 "$LOCALAPPDATA\Tallow"
  ${EndIf}
  System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'
  ${If} ${FileExists} "$0\Grouping\*.*"
    DetailPrint "Your song library and jukeboxes are still in $0\Grouping."
    MessageBox MB_OK|MB_ICONINFORMATION "Tallow was taken off this computer. Your song library, ranks, \
settings and jukeboxes are still in$\r$\n$\r$\n$0\Grouping$\r$\n$\r$\nA Tallow that is installed \
there again goes on with them. To be rid of them, delete that folder." /SD IDOK
  ${EndIf}
SectionEnd
