' Lists the machine's printers: what state each is in, and what it can do.
' cscript //nologo printers.vbs
Option Explicit

Dim server, printers, printer
Set server = CreateObject("Vorlane.PrintServer")
Set printers = CreateObject("Vorlane.Printers")
server.EnumeratePrinters printers

For Each printer In printers
    WScript.Echo printer.Name
    WScript.Echo "  Status:    " & printer.Status.Text
    WScript.Echo "  Model:     " & printer.ModelName
    TellCapabilities printer.Capabilities
Next
WScript.Echo printers.Count & " printers, of these are shared:"

' A filter lists some of them only: here the local printers that are shared.
Dim filter
Set filter = CreateObject("Vorlane.PrintersFilter")
filter.Local = False
filter.Network = False
filter.Shared = True
printers.RemoveAll
server.EnumeratePrinters printers, filter
For Each printer In printers
    WScript.Echo "  " & printer.Name & " as " & printer.ShareName
Next

' A driver needn't know everything about its printer: asking for what it doesn't know is an error.
Sub TellCapabilities(capabilities)
    On Error Resume Next
    Tell "Speed:     ", capabilities.PrintSpeed
    Tell "Copies:    ", capabilities.MaximumCopies
    Tell "Collates:  ", capabilities.Collate
    Tell "Color:     ", capabilities.Color
    Tell "Duplex:    ", capabilities.Duplex
    Tell "Staples:   ", capabilities.Staple
End Sub

Sub Tell(title, value)
    WScript.Echo "  " & title & value
End Sub
