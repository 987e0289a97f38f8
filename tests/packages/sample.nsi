; A small program as many Japanese authors package theirs. makensis -DOUTPUT=FILE sample.nsi
Unicode true
!define NAME "小さなメモ帳"
!define KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\SampleNotes"
Name "${NAME}"
OutFile "${OUTPUT}"
InstallDir "$PROGRAMFILES\SampleNotes"
RequestExecutionLevel admin

Section
    SetOutPath "$INSTDIR"
    WriteUninstaller "$INSTDIR\uninstall.exe"
    WriteRegStr HKLM "${KEY}" "DisplayName" "${NAME}"
    ; With _?= the uninstaller works where it lies; without, it hands over to a copy of itself and ends.
    WriteRegStr HKLM "${KEY}" "UninstallString" '"$INSTDIR\uninstall.exe" /S _?=$INSTDIR'
SectionEnd

Section Uninstall
    DeleteRegKey HKLM "${KEY}"
    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR"
SectionEnd
