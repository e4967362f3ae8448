' Opens a printer, reads and changes it, and sends it a file.
' cscript //nologo printer.vbs PRINTER FILE
Option Explicit

If WScript.Arguments.Count <> 2 Then
    WScript.Echo "usage: cscript //nologo printer.vbs PRINTER FILE"
    WScript.Quit 2
End If

Dim printer
Set printer = CreateObject("Vorlane.Printer")

' A name that the spooler does not know: the error says what went wrong.
On Error Resume Next
printer.Initialize "No such printer"
WScript.Echo "A wrong name gives:  " & Err.Description & " (0x" & Hex(Err.Number) & ")"
Err.Clear

printer.Initialize WScript.Arguments(0)
If Err.Number <> 0 Then
    WScript.Echo WScript.Arguments(0) & ": " & Err.Description
    WScript.Quit 1
End If
On Error GoTo 0

WScript.Echo "Name:                " & printer.Name
WScript.Echo "Server name:         " & printer.ServerName
WScript.Echo "Share name:          " & printer.ShareName
WScript.Echo "Port name:           " & printer.PortName
WScript.Echo "Model name:          " & printer.ModelName
WScript.Echo "Comment:             " & printer.Comment
WScript.Echo "Location:            " & printer.Location
WScript.Echo "Local:               " & printer.Local
WScript.Echo "Network:             " & printer.Network
WScript.Echo "Shared:              " & printer.Shared

printer.Comment = "Shipping labels, 100 x 60 mm"
printer.Location = "Gate 7"
WScript.Echo "Comment is now:      " & printer.Comment
WScript.Echo "Location is now:     " & printer.Location

' A refused file is no error: a script that has to know watches the job.
printer.SendFile WScript.Arguments(1), "Shipping label"
WScript.Echo "Sent as:             Shipping label"
