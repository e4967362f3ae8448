' Exports a driver's printing preferences to a file, changes the darkness in it, imports it, and resets them.
' cscript //nologo settings.vbs PRINTER FILE
Option Explicit

If WScript.Arguments.Count <> 2 Then
    WScript.Echo "usage: cscript //nologo settings.vbs PRINTER FILE"
    WScript.Quit 2
End If

Dim files, file, printer, settings, preferences, before
Set files = CreateObject("Scripting.FileSystemObject")
file = WScript.Arguments(1)
Set printer = CreateObject("Vorlane.Printer")
printer.Initialize WScript.Arguments(0)
Set settings = printer.Configuration

' Only one group of settings.
Set preferences = CreateObject("Vorlane.PrinterConfigurationF")
preferences.PrintingPreferences = True

' The driver's darkness, by way of the file.
Function Darkness()
    Dim line
    settings.Export file, preferences
    For Each line In Split(files.OpenTextFile(file).ReadAll, vbLf)
        If InStr(line, "darkness") = 1 Then Darkness = Replace(line, vbCr, "")
    Next
End Function

Sub ChangeFile(before, after)
    Dim text
    text = Replace(files.OpenTextFile(file).ReadAll, before, after)
    files.CreateTextFile(file, True).Write text
End Sub

before = Darkness()
WScript.Echo "Exported:         " & before
ChangeFile before, "darkness = 14"
settings.Import file, preferences
WScript.Echo "After the import: " & Darkness()
settings.ResetToDefaults preferences
WScript.Echo "After a reset:    " & Darkness()
